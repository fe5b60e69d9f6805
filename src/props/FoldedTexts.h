// A set of texts that are equal when a user reads them so, case aside. Texts of printable ASCII, which nearly all are, cost
// neither a call of the platform nor a copy.
#pragma once

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
  struct Slot {
    size_t hash = 0;
    std::string_view key, text;
    bool used = false, isAscii = false;
  };
  std::vector<Slot> slots_;
  std::deque<std::string> keys_;
};

}  // namespace vardo
