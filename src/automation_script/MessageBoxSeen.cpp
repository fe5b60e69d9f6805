#include "automation_script/MessageBoxSeen.h"

#include "forms/win32/Hands.h"

#include <array>
#include <cwchar>

namespace vardo {
namespace {

const struct {
  LPCWSTR icon;
  int style;
} kIcons[] = {
    {IDI_ERROR, MB_ICONERROR},
    {IDI_QUESTION, MB_ICONQUESTION},
    {IDI_WARNING, MB_ICONWARNING},
    {IDI_INFORMATION, MB_ICONINFORMATION},
};

bool IsDialog(HWND window) {
  std::array<wchar_t, 16> windowClass{};
  GetClassNameW(window, windowClass.data(), static_cast<int>(windowClass.size()));
  return std::wcscmp(windowClass.data(), L"#32770") == 0;
}

bool ShowsIcon(HWND label) { return (GetWindowLongPtrW(label, GWL_STYLE) & SS_TYPEMASK) == SS_ICON; }

int StyleOfIcon(HWND label) {
  const auto icon = reinterpret_cast<HICON>(SendMessageW(label, STM_GETICON, 0, 0));
  for (const auto& known : kIcons)
    if (icon == LoadIconW(nullptr, known.icon)) return known.style;
  return 0;
}

}  // namespace

std::optional<MessageBoxSeen> SeeMessageBox(HWND window) {
  if (!IsDialog(window)) return std::nullopt;
  MessageBoxSeen seen{"", TextOf(window), 0};
  for (HWND label = nullptr; (label = FindWindowExW(window, label, L"Static", nullptr));) {
    if (ShowsIcon(label))
      seen.style = StyleOfIcon(label);
    else
      seen.text += TextOf(label);
  }
  return seen;
}

void AnswerMessageBox(HWND window) { PostMessageW(FindWindowExW(window, nullptr, L"Button", nullptr), BM_CLICK, 0, 0); }

}  // namespace vardo
