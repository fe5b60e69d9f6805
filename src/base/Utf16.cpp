#include "base/Utf16.h"

#include "base/Characters.h"

#include <cstddef>

namespace vardo {
namespace {

constexpr char32_t kFirstHigh = 0xD800;
constexpr char32_t kFirstLow = 0xDC00;
constexpr char32_t kBeyondBasic = 0x10000;

bool IsHigh(char16_t unit) { return (unit & 0xFC00) == kFirstHigh; }
bool IsLow(char16_t unit) { return (unit & 0xFC00) == kFirstLow; }

void AppendUtf8(std::string& text, char32_t point) {
  const auto continuation = [&](int shift) { text += static_cast<char>(0x80 | (point >> shift & 0x3F)); };
  if (point < 0x80) {
    text += static_cast<char>(point);
  } else if (point < 0x800) {
    text += static_cast<char>(0xC0 | point >> 6);
    continuation(0);
  } else if (point < kBeyondBasic) {
    text += static_cast<char>(0xE0 | point >> 12);
    continuation(6);
    continuation(0);
  } else {
    text += static_cast<char>(0xF0 | point >> 18);
    continuation(12);
    continuation(6);
    continuation(0);
  }
}

}  // namespace

std::u16string ToUtf16(std::string_view utf8) {
  std::u16string units;
  units.reserve(utf8.size());
  while (!utf8.empty()) {
    const auto character = FirstCharacter(utf8);
    utf8.remove_prefix(character.size());
    const char32_t point = CodePoint(character);
    if (point < kBeyondBasic) {
      units += static_cast<char16_t>(point);
    } else {
      units += static_cast<char16_t>(kFirstHigh + ((point - kBeyondBasic) >> 10));
      units += static_cast<char16_t>(kFirstLow + (point & 0x3FF));
    }
  }
  return units;
}

std::string ToUtf8(std::u16string_view utf16) {
  std::string text;
  text.reserve(utf16.size());
  for (size_t i = 0; i < utf16.size(); ++i) {
    char32_t point = utf16[i];
    if (IsHigh(utf16[i]) && i + 1 < utf16.size() && IsLow(utf16[i + 1])) {
      point = kBeyondBasic + ((point - kFirstHigh) << 10) + (utf16[++i] - kFirstLow);
    }
    AppendUtf8(text, point);
  }
  return text;
}

}  // namespace vardo
