#include "props/FoldedTexts.h"

#include "base/Characters.h"
#include "base/Text.h"
#include "platform/Platform.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace vardo {
namespace {

// Eight characters at a time. A letter's case is one bit, which is left out; that other characters are taken together by it does
// no harm to a hash.
std::uint32_t HashOf(std::string_view key) {
  constexpr std::uint64_t kWithoutCase = 0xDFDFDFDFDFDFDFDF, kMix = 0x9E3779B97F4A7C15;
  std::uint64_t hash = key.size() * kMix;
  for (size_t at = 0; at < key.size(); at += sizeof(std::uint64_t)) {
    std::uint64_t piece = 0;
    std::memcpy(&piece, key.data() + at, std::min(sizeof piece, key.size() - at));
    hash = (hash ^ (piece & kWithoutCase)) * kMix;
    hash ^= hash >> 32;
  }
  return static_cast<std::uint32_t>(hash);
}

}  // namespace

FoldedTexts::FoldedTexts(size_t expected) : slots_(std::bit_ceil(2 * expected + 2)) { entries_.reserve(expected); }

std::optional<std::string_view> FoldedTexts::Insert(std::string_view text) {
  const bool isPlain = IsPrintableAscii(text);
  const std::string_view key = isPlain ? text : keys_.emplace_back(ThePlatform().CaseFoldKey(text));
  const bool isAscii = isPlain || IsPrintableAscii(key);
  const std::uint32_t hash = HashOf(key);
  size_t at = hash & (slots_.size() - 1);
  for (; slots_[at].entry != 0; at = (at + 1) & (slots_.size() - 1)) {
    if (slots_[at].hash != hash) continue;
    const Entry& there = entries_[slots_[at].entry - 1];
    if (there.isAscii == isAscii && (isAscii ? EqualAsciiIgnoringCase(there.key, key) : there.key == key)) return there.text;
  }
  entries_.push_back({key, text, isAscii});
  slots_[at] = {static_cast<std::uint32_t>(entries_.size()), hash};
  return std::nullopt;
}

}  // namespace vardo
