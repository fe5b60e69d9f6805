#include "forms/win32/MessageLoop.h"

namespace vardo {

void DispatchOne(const MSG& message) {
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

void ProcessMessages() {
  QuitWish quit;
  MSG message;
  while (!quit.IsWished() && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT)
      quit.Note(message);
    else
      DispatchOne(message);
  }
}

void AwaitQuietScreen() {
  constexpr DWORD kQuiet = 50;  // milliseconds
  do ProcessMessages();
  while (MsgWaitForMultipleObjects(0, nullptr, FALSE, kQuiet, QS_ALLINPUT) == WAIT_OBJECT_0);
}

}  // namespace vardo
