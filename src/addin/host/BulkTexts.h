// Many texts read from a host at once.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vardo {

// Views of texts that are the host's or kept here; good as long as this and, what is the host's, until the drawing changes. None
// for what is not there.
class BulkTexts {
 public:
  BulkTexts() = default;
  BulkTexts(BulkTexts&&) = default;
  BulkTexts& operator=(BulkTexts&&) = default;

  void Reserve(size_t count) { texts_.reserve(count); }
  void AddView(std::optional<std::string_view> text) { texts_.push_back(text); }
  void AddCopy(std::string text) { texts_.emplace_back(kept_.emplace_back(std::move(text))); }

  const std::vector<std::optional<std::string_view>>& texts() const { return texts_; }

 private:
  std::deque<std::string> kept_;
  std::vector<std::optional<std::string_view>> texts_;
};

}  // namespace vardo
