// Keeps a person to one window: disables the other windows of the calling thread, and the owner, until it ends.
#pragma once

#include <windows.h>

#include <vector>

namespace vardo {

class ModalState {
 public:
  // Of the calling thread. Throws std::bad_alloc, and disables nothing then.
  ModalState(HWND window, HWND owner);
  ~ModalState() { End(); }
  ModalState(const ModalState&) = delete;
  ModalState& operator=(const ModalState&) = delete;

  // Before the window goes, so that the owner can become the active one. Those that were disabled before stay so.
  void End();

 private:
  void Disable(HWND window);

  std::vector<HWND> disabled_;
};

}  // namespace vardo
