#include "forms/win32/Hands.h"

#include "base/Errors.h"
#include "forms/win32/Keys.h"
#include "platform/win32/WideText.h"

#include <array>

namespace vardo {
namespace {

// A control's kind by its window's class and, within the bits of a mask, its style. The first that fits.
constexpr struct {
  const wchar_t* windowClass;
  LONG_PTR mask, style;
  ControlKind kind;
} kKinds[] = {
    {L"Static", SS_TYPEMASK, SS_ETCHEDHORZ, ControlKind::Line},
    {L"Static", SS_TYPEMASK, SS_ETCHEDVERT, ControlKind::Line},
    {L"Static", 0, 0, ControlKind::Label},
    {L"Button", BS_TYPEMASK, BS_GROUPBOX, ControlKind::Frame},
    {L"Button", BS_TYPEMASK, BS_CHECKBOX, ControlKind::Check},
    {L"Button", 0, 0, ControlKind::Button},
    {L"Edit", 0, 0, ControlKind::Text},
    {L"ComboBox", 0, 0, ControlKind::Combo},
    {L"ListBox", 0, 0, ControlKind::List},
};

LONG_PTR StyleOf(HWND window) { return GetWindowLongPtrW(window, GWL_STYLE); }

int Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  return static_cast<int>(SendMessageW(window, message, wParam, lParam));
}

COMBOBOXINFO PartsOf(HWND combo) {
  COMBOBOXINFO parts = {};
  parts.cbSize = sizeof parts;
  GetComboBoxInfo(combo, &parts);
  return parts;
}

// The window that has the keyboard when the control has the focus.
HWND KeyboardWindow(HWND window) { return KindOf(window) == ControlKind::Combo ? PartsOf(window).hwndItem : window; }

void Mouse(HWND window, UINT message, POINT at) {
  SendMessageW(window, message, message == WM_LBUTTONUP || message == WM_MOUSEMOVE ? 0 : MK_LBUTTON, MAKELPARAM(at.x, at.y));
}

void PressAt(HWND window, POINT at) {
  Mouse(window, WM_MOUSEMOVE, at);
  Mouse(window, WM_LBUTTONDOWN, at);
  Mouse(window, WM_LBUTTONUP, at);
}

// The middle of a line, which is scrolled into sight.
POINT MiddleOfLine(HWND list, int index) {
  RECT line = {};
  Send(list, LB_SETTOPINDEX, static_cast<WPARAM>(index));
  Send(list, LB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&line));
  return {(line.left + line.right) / 2, (line.top + line.bottom) / 2};
}

// Where a check box has its mark.
POINT LeftOf(HWND window) {
  RECT area = {};
  GetClientRect(window, &area);
  return {area.bottom / 2, area.bottom / 2};
}

// A character as its key brings it; what no key brings comes as pasting does.
void TypeUnit(HWND edit, wchar_t unit) {
  const std::array<wchar_t, 2> pasted = {unit, 0};
  if (unit >= L' ')
    Send(edit, WM_CHAR, unit, 1);
  else
    Send(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(pasted.data()));
}

}  // namespace

ControlKind KindOf(HWND window) {
  std::array<wchar_t, 32> windowClass{};
  GetClassNameW(window, windowClass.data(), static_cast<int>(windowClass.size()));
  for (const auto& known : kKinds)
    if (_wcsicmp(windowClass.data(), known.windowClass) == 0 && (StyleOf(window) & known.mask) == known.style) return known.kind;
  throw RuntimeError::InvalidArgument("a window of the class " + FromWide(windowClass.data()));
}

std::string TextOf(HWND window) {
  std::wstring text(static_cast<size_t>(GetWindowTextLengthW(window)), L'\0');
  text.resize(static_cast<size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1)));
  return FromWide(text);
}

std::vector<std::string> ItemsOf(HWND window) {
  const bool isCombo = KindOf(window) == ControlKind::Combo;
  std::vector<std::string> items(static_cast<size_t>(Send(window, isCombo ? CB_GETCOUNT : LB_GETCOUNT)));
  for (size_t i = 0; i < items.size(); ++i) {
    std::wstring item(static_cast<size_t>(Send(window, isCombo ? CB_GETLBTEXTLEN : LB_GETTEXTLEN, i)), L'\0');
    Send(window, isCombo ? CB_GETLBTEXT : LB_GETTEXT, i, reinterpret_cast<LPARAM>(item.data()));
    items[i] = FromWide(item);
  }
  return items;
}

int ChosenItem(HWND window) { return Send(window, KindOf(window) == ControlKind::Combo ? CB_GETCURSEL : LB_GETCURSEL); }

bool IsChecked(HWND window) { return Send(window, BM_GETCHECK) == BST_CHECKED; }

bool TakesFocus(HWND window) {
  const ControlKind kind = KindOf(window);
  return kind != ControlKind::Label && kind != ControlKind::Line && kind != ControlKind::Frame;
}

bool IsPickOnly(HWND window) {
  return KindOf(window) == ControlKind::Combo && (StyleOf(PartsOf(window).hwndItem) & ES_READONLY) != 0;
}

void GoTo(HWND window) { SetFocus(KeyboardWindow(window)); }

void TypeInto(HWND window, const std::wstring& text) {
  GoTo(window);
  if (!IsWindowVisible(window)) return;
  const HWND edit = KeyboardWindow(window);
  Send(edit, EM_SETSEL, 0, -1);
  if (text.empty()) SendPlainKey(edit, VK_DELETE);
  for (const wchar_t unit : text)
    if (IsWindowVisible(window)) TypeUnit(edit, unit);
}

void PickItem(HWND window, int index) {
  GoTo(window);
  if (!IsWindowVisible(window)) return;
  HWND list = window;
  if (KindOf(window) == ControlKind::Combo) {
    if (!Send(window, CB_GETDROPPEDSTATE)) SendPlainKey(KeyboardWindow(window), VK_F4);
    list = PartsOf(window).hwndList;
  }
  PressAt(list, MiddleOfLine(list, index));
}

void ClickOn(HWND window) {
  const ControlKind kind = KindOf(window);
  if (kind != ControlKind::Button && kind != ControlKind::Check) return GoTo(window);
  PressAt(window, LeftOf(window));
}

void DoubleClickOn(HWND window) {
  GoTo(window);
  if (!IsWindowVisible(window)) return;
  const POINT at = KindOf(window) == ControlKind::List ? MiddleOfLine(window, ChosenItem(window)) : LeftOf(window);
  Mouse(KeyboardWindow(window), WM_LBUTTONDBLCLK, at);
}

}  // namespace vardo
