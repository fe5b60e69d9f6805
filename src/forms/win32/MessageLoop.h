// The loop of messages of the thread that shows the forms, turned while something is awaited.
#pragma once

#include <windows.h>

namespace vardo {

// Passes on what ends a loop of messages to the loop below.
class QuitWish {
 public:
  QuitWish() = default;
  ~QuitWish() {
    if (wished_) PostQuitMessage(code_);
  }
  QuitWish(const QuitWish&) = delete;
  QuitWish& operator=(const QuitWish&) = delete;

  void Note(const MSG& quit) {
    wished_ = true;
    code_ = static_cast<int>(quit.wParam);
  }
  bool IsWished() const { return wished_; }

 private:
  bool wished_ = false;
  int code_ = 0;
};

void DispatchOne(const MSG& message);
// Handles the messages that wait.
void ProcessMessages();
// Handles messages until none has come for a moment: where the screen is another program's, a window that was just shown has not
// been drawn yet.
void AwaitQuietScreen();

}  // namespace vardo
