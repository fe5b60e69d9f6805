// The lines of standard input.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace vardo {

// The next line of standard input without its end; none when there are no more. Of a line that is longer than any request there
// is just enough to show that. Throws FileError when the input cannot be read.
std::optional<std::string> ReadInputLine();

// Read beside the program, so that windows stay alive while it waits for the next one.
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
  // Throws what has ended the lines when that was a failure.
  void CheckEnd();

 private:
  class Queue;
  std::shared_ptr<Queue> queue_;
};

}  // namespace vardo
