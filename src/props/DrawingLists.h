// The values that properties have all over the drawing.
//   Only shapes that the pages' registers name are visited (see IncrementPageCount). Values come page by page, request by
//   request, and in the order in which the shapes were dropped.
#pragma once

#include "addin/host/HostFwd.h"
#include "props/StringFunctions.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// The values of fields[j] in all shapes that are registered under registers[j], for every j, on every page of the active
// document; with `unique` as SplitToUniqueList has it. One empty item when nothing is registered. The two lists are of one
// length.
StringList FillComboFromDrawing(const StringList& registers, const StringList& fields, bool unique);

// The same values whole, not taken apart where a value holds ";".
StringList ValuesInDrawing(const StringList& registers, const StringList& fields);

// How many items of that gathering equal the text, case apart, where the host keeps count. None of a host that does not, of the
// empty text, and of one that holds ";" and so is no item.
std::optional<int> TimesByHostsCount(const StringList& registers, const StringList& fields, std::string_view text);

// True when at least `times` items of that gathering, repeats and all, equal the text, case apart; never for fewer than one. A
// text with the list's delimiter in it is no item: it is compared with whole values.
bool TextOccursAtLeast(const StringList& registers, const StringList& fields, std::string_view text, int times);

// The positions in a page's register, in its order; an item that is no number counts for none. Throws HostError.
std::vector<int> RegisteredPositions(const IVPagePtr& page, std::string_view registerName);

// Appends the text of the cell, "Prop." and all, of each shape of the page's register, as a whole: it may have the list's
// delimiter in it. A shape without that property gets it, empty and hidden. A registered number that is no shape's throws
// HostError.
void CollectPageValues(const IVPagePtr& page, std::string_view registerName, std::string_view cellName, StringList& values);

// The items of the text; with `unique` without those that repeat an earlier one, case apart. The last item alone is left out only
// when an item that was kept is exactly equal to it.
StringList SplitToUniqueList(std::string_view text, std::string_view delimiter, bool unique);

}  // namespace vardo
