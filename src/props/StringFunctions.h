// Lists of strings in one text, and the small text procedures that go with them.
//   Positions and lengths are counted in characters (code points). All of them take time linear in the text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vardo {

using StringList = std::vector<std::string>;

// What joins the items of a list in a cell.
inline constexpr std::string_view kListDelimiter = ";";

// The items between the delimiters, of which any character of `delimiters` is one: always one more than there are delimiters, so
// the empty text is one empty item. Without delimiters the whole text is the one item.
StringList SplitList(std::string_view text, std::string_view delimiters);

// The reverse for the list delimiter. Items are not escaped.
std::string JoinList(const StringList& items);

// The n-th item, counted from 1; empty past the end. A text without any delimiter is every item of itself.
// Throws RuntimeError (invalid argument) when n is less than 1.
std::string GetListItem(std::string_view text, int n, std::string_view delimiters);

// How often `search` occurs without overlapping itself; the empty text occurs nowhere.
int CountOccurrences(std::string_view text, std::string_view search);

// Replaces each character that is in `from` by the one at the same place in `to`, whose last character serves for all places
// behind it. An empty `to` drops them.
std::string TranslateChars(std::string_view text, std::string_view from, std::string_view to);

// The text of a string formula: without the quote at either end, with each doubled quote as one.
std::string UnquoteFormula(std::string_view formula);

// True when at least `times` items equal the name, case apart; never for fewer than one.
bool NameOccursAtLeast(const StringList& list, std::string_view name, int times);

// Without the blanks (nothing but the character 32) at either end.
std::string_view TrimBlanks(std::string_view text);

// The number that the text begins with, rounded to a whole one, halves to the even; 0 when it begins with none.
// Throws RuntimeError (overflow) when it does not fit.
int LeadingInteger(std::string_view text);

}  // namespace vardo
