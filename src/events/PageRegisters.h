// The hidden rows that every page carries, and what is counted with them.
#pragma once

#include "addin/host/HostFwd.h"
#include "modules/ModuleKinds.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <unordered_set>

namespace vardo {

struct BookkeepingRow {
  std::string_view name;
  std::string_view formula;
};

inline constexpr std::string_view kParentPageRow = "VardoParentPage";

// A list of shape positions a kind, the number of module shapes, and the page that a submodel page belongs to.
inline constexpr auto kBookkeepingRows = [] {
  constexpr std::string_view kEmptyText = "\"\"";
  constexpr BookkeepingRow kOthers[] = {{"Count", "0"}, {"SelectionCount", "0"}, {kParentPageRow, kEmptyText}};
  std::array<BookkeepingRow, std::size(kModuleKinds) + std::size(kOthers)> rows;
  BookkeepingRow* row = rows.data();
  for (const std::string_view kind : kModuleKinds) *row++ = {kind, kEmptyText};
  std::ranges::copy(kOthers, row);
  return rows;
}();

// The positions of all shapes of a kind, over all pages of the active document, joined with ";"; empty when there are none.
// Throws HostError.
std::string DrawingKindShapeIndexes(std::string_view kind);

// How many shapes of a kind the drawing's registers name.
int KindShapeCount(std::string_view kind);

// Positions among the page's shapes.
using ShapeIndexes = std::unordered_set<int>;

// Writes the page's registers and its count anew, as they will be once the shapes at those positions have gone: the ones behind a
// shape that goes move up. Throws HostError.
void CountModuleNames(const IVPagePtr& page, const ShapeIndexes& goingAway);

}  // namespace vardo
