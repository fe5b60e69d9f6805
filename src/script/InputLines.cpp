#include "script/InputLines.h"

#include <condition_variable>
#include <iostream>
#include <mutex>
#include <queue>
#include <thread>
#include <utility>

namespace vardo {

class InputLines::Queue {
 public:
  void ReadAll(const std::function<void()>& arrived) {
    for (std::string line; std::getline(std::cin, line);) {
      Change([&] { lines_.push(std::move(line)); });
      arrived();
    }
    Change([this] { ended_ = true; });
    arrived();
  }
  bool Await(std::chrono::milliseconds patience) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, patience, [this] { return ended_ || !lines_.empty(); });
  }
  std::optional<std::string> Take() {
    const std::lock_guard lock(mutex_);
    if (lines_.empty()) return std::nullopt;
    std::string line = std::move(lines_.front());
    lines_.pop();
    return line;
  }
  bool AtEnd() {
    const std::lock_guard lock(mutex_);
    return ended_ && lines_.empty();
  }

 private:
  template <class Action>
  void Change(Action action) {
    const std::lock_guard lock(mutex_);
    action();
    changed_.notify_one();
  }
  std::mutex mutex_;
  std::condition_variable changed_;
  std::queue<std::string> lines_;
  bool ended_ = false;
};

InputLines::InputLines(std::function<void()> arrived) : queue_(std::make_shared<Queue>()) {
  std::thread([queue = queue_, arrived = std::move(arrived)] { queue->ReadAll(arrived); }).detach();
}

bool InputLines::Await(std::chrono::milliseconds patience) { return queue_->Await(patience); }
std::optional<std::string> InputLines::Take() { return queue_->Take(); }
bool InputLines::AtEnd() { return queue_->AtEnd(); }

}  // namespace vardo
