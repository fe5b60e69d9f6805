// A set of texts that are equal when a user reads them so, case aside. Texts of printable ASCII, which nearly all are, cost
// neither a call of the platform nor a copy.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

class FoldedTexts {
 public:
  explicit FoldedTexts(size_t expected);
  // The text stays the caller's and must outlive this. The one that is there already; none when the text is new.
  std::optional<std::string_view> Insert(std::string_view text);

 private:
  struct Entry {
    std::string_view key, text;
    bool isAscii;
  };
  // Small, so that the table stays near the processor: an entry's number, from 1, and half of its hash.
  struct Slot {
    std::uint32_t entry = 0, hash = 0;
  };
  std::vector<Slot> slots_;
  std::vector<Entry> entries_;
  std::deque<std::string> keys_;
};

}  // namespace vardo
