// Runs something when a block is left, however it is left. It must not throw.
#pragma once

#include <utility>

namespace vardo {

template <class Action>
class AtExit {
 public:
  explicit AtExit(Action action) : action_(std::move(action)) {}
  ~AtExit() { action_(); }
  AtExit(const AtExit&) = delete;
  AtExit& operator=(const AtExit&) = delete;

 private:
  Action action_;
};

}  // namespace vardo
