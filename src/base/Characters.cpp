#include "base/Characters.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace vardo {
namespace {

bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// How many bytes the character has that this byte begins.
size_t LengthFromLead(char byte) {
  const auto lead = static_cast<unsigned char>(byte);
  if (lead >= 0xF0 && lead < 0xF8) return 4;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xC0 && lead < 0xE0) return 2;
  return 1;
}

constexpr size_t kLongest = 4;
// The smallest code point that needs as many bytes, and the payload bits of the first of them.
constexpr std::array<char32_t, kLongest + 1> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
constexpr std::array<unsigned char, kLongest + 1> kLeadMask = {0, 0x7F, 0x1F, 0x0F, 0x07};
constexpr char32_t kLargest = 0x10FFFF;
constexpr char32_t kReplacement = 0xFFFD;

}  // namespace

std::string_view FirstCharacter(std::string_view text) {
  const size_t length = LengthFromLead(text.front());
  const auto tail = text.substr(1, length - 1);
  const bool whole = tail.size() == length - 1 && std::all_of(tail.begin(), tail.end(), IsContinuation);
  return text.substr(0, whole ? length : 1);
}

std::string_view LastCharacter(std::string_view text) {
  for (size_t length = 2; length <= std::min(text.size(), kLongest) && IsContinuation(text.back()); ++length) {
    const auto candidate = text.substr(text.size() - length);
    if (FirstCharacter(candidate).size() == length) return candidate;
  }
  return text.substr(text.size() - 1);
}

char32_t CodePoint(std::string_view character) {
  const auto lead = static_cast<unsigned char>(character.front());
  if (character.size() == 1) return lead < 0x80 ? lead : kReplacement;
  char32_t point = lead & kLeadMask[character.size()];
  for (const char byte : character.substr(1)) point = point << 6 | (static_cast<unsigned char>(byte) & 0x3F);
  return point < kSmallest[character.size()] || point > kLargest ? kReplacement : point;
}

bool IsPrintableAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char byte) { return byte >= ' ' && byte <= '~'; });
}

}  // namespace vardo
