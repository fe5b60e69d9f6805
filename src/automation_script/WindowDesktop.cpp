#include "automation_script/WindowDesktop.h"

#include "automation_script/MessageBoxSeen.h"
#include "base/Errors.h"
#include "base/Text.h"
#include "forms/win32/Hands.h"
#include "forms/win32/Keys.h"
#include "forms/win32/Picture.h"
#include "forms/win32/WindowNames.h"
#include "platform/win32/WideText.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace vardo {
namespace {

WindowDesktop* theDesktop = nullptr;

BOOL CALLBACK AddControl(HWND window, LPARAM controls) {
  if (GetPropW(window, kControlProperty)) reinterpret_cast<std::vector<HWND>*>(controls)->push_back(window);
  return TRUE;
}

// In tab order, each frame before what it holds.
std::vector<HWND> ControlsOf(HWND form) {
  std::vector<HWND> controls;
  EnumChildWindows(form, AddControl, reinterpret_cast<LPARAM>(&controls));
  return controls;
}

std::string FormName(HWND window) { return NameOfWindow(window, kFormProperty); }
std::string ControlName(HWND window) { return NameOfWindow(window, kControlProperty); }

// Null when the form has none of that name.
HWND FindControl(HWND form, const std::string& name) {
  const std::vector<HWND> controls = ControlsOf(form);
  const auto found = std::find_if(controls.begin(), controls.end(), [&](HWND w) { return ControlName(w) == name; });
  return found == controls.end() ? nullptr : *found;
}

TwipsRect PlaceOf(HWND form) {
  TwipsRect place;
  std::istringstream(NameOfWindow(form, kPlaceProperty)) >> place.left >> place.top >> place.width >> place.height;
  return place;
}

// The control that has the keyboard itself or in a part of its own.
std::string FocusedControl() {
  for (HWND window = GetFocus(); window; window = GetAncestor(window, GA_PARENT))
    if (const std::string name = ControlName(window); !name.empty()) return name;
  return "";
}

ControlSeen See(HWND window) {
  ControlSeen seen{ControlName(window),
                   KindOf(window),
                   "",
                   {},
                   {},
                   {},
                   {},
                   (GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0,
                   IsWindowVisible(window) != FALSE};
  switch (seen.kind) {
    case ControlKind::Text:
      seen.text = TextOf(window);
      break;
    case ControlKind::Combo:
      seen.text = TextOf(window);
      [[fallthrough]];
    case ControlKind::List:
      seen.items = ItemsOf(window);
      seen.index = ChosenItem(window);
      break;
    case ControlKind::Check:
      seen.checked = IsChecked(window);
      [[fallthrough]];
    default:
      seen.caption = TextOf(window);
      break;
  }
  return seen;
}

}  // namespace

WindowDesktop::WindowDesktop(HMODULE addin, std::function<void()> formCame)
    : screen_(addin, kUsualScreen),
      formCame_(std::move(formCame)),
      hook_(SetWindowsHookExW(WH_CALLWNDPROCRET, Watch, nullptr, GetCurrentThreadId())) {
  theDesktop = this;
}

WindowDesktop::~WindowDesktop() {
  UnhookWindowsHookEx(hook_);
  theDesktop = nullptr;
}

// Every window that comes or goes is told of its new position.
LRESULT CALLBACK WindowDesktop::Watch(int code, WPARAM wParam, LPARAM lParam) {
  const LRESULT result = CallNextHookEx(nullptr, code, wParam, lParam);
  const auto& sent = *reinterpret_cast<const CWPRETSTRUCT*>(lParam);
  if (code != HC_ACTION || sent.message != WM_WINDOWPOSCHANGED || !theDesktop) return result;
  const UINT change = reinterpret_cast<const WINDOWPOS*>(sent.lParam)->flags;
  if (change & SWP_SHOWWINDOW) theDesktop->Appeared(sent.hwnd);
  if (change & SWP_HIDEWINDOW) theDesktop->Vanished(sent.hwnd);
  return result;
}

void WindowDesktop::Appeared(HWND window) {
  if (const std::string name = FormName(window); !name.empty()) {
    forms_.push_back(window);
    listener_->FormShown(name, TextOf(window));
    formCame_();
  } else if (const auto message = SeeMessageBox(window)) {
    listener_->MessageShown(message->text, message->title, message->style);
    AnswerMessageBox(window);
  }
}

void WindowDesktop::Vanished(HWND window) {
  if (std::erase(forms_, window)) listener_->FormClosed(FormName(window));
}

void WindowDesktop::HelpShown(const std::string& file, const std::string& topic) {
  if (theDesktop) theDesktop->listener_->HelpShown(file, topic);
}

std::vector<std::string> WindowDesktop::LoadedForms() { return MarkedForms(); }

std::string WindowDesktop::TopForm() { return forms_.empty() ? "" : FormName(forms_.back()); }

// What a person works with is the active window.
HWND WindowDesktop::Front() const {
  const HWND form = forms_.back();
  if (GetActiveWindow() != form) SetActiveWindow(form);
  return form;
}

FormSeen WindowDesktop::SeeForm() {
  const HWND form = Front();
  FormSeen seen{FormName(form), TextOf(form), PlaceOf(form), FocusedControl(), {}};
  for (const HWND control : ControlsOf(form)) seen.controls.push_back(See(control));
  return seen;
}

std::optional<ControlSeen> WindowDesktop::SeeControl(const std::string& name) {
  const HWND control = FindControl(Front(), name);
  return control ? std::optional(See(control)) : std::nullopt;
}

HWND WindowDesktop::Usable(const std::string& control) const {
  const HWND window = FindControl(Front(), control);
  if (!IsWindowVisible(window)) throw RuntimeError::InvalidArgument(control + " is not shown");
  if (!TakesFocus(window)) throw RuntimeError::InvalidArgument(control + " takes no focus");
  return window;
}

void WindowDesktop::Focus(const std::string& control) { GoTo(Usable(control)); }

void WindowDesktop::Type(const std::string& control, const std::string& text) {
  const HWND window = Usable(control);
  if (!IsPickOnly(window)) return TypeInto(window, ToWide(text));
  const std::vector<std::string> items = ItemsOf(window);
  const auto found = std::find(items.begin(), items.end(), text);
  if (found == items.end()) throw RuntimeError::InvalidArgument(control + " offers no item \"" + InWords(text) + "\"");
  PickItem(window, static_cast<int>(found - items.begin()));
}

void WindowDesktop::Pick(const std::string& control, int index) { PickItem(Usable(control), index); }

void WindowDesktop::Check(const std::string& control, bool checked) {
  const HWND window = Usable(control);
  GoTo(window);
  if (IsChecked(window) != checked && IsWindowVisible(window)) ClickOn(window);
}

void WindowDesktop::Click(const std::string& control) { ClickOn(Usable(control)); }
void WindowDesktop::DblClick(const std::string& control) { DoubleClickOn(Usable(control)); }

void WindowDesktop::Key(const std::string& key) {
  const HWND form = Front();
  const HWND focus = GetFocus();
  if (!SendNamedKey(IsChild(form, focus) ? focus : form, key))
    throw RuntimeError::InvalidArgument("key \"" + InWords(key) + "\"");
}

void WindowDesktop::Screenshot(const std::string& file) {
  const HWND form = Front();
  if (!SavePicture(form, file))
    throw RuntimeError(5, "No picture of " + FormName(form) + " could be written to " + InWords(file) + ".");
}

}  // namespace vardo
