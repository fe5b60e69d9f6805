// A module's values in the custom properties of its shape, and a drawing's in those of its page sheets.
//   Field names come without the "Prop." of their cells. A value is kept as a string formula: quoted, and otherwise as it is; a
//   list is its items joined by ";". Nothing is escaped: callers keep ";" and quotes out of the values.
#pragma once

#include "addin/host/HostFwd.h"
#include "props/StringFunctions.h"

#include <optional>
#include <string>
#include <string_view>

namespace vardo {

inline constexpr std::string_view kPropPrefix = "Prop.";

// The name of the cell that holds a field.
std::string CellName(std::string_view field);

// The formula of a text as it is kept: in quotes, its own quotes not doubled.
std::string InQuotes(std::string_view text);
// What stands between a formula's first and last character, which are not looked at; none when it has not both.
std::optional<std::string> TextBetweenQuotes(std::string_view formula);
// The same as a view into the formula; empty when it has not both.
std::string_view ViewBetweenQuotes(std::string_view formula);

// The items of a field. When its cell cannot be read, the default's words instead: it is split at blanks and punctuation too, so
// that "Entity 1" becomes "Entity" and "1". At least one item.
StringList GetPropList(const IVShapePtr& shape, std::string_view field, std::string_view defaultText);
StringList GetPagePropList(const IVPagePtr& page, std::string_view field, std::string_view defaultText);

// The text of a field of a shape or page sheet; empty when there is no such property. Throws HostError when the host refuses to
// tell, so that what is there is not taken for nothing.
std::string PropText(const IVShapePtr& sheet, std::string_view field);

// Write a single value or a list of at least one item; an empty list throws RuntimeError (invalid argument) and changes nothing.
// When the cell cannot be written, a hidden property of the field's name is created and written; what fails then is thrown.
void SetPropList(const IVShapePtr& shape, std::string_view field, std::string_view value);
void SetPropList(const IVShapePtr& shape, std::string_view field, const StringList& values);
void SetPagePropList(const IVPagePtr& page, std::string_view field, std::string_view value);
void SetPagePropList(const IVPagePtr& page, std::string_view field, const StringList& values);

// Enters a module shape in the register that the active page keeps for its master, and counts it. The shape must have a master.
// Throws HostError.
void IncrementPageCount(const IVShapePtr& shape);

}  // namespace vardo
