// The hidden rows that every page carries.
#pragma once

#include "modules/ModuleKinds.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

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

}  // namespace vardo
