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

// "U+FFFE"
std::string CodePointName(char32_t point) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string name = "U+";
  for (int shift = point > 0xFFFF ? 20 : 12; shift >= 0; shift -= 4) name += kDigits[point >> shift & 0xF];
  return name;
}

// Of what stands before the first block with anything but printable ASCII: a loop without branches, which compilers turn into
// vector instructions.
size_t LengthOfPlainText(std::string_view text) {
  constexpr size_t kBlock = 64;
  size_t length = 0;
  for (; text.size() - length >= kBlock; length += kBlock) {
    unsigned char special = 0;
    for (size_t i = 0; i < kBlock; ++i) {
      const auto c = static_cast<unsigned char>(text[length + i]);
      special |= static_cast<unsigned char>((c < 0x20) | (c >= 0x7F));
    }
    if (special) break;
  }
  return length;
}

bool CanBeKept(char32_t point) {
  if (point < 0x20) return point == '\t' || point == '\n' || point == '\r';
  return (point < 0xD800 || point > 0xDFFF) && point != 0xFFFE && point != 0xFFFF;
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

std::optional<std::string> FindUnkeepable(std::string_view text) {
  text.remove_prefix(LengthOfPlainText(text));
  while (!text.empty()) {
    const std::string_view character = FirstCharacter(text);
    const bool isByte = character.size() == 1 && static_cast<unsigned char>(character.front()) >= 0x80;
    if (isByte) return "bytes that are not UTF-8";
    const char32_t point = CodePoint(character);
    if (point == 0xFFFD && character != "\xEF\xBF\xBD") return "bytes that are not UTF-8";
    if (!CanBeKept(point)) return "the character " + CodePointName(point);
    text.remove_prefix(character.size());
  }
  return std::nullopt;
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
