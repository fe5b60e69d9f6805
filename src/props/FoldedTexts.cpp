#include "props/FoldedTexts.h"

#include "base/Characters.h"
#include "base/Text.h"
#include "platform/Platform.h"

#include <bit>

namespace vardo {
namespace {

size_t HashOf(std::string_view key, bool isAscii) {
  size_t hash = 0xCBF29CE484222325;
  for (const char c : key) hash = (hash ^ static_cast<unsigned char>(isAscii ? LowerAscii(c) : c)) * 0x100000001B3;
  return hash ^ (hash >> 29);
}

}  // namespace

FoldedTexts::FoldedTexts(size_t expected) : slots_(std::bit_ceil(2 * expected + 2)) {}

std::optional<std::string_view> FoldedTexts::Insert(std::string_view text) {
  const std::string_view key = IsPrintableAscii(text) ? text : keys_.emplace_back(ThePlatform().CaseFoldKey(text));
  const bool isAscii = IsPrintableAscii(key);
  const size_t hash = HashOf(key, isAscii);
  const auto isSame = [&](const Slot& slot) {
    if (slot.hash != hash || slot.isAscii != isAscii) return false;
    return isAscii ? EqualAsciiIgnoringCase(slot.key, key) : slot.key == key;
  };
  size_t at = hash & (slots_.size() - 1);
  for (; slots_[at].used; at = (at + 1) & (slots_.size() - 1))
    if (isSame(slots_[at])) return slots_[at].text;
  slots_[at] = {hash, key, text, true, isAscii};
  return std::nullopt;
}

}  // namespace vardo
