#include "forms/win32/ModalState.h"

#include <utility>

namespace vardo {
namespace {

BOOL CALLBACK AddWindow(HWND window, LPARAM windows) {
  reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
  return TRUE;
}

}  // namespace

ModalState::ModalState(HWND window, HWND owner) {
  std::vector<HWND> windows;
  EnumThreadWindows(GetCurrentThreadId(), AddWindow, reinterpret_cast<LPARAM>(&windows));
  for (const HWND other : windows)
    if (other != window && IsWindowVisible(other)) Disable(other);
  if (owner) Disable(owner);
}

void ModalState::End() {
  for (const HWND window : std::exchange(disabled_, {})) EnableWindow(window, TRUE);
}

void ModalState::Disable(HWND window) {
  if (!IsWindowEnabled(window)) return;
  EnableWindow(window, FALSE);
  disabled_.push_back(window);
}

}  // namespace vardo
