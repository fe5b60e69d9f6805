// The message boxes of Windows, as they are seen and answered.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace vardo {

struct MessageBoxSeen {
  std::string text, title;
  int style;  // its icon, as the style of MessageBox that asks for it
};

// None when the window is no message box.
std::optional<MessageBoxSeen> SeeMessageBox(HWND window);
// Has its one button pressed as soon as the box listens.
void AnswerMessageBox(HWND window);

}  // namespace vardo
