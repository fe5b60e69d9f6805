// What every toolkit that shows forms has to keep to: a form with a control of each kind, acts of a person, and scripts of acts
// that must leave the same traces through the toolkit's own events as they do on the model.
#pragma once

#include "TestPlatform.h"
#include "base/Errors.h"
#include "forms/FormLayout.h"
#include "forms/Forms.h"
#include "forms/headless/HeadlessPresenter.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace vardo {

inline std::vector<std::string> trace;

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
      if (txtValue.Text() == "hide")
        for (Control* control :
             std::initializer_list<Control*>{&cboName, &cboType, &cboUnits, &chkStatistics, &lstRows, &cmdFail})
          control->SetVisible(false);
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

inline std::string StateOf(const Control& control) {
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

inline std::string StateOf(const Form& form) {
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

inline Act FocusOn(std::string name) {
  return {"focus " + name, [=](FormDriver& d) { d.Focus(Named(name)); }};
}
inline Act TypeIn(std::string name, std::string text) {
  return {"type " + name + " " + text, [=](FormDriver& d) { d.Type(Named<TextControl>(name), text); }};
}
inline Act PickIn(std::string name, int index) {
  return {"pick " + name + " " + std::to_string(index), [=](FormDriver& d) { d.Pick(Named(name), index); }};
}
inline Act CheckOn(std::string name, bool checked) {
  return {"check " + name, [=](FormDriver& d) { d.Check(Named<CheckBox>(name), checked); }};
}
inline Act ClickOn(std::string name) {
  return {"click " + name, [=](FormDriver& d) { d.Click(Named(name)); }};
}
inline Act DblClickOn(std::string name) {
  return {"dblclick " + name, [=](FormDriver& d) { d.DblClick(Named(name)); }};
}
inline Act Press(std::string key) {
  return {"key " + key, [=](FormDriver& d) { d.Key(*TopForm(), key); }};
}

class PresenterTest : public testing::Test {
 protected:
  ~PresenterTest() override {
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

  TestPlatform platform;
};

struct Script {
  const char* why;
  std::vector<Act> acts;
};

inline std::ostream& operator<<(std::ostream& out, const Script& script) { return out << script.why; }

inline const std::vector<Script> kScripts = {
    Script{"focus and its loss",
           {FocusOn("txtValue"), FocusOn("cboName"), FocusOn("cboName"), FocusOn("lstRows"), FocusOn("cmdAdd")}},
    Script{"the focus does not go to what is hidden or takes none",
           {FocusOn("txtExpression"), FocusOn("lblName"), FocusOn("Frame1"), ClickOn("lineBreak"), TypeIn("txtExpression", "x")}},
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
    Script{"picking what is not there", {PickIn("cboName", 3), PickIn("cboName", -1), PickIn("txtValue", 0), PickIn("cmdOK", 0)}},
    Script{"only items can be typed into a pick-only combo",
           {TypeIn("cboUnits", "Days"), TypeIn("cboUnits", "days"), TypeIn("cboUnits", "")}},
    Script{"a handler that hides and shows",
           {PickIn("cboType", 2), TypeIn("txtExpression", "5"), PickIn("cboType", 0), FocusOn("txtExpression")}},
    Script{"hiding the focused box moves the focus",
           {FocusOn("txtValue"), Press("Alt+T"), Press("End"), Press("Tab"), Press("Shift+Tab")}},
    Script{"a frame hides what is in it",
           {CheckOn("chkStatistics", true), FocusOn("txtValue"), CheckOn("chkStatistics", true), CheckOn("chkStatistics", false),
            FocusOn("txtValue")}},
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
    Script{"so does one that was clicked", {TypeIn("txtValue", "bad"), ClickOn("cmdOK"), Press("Tab")}},
    Script{"Enter presses the focused button", {FocusOn("cmdFail"), Press("Enter"), Press("Space")}},
    Script{"Escape cancels", {TypeIn("txtValue", ""), Press("Escape")}},
    Script{"a failing handler leaves the form open", {ClickOn("cmdFail"), Press("Alt+F"), FocusOn("cboName")}},
    Script{"a form over the form",
           {FocusOn("txtValue"), ClickOn("cmdAdd"), TypeIn("txtText", "abc"), Press("Enter"), Press("Alt+N"), Press("Alt+A"),
            Press("Alt+T"), Press("Escape"), Press("Tab"), ClickOn("cmdCancel")}},
    Script{"a letter of several presses and ticks nothing",
           {FocusOn("cboName"), Press("Alt+R"), Press("Alt+R"), Press("Alt+R"), CheckOn("chkStatistics", true), Press("Alt+R")}},
    Script{"a list left with Escape keeps its old item",
           {FocusOn("cboUnits"), Press("F4"), Press("Down"), Press("Down"), Press("Escape"), Press("F4"), Press("End"),
            Press("Enter"), FocusOn("cboName"), Press("F4"), Press("Down"), Press("Down"), Press("Escape")}},
    Script{
        "an open list is typed over",
        {TypeIn("cboName", "mine"), Press("F4"), Press("Down"), TypeIn("cboName", "mine too"), Press("Down"), Press("Escape")}},
    Script{"pages of lists",
           {FocusOn("cboUnits"), Press("PageDown"), Press("PageUp"), Press("F4"), Press("PageDown"), Press("Enter"),
            FocusOn("cboName"), Press("PageDown"), Press("PageUp"), PickIn("lstRows", 0), Press("PageDown"), Press("PageDown"),
            Press("PageUp"), FocusOn("txtValue"), Press("PageDown")}},
    Script{"what leaving a box hides takes no click", {TypeIn("txtValue", "hide"), ClickOn("chkStatistics"), Press("Tab")}},
    Script{"nor a tick", {TypeIn("txtValue", "hide"), CheckOn("chkStatistics", true), Press("Space")}},
    Script{"nor a button's click", {TypeIn("txtValue", "hide"), ClickOn("cmdFail"), Press("Shift+Tab")}},
    Script{"nor its letter", {TypeIn("txtValue", "hide"), Press("Alt+F")}},
    Script{"nor text", {TypeIn("txtValue", "hide"), TypeIn("cboName", "Entity 2")}},
    Script{"nor an item typed", {TypeIn("txtValue", "hide"), TypeIn("cboUnits", "Days")}},
    Script{"nor an item picked", {TypeIn("txtValue", "hide"), PickIn("cboName", 1)}},
    Script{"nor one of a list to choose from alone", {TypeIn("txtValue", "hide"), PickIn("cboType", 1)}},
    Script{"nor a line", {TypeIn("txtValue", "hide"), PickIn("lstRows", 1)}},
    Script{"nor a double click", {TypeIn("txtValue", "hide"), DblClickOn("lstRows")}},
    Script{"nor the focus", {TypeIn("txtValue", "hide"), FocusOn("lstRows")}},
    Script{"Tab goes on past what leaving a box hides", {TypeIn("txtValue", "hide"), Press("Tab"), Press("Tab")}},
    Script{"so does Shift+Tab", {TypeIn("txtValue", "hide"), Press("Shift+Tab"), Press("Shift+Tab")}},
    Script{"a hidden refused box gets the focus when it is shown",
           {TypeIn("txtValue", "bad"), PickIn("cboType", 2), Press("Enter"), FocusOn("lstRows"), PickIn("cboType", 0)}},
    Script{"not when another box was edited meanwhile",
           {TypeIn("txtValue", "bad"), PickIn("cboType", 2), Press("Enter"), TypeIn("txtExpression", "x"), PickIn("cboType", 0)}},
    Script{"a key that is none", {Press("Hyper"), Press("Alt+"), Press("Alt+ab"), Press("")}},
    Script{"a script that ends early", {FocusOn("cmdFail")}}};

}  // namespace vardo
