// The lines of standard input, read beside the program so that windows stay alive while it waits for the next one.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace vardo {

class InputLines {
 public:
  // Reads from now on. arrived is called on the reading thread for every line and for the end. That thread may outlive this: it
  // cannot be called back from a pipe that stays open.
  explicit InputLines(std::function<void()> arrived = [] {});

  // Waits until there is a line, or the end; false when neither comes in time.
  bool Await(std::chrono::milliseconds patience);
  // The next line without its end; none when there is none yet, or no more.
  std::optional<std::string> Take();
  // All lines have been taken and no more will come.
  bool AtEnd();

 private:
  class Queue;
  std::shared_ptr<Queue> queue_;
};

}  // namespace vardo
