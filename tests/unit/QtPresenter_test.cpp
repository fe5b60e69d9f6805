// Forms in real Qt windows, drawn off screen. The model driven directly is the measure: the same acts through the toolkit's
// events must leave the same traces.
#include "forms/qt/QtPresenter.h"

#include "TestPlatform.h"
#include "addin/host/HostError.h"
#include "forms/FormLayout.h"
#include "forms/Forms.h"
#include "forms/headless/HeadlessPresenter.h"
#include "forms/qt/QtPlatform.h"
#include "forms/qt/QtSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QDialog>
#include <QFile>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <QWindow>
#include <functional>
#include <memory>
#include <sstream>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class QtEnvironment : public testing::Environment {
 public:
  void SetUp() override { session_ = std::make_unique<QtSession>(1, argv_); }
  void TearDown() override { session_.reset(); }

 private:
  char name_[9] = "QtForms_";
  char* argv_[2] = {name_, nullptr};
  std::unique_ptr<QtSession> session_;
};

[[maybe_unused]] const auto* const kEnvironment = testing::AddGlobalTestEnvironment(new QtEnvironment);

std::vector<std::string> trace;

// A row dialog in small.
class SubForm : public Form {
 public:
  SubForm() : Form("SubForm", "Row") {
    lblText.SetCaption("&Text:");
    cmdOK.SetCaption("OK");
    cmdCancel.SetCaption("Cancel");
    cmdOK.Click = [this] {
      trace.push_back("row " + txtText.Text());
      Unload(*this);
    };
    cmdCancel.Click = [this] { Unload(*this); };
    SetDefaultButtons(cmdOK, cmdCancel);
    FormLayout(*this, 1500, 2400).Row(lblText, txtText).Buttons({&cmdOK, &cmdCancel});
    MoveTo(1500, 1500);
  }
  Label lblText{*this, "lblText"};
  TextBox txtText{*this, "txtText"};
  Button cmdOK{*this, "cmdOK"}, cmdCancel{*this, "cmdCancel"};
};

// One control of each kind and more, with handlers that leave a trace.
class TestForm : public Form {
 public:
  TestForm() : Form("TestForm", "Test") {
    lblName.SetCaption("&Name:");
    lblType.SetCaption("&Type:");
    Frame1.SetCaption("Time Between Arrivals");
    lblValue.SetCaption("&Value:");
    lblExpression.SetCaption("E&xpression:");
    lblUnits.SetCaption("&Units:");
    chkStatistics.SetCaption("&Report Statistics");
    lblRows.SetCaption("&Rows:");
    cmdAdd.SetCaption("&Add...");
    cmdFail.SetCaption("&Fail");
    cmdOK.SetCaption("OK");
    cmdCancel.SetCaption("Cancel");
    for (const char* item : {"Entity 1", "Entity 2", "entity 3"}) cboName.AddItem(item);
    for (const char* item : {"Random", "Constant", "Schedule"}) cboType.AddItem(item);
    for (const char* item : {"Seconds", "Minutes", "Hours", "Days"}) cboUnits.AddItem(item);
    for (const char* item : {"first", "second", "<End of list>"}) lstRows.AddItem(item);
    cboType.SetText("Random");
    cboUnits.SetText("fortnights");
    txtValue.SetText("1");
    txtExpression.SetVisible(false);
    lblExpression.SetVisible(false);

    for (Control* control : Controls()) {
      control->LostFocus = [control] { trace.push_back(control->name() + " LostFocus"); };
      control->Click = [control] { trace.push_back(control->name() + " Click"); };
      control->DblClick = [control] { trace.push_back(control->name() + " DblClick"); };
    }
    txtValue.LostFocus = [this] {
      trace.push_back("txtValue LostFocus");
      if (txtValue.Text().empty()) txtValue.SetText("1");
    };
    cboType.Click = [this] {
      trace.push_back("cboType Click");
      const bool scheduled = cboType.Text() == "Schedule";
      lblValue.SetVisible(!scheduled);
      txtValue.SetVisible(!scheduled);
      lblExpression.SetVisible(scheduled);
      txtExpression.SetVisible(scheduled);
    };
    chkStatistics.Click = [this] { Frame1.SetVisible(!chkStatistics.Checked()); };
    cmdAdd.Click = [this] {
      ShowModal(DefaultForm<SubForm>());
      lstRows.InsertItem(0, "added");
    };
    cmdFail.Click = [] { throw RuntimeError::Overflow(); };
    cmdOK.Click = [this] {
      trace.push_back("OK");
      if (txtValue.Text() == "bad") return txtValue.SetFocus();
      Hide(*this);
    };
    cmdCancel.Click = [this] { Hide(*this); };
    SetDefaultButtons(cmdOK, cmdCancel);

    FormLayout(*this, 1650, 2700)
        .Row(lblName, cboName)
        .Row(lblType, cboType)
        .BeginFrame(Frame1)
        .Row(lblValue, txtValue)
        .InPlace(lblExpression, txtExpression)
        .Row(lblUnits, cboUnits)
        .EndFrame()
        .Buttons({&cmdAdd, &cmdFail, &cmdOK, &cmdCancel});
    SetSize(5400, 5400);
    lineBreak.SetPlace({180, 2790, 5040, 30});
    chkStatistics.SetPlace({330, 2880, 3000, 255});
    lblRows.SetPlace({330, 3225, 1650, 255});
    lstRows.SetPlace({1980, 3225, 2700, 1200});
    double left = 330;
    for (Button* button : {&cmdAdd, &cmdFail, &cmdOK, &cmdCancel}) {
      button->SetPlace({left, 4680, 1110, 390});
      left += 1215;
    }
    MoveTo(600, 450);
  }

  Label lblName{*this, "lblName"};
  ComboBox cboName{*this, "cboName"};
  Label lblType{*this, "lblType"};
  ComboBox cboType{*this, "cboType", ComboBox::Style::PickOnly};
  Frame Frame1{*this, "Frame1"};
  Label lblValue{*this, "lblValue"};
  TextBox txtValue{*this, "txtValue"};
  Label lblExpression{*this, "lblExpression"};
  TextBox txtExpression{*this, "txtExpression"};
  Label lblUnits{*this, "lblUnits"};
  ComboBox cboUnits{*this, "cboUnits", ComboBox::Style::PickOnly};
  Line lineBreak{*this, "lineBreak"};
  CheckBox chkStatistics{*this, "chkStatistics"};
  Label lblRows{*this, "lblRows"};
  ListBox lstRows{*this, "lstRows"};
  Button cmdAdd{*this, "cmdAdd"}, cmdFail{*this, "cmdFail"}, cmdOK{*this, "cmdOK"}, cmdCancel{*this, "cmdCancel"};
};

std::string StateOf(const Control& control) {
  std::ostringstream state;
  state << control.name() << (control.IsVisible() ? "" : " hidden") << (control.Shown() ? "" : " unseen") << " '"
        << control.Caption() << "'";
  if (const auto* box = dynamic_cast<const TextControl*>(&control)) state << " text=" << box->Text();
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control))
    state << " index=" << combo->ListIndex() << " open=" << combo->DroppedDown();
  if (const auto* check = dynamic_cast<const CheckBox*>(&control)) state << " checked=" << check->Checked();
  if (const auto* list = dynamic_cast<const ListBox*>(&control)) {
    state << " index=" << list->ListIndex();
    for (const std::string& item : list->Items()) state << " [" << item << "]";
  }
  return state.str();
}

std::string StateOf(const Form& form) {
  std::string state = form.name() + " focus=" + (form.Focus() ? form.Focus()->name() : "none");
  for (const Control* control : form.Controls()) state += "\n  " + StateOf(*control);
  return state;
}

// --- Acts of a script, done to whatever form is on top.
struct Act {
  std::string what;
  std::function<void(FormDriver&)> run;
};

template <class C = Control>
C& Named(std::string_view name) {
  return dynamic_cast<C&>(*TopForm()->Find(name));
}

Act FocusOn(std::string name) {
  return {"focus " + name, [=](FormDriver& d) { d.Focus(Named(name)); }};
}
Act TypeIn(std::string name, std::string text) {
  return {"type " + name + " " + text, [=](FormDriver& d) { d.Type(Named<TextControl>(name), text); }};
}
Act PickIn(std::string name, int index) {
  return {"pick " + name + " " + std::to_string(index), [=](FormDriver& d) { d.Pick(Named(name), index); }};
}
Act CheckOn(std::string name, bool checked) {
  return {"check " + name, [=](FormDriver& d) { d.Check(Named<CheckBox>(name), checked); }};
}
Act ClickOn(std::string name) {
  return {"click " + name, [=](FormDriver& d) { d.Click(Named(name)); }};
}
Act DblClickOn(std::string name) {
  return {"dblclick " + name, [=](FormDriver& d) { d.DblClick(Named(name)); }};
}
Act Press(std::string key) {
  return {"key " + key, [=](FormDriver& d) { d.Key(*TopForm(), key); }};
}

class QtPresenterTest : public testing::Test {
 protected:
  ~QtPresenterTest() override {
    UnloadAllForms();
    trace.clear();
  }

  // Shows the test form with the presenter, does the acts, and returns what was seen after each.
  template <class Presenter>
  std::vector<std::string> Play(const std::vector<Act>& acts) {
    std::vector<std::string> seen;
    auto next = acts.begin();
    Presenter* driver = nullptr;
    Presenter presenter([&](Form& form) {
      while (form.IsShown() && next != acts.end()) {
        const Act& act = *next++;
        Do(act, *driver, seen);
      }
    });
    driver = &presenter;
    FormPresenter* const before = SetFormPresenter(&presenter);
    ShowModal(DefaultForm<TestForm>());
    seen.push_back("end: " + Raised() + "\n" + StateOf(DefaultForm<TestForm>()));
    SetFormPresenter(before);
    UnloadAllForms();
    return seen;
  }

  static std::string Raised() {
    std::string signals;
    for (const std::string& raised : std::exchange(trace, {})) signals += raised + "; ";
    return signals;
  }

  void Do(const Act& act, FormDriver& driver, std::vector<std::string>& seen) {
    std::string outcome;
    try {
      act.run(driver);
    } catch (const AutomationError& error) {
      outcome = "error " + std::to_string(error.number()) + " " + error.description();
    }
    seen.push_back(act.what + ": " + outcome + Raised() + "\n" + (TopForm() ? StateOf(*TopForm()) : "no form"));
  }

  // Shows the form and runs the body on it; the window is that of the form.
  template <class F>
  void WithWindow(const std::function<void(F&, QDialog&, QtPresenter&)>& body) {
    QtPresenter* driver = nullptr;
    QtPresenter presenter([&](Form& form) {
      auto* window = dynamic_cast<QDialog*>(QApplication::activeWindow());
      ASSERT_NE(window, nullptr);
      body(dynamic_cast<F&>(form), *window, *driver);
    });
    driver = &presenter;
    FormPresenter* const before = SetFormPresenter(&presenter);
    ShowModal(DefaultForm<F>());
    SetFormPresenter(before);
    UnloadAllForms();
  }

  TestPlatform platform;
};

template <class W>
W& Widget(QDialog& window, const char* name) {
  return *window.findChild<W*>(name);
}

void TypeKeys(QDialog& window, std::string_view text) {
  for (const char key : text) QTest::keyClick(window.windowHandle(), key);
}

struct Script {
  const char* why;
  std::vector<Act> acts;
};

std::ostream& operator<<(std::ostream& out, const Script& script) { return out << script.why; }

class SameAsTheModel : public QtPresenterTest, public testing::WithParamInterface<Script> {};

TEST_P(SameAsTheModel, WhateverAPersonDoes) {
  const auto model = Play<HeadlessPresenter>(GetParam().acts);
  const auto qt = Play<QtPresenter>(GetParam().acts);
  ASSERT_EQ(qt.size(), model.size());
  for (size_t act = 0; act < qt.size(); ++act) ASSERT_EQ(qt[act], model[act]);
}

INSTANTIATE_TEST_SUITE_P(
    QtPresenter, SameAsTheModel,
    testing::Values(
        Script{"focus and its loss",
               {FocusOn("txtValue"), FocusOn("cboName"), FocusOn("cboName"), FocusOn("lstRows"), FocusOn("cmdAdd")}},
        Script{"the focus does not go to what is hidden or takes none",
               {FocusOn("txtExpression"), FocusOn("lblName"), FocusOn("Frame1"), ClickOn("lineBreak"),
                TypeIn("txtExpression", "x")}},
        Script{"typing, and leaving an emptied box",
               {TypeIn("txtValue", "EXPO( 5 )"), TypeIn("txtValue", ""), FocusOn("cboName"), TypeIn("txtValue", " ;\"")}},
        Script{"any character can be typed",
               {TypeIn("txtValue", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), TypeIn("txtValue", "a\tb\nc"),
                TypeIn("cboName", "\xE4\xB8\xAD")}},
        Script{"a typed text that is an item chooses it", {TypeIn("cboName", "Entity 2"), TypeIn("cboName", "Entity X")}},
        Script{"a typed text that differs from an item in case chooses nothing",
               {TypeIn("cboName", "ENTITY 3"), FocusOn("txtValue"), FocusOn("cboName"), TypeIn("cboName", "")}},
        Script{"picking in combos",
               {PickIn("cboName", 2), PickIn("cboName", 2), PickIn("cboType", 1), PickIn("cboUnits", 3), PickIn("cboUnits", 0)}},
        Script{"picking what is not there",
               {PickIn("cboName", 3), PickIn("cboName", -1), PickIn("txtValue", 0), PickIn("cmdOK", 0)}},
        Script{"only items can be typed into a pick-only combo",
               {TypeIn("cboUnits", "Days"), TypeIn("cboUnits", "days"), TypeIn("cboUnits", "")}},
        Script{"a handler that hides and shows",
               {PickIn("cboType", 2), TypeIn("txtExpression", "5"), PickIn("cboType", 0), FocusOn("txtExpression")}},
        Script{"hiding the focused box moves the focus",
               {FocusOn("txtValue"), Press("Alt+T"), Press("End"), Press("Tab"), Press("Shift+Tab")}},
        Script{"a frame hides what is in it",
               {CheckOn("chkStatistics", true), FocusOn("txtValue"), CheckOn("chkStatistics", true),
                CheckOn("chkStatistics", false), FocusOn("txtValue")}},
        Script{"a check box", {ClickOn("chkStatistics"), ClickOn("chkStatistics"), Press("Space"), Press("Alt+R")}},
        Script{"list boxes",
               {PickIn("lstRows", 1), PickIn("lstRows", 1), DblClickOn("lstRows"), Press("Down"), Press("Down"), Press("Home"),
                Press("End"), Press("Up"), PickIn("lstRows", 7)}},
        Script{"a double click with no line selected", {DblClickOn("lstRows"), FocusOn("cboName"), DblClickOn("lstRows")}},
        Script{"clicks on boxes only move the focus",
               {ClickOn("cboUnits"), ClickOn("cboName"), ClickOn("txtValue"), ClickOn("lstRows"), DblClickOn("txtValue")}},
        Script{"Tab goes round",
               {Press("Tab"), Press("Tab"), Press("Tab"), Press("Tab"), Press("Tab"), Press("Tab"), Press("Tab"), Press("Tab"),
                Press("Tab"), Press("Tab"), Press("Shift+Tab"), Press("Shift+Tab")}},
        Script{"access keys, twice given ones in turn",
               {Press("Alt+V"), Press("Alt+n"), Press("Alt+R"), Press("Alt+R"), Press("Alt+Q"), Press("Alt+U")}},
        Script{"stepping through combos",
               {FocusOn("cboUnits"), Press("Down"), Press("Down"), Press("Up"), Press("End"), Press("Home"), Press("Space")}},
        Script{"keys of a typed combo",
               {FocusOn("cboName"), Press("Down"), Press("End"), Press("Home"), Press("Down"), Press("Space"), Press("Up")}},
        Script{"an open list",
               {FocusOn("cboUnits"), Press("F4"), Press("Down"), Press("Down"), Press("Enter"), Press("Alt+Down"), Press("Up"),
                Press("Escape"), Press("F4"), Press("F4"), Press("F4"), PickIn("cboUnits", 1)}},
        Script{"an open list closes when the focus goes",
               {FocusOn("cboUnits"), Press("F4"), FocusOn("txtValue"), FocusOn("cboName"), Press("F4"), Press("Tab")}},
        Script{"an open list in a frame that is hidden", {FocusOn("cboUnits"), Press("F4"), Press("Alt+R")}},
        Script{"Enter presses OK", {TypeIn("txtValue", "7"), Press("Enter")}},
        Script{"a refused OK leads to the box",
               {TypeIn("txtValue", "bad"), Press("Enter"), TypeIn("txtValue", "good"), ClickOn("cmdOK")}},
        Script{"Enter presses the focused button", {FocusOn("cmdFail"), Press("Enter"), Press("Space")}},
        Script{"Escape cancels", {TypeIn("txtValue", ""), Press("Escape")}},
        Script{"a failing handler leaves the form open", {ClickOn("cmdFail"), Press("Alt+F"), FocusOn("cboName")}},
        Script{"a form over the form",
               {FocusOn("txtValue"), ClickOn("cmdAdd"), TypeIn("txtText", "abc"), Press("Enter"), Press("Alt+N"), Press("Alt+A"),
                Press("Alt+T"), Press("Escape"), Press("Tab"), ClickOn("cmdCancel")}},
        Script{"a key that is none", {Press("Hyper"), Press("Alt+"), Press("Alt+ab"), Press("")}},
        Script{"a script that ends early", {FocusOn("cmdFail")}}));

TEST_F(QtPresenterTest, WindowIsWhereTheFormSaysWithItsControlsInPlace) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    EXPECT_EQ(window.windowTitle(), "Test");
    EXPECT_EQ(window.size(), QSize(360, 360));
    EXPECT_EQ(window.minimumSize(), window.maximumSize());
    EXPECT_EQ(window.pos(), QPoint(40, 30));
    EXPECT_TRUE(window.isModal());
    for (const Control* control : form.Controls()) {
      const QWidget& widget = Widget<QWidget>(window, control->name().c_str());
      const QPoint at = widget.mapTo(&window, QPoint());
      EXPECT_NEAR(at.x() * 15, control->Place().left, 8) << control->name();
      EXPECT_NEAR(at.y() * 15, control->Place().top, 8) << control->name();
      EXPECT_NEAR(widget.width() * 15, control->Place().width, 15) << control->name();
      EXPECT_EQ(widget.isVisible(), control->Shown()) << control->name();
    }
    EXPECT_EQ(Widget<QWidget>(window, "txtValue").parent(), &Widget<QGroupBox>(window, "Frame1"));
  });
}

TEST_F(QtPresenterTest, ScreenReadersFindEachBoxByItsLabel) {
  WithWindow<TestForm>([](TestForm&, QDialog& window, QtPresenter&) {
    const struct {
      const char* control;
      const char* name;
    } cases[] = {
        {"cboName", "Name"}, {"cboType", "Type"}, {"txtValue", "Value"}, {"txtExpression", "Expression"}, {"lstRows", "Rows"}};
    for (const auto& c : cases) EXPECT_EQ(Widget<QWidget>(window, c.control).accessibleName(), c.name);
    EXPECT_EQ(Widget<QLabel>(window, "lblValue").buddy(), &Widget<QWidget>(window, "txtValue"));
    const auto* check = QAccessible::queryAccessibleInterface(&Widget<QWidget>(window, "chkStatistics"));
    EXPECT_EQ(check->text(QAccessible::Name), "Report Statistics");
    const auto* box = QAccessible::queryAccessibleInterface(&Widget<QWidget>(window, "txtValue"));
    EXPECT_TRUE(box->state().focusable);
  });
}

TEST_F(QtPresenterTest, WhatTheProgramChangesIsSeen) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
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
    EXPECT_EQ(Widget<QLineEdit>(window, "txtValue").text(), "42");
    EXPECT_EQ(Widget<QComboBox>(window, "cboName").currentText(), "Entity 2");
    EXPECT_EQ(Widget<QComboBox>(window, "cboName").count(), 4);
    EXPECT_EQ(Widget<QComboBox>(window, "cboType").currentText(), "Constant");
    EXPECT_EQ(Widget<QCheckBox>(window, "chkStatistics").text(), "&Other");
    EXPECT_EQ(Widget<QListWidget>(window, "lstRows").count(), 2);
    EXPECT_EQ(Widget<QListWidget>(window, "lstRows").item(0)->text(), "changed");
    EXPECT_EQ(Widget<QListWidget>(window, "lstRows").currentRow(), 1);
    EXPECT_EQ(Widget<QLabel>(window, "lblValue").text(), "&Size:");
    EXPECT_EQ(Widget<QGroupBox>(window, "Frame1").title(), "Times");
    form.chkStatistics.SetChecked(true);
    EXPECT_TRUE(Widget<QCheckBox>(window, "chkStatistics").isChecked());
    EXPECT_FALSE(Widget<QWidget>(window, "txtValue").isVisible());
    form.lstRows.MoveFocusHere();
    EXPECT_EQ(QApplication::focusWidget(), &Widget<QWidget>(window, "lstRows"));
  });
}

TEST_F(QtPresenterTest, PickOnlyComboShowsForeignTextInTheOrdinaryColour) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter& driver) {
    auto& units = Widget<QComboBox>(window, "cboUnits");
    EXPECT_FALSE(units.isEditable());
    EXPECT_EQ(units.currentIndex(), -1);
    EXPECT_EQ(units.placeholderText(), "fortnights");
    EXPECT_EQ(units.palette().placeholderText(), units.palette().buttonText());
    driver.Pick(form.cboUnits, 2);
    EXPECT_EQ(units.currentText(), "Hours");
    form.cboUnits.SetText("weeks");
    EXPECT_EQ(units.currentIndex(), -1);
    EXPECT_EQ(units.placeholderText(), "weeks");
  });
}

TEST_F(QtPresenterTest, KeysOfTheKeyboardReachTheForm) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
      QTest::keyClick(window.windowHandle(), key, modifiers);
      return form.Focus() ? form.Focus()->name() : "none";
    };
    EXPECT_EQ(press(Qt::Key_Tab), "cboType");
    EXPECT_EQ(press(Qt::Key_Backtab, Qt::ShiftModifier), "cboName");
    EXPECT_EQ(press(Qt::Key_V, Qt::AltModifier), "txtValue");
    TypeKeys(window, "5 a");
    EXPECT_EQ(form.txtValue.Text(), "5 a") << "what was there was selected";
    press(Qt::Key_Home);
    TypeKeys(window, "x");
    EXPECT_EQ(form.txtValue.Text(), "x5 a") << "the caret's keys are the box's own";
    EXPECT_EQ(press(Qt::Key_U, Qt::AltModifier), "cboUnits");
    press(Qt::Key_Down);
    EXPECT_EQ(form.cboUnits.Text(), "Seconds");
    TypeKeys(window, "h");
    EXPECT_EQ(form.cboUnits.Text(), "Hours") << "letters choose";
    EXPECT_EQ(press(Qt::Key_R, Qt::AltModifier), "chkStatistics") << "of two with this key the next one";
    EXPECT_TRUE(form.chkStatistics.Checked());
    EXPECT_EQ(press(Qt::Key_R, Qt::AltModifier), "lstRows");
    trace.clear();
    EXPECT_TRUE(form.IsShown());
    press(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_FALSE(form.IsShown());
    EXPECT_THAT(trace, testing::Contains("OK"));
  });
}

TEST_F(QtPresenterTest, EscapeAndTheCloseBoxCancel) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    QTest::keyClick(window.windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(form.IsShown());
  });
  EXPECT_THAT(std::exchange(trace, {}), ElementsAre("cboName LostFocus"));
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    window.close();
    EXPECT_FALSE(form.IsShown());
  });
  EXPECT_THAT(trace, ElementsAre("cboName LostFocus"));
}

TEST_F(QtPresenterTest, TypingInTheMiddleKeepsTheCaret) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter& driver) {
    driver.Type(form.cboName, "Entity 2");
    QLineEdit& edit = *Widget<QComboBox>(window, "cboName").lineEdit();
    edit.setCursorPosition(3);
    TypeKeys(window, "ab");
    EXPECT_EQ(form.cboName.Text(), "Entabity 2");
    EXPECT_EQ(form.cboName.ListIndex(), -1);
    EXPECT_EQ(edit.cursorPosition(), 5);
  });
}

TEST_F(QtPresenterTest, MouseMovesTheFocusAndChoosesItems) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    const auto click = [&](QWidget& widget) {
      QTest::mouseClick(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, widget.mapTo(&window, widget.rect().center()));
    };
    click(Widget<QWidget>(window, "txtValue"));
    EXPECT_THAT(std::exchange(trace, {}), ElementsAre("cboName LostFocus"));
    EXPECT_EQ(form.Focus(), &form.txtValue);

    auto& list = Widget<QListWidget>(window, "lstRows");
    const QPoint line = list.viewport()->mapTo(&window, list.visualItemRect(list.item(1)).center());
    QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, line);
    EXPECT_THAT(std::exchange(trace, {}), ElementsAre("txtValue LostFocus", "lstRows Click", "lstRows DblClick"));
    EXPECT_EQ(form.lstRows.ListIndex(), 1);

    auto& units = Widget<QComboBox>(window, "cboUnits");
    click(units);
    EXPECT_TRUE(form.cboUnits.DroppedDown());
    EXPECT_TRUE(units.view()->isVisible());
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    QWidget& items = *units.view()->viewport();
    const QPoint item = units.view()->visualRect(units.model()->index(1, 0)).center();
    QTest::mouseMove(&items, item);
    QTest::mouseClick(&items, Qt::LeftButton, Qt::NoModifier, item);
    EXPECT_FALSE(form.cboUnits.DroppedDown());
    EXPECT_EQ(form.cboUnits.Text(), "Minutes");
    EXPECT_THAT(std::exchange(trace, {}), ElementsAre("lstRows LostFocus", "cboUnits Click"));
  });
}

TEST_F(QtPresenterTest, ScreenReadersMoveTheFocusAsAPersonDoes) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    QAccessible::queryAccessibleInterface(&Widget<QWidget>(window, "txtValue"))
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(form.Focus(), &form.txtValue);
    EXPECT_THAT(trace, ElementsAre("cboName LostFocus"));
  });
}

TEST_F(QtPresenterTest, LosingTheWindowRaisesNothing) {
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter&) {
    form.txtValue.SetFocus();
    trace.clear();
    QApplication::setActiveWindow(nullptr);
    QApplication::setActiveWindow(&window);
    EXPECT_EQ(form.Focus(), &form.txtValue);
    EXPECT_EQ(QApplication::focusWidget(), &Widget<QWidget>(window, "txtValue"));
    EXPECT_THAT(trace, IsEmpty());
  });
}

TEST_F(QtPresenterTest, AccessKeysWorkAgainAfterTheFormAboveHasClosed) {
  QtPresenter* driver = nullptr;
  std::vector<std::string> shown;
  QtPresenter presenter([&](Form& form) {
    shown.push_back(form.name());
    QWindow* const window = QApplication::activeWindow()->windowHandle();
    if (form.name() == "SubForm") {
      EXPECT_EQ(QApplication::activeModalWidget(), QApplication::activeWindow());
      return QTest::keyClick(window, Qt::Key_Escape);
    }
    driver->Click(*form.Find("cmdAdd"));
    EXPECT_EQ(QApplication::activeWindow()->windowHandle(), window);
    QTest::keyClick(window, Qt::Key_V, Qt::AltModifier);
    EXPECT_EQ(form.Focus()->name(), "txtValue");
  });
  driver = &presenter;
  SetFormPresenter(&presenter);
  ShowModal(DefaultForm<TestForm>());
  SetFormPresenter(nullptr);
  EXPECT_THAT(shown, ElementsAre("TestForm", "SubForm"));
}

TEST_F(QtPresenterTest, WithoutAPumpAPersonIsServed) {
  QtPresenter presenter;
  SetFormPresenter(&presenter);
  QTimer::singleShot(0, [] { QTest::keyClick(QApplication::activeWindow()->windowHandle(), Qt::Key_Return); });
  ShowModal(DefaultForm<TestForm>());
  SetFormPresenter(nullptr);
  EXPECT_THAT(trace, ElementsAre("cboName LostFocus", "OK"));
}

TEST_F(QtPresenterTest, FormsThatAreNotShownCannotBeDriven) {
  QtPresenter presenter;
  TestForm form;
  EXPECT_THROW(presenter.Focus(form.txtValue), RuntimeError);
  EXPECT_THROW(presenter.Key(form, "Tab"), RuntimeError);
  EXPECT_THROW(presenter.Screenshot(form, "x.png"), RuntimeError);
}

TEST_F(QtPresenterTest, PicturesAreWritten) {
  QTemporaryDir folder;
  WithWindow<TestForm>([&](TestForm& form, QDialog&, QtPresenter& driver) {
    const QString file = folder.filePath("form.png");
    driver.Screenshot(form, file.toStdString());
    EXPECT_EQ(QImage(file).size(), QSize(360, 360) * qApp->devicePixelRatio());
    EXPECT_THROW(driver.Screenshot(form, folder.filePath("no/such.png").toStdString()), RuntimeError);
    const QString keep = qEnvironmentVariable("VARDO_PICTURE");
    if (!keep.isEmpty()) QFile::copy(file, keep);
  });
}

TEST_F(QtPresenterTest, MessageBoxesAreReal) {
  QtPlatform qt(ThePlatform());
  const struct {
    int style;
    QMessageBox::Icon icon;
  } cases[] = {{kStyleCritical, QMessageBox::Critical}, {kStyleExclamation, QMessageBox::Warning}};
  for (const auto& c : cases) {
    bool seen = false;
    QTimer::singleShot(0, [&] {
      auto* box = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      seen = true;
      EXPECT_EQ(box->icon(), c.icon);
      EXPECT_EQ(box->text(), "<b> is no number & no name");
      EXPECT_EQ(box->windowTitle(), "Quellis");
      EXPECT_EQ(box->textFormat(), Qt::PlainText);
      box->button(QMessageBox::Ok)->click();
    });
    qt.ShowMessage("<b> is no number & no name", "Quellis", c.style);
    EXPECT_TRUE(seen);
  }
}

TEST_F(QtPresenterTest, MessageBoxesTakeNoFocusFromTheForm) {
  QtPlatform qt(ThePlatform());
  Platform* const before = SetPlatform(&qt);
  WithWindow<TestForm>([](TestForm& form, QDialog& window, QtPresenter& driver) {
    QTimer::singleShot(0, [] { QTest::keyClick(QApplication::activeModalWidget()->windowHandle(), Qt::Key_Return); });
    driver.Click(form.cmdFail);
    EXPECT_EQ(QApplication::activeWindow(), &window);
    EXPECT_EQ(QApplication::focusWidget(), &Widget<QWidget>(window, "cmdFail"));
    EXPECT_THAT(trace, ElementsAre("cboName LostFocus"));
  });
  SetPlatform(before);
}

TEST_F(QtPresenterTest, ScreenSizeIsThePrimaryScreensInTwips) {
  const QSize pixels = QApplication::primaryScreen()->availableGeometry().size();
  const TwipsSize twips = QtPlatform(ThePlatform()).ScreenSize();
  EXPECT_EQ(twips.width, pixels.width() * 15);
  EXPECT_EQ(twips.height, pixels.height() * 15);
}

TEST_F(QtPresenterTest, HelpOpensTheTopicsPageAndIsQuietWhenThereIsNone) {
  QTemporaryDir folder;
  QFile page(folder.filePath("Create_.htm"));
  ASSERT_TRUE(page.open(QIODevice::WriteOnly));
  page.close();
  QTextBrowser viewer;
  QDesktopServices::setUrlHandler("file", &viewer, "setSource");
  QtPlatform qt(ThePlatform(), folder.path());
  qt.ShowHelp(kHelpFile, "Missing_.htm");
  EXPECT_TRUE(viewer.source().isEmpty());
  qt.ShowHelp(kHelpFile, "Create_.htm");
  EXPECT_EQ(viewer.source(), QUrl::fromLocalFile(page.fileName()));
  QDesktopServices::unsetUrlHandler("file");
}

}  // namespace
}  // namespace vardo
