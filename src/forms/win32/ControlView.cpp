#include "forms/win32/ControlView.h"

#include "base/Errors.h"
#include "forms/win32/DialogFont.h"
#include "forms/win32/Keys.h"
#include "forms/win32/WindowNames.h"
#include "platform/win32/OwnModule.h"
#include "platform/win32/WideText.h"

// After windows.h, which they need.
#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>

namespace vardo {
namespace {

constexpr UINT_PTR kSubclass = 1;
constexpr const wchar_t* kViewProperty = L"VardoView";

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<size_t>(GetWindowTextLengthW(window)), L'\0');
  text.resize(static_cast<size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1)));
  return text;
}

void SetTextOf(HWND window, const std::string& text) {
  const std::wstring wide = ToWide(text);
  if (TextOf(window) != wide) SetWindowTextW(window, wide.c_str());
}

HWND MakeWindow(HWND parent, const wchar_t* windowClass, DWORD style, DWORD extendedStyle = 0) {
  const HWND window =
      CreateWindowExW(extendedStyle, windowClass, L"", WS_CHILD | style, 0, 0, 0, 0, parent, nullptr, OwnModule(), nullptr);
  if (!window) throw RuntimeError::OutOfMemory();
  return window;
}

int Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  return static_cast<int>(SendMessageW(window, message, wParam, lParam));
}

int SendText(HWND window, UINT message, WPARAM wParam, const std::string& text) {
  return Send(window, message, wParam, reinterpret_cast<LPARAM>(ToWide(text).c_str()));
}

// By which automation finds it: above those that Windows gives a meaning of their own.
int IdOf(const Control& control) {
  constexpr int kFirstId = 1000;
  const auto& controls = control.form().Controls();
  return kFirstId + static_cast<int>(std::find(controls.begin(), controls.end(), &control) - controls.begin());
}

COMBOBOXINFO InfoOf(HWND combo) {
  COMBOBOXINFO info = {};
  info.cbSize = sizeof info;
  GetComboBoxInfo(combo, &info);
  return info;
}

// The width of the widest of the texts in the window's font.
int WidestOf(HWND window, const std::vector<std::string>& texts) {
  const TextMeasure measure(window, reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)));
  int widest = 0;
  for (const std::string& text : texts) {
    const std::wstring wide = ToWide(text);
    SIZE size = {};
    GetTextExtentPoint32W(measure.dc(), wide.data(), static_cast<int>(wide.size()), &size);
    widest = std::max(widest, static_cast<int>(size.cx));
  }
  return widest;
}

// The windows of a box that is typed into.
struct Parts {
  HWND window, edit, list;
};

// The part of a box's place that one line of text fills, edges included: Windows writes at the top of a box, whatever its height.
RECT LineWithin(const RECT& place, HWND box) {
  const TextMeasure measure(box, reinterpret_cast<HFONT>(SendMessageW(box, WM_GETFONT, 0, 0)));
  TEXTMETRICW text = {};
  GetTextMetricsW(measure.dc(), &text);
  constexpr LONG kMargin = 1;  // within the edge
  const LONG needed = text.tmHeight + 2 * (GetSystemMetrics(SM_CYEDGE) + kMargin);
  const LONG spare = std::max(0L, place.bottom - place.top - needed);
  return {place.left, place.top + spare / 2, place.right, place.bottom - (spare - spare / 2)};
}

// What shows a caption and no more: a label, a frame, a line.
class CaptionView : public ControlView {
 public:
  CaptionView(Control& control, HWND window, bool& mirroring) : ControlView(control, window, mirroring) {}

 protected:
  void Update() override { SetTextOf(window(), control().Caption()); }
};

class FrameView : public CaptionView {
 public:
  FrameView(Control& control, HWND parent, bool& mirroring)
      : CaptionView(control, MakeWindow(parent, WC_BUTTONW, BS_GROUPBOX), mirroring) {}

 private:
  LRESULT Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override {
    if (const Answer answer = AnswerAsParent(message, wParam, lParam); answer.given) return answer.result;
    return CaptionView::Handle(window, message, wParam, lParam);
  }
};

class ButtonView : public CaptionView {
 public:
  ButtonView(Control& control, HWND parent, DWORD style, bool& mirroring)
      : CaptionView(control, MakeWindow(parent, WC_BUTTONW, style), mirroring) {}

  void Notified(WORD code) override {
    if (code != BN_CLICKED || !Listens()) return;
    clicked_ = true;
    Forward([&] { form().UserClick(control()); });
    Mirror();
  }

 private:
  // The focus follows when the button is let go, with the click; without one when the mouse has left the button.
  LRESULT Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message == WM_LBUTTONDOWN || message == WM_LBUTTONDBLCLK) {
      const Mirroring pressing(mirroring_);
      return CaptionView::Handle(window, message, wParam, lParam);
    }
    if (message != WM_LBUTTONUP) return CaptionView::Handle(window, message, wParam, lParam);
    clicked_ = false;
    const LRESULT result = CaptionView::Handle(window, message, wParam, lParam);
    if (!clicked_) FocusTaken();
    return result;
  }

  bool clicked_ = false;
};

class CheckView : public ButtonView {
 public:
  CheckView(CheckBox& control, HWND parent, bool& mirroring)
      : ButtonView(control, parent, BS_CHECKBOX, mirroring), check_(control) {}

 private:
  void Update() override {
    ButtonView::Update();
    Send(window(), BM_SETCHECK, check_.Checked() ? BST_CHECKED : BST_UNCHECKED);
  }
  CheckBox& check_;
};

// What a text box and a combo have in common: a line that a person types into.
class TypingView : public ControlView {
 public:
  HWND FocusWindow() const override { return edit_; }
  void Entered() override { Send(edit_, EM_SETSEL, 0, -1); }
  void Left() override { Send(edit_, EM_SETSEL, 0, 0); }

 protected:
  TypingView(TextControl& control, const Parts& parts, bool& mirroring)
      : ControlView(control, parts.window, mirroring), text_(control), edit_(parts.edit) {
    Send(edit_, EM_SETLIMITTEXT, 0);
  }

  LRESULT Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override {
    if (window != edit_ || message != WM_LBUTTONDOWN) return ControlView::Handle(window, message, wParam, lParam);
    {
      const Mirroring pressing(mirroring_);
      ControlView::Handle(window, message, wParam, lParam);
    }
    FocusTaken();
    return 0;
  }

  bool TakesTyping() const override { return true; }

  void Typed() {
    if (Listens()) Forward([&] { form().UserType(text_, FromWide(TextOf(edit_))); });
  }

  // The caret stays where a person is typing.
  void Update() override { SetTextOf(edit_, text_.Text()); }

  TextControl& text_;
  HWND edit_;
};

class TextView : public TypingView {
 public:
  TextView(TextBox& control, HWND parent, bool& mirroring) : TypingView(control, MakeEdit(parent), mirroring) {}

  void SetPlace(const RECT& place) override { TypingView::SetPlace(LineWithin(place, window())); }

  void Notified(WORD code) override {
    if (code == EN_CHANGE) Typed();
  }

 private:
  static Parts MakeEdit(HWND parent) {
    const HWND edit = MakeWindow(parent, WC_EDITW, ES_AUTOHSCROLL, WS_EX_CLIENTEDGE);
    return {edit, edit, nullptr};
  }
};

class ComboView : public TypingView {
 public:
  ComboView(ComboBox& control, HWND parent, bool& mirroring) : ComboView(control, MakeCombo(parent), mirroring) {}

  // The list hangs under the place, which the closed box fills. What it adds to its line's height is its own affair.
  void SetPlace(const RECT& place) override {
    RECT box = LineWithin(place, window());
    const int wanted = static_cast<int>(box.bottom - box.top);
    box.bottom += Send(window(), CB_GETITEMHEIGHT, 0) * ComboBox::kItemsInSight + 2;
    TypingView::SetPlace(box);
    SetLineHeight(wanted);
    SetLineHeight(2 * wanted - ClosedHeight());
    Send(edit_, EM_SETSEL, 0, 0);
  }

  void Notified(WORD code) override {
    if (mirroring_) return;
    if (code == CBN_EDITCHANGE) Typed();
    // The list may close before the choice is told, and what is selected is the control's item again by then.
    if (code == CBN_SELENDOK) chosen_ = Send(window(), CB_GETCURSEL);
    if (code == CBN_CLOSEUP) Settle();
    if (code != CBN_SELCHANGE || !Listens()) return;
    Forward([&] { form().UserPick(combo_, chosen_); });
    Mirror();
  }

 protected:
  LRESULT Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override {
    if (window != this->window()) return TypingView::Handle(window, message, wParam, lParam);
    switch (message) {
      case WM_LBUTTONDOWN:
      case WM_LBUTTONDBLCLK:
        FocusTaken();
        if (combo_.Items().empty() || form().Focus() != &combo_) return 0;
        break;
      case WM_MOUSEWHEEL:
        // Turning the wheel over a closed combo would change a value that nobody looks at.
        if (!combo_.DroppedDown()) return 0;
        break;
      case WM_COMMAND:
        if (reinterpret_cast<HWND>(lParam) != list_) return TypingView::Handle(window, message, wParam, lParam);
        break;
      case CB_SHOWDROPDOWN:
        break;
      case CB_SETCURSEL:
      case CB_SELECTSTRING: {
        // By automation or an assistive tool, which tells of it as Windows does when a person chooses.
        const LRESULT item = TypingView::Handle(window, message, wParam, lParam);
        if (!mirroring_ && item >= 0) chosen_ = static_cast<int>(item);
        return item;
      }
      default:
        return TypingView::Handle(window, message, wParam, lParam);
    }
    const LRESULT result = TypingView::Handle(window, message, wParam, lParam);
    if (!mirroring_) Settle();
    return result;
  }

  bool LeavesKey(WPARAM key) const override { return key != VK_PRIOR && key != VK_NEXT && key != VK_UP && key != VK_DOWN; }

  // Windows has its own idea of the text when an item is chosen or a list closes; the control's holds.
  void Update() override {
    AddNewItems();
    OpenOrClose();
    DWORD from = 0, to = 0;
    SendMessageW(edit_, EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
    if (Send(window(), CB_GETCURSEL) != combo_.ListIndex()) Send(window(), CB_SETCURSEL, static_cast<WPARAM>(combo_.ListIndex()));
    TypingView::Update();
    Send(edit_, EM_SETSEL, from, static_cast<LPARAM>(to));
  }

  ComboBox& combo_;

 private:
  ComboView(ComboBox& control, const Parts& parts, bool& mirroring)
      : TypingView(control, parts, mirroring), combo_(control), list_(parts.list) {
    Watch(edit_);
  }

  static Parts MakeCombo(HWND parent) {
    const HWND combo = MakeWindow(parent, WC_COMBOBOXW, CBS_DROPDOWN | CBS_AUTOHSCROLL | WS_VSCROLL);
    const COMBOBOXINFO info = InfoOf(combo);
    return {combo, info.hwndItem, info.hwndList};
  }

  void SetLineHeight(int height) const { Send(window(), CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), height); }

  int ClosedHeight() const {
    RECT closed = {};
    GetWindowRect(window(), &closed);
    return static_cast<int>(closed.bottom - closed.top);
  }

  bool IsOpen() const { return Send(window(), CB_GETDROPPEDSTATE) != 0; }

  // The list opened or closed, or an item was chosen in it.
  void Settle() {
    if (IsOpen() != combo_.DroppedDown()) combo_.SetDroppedDown(IsOpen());
    Mirror();
  }

  void AddNewItems() {
    const auto known = static_cast<size_t>(Send(window(), CB_GETCOUNT));
    if (known == combo_.Items().size()) return;
    Send(list_, WM_SETREDRAW, FALSE);
    for (size_t at = known; at < combo_.Items().size(); ++at) SendText(window(), CB_ADDSTRING, 0, combo_.Items()[at]);
    Send(list_, WM_SETREDRAW, TRUE);
  }

  void OpenOrClose() {
    if (combo_.DroppedDown() == IsOpen()) return;
    const int needed = WidestOf(window(), combo_.Items()) + 2 * GetSystemMetricsForDpi(SM_CXVSCROLL, GetDpiForWindow(window()));
    Send(window(), CB_SETDROPPEDWIDTH, static_cast<WPARAM>(needed));
    Send(window(), CB_SHOWDROPDOWN, combo_.DroppedDown());
  }

  HWND list_;
  int chosen_ = -1;
};

// Windows' own pick-only combo shows items only. This one takes no typing, and shows whatever text it is given.
class PickOnlyComboView : public ComboView {
 public:
  PickOnlyComboView(ComboBox& control, HWND parent, bool& mirroring) : ComboView(control, parent, mirroring) {
    Send(edit_, EM_SETREADONLY, TRUE);
  }

 private:
  LRESULT Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override {
    if (window != edit_) {
      if (message == WM_CTLCOLORSTATIC) return White(reinterpret_cast<HDC>(wParam));
      return ComboView::Handle(window, message, wParam, lParam);
    }
    switch (message) {
      case WM_LBUTTONDOWN:
      case WM_LBUTTONDBLCLK:
        return PressButton(wParam);
      case WM_CHAR:
        Letter(static_cast<wchar_t>(wParam));
        return 0;
      case WM_SETCURSOR:
        SetCursor(LoadCursorW(nullptr, IDC_ARROW));
        return TRUE;
      case WM_SETFOCUS: {
        const LRESULT result = ComboView::Handle(window, message, wParam, lParam);
        HideCaret(edit_);
        return result;
      }
      default:
        return ComboView::Handle(window, message, wParam, lParam);
    }
  }

  bool TakesTyping() const override { return false; }

  // Selecting a text that is longer than the box would scroll to its end.
  void Entered() override {
    RECT room = {};
    SendMessageW(edit_, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&room));
    if (WidestOf(edit_, {combo_.Text()}) < room.right - room.left) return ComboView::Entered();
    Left();
  }

  void Update() override {
    ComboView::Update();
    if (GetFocus() == edit_) Entered();
  }

  // Read-only boxes are grey otherwise.
  static LRESULT White(HDC dc) {
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(dc, GetSysColor(COLOR_WINDOW));
    return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_WINDOW));
  }

  // All of the box opens the list.
  LRESULT PressButton(WPARAM keys) {
    const RECT button = InfoOf(window()).rcButton;
    return SendMessageW(window(), WM_LBUTTONDOWN, keys,
                        MAKELPARAM((button.left + button.right) / 2, (button.top + button.bottom) / 2));
  }

  // The next item that starts with it.
  void Letter(wchar_t letter) {
    if (letter <= L' ' || !Listens()) return;
    const wchar_t start[] = {letter, 0};
    const int found = Send(window(), CB_FINDSTRING, static_cast<WPARAM>(combo_.ListIndex()), reinterpret_cast<LPARAM>(start));
    if (found >= 0) Forward([&] { form().UserPick(combo_, found); });
  }
};

class ListView : public ControlView {
 public:
  ListView(ListBox& control, HWND parent, bool& mirroring)
      : ControlView(control, MakeWindow(parent, WC_LISTBOXW, kStyle, WS_EX_CLIENTEDGE), mirroring), items_(control) {}

  void Notified(WORD code) override {
    if (code == LBN_SELCHANGE) ChooseLine(Send(window(), LB_GETCURSEL));
  }

 private:
  static constexpr DWORD kStyle = LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_HSCROLL;

  LRESULT Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message == WM_LBUTTONDOWN) {
      const int line = Send(window, LB_ITEMFROMPOINT, 0, lParam);
      const bool onLine = HIWORD(line) == 0 && LOWORD(line) < items_.Items().size();
      if (onLine) ChooseLine(LOWORD(line));
      FocusTaken();
      return 0;
    }
    // Windows' own answer would take hold of the mouse, which a dialog of the handler's needs.
    if (message == WM_LBUTTONDBLCLK) {
      DoubleClicked();
      return 0;
    }
    return ControlView::Handle(window, message, wParam, lParam);
  }

  void ChooseLine(int line) {
    if (Listens()) Forward([&] { form().UserPick(items_, line); });
  }

  void Update() override {
    const auto& items = items_.Items();
    while (Count() > static_cast<int>(items.size())) Send(window(), LB_DELETESTRING, static_cast<WPARAM>(Count() - 1));
    for (size_t line = 0; line < items.size(); ++line) SetLine(static_cast<int>(line), items[line]);
    Send(window(), LB_SETCURSEL, static_cast<WPARAM>(items_.ListIndex()));
    Send(window(), LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(WidestOf(window(), items) + GetSystemMetrics(SM_CXEDGE) * 3));
  }

  int Count() const { return Send(window(), LB_GETCOUNT); }

  void SetLine(int line, const std::string& text) {
    if (line < Count()) {
      if (LineText(line) == ToWide(text)) return;
      Send(window(), LB_DELETESTRING, static_cast<WPARAM>(line));
    }
    SendText(window(), LB_INSERTSTRING, static_cast<WPARAM>(line), text);
  }

  std::wstring LineText(int line) const {
    std::wstring text(static_cast<size_t>(Send(window(), LB_GETTEXTLEN, static_cast<WPARAM>(line))), L'\0');
    Send(window(), LB_GETTEXT, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(text.data()));
    return text;
  }

  ListBox& items_;
};

// A label stands beside its box, in the middle as the box's text does.
DWORD LabelStyle(const Label& label) { return label.Wraps() ? SS_LEFT : SS_LEFT | SS_CENTERIMAGE; }

DWORD LineStyle(const Control& line) { return line.Place().width >= line.Place().height ? SS_ETCHEDHORZ : SS_ETCHEDVERT; }

std::unique_ptr<ControlView> MakeCombo(ComboBox& control, HWND parent, bool& mirroring) {
  if (control.PickOnly()) return std::make_unique<PickOnlyComboView>(control, parent, mirroring);
  return std::make_unique<ComboView>(control, parent, mirroring);
}

}  // namespace

bool ForwardDialogKey(Form& form, UINT message, WPARAM key) {
  const std::string name = NameOfKey(message, key);
  if (name.empty()) return false;
  if (form.IsShown()) Forward([&] { form.UserKey(name); });
  return true;
}

Answer AnswerAsParent(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
      if (ControlView* view = ControlView::Of(reinterpret_cast<HWND>(lParam))) view->Notified(HIWORD(wParam));
      return {true, 0};
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
      SetBkColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_3DFACE));
      SetTextColor(reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_BTNTEXT));
      return {true, reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_3DFACE))};
    default:
      return {};
  }
}

std::unique_ptr<ControlView> ControlView::Make(Control& control, HWND parent, bool& mirroring) {
  switch (control.kind()) {
    case ControlKind::Label:
      return std::make_unique<CaptionView>(control, MakeWindow(parent, WC_STATICW, LabelStyle(static_cast<Label&>(control))),
                                           mirroring);
    case ControlKind::Frame:
      return std::make_unique<FrameView>(control, parent, mirroring);
    case ControlKind::Line:
      return std::make_unique<CaptionView>(control, MakeWindow(parent, WC_STATICW, LineStyle(control)), mirroring);
    case ControlKind::Button:
      return std::make_unique<ButtonView>(control, parent, BS_PUSHBUTTON, mirroring);
    case ControlKind::Check:
      return std::make_unique<CheckView>(static_cast<CheckBox&>(control), parent, mirroring);
    case ControlKind::Text:
      return std::make_unique<TextView>(static_cast<TextBox&>(control), parent, mirroring);
    case ControlKind::List:
      return std::make_unique<ListView>(static_cast<ListBox&>(control), parent, mirroring);
    case ControlKind::Combo:
      return MakeCombo(static_cast<ComboBox&>(control), parent, mirroring);
  }
  throw RuntimeError::InvalidArgument("kind of control");
}

ControlView* ControlView::Of(HWND window) { return static_cast<ControlView*>(GetPropW(window, kViewProperty)); }

ControlView::ControlView(Control& control, HWND window, bool& mirroring)
    : mirroring_(mirroring), control_(control), window_(window) {
  NameWindow(window_, kControlProperty, control.name());
  SetWindowLongPtrW(window_, GWLP_ID, IdOf(control));
  if (control.TakesFocus()) SetWindowLongPtrW(window_, GWL_STYLE, GetWindowLongPtrW(window_, GWL_STYLE) | WS_TABSTOP);
  SetPropW(window_, kViewProperty, this);
  Watch(window_);
}

ControlView::~ControlView() {
  if (window_) DestroyWindow(window_);
}

void ControlView::Watch(HWND window) { SetWindowSubclass(window, Procedure, kSubclass, reinterpret_cast<DWORD_PTR>(this)); }

LRESULT CALLBACK ControlView::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR view) {
  auto& self = *reinterpret_cast<ControlView*>(view);
  if (message != WM_NCDESTROY) return ForwardMessage([&] { return self.Handle(window, message, wParam, lParam); });
  UnnameWindow(window, kControlProperty);
  RemovePropW(window, kViewProperty);
  RemoveWindowSubclass(window, Procedure, kSubclass);
  if (window == self.window_) self.window_ = nullptr;
  return DefSubclassProc(window, message, wParam, lParam);
}

void ControlView::SetPlace(const RECT& place) {
  SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void ControlView::SetFont(HFONT font) { SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE); }

void ControlView::Mirror() {
  const Mirroring mirroring(mirroring_);
  Update();
  const bool visible = GetWindowLongPtrW(window_, GWL_STYLE) & WS_VISIBLE;
  if (visible != control_.IsVisible()) ShowWindow(window_, control_.IsVisible() ? SW_SHOWNA : SW_HIDE);
}

void ControlView::DoubleClicked() {
  if (Listens()) Forward([&] { form().UserDblClick(control_); });
}

// A person or a screen reader has given the window the keyboard.
void ControlView::FocusTaken() {
  if (Listens() && control_.TakesFocus() && form().Focus() != &control_) Forward([&] { form().UserFocus(control_); });
}

bool ControlView::TakesKey(UINT message, WPARAM key) {
  const bool caretKey = key == VK_SPACE || key == VK_HOME || key == VK_END;
  if (message == WM_KEYDOWN && caretKey && TakesTyping()) return false;
  return ForwardDialogKey(form(), message, key) || (message != WM_SYSCHAR && !LeavesKey(key));
}

LRESULT ControlView::Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
    case WM_SYSCHAR:
      if (TakesKey(message, wParam)) return 0;
      break;
    case WM_CHAR:
      // Their keys have been dealt with; a box would beep at them.
      if (wParam == VK_RETURN || wParam == VK_TAB || wParam == VK_ESCAPE) return 0;
      break;
    case WM_SETFOCUS: {
      const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
      if (window == FocusWindow()) FocusTaken();
      return result;
    }
    case WM_LBUTTONDBLCLK: {
      const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
      DoubleClicked();
      return result;
    }
    default:
      break;
  }
  return DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace vardo
