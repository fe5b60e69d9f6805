#include "platform/win32/ModalState.h"

#include <new>
#include <utility>

namespace vardo {
namespace {

// Nothing may be thrown through Windows, which is told to stop instead.
BOOL CALLBACK AddWindow(HWND window, LPARAM windows) noexcept {
  try {
    reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
    return TRUE;
  } catch (const std::bad_alloc&) {
    return FALSE;
  }
}

std::vector<HWND> WindowsOfThisThread() {
  std::vector<HWND> windows;
  if (!EnumThreadWindows(GetCurrentThreadId(), AddWindow, reinterpret_cast<LPARAM>(&windows))) throw std::bad_alloc();
  return windows;
}

}  // namespace

// There is room for all of them before the first is disabled: what is not remembered would stay so.
ModalState::ModalState(HWND window, HWND owner) {
  const std::vector<HWND> windows = WindowsOfThisThread();
  disabled_.reserve(windows.size() + 1);
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
