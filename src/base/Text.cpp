#include "base/Text.h"

#include "base/Characters.h"

#include <algorithm>

namespace vardo {
namespace {

constexpr size_t kLongestInWords = 200;

bool IsControl(std::string_view character) {
  const char32_t point = CodePoint(character);
  return point < 0x20 || (point >= 0x7F && point < 0xA0) || point == 0x2028 || point == 0x2029;
}

}  // namespace

std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = LowerAscii(c);
  return lower;
}

bool EqualAsciiIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  return a == b || std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

std::string QuoteText(std::string_view text) {
  std::string quoted = "\"";
  quoted.reserve(text.size() + 2);
  for (size_t quote; (quote = text.find('"')) != std::string_view::npos; text.remove_prefix(quote + 1))
    quoted.append(text.substr(0, quote + 1)) += '"';
  return quoted.append(text) += '"';
}

std::string UnquoteText(std::string_view quoted) {
  if (quoted.size() < 2 || quoted.front() != '"' || quoted.back() != '"') return std::string(quoted);
  std::string_view inner = quoted.substr(1, quoted.size() - 2);
  std::string text;
  text.reserve(inner.size());
  for (size_t quote; (quote = inner.find('"')) != std::string_view::npos;) {
    text.append(inner.substr(0, quote + 1));
    const bool isDoubled = quote + 1 < inner.size() && inner[quote + 1] == '"';
    inner.remove_prefix(quote + (isDoubled ? 2 : 1));
  }
  return text.append(inner);
}

std::string InWords(std::string_view text) {
  std::string words;
  for (size_t characters = 0; !text.empty(); ++characters) {
    if (characters == kLongestInWords) return words + "...";
    const std::string_view character = FirstCharacter(text);
    words += IsControl(character) ? "?" : character;
    text.remove_prefix(character.size());
  }
  return words;
}

}  // namespace vardo
