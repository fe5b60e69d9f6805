// Small things that every layer does with texts. Only ASCII letters have a case here; what a user reads as equal is the
// platform's to say.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vardo {

constexpr char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
std::string LowerAscii(std::string_view text);
bool EqualAsciiIgnoringCase(std::string_view a, std::string_view b);

constexpr bool IsAsciiDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsAsciiLetter(char c) { return LowerAscii(c) >= 'a' && LowerAscii(c) <= 'z'; }

// A string as formulas write it: in double quotes, its own doubled.
std::string QuoteText(std::string_view text);
// What stands between the quotes of such a string, without the doubling. A text that has not both quotes is taken as it is.
std::string UnquoteText(std::string_view quoted);

// What a drawing's file, being XML, cannot hold of a text: "the character U+FFFF", "bytes that are not UTF-8". None when all can
// be kept.
std::optional<std::string> FindUnkeepable(std::string_view text);

// A text that a sentence quotes: at most 200 characters of it, the rest as "...", and characters that do not print as "?".
std::string InWords(std::string_view text);

}  // namespace vardo
