// What is counted with the hidden rows that every page carries.
#pragma once

#include "addin/host/HostFwd.h"
#include "modules/BookkeepingRows.h"

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace vardo {

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

// A register that did not name exactly the modules of its kind on its page.
struct MendedRegister {
  IVPagePtr page;
  std::string_view kind;
  std::string text;  // what it held
};

// Counts such registers of a page anew, those at some positions left out, and with them the page's count. One that the page does
// not have, or that is right in whatever order, stays as it is. Throws HostError.
std::vector<MendedRegister> MendRegisters(const IVPagePtr& page, const ShapeIndexes& leftOut);

}  // namespace vardo
