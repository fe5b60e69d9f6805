#include "base/Symbol.h"

#include "base/Text.h"

#include <deque>
#include <string>
#include <utility>
#include <vector>

namespace vardo {
namespace {

// Open addressing over the hashes of all names; the names themselves never move.
class Names {
 public:
  Names() : slots_(1024) { texts_.emplace_back(); }

  std::uint32_t NumberOf(std::string_view name) {
    if (name.empty()) return 0;
    const std::uint64_t hash = HashOf(name);
    Slot& slot = SlotOf(name, hash);
    if (slot.number != 0) return slot.number;
    texts_.emplace_back(name);
    slot = {hash, static_cast<std::uint32_t>(texts_.size() - 1)};
    if (texts_.size() * 2 > slots_.size()) Grow();
    return static_cast<std::uint32_t>(texts_.size() - 1);
  }
  // 0 for none.
  std::uint32_t KnownNumberOf(std::string_view name) { return SlotOf(name, HashOf(name)).number; }
  std::string_view TextOf(std::uint32_t number) const { return texts_[number]; }

 private:
  struct Slot {
    std::uint64_t hash = 0;
    std::uint32_t number = 0;  // 0: free
  };

  static std::uint64_t HashOf(std::string_view name) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char c : name) hash = (hash ^ static_cast<unsigned char>(LowerAscii(c))) * 0x100000001B3;
    return hash ^ (hash >> 29);
  }

  // The one that the name has, or a free one for it.
  Slot& SlotOf(std::string_view name, std::uint64_t hash) {
    size_t at = hash & (slots_.size() - 1);
    while (slots_[at].number != 0 && !(slots_[at].hash == hash && EqualAsciiIgnoringCase(texts_[slots_[at].number], name)))
      at = (at + 1) & (slots_.size() - 1);
    return slots_[at];
  }

  void Grow() {
    const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(slots_.size() * 4));
    for (const Slot& slot : old) {
      if (slot.number == 0) continue;
      size_t at = slot.hash & (slots_.size() - 1);
      while (slots_[at].number != 0) at = (at + 1) & (slots_.size() - 1);
      slots_[at] = slot;
    }
  }

  std::vector<Slot> slots_;
  std::deque<std::string> texts_;
};

Names& TheNames() {
  static Names names;
  return names;
}

}  // namespace

Symbol::Symbol(std::string_view name) : number_(TheNames().NumberOf(name)) {}

std::optional<Symbol> Symbol::Known(std::string_view name) {
  const std::uint32_t number = TheNames().KnownNumberOf(name);
  return number == 0 ? std::nullopt : std::optional(FromNumber(number));
}

std::string_view Symbol::text() const { return TheNames().TextOf(number_); }

}  // namespace vardo
