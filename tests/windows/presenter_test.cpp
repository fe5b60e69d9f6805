// Forms in the windows of Windows. The model driven directly is the measure: the same acts through window messages must leave the
// same traces.
#include "PresenterScripts.h"
#include "forms/win32/DialogFont.h"
#include "forms/win32/Keys.h"
#include "forms/win32/MessageLoop.h"
#include "forms/win32/Win32Driver.h"
#include "forms/win32/WindowNames.h"
#include "platform/win32/Screen.h"
#include "platform/win32/WideText.h"
#include "platform/win32/Win32Platform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h, which they need.
#include <commctrl.h>
#include <oleacc.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <random>
#include <set>
#include <thread>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class WindowsEnvironment : public testing::Environment {
 public:
  void SetUp() override {
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  }
  void TearDown() override { CoUninitialize(); }
};

[[maybe_unused]] const auto* const kEnvironment = testing::AddGlobalTestEnvironment(new WindowsEnvironment);

// Pumped, and over whatever window is active.
class PumpedPresenter : public Win32Driver {
 public:
  explicit PumpedPresenter(std::function<void(Form&)> pump) : Win32Driver(GetActiveWindow, std::move(pump)) {}
};

// A window as the host has one.
class HostWindow {
 public:
  HostWindow()
      : window_(CreateWindowExW(0, WC_STATICW, L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 100, 600, 400, nullptr, nullptr,
                                nullptr, nullptr)) {}
  ~HostWindow() { DestroyWindow(window_); }
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;
  HWND window() const { return window_; }

 private:
  HWND window_;
};

// Runs an act again and again from within whatever loop handles messages, until it says that it has found what it waited for.
class WhenPossible {
 public:
  explicit WhenPossible(std::function<bool()> act) : act_(std::move(act)) {
    current_ = this;
    timer_ = SetTimer(nullptr, 0, 20, [](HWND, UINT, UINT_PTR, DWORD) {
      if (current_ && !current_->done_) current_->done_ = current_->act_();
    });
  }
  ~WhenPossible() {
    KillTimer(nullptr, timer_);
    current_ = nullptr;
    EXPECT_TRUE(done_) << "what was waited for did not come";
  }
  WhenPossible(const WhenPossible&) = delete;
  WhenPossible& operator=(const WhenPossible&) = delete;

 private:
  static inline WhenPossible* current_ = nullptr;
  std::function<bool()> act_;
  UINT_PTR timer_;
  bool done_ = false;
};

class Win32PresenterTest : public PresenterTest {
 protected:
  // However slow the machine is, two presses without a pause are a double click.
  Win32PresenterTest() { SetDoubleClickTime(5000); }
  ~Win32PresenterTest() override { SetDoubleClickTime(0); }

  // Shows the form and runs the body on it; the window is that of the form.
  template <class F>
  void WithWindow(const std::function<void(F&, HWND, Win32Driver&)>& body) {
    Win32Driver* driver = nullptr;
    PumpedPresenter presenter([&](Form& form) {
      AwaitQuietScreen();
      ASSERT_EQ(GetActiveWindow(), driver->WindowOf(form));
      body(dynamic_cast<F&>(form), driver->WindowOf(form), *driver);
    });
    driver = &presenter;
    FormPresenter* const before = SetFormPresenter(&presenter);
    ShowModal(DefaultForm<F>());
    SetFormPresenter(before);
    UnloadAllForms();
  }
};

std::string TextOf(HWND window) {
  wchar_t text[256];
  return FromWide({text, static_cast<size_t>(SendMessageW(window, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text)))});
}

int Ask(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
  return static_cast<int>(SendMessageW(window, message, wParam, lParam));
}

std::string ItemOf(HWND list, int index) {
  wchar_t text[256];
  const int length = Ask(list, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text));
  return length < 0 ? "none" : FromWide({text, static_cast<size_t>(length)});
}

struct Search {
  std::string name;
  HWND found;
};

BOOL CALLBACK Compare(HWND window, LPARAM search) {
  auto& wanted = *reinterpret_cast<Search*>(search);
  if (NameOfWindow(window, kControlProperty) != wanted.name) return TRUE;
  wanted.found = window;
  return FALSE;
}

HWND Find(HWND window, const std::string& control) {
  Search search{control, nullptr};
  EnumChildWindows(window, Compare, reinterpret_cast<LPARAM>(&search));
  EXPECT_NE(search.found, nullptr) << control;
  return search.found;
}

COMBOBOXINFO InfoOf(HWND combo) {
  COMBOBOXINFO info = {};
  info.cbSize = sizeof info;
  GetComboBoxInfo(combo, &info);
  return info;
}

HWND EditOf(HWND combo) { return InfoOf(combo).hwndItem; }

RECT PlaceIn(HWND window, HWND child) {
  RECT place = {};
  GetWindowRect(child, &place);
  MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
  return place;
}

// --- A person's hands: keys and the mouse as the system has them from the devices.
void KeyEvent(WORD key, bool up) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
  input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
  SendInput(1, &input, sizeof input);
  ProcessMessages();
}

void PressKey(WORD key, WORD held = 0) {
  if (held) KeyEvent(held, false);
  KeyEvent(key, false);
  KeyEvent(key, true);
  if (held) KeyEvent(held, true);
}

// Letters, digits and blanks, whose keys have their codes.
void TypeKeys(std::string_view text) {
  for (const char c : text) PressKey(static_cast<WORD>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c));
}

void MouseEvent(DWORD flags) {
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = flags;
  SendInput(1, &input, sizeof input);
  ProcessMessages();
}

void ClickAt(HWND window, POINT at) {
  ClientToScreen(window, &at);
  SetCursorPos(at.x, at.y);
  ProcessMessages();
  MouseEvent(MOUSEEVENTF_LEFTDOWN);
  MouseEvent(MOUSEEVENTF_LEFTUP);
}

void ClickOnWindow(HWND window) {
  RECT area = {};
  GetClientRect(window, &area);
  ClickAt(window, {area.right / 2, area.bottom / 2});
}

// The name that a window says to assistive tools.
std::string SpokenName(HWND window) {
  void* found = nullptr;
  AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible, &found);
  if (!found) return "no object";
  auto* const object = static_cast<IAccessible*>(found);
  VARIANT self = {};
  self.vt = VT_I4;
  BSTR name = nullptr;
  object->get_accName(self, &name);
  std::string spoken = name ? FromWide({name, SysStringLen(name)}) : "";
  SysFreeString(name);
  object->Release();
  return spoken;
}

POINT LineOf(HWND list, int index) {
  RECT line = {};
  Ask(list, LB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&line));
  return {(line.left + line.right) / 2, (line.top + line.bottom) / 2};
}

class SameAsTheModel : public Win32PresenterTest, public testing::WithParamInterface<Script> {};

TEST_P(SameAsTheModel, WhateverAPersonDoes) {
  const auto model = Play<HeadlessPresenter>(GetParam().acts);
  const auto windows = Play<PumpedPresenter>(GetParam().acts);
  ASSERT_EQ(windows.size(), model.size());
  for (size_t act = 0; act < windows.size(); ++act) ASSERT_EQ(windows[act], model[act]);
}

INSTANTIATE_TEST_SUITE_P(Win32Presenter, SameAsTheModel, testing::ValuesIn(kScripts));

TEST_F(Win32PresenterTest, WindowIsWhereTheFormSaysWithItsControlsInPlace) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver&) {
    const int dotsPerInch = ScreenOf(window).dotsPerInch;
    EXPECT_EQ(TextOf(window), "Test");
    EXPECT_EQ(NameOfWindow(window, kFormProperty), "TestForm");
    RECT area = {}, outside = {};
    GetClientRect(window, &area);
    GetWindowRect(window, &outside);
    EXPECT_EQ(area.right, ToPixels(5400, dotsPerInch));
    EXPECT_EQ(area.bottom, ToPixels(5400, dotsPerInch));
    EXPECT_EQ(outside.left, ToPixels(600, dotsPerInch));
    EXPECT_EQ(outside.top, ToPixels(450, dotsPerInch));
    EXPECT_EQ(GetWindowLongPtrW(window, GWL_STYLE) & (WS_THICKFRAME | WS_MAXIMIZEBOX), 0) << "the size is fixed";
    for (const Control* control : form.Controls()) {
      const HWND child = Find(window, control->name());
      const RECT place = PlaceIn(window, child);
      EXPECT_EQ(place.left, ToPixels(control->Place().left, dotsPerInch)) << control->name();
      EXPECT_EQ(place.right, ToPixels(control->Place().left + control->Place().width, dotsPerInch)) << control->name();
      const int top = ToPixels(control->Place().top, dotsPerInch);
      const int bottom = ToPixels(control->Place().top + control->Place().height, dotsPerInch);
      EXPECT_NEAR(place.top + place.bottom, top + bottom, 2) << control->name() << " stands in the middle of its place";
      const bool holdsText = control->kind() == ControlKind::Text || control->kind() == ControlKind::Combo;
      if (!holdsText) {
        EXPECT_EQ(place.top, top) << control->name();
      }
      EXPECT_EQ(IsWindowVisible(child) != 0, control->Shown()) << control->name();
    }
    EXPECT_EQ(GetParent(Find(window, "txtValue")), Find(window, "Frame1"));
  });
}

TEST_F(Win32PresenterTest, TextsStandInTheMiddleOfTheirBoxes) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver&) {
    form.cboName.SetText("Entity 1");
    for (const char* name : {"cboName", "cboType", "txtValue"}) {
      const HWND box = Find(window, name);
      const HWND edit = form.Find(name)->kind() == ControlKind::Combo ? EditOf(box) : box;
      const TextMeasure measure(edit, reinterpret_cast<HFONT>(SendMessageW(edit, WM_GETFONT, 0, 0)));
      TEXTMETRICW text = {};
      GetTextMetricsW(measure.dc(), &text);
      POINT first = {0, static_cast<short>(HIWORD(Ask(edit, EM_POSFROMCHAR, 0)))};
      MapWindowPoints(edit, window, &first, 1);
      const RECT place = PlaceIn(window, box);
      EXPECT_NEAR(2 * first.y + text.tmHeight, place.top + place.bottom, 2) << name;
    }
  });
}

TEST_F(Win32PresenterTest, WindowsHaveVisualStyles) {
  WithWindow<TestForm>([](TestForm&, HWND window, Win32Driver&) {
    // Only the new library knows this message.
    EXPECT_NE(Ask(Find(window, "cboName"), CB_GETMINVISIBLE), 0);
  });
}

TEST_F(Win32PresenterTest, ScreenReadersFindEachBoxByItsLabel) {
  WithWindow<TestForm>([](TestForm&, HWND window, Win32Driver&) {
    const struct {
      const char* control;
      const char* label;
    } cases[] = {{"cboName", "lblName"},   {"cboType", "lblType"}, {"txtValue", "lblValue"}, {"txtExpression", "lblExpression"},
                 {"cboUnits", "lblUnits"}, {"lstRows", "lblRows"}};
    for (const auto& c : cases) {
      const HWND before = GetWindow(Find(window, c.control), GW_HWNDPREV);
      EXPECT_EQ(NameOfWindow(before, kControlProperty), c.label) << c.control;
    }
    EXPECT_EQ(SpokenName(Find(window, "txtValue")), "Value:");
    EXPECT_EQ(SpokenName(Find(window, "chkStatistics")), "Report Statistics");
    EXPECT_EQ(SpokenName(Find(window, "cmdAdd")), "Add...");
  });
}

// Windows' own service that names windows for screen readers, noting what it is told.
class NotedNames : public IAccPropServices, public IClassFactory {
 public:
  NotedNames() {
    IUnknown* const self = static_cast<IClassFactory*>(this);
    CoRegisterClassObject(CLSID_AccPropServices, self, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
  }
  ~NotedNames() { CoRevokeClassObject(cookie_); }
  NotedNames(const NotedNames&) = delete;
  NotedNames& operator=(const NotedNames&) = delete;

  std::vector<std::pair<HWND, std::string>> names;

  HRESULT STDMETHODCALLTYPE SetHwndPropStr(HWND window, DWORD object, DWORD child, MSAAPROPID property, LPCWSTR text) override {
    EXPECT_EQ(object, static_cast<DWORD>(OBJID_CLIENT));
    EXPECT_EQ(child, static_cast<DWORD>(CHILDID_SELF));
    EXPECT_TRUE(IsEqualGUID(property, PROPID_ACC_NAME));
    names.emplace_back(window, FromWide(text));
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (IsEqualGUID(id, IID_IAccPropServices)) *object = static_cast<IAccPropServices*>(this);
    if (IsEqualGUID(id, IID_IUnknown) || IsEqualGUID(id, IID_IClassFactory)) *object = static_cast<IClassFactory*>(this);
    return *object ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override { return QueryInterface(id, object); }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

  // Nobody is to call these.
  HRESULT STDMETHODCALLTYPE SetPropValue(const BYTE*, DWORD, MSAAPROPID, VARIANT) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetPropServer(const BYTE*, DWORD, const MSAAPROPID*, int, IAccPropServer*, AnnoScope) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ClearProps(const BYTE*, DWORD, const MSAAPROPID*, int) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetHwndProp(HWND, DWORD, DWORD, MSAAPROPID, VARIANT) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetHwndPropServer(HWND, DWORD, DWORD, const MSAAPROPID*, int, IAccPropServer*, AnnoScope) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ClearHwndProps(HWND, DWORD, DWORD, const MSAAPROPID*, int) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ComposeHwndIdentityString(HWND, DWORD, DWORD, BYTE**, DWORD*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DecomposeHwndIdentityString(const BYTE*, DWORD, HWND*, DWORD*, DWORD*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetHmenuPropStr(HMENU, DWORD, MSAAPROPID, LPCWSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetHmenuProp(HMENU, DWORD, MSAAPROPID, VARIANT) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetHmenuPropServer(HMENU, DWORD, const MSAAPROPID*, int, IAccPropServer*, AnnoScope) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ClearHmenuProps(HMENU, DWORD, const MSAAPROPID*, int) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ComposeHmenuIdentityString(HMENU, DWORD, BYTE**, DWORD*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DecomposeHmenuIdentityString(const BYTE*, DWORD, HMENU*, DWORD*) override { return E_NOTIMPL; }

 private:
  DWORD cookie_ = 0;
};

// Two boxes behind one label.
class PairForm : public Form {
 public:
  PairForm() : Form("PairForm", "Pair") { lblRange.SetCaption("Least && &most:"); }
  Label lblRange{*this, "lblRange"};
  TextBox txtLeast{*this, "txtLeast"}, txtMost{*this, "txtMost"};
};

TEST_F(Win32PresenterTest, ScreenReadersAreToldTheLabelOfABoxThatDoesNotFollowIt) {
  NotedNames service;
  WithWindow<PairForm>([&](PairForm&, HWND window, Win32Driver&) {
    EXPECT_THAT(service.names, ElementsAre(testing::Pair(Find(window, "txtMost"), "Least & most")));
  });
}

TEST_F(Win32PresenterTest, WhatTheProgramChangesIsSeen) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver&) {
    form.txtValue.SetText("42");
    form.cboName.SetText("Entity 2");
    form.cboName.AddItem("Entity 4");
    form.cboType.SetListIndex(1);
    form.chkStatistics.SetCaption("&Other");
    form.lstRows.RemoveItem(0);
    form.lstRows.SetItem(0, "changed");
    form.lstRows.SetListIndex(1);
    form.lblValue.SetCaption("&Size:");
    form.Frame1.SetCaption("Times");
    EXPECT_EQ(TextOf(Find(window, "txtValue")), "42");
    EXPECT_EQ(TextOf(Find(window, "cboName")), "Entity 2");
    EXPECT_EQ(Ask(Find(window, "cboName"), CB_GETCURSEL), 1);
    EXPECT_EQ(Ask(Find(window, "cboName"), CB_GETCOUNT), 4);
    EXPECT_EQ(TextOf(Find(window, "cboType")), "Constant");
    EXPECT_EQ(TextOf(Find(window, "chkStatistics")), "&Other");
    EXPECT_EQ(Ask(Find(window, "lstRows"), LB_GETCOUNT), 2);
    EXPECT_EQ(ItemOf(Find(window, "lstRows"), 0), "changed");
    EXPECT_EQ(Ask(Find(window, "lstRows"), LB_GETCURSEL), 1);
    EXPECT_EQ(TextOf(Find(window, "lblValue")), "&Size:");
    EXPECT_EQ(TextOf(Find(window, "Frame1")), "Times");
    form.chkStatistics.SetChecked(true);
    EXPECT_EQ(Ask(Find(window, "chkStatistics"), BM_GETCHECK), BST_CHECKED);
    EXPECT_FALSE(IsWindowVisible(Find(window, "txtValue")));
    form.lstRows.MoveFocusHere();
    EXPECT_EQ(GetFocus(), Find(window, "lstRows"));
  });
}

TEST_F(Win32PresenterTest, PickOnlyComboShowsForeignTextAndTakesNoTyping) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver& driver) {
    const HWND units = Find(window, "cboUnits");
    EXPECT_EQ(TextOf(units), "fortnights");
    EXPECT_EQ(Ask(units, CB_GETCURSEL), -1);
    EXPECT_NE(GetWindowLongPtrW(EditOf(units), GWL_STYLE) & ES_READONLY, 0);
    const HDC dc = GetDC(EditOf(units));
    const auto brush = reinterpret_cast<HBRUSH>(
        SendMessageW(units, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(EditOf(units))));
    EXPECT_EQ(brush, GetSysColorBrush(COLOR_WINDOW)) << "it is not grey";
    ReleaseDC(EditOf(units), dc);
    driver.Pick(form.cboUnits, 2);
    EXPECT_EQ(TextOf(units), "Hours");
    EXPECT_EQ(Ask(units, CB_GETCURSEL), 2);
    form.cboUnits.SetText("weeks");
    EXPECT_EQ(TextOf(units), "weeks");
    EXPECT_EQ(Ask(units, CB_GETCURSEL), -1);
  });
}

TEST_F(Win32PresenterTest, KeysOfTheKeyboardReachTheForm) {
  WithWindow<TestForm>([](TestForm& form, HWND, Win32Driver&) {
    const auto press = [&](WORD key, WORD held = 0) {
      PressKey(key, held);
      return form.Focus() ? form.Focus()->name() : "none";
    };
    EXPECT_EQ(press(VK_TAB), "cboType");
    EXPECT_EQ(press(VK_TAB, VK_SHIFT), "cboName");
    EXPECT_EQ(press('V', VK_MENU), "txtValue");
    TypeKeys("5 a");
    EXPECT_EQ(form.txtValue.Text(), "5 a") << "what was there was selected";
    press(VK_HOME);
    TypeKeys("x");
    EXPECT_EQ(form.txtValue.Text(), "x5 a") << "the caret's keys are the box's own";
    EXPECT_EQ(press('U', VK_MENU), "cboUnits");
    press(VK_DOWN);
    EXPECT_EQ(form.cboUnits.Text(), "Seconds");
    TypeKeys("h");
    EXPECT_EQ(form.cboUnits.Text(), "Hours") << "letters choose";
    press(VK_NEXT);
    EXPECT_EQ(form.cboUnits.Text(), "Days");
    press(VK_PRIOR);
    EXPECT_EQ(form.cboUnits.Text(), "Seconds");
    EXPECT_EQ(press('R', VK_MENU), "chkStatistics") << "of two with this key the next one";
    EXPECT_FALSE(form.chkStatistics.Checked()) << "and only leads to it";
    EXPECT_EQ(press('R', VK_MENU), "lstRows");
    TypeKeys("s");
    EXPECT_EQ(form.lstRows.ListIndex(), 1) << "letters choose in lists too";
    trace.clear();
    EXPECT_TRUE(form.IsShown());
    press(VK_RETURN);
    EXPECT_FALSE(form.IsShown());
    EXPECT_THAT(trace, testing::Contains("OK"));
  });
}

TEST_F(Win32PresenterTest, EscapeAndTheCloseBoxCancel) {
  WithWindow<TestForm>([](TestForm& form, HWND, Win32Driver&) {
    PressKey(VK_ESCAPE);
    EXPECT_FALSE(form.IsShown());
  });
  EXPECT_THAT(std::exchange(trace, {}), ElementsAre("cboName LostFocus"));
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver&) {
    SendMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_FALSE(form.IsShown());
  });
  EXPECT_THAT(std::exchange(trace, {}), ElementsAre("cboName LostFocus"));
  for (const char* control : {"cboName", "txtValue", "cmdAdd"}) {
    WithWindow<TestForm>([&](TestForm& form, HWND, Win32Driver& driver) {
      driver.Focus(*form.Find(control));
      PressKey(VK_F4, VK_MENU);
      EXPECT_FALSE(form.IsShown()) << "Alt+F4 from " << control;
    });
  }
}

TEST_F(Win32PresenterTest, TypingInTheMiddleKeepsTheCaret) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver& driver) {
    driver.Type(form.cboName, "Entity 2");
    const HWND edit = EditOf(Find(window, "cboName"));
    Ask(edit, EM_SETSEL, 3, 3);
    TypeKeys("ab");
    EXPECT_EQ(form.cboName.Text(), "Entabity 2");
    EXPECT_EQ(form.cboName.ListIndex(), -1);
    EXPECT_EQ(Ask(edit, EM_GETSEL), MAKELONG(5, 5));
  });
}

TEST_F(Win32PresenterTest, MouseMovesTheFocusAndChoosesItems) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver&) {
    ClickOnWindow(Find(window, "txtValue"));
    EXPECT_THAT(std::exchange(trace, {}), ElementsAre("cboName LostFocus"));
    EXPECT_EQ(form.Focus(), &form.txtValue);

    const HWND list = Find(window, "lstRows");
    ClickAt(list, LineOf(list, 1));
    ClickAt(list, LineOf(list, 1));
    EXPECT_THAT(std::exchange(trace, {}), ElementsAre("txtValue LostFocus", "lstRows Click", "lstRows DblClick"));
    EXPECT_EQ(form.lstRows.ListIndex(), 1);

    const HWND units = Find(window, "cboUnits");
    ClickOnWindow(EditOf(units));
    EXPECT_TRUE(form.cboUnits.DroppedDown()) << "all of a pick-only box opens it";
    const HWND items = InfoOf(units).hwndList;
    EXPECT_TRUE(IsWindowVisible(items));
    ClickAt(items, LineOf(items, 1));
    EXPECT_FALSE(form.cboUnits.DroppedDown());
    EXPECT_EQ(form.cboUnits.Text(), "Minutes");
    EXPECT_EQ(TextOf(units), "Minutes");
    EXPECT_THAT(std::exchange(trace, {}), ElementsAre("lstRows LostFocus", "cboUnits Click"));

    ClickOnWindow(Find(window, "chkStatistics"));
    EXPECT_TRUE(form.chkStatistics.Checked());
    EXPECT_EQ(form.Focus(), &form.chkStatistics);
  });
}

TEST_F(Win32PresenterTest, MouseDoesNothingToWhatLeavingABoxHides) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver&) {
    form.cboName.LostFocus = [&form] {
      for (Control* hidden : std::initializer_list<Control*>{&form.cboUnits, &form.chkStatistics, &form.lstRows})
        hidden->SetVisible(false);
    };
    for (const char* name : {"cboUnits", "chkStatistics", "lstRows"}) {
      form.Find(name)->SetVisible(true);
      const HWND control = Find(window, name);
      ClickOnWindow(form.Find(name)->kind() == ControlKind::Combo ? EditOf(control) : control);
      EXPECT_EQ(form.Focus(), &form.cboName) << name;
    }
    EXPECT_FALSE(form.cboName.DroppedDown());
    EXPECT_FALSE(form.cboUnits.DroppedDown());
    EXPECT_FALSE(form.chkStatistics.Checked());
    EXPECT_EQ(form.lstRows.ListIndex(), -1);
    EXPECT_EQ(GetFocus(), EditOf(Find(window, "cboName")));
  });
}

TEST_F(Win32PresenterTest, AnotherClickClosesAnOpenList) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver&) {
    const HWND name = Find(window, "cboName");
    const RECT button = InfoOf(name).rcButton;
    const POINT arrow = {(button.left + button.right) / 2, (button.top + button.bottom) / 2};
    ClickAt(name, arrow);
    EXPECT_TRUE(form.cboName.DroppedDown());
    ClickAt(name, arrow);
    EXPECT_FALSE(form.cboName.DroppedDown());
    EXPECT_EQ(form.cboName.Text(), "");
    EXPECT_THAT(trace, IsEmpty());
  });
}

TEST_F(Win32PresenterTest, ClosingAListKeepsTypedText) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver& driver) {
    driver.Type(form.cboName, "Ent");
    driver.Key(form, "F4");
    driver.Key(form, "Escape");
    EXPECT_EQ(form.cboName.Text(), "Ent");
    EXPECT_EQ(TextOf(Find(window, "cboName")), "Ent");
  });
}

// They select, and tell the dialog of it as Windows would: some of the choice alone, some in another order.
TEST_F(Win32PresenterTest, AutomationChoosesItemsAsAPersonDoes) {
  const std::vector<WORD> notices[] = {
      {CBN_SELCHANGE}, {CBN_SELENDOK, CBN_SELCHANGE}, {CBN_SELCHANGE, CBN_SELENDOK}, {CBN_SELENDOK, CBN_CLOSEUP, CBN_SELCHANGE}};
  for (const auto& told : notices)
    WithWindow<TestForm>([&](TestForm& form, HWND window, Win32Driver&) {
      for (ComboBox* combo : {&form.cboName, &form.cboUnits}) {
        const HWND box = Find(window, combo->name());
        const auto choose = [&](int item) {
          Ask(box, CB_SETCURSEL, static_cast<WPARAM>(item));
          for (const WORD notice : told)
            SendMessageW(GetParent(box), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(box), notice), reinterpret_cast<LPARAM>(box));
        };
        const auto expectBoth = [&](int item) {
          EXPECT_EQ(combo->Text(), combo->Items()[static_cast<size_t>(item)]) << combo->name();
          EXPECT_EQ(TextOf(box), combo->Text()) << combo->name();
          EXPECT_EQ(Ask(box, CB_GETCURSEL), item) << combo->name();
        };
        for (const int item : {2, 0, 1}) {
          choose(item);
          expectBoth(item);
        }
        choose(-1);
        expectBoth(1);
      }
    });
}

TEST_F(Win32PresenterTest, AutomationFindsControlsByTheirNumbersAndTabStops) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver&) {
    std::set<int> numbers;
    for (const Control* control : form.Controls()) {
      const HWND found = Find(window, control->name());
      numbers.insert(GetDlgCtrlID(found));
      EXPECT_EQ(GetDlgItem(GetParent(found), GetDlgCtrlID(found)), found) << control->name();
      EXPECT_EQ((GetWindowLongPtrW(found, GWL_STYLE) & WS_TABSTOP) != 0, control->TakesFocus()) << control->name();
    }
    EXPECT_EQ(numbers.size(), form.Controls().size()) << "each has its own";
    EXPECT_GE(*numbers.begin(), 1000) << "those below are Windows' own";
  });
}

TEST_F(Win32PresenterTest, ScreenReadersMoveTheFocusAsAPersonDoes) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver&) {
    SetFocus(Find(window, "txtValue"));
    EXPECT_EQ(form.Focus(), &form.txtValue);
    EXPECT_THAT(trace, ElementsAre("cboName LostFocus"));
  });
}

TEST_F(Win32PresenterTest, LosingTheWindowRaisesNothing) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver&) {
    form.txtValue.SetFocus();
    trace.clear();
    const HostWindow other;
    SetActiveWindow(other.window());
    EXPECT_NE(GetFocus(), Find(window, "txtValue"));
    SetActiveWindow(window);
    EXPECT_EQ(form.Focus(), &form.txtValue);
    EXPECT_EQ(GetFocus(), Find(window, "txtValue"));
    EXPECT_THAT(trace, IsEmpty());
  });
}

TEST_F(Win32PresenterTest, DefaultButtonIsTheOneThatEnterPresses) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver&) {
    const auto isDefault = [&](const char* button) {
      return (GetWindowLongPtrW(Find(window, button), GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
    };
    EXPECT_TRUE(isDefault("cmdOK"));
    form.cmdCancel.MoveFocusHere();
    EXPECT_FALSE(isDefault("cmdOK"));
    EXPECT_TRUE(isDefault("cmdCancel"));
    form.txtValue.MoveFocusHere();
    EXPECT_TRUE(isDefault("cmdOK"));
  });
}

TEST_F(Win32PresenterTest, FormsAreModalToTheHostsWindowAndGiveItBack) {
  const HostWindow host, closed;
  EnableWindow(closed.window(), FALSE);
  SetActiveWindow(host.window());
  Win32Driver* driver = nullptr;
  Win32Driver presenter([&] { return host.window(); },
                        [&](Form& form) {
                          const HWND window = driver->WindowOf(form);
                          EXPECT_EQ(driver->TopWindow(), window);
                          EXPECT_FALSE(IsWindowEnabled(host.window()));
                          EXPECT_TRUE(IsWindowEnabled(window));
                          if (form.name() == "SubForm") return driver->Key(form, "Escape");
                          EXPECT_EQ(GetWindow(window, GW_OWNER), host.window());
                          driver->Click(*form.Find("cmdAdd"));
                          EXPECT_EQ(GetActiveWindow(), window);
                          EXPECT_FALSE(IsWindowEnabled(host.window())) << "the form below is still modal";
                          driver->Key(form, "Escape");
                          EXPECT_FALSE(IsWindowVisible(window));
                        });
  driver = &presenter;
  SetFormPresenter(&presenter);
  ShowModal(DefaultForm<TestForm>());
  SetFormPresenter(nullptr);
  EXPECT_TRUE(IsWindowEnabled(host.window()));
  EXPECT_EQ(GetActiveWindow(), host.window());
  EXPECT_FALSE(IsWindowEnabled(closed.window())) << "what was disabled before stays so";
  EXPECT_EQ(presenter.TopWindow(), host.window());
}

TEST_F(Win32PresenterTest, AccessKeysWorkAgainAfterTheFormAboveHasClosed) {
  Win32Driver* driver = nullptr;
  std::vector<std::string> shown;
  PumpedPresenter presenter([&](Form& form) {
    AwaitQuietScreen();
    shown.push_back(form.name());
    if (form.name() == "SubForm") return PressKey(VK_ESCAPE);
    driver->Click(*form.Find("cmdAdd"));
    AwaitQuietScreen();
    PressKey('V', VK_MENU);
    EXPECT_EQ(form.Focus()->name(), "txtValue");
  });
  driver = &presenter;
  SetFormPresenter(&presenter);
  ShowModal(DefaultForm<TestForm>());
  SetFormPresenter(nullptr);
  EXPECT_THAT(shown, ElementsAre("TestForm", "SubForm"));
}

TEST_F(Win32PresenterTest, WithoutAPumpAPersonIsServed) {
  const HostWindow host;
  Win32Driver presenter([&] { return host.window(); });
  SetFormPresenter(&presenter);
  const WhenPossible enter([&] {
    if (!presenter.WindowOf(DefaultForm<TestForm>())) return false;
    PostMessageW(GetFocus(), WM_KEYDOWN, VK_RETURN, 1);
    return true;
  });
  ShowModal(DefaultForm<TestForm>());
  SetFormPresenter(nullptr);
  EXPECT_THAT(trace, ElementsAre("cboName LostFocus", "OK"));
}

TEST_F(Win32PresenterTest, WishToQuitCancelsTheFormsAndIsPassedOn) {
  Win32Driver presenter;
  SetFormPresenter(&presenter);
  const WhenPossible quit([&] {
    PostQuitMessage(7);
    return true;
  });
  ShowModal(DefaultForm<TestForm>());
  SetFormPresenter(nullptr);
  EXPECT_FALSE(DefaultForm<TestForm>().IsShown());
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) && message.message != WM_QUIT) DispatchMessageW(&message);
  EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
  EXPECT_EQ(message.wParam, 7u);
}

TEST_F(Win32PresenterTest, FormGoesWhenItsOwnerGoes) {
  auto host = std::make_unique<HostWindow>();
  Win32Driver presenter([&] { return host ? host->window() : nullptr; });
  SetFormPresenter(&presenter);
  const WhenPossible close([&] {
    host.reset();
    return true;
  });
  ShowModal(DefaultForm<TestForm>());
  SetFormPresenter(nullptr);
  EXPECT_FALSE(DefaultForm<TestForm>().IsShown());
}

// The owner may go without a message that the form's loop has to hand on: another thread's call is answered within the waiting.
TEST_F(Win32PresenterTest, FormGoesWhenItsOwnerIsTakenAwayFromAnotherThread) {
  auto host = std::make_unique<HostWindow>();
  static std::unique_ptr<HostWindow>* taken;
  taken = &host;
  const auto procedure = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) -> LRESULT {
    if (message != WM_APP) return DefSubclassProc(window, message, wParam, lParam);
    taken->reset();
    return 0;
  };
  SetWindowSubclass(host->window(), procedure, 1, 0);
  Win32Driver presenter([&] { return host ? host->window() : nullptr; });
  SetFormPresenter(&presenter);
  const DWORD shower = GetCurrentThreadId();
  std::atomic<bool> closed = false, waited = false;
  std::jthread other([&, window = host->window()] {
    Sleep(500);
    SendMessageW(window, WM_APP, 0, 0);
    for (int tenth = 0; tenth < 50 && !closed; ++tenth) Sleep(100);
    waited = !closed;
    if (!closed) PostThreadMessageW(shower, WM_NULL, 0, 0);
  });
  ShowModal(DefaultForm<TestForm>());
  closed = true;
  other.join();
  SetFormPresenter(nullptr);
  EXPECT_FALSE(waited) << "the loop went on waiting";
  EXPECT_FALSE(DefaultForm<TestForm>().IsShown());
}

// Windows refuses one window after another.
class RefusedWindow {
 public:
  explicit RefusedWindow(int after) : hook_(SetWindowsHookExW(WH_CBT, Refuse, nullptr, GetCurrentThreadId())) { left_ = after; }
  ~RefusedWindow() { UnhookWindowsHookEx(hook_); }
  RefusedWindow(const RefusedWindow&) = delete;
  RefusedWindow& operator=(const RefusedWindow&) = delete;
  bool WasRefused() const { return left_ < 0; }

 private:
  static LRESULT CALLBACK Refuse(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_CREATEWND && left_ >= 0 && left_-- == 0) return 1;
    return CallNextHookEx(nullptr, code, wParam, lParam);
  }
  HHOOK hook_;
  static inline int left_ = 0;
};

TEST_F(Win32PresenterTest, NothingIsLeftOfAFormThatWindowsMakesNoWindowsFor) {
  int refusals = 0;
  for (bool refused = true; refused; ++refusals) {
    auto host = std::make_unique<HostWindow>();
    const RefusedWindow window(refusals);
    Win32Driver presenter([&] { return host->window(); }, [](Form&) {});
    SetFormPresenter(&presenter);
    try {
      ShowModal(DefaultForm<TestForm>());
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 7);
    }
    SetFormPresenter(nullptr);
    UnloadAllForms();
    refused = window.WasRefused();
    EXPECT_EQ(FindWindowW(L"VardoForm", nullptr), nullptr) << "window " << refusals;
    EXPECT_TRUE(IsWindowEnabled(host->window())) << "window " << refusals;
    host.reset();
  }
  EXPECT_GT(refusals, 10);
}

TEST_F(Win32PresenterTest, FormsThatAreNotShownCannotBeDriven) {
  Win32Driver presenter;
  TestForm form;
  EXPECT_EQ(presenter.WindowOf(form), nullptr);
  EXPECT_THROW(presenter.Focus(form.txtValue), RuntimeError);
  EXPECT_THROW(presenter.Key(form, "Tab"), RuntimeError);
  EXPECT_THROW(presenter.Screenshot(form, "x.png"), RuntimeError);
}

TEST_F(Win32PresenterTest, AnotherResolutionMakesAllOfItLarger) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver&) {
    const auto fontHeight = [&] {
      LOGFONTW font = {};
      GetObjectW(reinterpret_cast<HFONT>(SendMessageW(Find(window, "txtValue"), WM_GETFONT, 0, 0)), sizeof font, &font);
      return std::abs(static_cast<int>(font.lfHeight));
    };
    const int before = fontHeight();
    const int twice = 2 * ScreenOf(window).dotsPerInch;
    RECT place = {10, 20, 810, 840};
    SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(twice, twice), reinterpret_cast<LPARAM>(&place));
    RECT outside = {};
    GetWindowRect(window, &outside);
    EXPECT_EQ(outside.right - outside.left, 800);
    EXPECT_EQ(outside.top, 20);
    EXPECT_GE(fontHeight(), before * 3 / 2);
    for (const Control* control : form.Controls()) {
      const RECT now = PlaceIn(window, Find(window, control->name()));
      EXPECT_EQ(now.left, ToPixels(control->Place().left, twice)) << control->name();
      EXPECT_EQ(now.right, ToPixels(control->Place().left + control->Place().width, twice)) << control->name();
      const int top = ToPixels(control->Place().top, twice);
      const int bottom = ToPixels(control->Place().top + control->Place().height, twice);
      EXPECT_NEAR(now.top + now.bottom, top + bottom, 2) << control->name();
    }
  });
}

// The message box over a window; null while there is none.
HWND MessageOver(HWND owner) {
  const HWND popup = GetLastActivePopup(owner);
  return popup != owner && IsWindowVisible(popup) ? popup : nullptr;
}

// A thread whose windows the system stretches, as hosts have them call their add-ins.
class StretchedHost {
 public:
  StretchedHost() : before_(SetThreadDpiAwarenessContext(DPI_AWARENESS_CONTEXT_SYSTEM_AWARE)) {}
  ~StretchedHost() { SetThreadDpiAwarenessContext(before_); }
  StretchedHost(const StretchedHost&) = delete;
  StretchedHost& operator=(const StretchedHost&) = delete;

 private:
  DPI_AWARENESS_CONTEXT before_;
};

bool IsSharp(HWND window) {
  return GetAwarenessFromDpiAwarenessContext(GetWindowDpiAwarenessContext(window)) == DPI_AWARENESS_PER_MONITOR_AWARE;
}

TEST_F(Win32PresenterTest, FormsAndMessagesFollowTheScreenAlsoInAHostThatDoesNot) {
  const StretchedHost stretched;
  const HostWindow host;
  ASSERT_FALSE(IsSharp(host.window()));
  Win32Driver* driver = nullptr;
  Win32Driver presenter([&] { return host.window(); },
                        [&](Form& form) {
                          EXPECT_TRUE(IsSharp(driver->WindowOf(form)));
                          EXPECT_TRUE(IsSharp(Find(driver->WindowOf(form), "txtValue")));
                        });
  driver = &presenter;
  SetFormPresenter(&presenter);
  ShowModal(DefaultForm<TestForm>());
  SetFormPresenter(nullptr);
  {
    const WhenPossible ok([&] {
      const HWND box = MessageOver(host.window());
      if (!box) return false;
      EXPECT_TRUE(IsSharp(box));
      SendMessageW(box, WM_COMMAND, IDOK, 0);
      return true;
    });
    Win32Platform([&] { return host.window(); }).ShowMessage("text", "title", 16);
  }
  EXPECT_EQ(GetAwarenessFromDpiAwarenessContext(GetThreadDpiAwarenessContext()), DPI_AWARENESS_SYSTEM_AWARE)
      << "the host's thread is as it was";
}

TEST_F(Win32PresenterTest, TextsAreInTheSystemsFontForDialogs) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver&) {
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, GetDpiForWindow(window));
    for (const Control* control : form.Controls()) {
      if (control->kind() == ControlKind::Line) continue;
      LOGFONTW font = {};
      GetObjectW(reinterpret_cast<HFONT>(SendMessageW(Find(window, control->name()), WM_GETFONT, 0, 0)), sizeof font, &font);
      EXPECT_EQ(FromWide(font.lfFaceName), FromWide(metrics.lfMessageFont.lfFaceName)) << control->name();
      EXPECT_LE(std::abs(font.lfHeight), std::abs(metrics.lfMessageFont.lfHeight)) << control->name();
      EXPECT_EQ(font.lfWeight, metrics.lfMessageFont.lfWeight) << control->name();
    }
  });
}

class TemporaryFolder {
 public:
  TemporaryFolder()
      : path_(std::filesystem::temp_directory_path() / ("vardo-presenter-" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directory(path_);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  std::string File(const char* name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

// What stands in the head of a PNG file.
std::optional<SIZE> PictureSize(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  unsigned char head[24] = {};
  in.read(reinterpret_cast<char*>(head), sizeof head);
  if (!in || std::string_view(reinterpret_cast<char*>(head) + 1, 3) != "PNG") return std::nullopt;
  const auto number = [&](int at) { return LONG{head[at] << 24 | head[at + 1] << 16 | head[at + 2] << 8 | head[at + 3]}; };
  return SIZE{number(16), number(20)};
}

TEST_F(Win32PresenterTest, PicturesAreWritten) {
  const TemporaryFolder folder;
  WithWindow<TestForm>([&](TestForm& form, HWND window, Win32Driver& driver) {
    const std::string file = folder.File("form.png");
    driver.Screenshot(form, file);
    RECT area = {};
    GetClientRect(window, &area);
    const auto size = PictureSize(file);
    ASSERT_TRUE(size);
    EXPECT_EQ(size->cx, area.right);
    EXPECT_EQ(size->cy, area.bottom);
    EXPECT_THROW(driver.Screenshot(form, folder.File("no/such.png")), RuntimeError);
    if (const char* keep = std::getenv("VARDO_PICTURE")) std::filesystem::copy_file(file, keep);
  });
}

TEST_F(Win32PresenterTest, MessageBoxesStandOverTheTopForm) {
  WithWindow<TestForm>([](TestForm& form, HWND window, Win32Driver& driver) {
    Win32Platform machine([&] { return driver.TopWindow(); });
    Platform* const before = SetPlatform(&machine);
    std::string title, text;
    {
      const WhenPossible ok([&] {
        const HWND box = MessageOver(window);
        if (!box) return false;
        title = TextOf(box);
        text = TextOf(GetDlgItem(box, 0xFFFF));
        EXPECT_FALSE(IsWindowEnabled(window));
        SendMessageW(box, WM_COMMAND, IDOK, 0);
        return true;
      });
      driver.Click(form.cmdFail);
    }
    SetPlatform(before);
    EXPECT_EQ(title, "Quellis");
    EXPECT_EQ(text, "6\nOverflow");
    EXPECT_TRUE(form.IsShown());
    EXPECT_TRUE(IsWindowEnabled(window));
    EXPECT_EQ(GetActiveWindow(), window);
    EXPECT_EQ(GetFocus(), Find(window, "cmdFail"));
    EXPECT_THAT(trace, ElementsAre("cboName LostFocus"));
  });
}

TEST_F(Win32PresenterTest, MessageBoxesKeepAPersonFromTheHostsOtherFramesAndGiveTheActivationBack) {
  const HostWindow owner, other;
  Win32Platform machine([&] { return owner.window(); });
  SetActiveWindow(other.window());
  {
    const WhenPossible ok([&] {
      const HWND box = MessageOver(owner.window());
      if (!box) return false;
      EXPECT_FALSE(IsWindowEnabled(owner.window()));
      EXPECT_FALSE(IsWindowEnabled(other.window()));
      SendMessageW(box, WM_COMMAND, IDOK, 0);
      return true;
    });
    machine.ShowMessage("Over all", "Quellis", 48);
  }
  EXPECT_TRUE(IsWindowEnabled(owner.window()));
  EXPECT_TRUE(IsWindowEnabled(other.window()));
  EXPECT_EQ(GetActiveWindow(), other.window());
}

// What the help viewer was asked to show.
std::vector<std::string> helpShown;

TEST_F(Win32PresenterTest, HelpIsTheFileBesideTheModuleOrWhereverTheViewerFindsIt) {
  const HMODULE viewer = LoadLibraryW(VARDO_HELP_VIEWER);
  ASSERT_NE(viewer, nullptr);
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const auto beside = std::filesystem::path(program).replace_filename("Quellis.chm");
  helpShown.clear();
  Win32Platform machine;
  machine.ShowHelp("Quellis.chm", "Create_.htm");
  std::ofstream(beside).put('x');
  machine.ShowHelp("Quellis.chm", "Entity_.htm");
  std::filesystem::remove(beside);
  EXPECT_THAT(helpShown, ElementsAre("Quellis.chm: Create_.htm", beside.string() + ": Entity_.htm"));
}

TEST_F(Win32PresenterTest, ScreenSizeIsThatOfTheOwnersScreenInTwips) {
  const HostWindow host;
  const TwipsSize twips = Win32Platform([&] { return host.window(); }).ScreenSize();
  const double perPixel = 1440.0 / ScreenOf(host.window()).dotsPerInch;
  EXPECT_EQ(twips.width, GetSystemMetrics(SM_CXSCREEN) * perPixel);
  EXPECT_EQ(twips.height, GetSystemMetrics(SM_CYSCREEN) * perPixel);
}

}  // namespace
}  // namespace vardo

// Called by the help viewer that the tests load.
extern "C" __declspec(dllexport) void VardoHelpShown(const char* file, const char* topic) {
  vardo::helpShown.push_back(std::string(file) + ": " + topic);
}
