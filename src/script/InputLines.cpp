#include "script/InputLines.h"

#include "base/FileError.h"
#include "script/Request.h"

#include <cerrno>
#include <condition_variable>
#include <cstdio>
#include <exception>
#include <iostream>
#include <mutex>
#include <queue>
#include <system_error>
#include <thread>
#include <utility>

namespace vardo {
namespace {

// std::cin is synchronized with it.
void RequireReadable(std::FILE* input) {
  if (std::ferror(input))
    throw FileError("The input cannot be read (" + std::generic_category().message(errno) +
                    "); give a file or a pipe of JSON lines.");
}

}  // namespace

std::optional<std::string> ReadInputLine() {
  constexpr auto kEnd = std::streambuf::traits_type::eof();
  std::streambuf& input = *std::cin.rdbuf();
  std::string line;
  int byte = input.sbumpc();
  const bool isThere = byte != kEnd;
  for (; byte != kEnd && byte != '\n'; byte = input.sbumpc())
    if (line.size() <= kLongestRequest) line += static_cast<char>(byte);
  if (byte == kEnd) RequireReadable(stdin);
  return isThere ? std::optional(std::move(line)) : std::nullopt;
}

class InputLines::Queue {
 public:
  void ReadAll(const std::function<void()>& arrived) {
    std::exception_ptr failure;
    try {
      while (auto line = ReadInputLine()) {
        Change([&] { lines_.push(*std::move(line)); });
        arrived();
      }
    } catch (...) {
      failure = std::current_exception();
    }
    Change([&] {
      failure_ = failure;
      ended_ = true;
    });
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
  void CheckEnd() {
    const std::lock_guard lock(mutex_);
    if (failure_) std::rethrow_exception(failure_);
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
  std::exception_ptr failure_;
  bool ended_ = false;
};

InputLines::InputLines(std::function<void()> arrived) : queue_(std::make_shared<Queue>()) {
  std::thread([queue = queue_, arrived = std::move(arrived)] { queue->ReadAll(arrived); }).detach();
}

bool InputLines::Await(std::chrono::milliseconds patience) { return queue_->Await(patience); }
std::optional<std::string> InputLines::Take() { return queue_->Take(); }
bool InputLines::AtEnd() { return queue_->AtEnd(); }
void InputLines::CheckEnd() { queue_->CheckEnd(); }

}  // namespace vardo
