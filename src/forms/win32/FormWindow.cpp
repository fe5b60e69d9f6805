#include "forms/win32/FormWindow.h"

#include "base/Errors.h"
#include "forms/win32/ReaderNames.h"
#include "forms/win32/WindowNames.h"
#include "platform/win32/OwnModule.h"
#include "platform/win32/Screen.h"
#include "platform/win32/VisualStyles.h"
#include "platform/win32/WideText.h"

#include <algorithm>
#include <iomanip>
#include <limits>
#include <sstream>
#include <string>

namespace vardo {
namespace {

constexpr const wchar_t* kClass = L"VardoForm";
constexpr DWORD kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU;
constexpr DWORD kExtendedStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;

std::string TextOf(const TwipsRect& place) {
  std::ostringstream text;
  text << std::setprecision(std::numeric_limits<double>::max_digits10) << place.left << ' ' << place.top << ' ' << place.width
       << ' ' << place.height;
  return text.str();
}

// Edges are rounded, not widths: what touches in twips touches on the screen.
RECT PixelsOf(const TwipsRect& place, int dotsPerInch) {
  return {ToPixels(place.left, dotsPerInch), ToPixels(place.top, dotsPerInch), ToPixels(place.left + place.width, dotsPerInch),
          ToPixels(place.top + place.height, dotsPerInch)};
}

// What sticks out is moved in; what is too long begins where the room does.
LONG Within(LONG start, LONG length, LONG from, LONG to) { return std::max(from, std::min(start, to - length)); }

}  // namespace

FormWindowClass::FormWindowClass() {
  WNDCLASSEXW description = {};
  description.cbSize = sizeof description;
  description.lpfnWndProc = FormWindow::Procedure;
  description.hInstance = OwnModule();
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.hbrBackground = GetSysColorBrush(COLOR_3DFACE);
  description.lpszClassName = kClass;
  RegisterClassExW(&description);
}

FormWindowClass::~FormWindowClass() { UnregisterClassW(kClass, OwnModule()); }

FormWindow::FormWindow(Form& form, HWND owner) : form_(form), owner_(owner) {
  const VisualStyles styled;
  const OwnPixels sharp;
  const RECT screen = ScreenOf(owner).pixels;
  CreateWindowExW(kExtendedStyle, kClass, ToWide(form.Caption()).c_str(), kStyle, static_cast<int>(screen.left),
                  static_cast<int>(screen.top), 0, 0, owner, nullptr, OwnModule(), this);
  if (!window()) throw RuntimeError::OutOfMemory();
  NameWindow(window(), kFormProperty, form.name());
  NameWindow(window(), kPlaceProperty, TextOf(form.Place()));
  for (Control* control : form.Controls()) MakeView(*control);
  PlaceWindow();
  NameForReaders(form, [this](const Control& control) { return View(control).FocusWindow(); });
  form.SetObserver(this);
}

FormWindow::~FormWindow() {
  form_.SetObserver(nullptr);
  modal_.reset();
}

ControlView& FormWindow::MakeView(Control& control) {
  if (const auto made = views_.find(&control); made != views_.end()) return *made->second;
  Control* const frame = control.parent();
  auto view = ControlView::Make(control, frame ? MakeView(*frame).window() : window(), mirroring_);
  view->Mirror();
  return *views_.emplace(&control, std::move(view)).first->second;
}

// Where the form says, but not beyond the screen, where a person could not reach it.
void FormWindow::PlaceWindow() {
  const Screen screen = ScreenOf(owner_);
  const RECT place = PixelsOf(form_.Place(), screen.dotsPerInch);
  RECT size = {0, 0, place.right - place.left, place.bottom - place.top};
  AdjustWindowRectExForDpi(&size, kStyle, FALSE, kExtendedStyle, static_cast<UINT>(screen.dotsPerInch));
  const LONG width = size.right - size.left, height = size.bottom - size.top;
  const LONG left = Within(screen.pixels.left + place.left, width, screen.pixels.left, screen.pixels.right);
  const LONG top = Within(screen.pixels.top + place.top, height, screen.pixels.top, screen.pixels.bottom);
  SetWindowPos(window(), nullptr, static_cast<int>(left), static_cast<int>(top), static_cast<int>(width),
               static_cast<int>(height), SWP_NOZORDER | SWP_NOACTIVATE);
  PlaceControls(screen.dotsPerInch);
}

void FormWindow::PlaceControls(int dotsPerInch) {
  const Mirroring mirroring(mirroring_);
  Font font = MakeDialogFont(form_, dotsPerInch);
  for (const Control* control : form_.Controls()) {
    RECT place = PixelsOf(control->Place(), dotsPerInch);
    if (const Control* frame = control->parent()) {
      const RECT around = PixelsOf(frame->Place(), dotsPerInch);
      OffsetRect(&place, -around.left, -around.top);
    }
    ControlView& view = View(*control);
    view.SetFont(font.get());
    view.SetPlace(place);
  }
  font_ = std::move(font);
}

void FormWindow::Open() {
  modal_.emplace(window(), owner_);
  FocusMoved(form_.Focus());
  ShowWindow(window(), SW_SHOW);
  SetActiveWindow(window());
  UpdateWindow(window());
}

void FormWindow::Close() {
  modal_.reset();
  ShowWindow(window(), SW_HIDE);
  // Wakes the loop that serves the person, should nothing else.
  PostMessageW(window(), WM_NULL, 0, 0);
}

// A box that has the keyboard already got it from the mouse, which has put the caret where the person wants it.
void FormWindow::FocusMoved(Control* focus) {
  const Mirroring mirroring(mirroring_);
  const bool byMouse = focus && GetFocus() == View(*focus).FocusWindow();
  if (entered_ && entered_ != focus) View(*entered_).Left();
  if (GetActiveWindow() == window()) GiveKeyboard();
  if (focus && focus != entered_ && !byMouse) View(*focus).Entered();
  entered_ = focus;
  MarkDefaultButton();
}

void FormWindow::GiveKeyboard() {
  const Mirroring mirroring(mirroring_);
  ::SetFocus(form_.Focus() ? View(*form_.Focus()).FocusWindow() : window());
}

// The button that Enter would press.
void FormWindow::MarkDefaultButton() const {
  const Control* focus = form_.Focus();
  const Control* pressed = focus && focus->kind() == ControlKind::Button ? focus : form_.DefaultButton();
  for (const auto& [control, view] : views_) {
    if (control->kind() != ControlKind::Button) continue;
    const LONG_PTR style = control == pressed ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
    if ((GetWindowLongPtrW(view->window(), GWL_STYLE) & BS_TYPEMASK) != style)
      SendMessageW(view->window(), BM_SETSTYLE, static_cast<WPARAM>(style), TRUE);
  }
}

LRESULT CALLBACK FormWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    auto* created = static_cast<FormWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    created->window_.handle = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(created));
  }
  auto* self = reinterpret_cast<FormWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (!self) return DefWindowProcW(window, message, wParam, lParam);
  return ForwardMessage([&] { return self->Handle(message, wParam, lParam); });
}

LRESULT FormWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  if (const Answer answer = AnswerAsParent(message, wParam, lParam); answer.given) return answer.result;
  const HWND window = window_.handle;
  switch (message) {
    case WM_ACTIVATE:
      if (LOWORD(wParam) != WA_INACTIVE) GiveKeyboard();
      return 0;
    // Keys come here while no control has the focus.
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
    case WM_SYSCHAR:
      if (ForwardDialogKey(form_, message, wParam)) return 0;
      break;
    // The form decides whether it closes, as for Escape.
    case WM_CLOSE:
      if (form_.IsShown()) Forward([&] { form_.UserKey("Escape"); });
      return 0;
    case WM_DPICHANGED: {
      const auto& place = *reinterpret_cast<const RECT*>(lParam);
      SetWindowPos(window, nullptr, static_cast<int>(place.left), static_cast<int>(place.top),
                   static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top),
                   SWP_NOZORDER | SWP_NOACTIVATE);
      PlaceControls(HIWORD(wParam));
      return 0;
    }
    case WM_DESTROY:
      UnnameWindow(window, kFormProperty);
      UnnameWindow(window, kPlaceProperty);
      break;
    case WM_NCDESTROY:
      SetWindowLongPtrW(window, GWLP_USERDATA, 0);
      window_.handle = nullptr;
      // Wakes the loop that serves the person: what took the owner away may have been no message of its own.
      PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
      break;
    default:
      break;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace vardo
