#include "forms/Form.h"

#include "TestPlatform.h"
#include "base/Errors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Two boxes, a frame with two more, buttons; every signal is noted.
class OrderForm : public Form {
 public:
  OrderForm() : Form("frmOrder", "Order") {
    const struct {
      Control& control;
      std::string_view caption;
    } captions[] = {{lblName, "&Name:"}, {lblKind, "&Kind:"},   {lblSize, "&Size"},        {chkUrgent, "&Urgent"},
                    {cmdOK, "OK"},       {cmdCancel, "Cancel"}, {cmdNote, "&Note && more"}};
    for (const auto& c : captions) c.control.SetCaption(c.caption);
    txtSize.SetParent(&frame);
    lblSize.SetParent(&frame);
    for (const char* item : {"One", "Two", "Three"}) {
      cboKind.AddItem(item);
      cboName.AddItem(item);
      lstRows.AddItem(item);
    }
    SetDefaultButtons(cmdOK, cmdCancel);
    for (Control* control : Controls()) {
      control->LostFocus = [this, control] { log.push_back("left " + control->name()); };
      control->Click = [this, control] { log.push_back("click " + control->name()); };
      control->DblClick = [this, control] { log.push_back("dblclick " + control->name()); };
    }
  }
  void Show() {
    SetShown(true);
    FocusFirst();
  }
  std::vector<std::string> TakeLog() { return std::exchange(log, {}); }
  std::string FocusName() const { return Focus() ? Focus()->name() : ""; }

  Label lblName{*this, "lblName"};
  ComboBox cboName{*this, "cboName"};
  Label lblKind{*this, "lblKind"};
  ComboBox cboKind{*this, "cboKind", ComboBox::Style::PickOnly};
  Frame frame{*this, "Frame1"};
  Label lblSize{*this, "lblSize"};
  TextBox txtSize{*this, "txtSize"};
  CheckBox chkUrgent{*this, "chkUrgent"};
  ListBox lstRows{*this, "lstRows"};
  Button cmdOK{*this, "cmdOK"};
  Button cmdCancel{*this, "cmdCancel"};
  Button cmdNote{*this, "cmdNote"};
  std::vector<std::string> log;
};

class FormTest : public testing::Test {
 protected:
  FormTest() { form.Show(); }
  // A person could not do it, and nothing changed.
  void ExpectRefused(const std::function<void()>& act) {
    const std::string focus = form.FocusName();
    try {
      act();
      ADD_FAILURE() << "not refused";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 5);
    }
    EXPECT_EQ(form.FocusName(), focus);
    EXPECT_THAT(form.TakeLog(), IsEmpty());
  }
  TestPlatform platform;
  OrderForm form;
};

TEST_F(FormTest, TheFirstBoxHasTheFocusAtFirst) {
  EXPECT_EQ(form.FocusName(), "cboName");
  EXPECT_THAT(form.TakeLog(), IsEmpty());
}

TEST_F(FormTest, LostFocusIsRaisedWhenAnotherControlGetsTheFocus) {
  form.UserFocus(form.txtSize);
  EXPECT_THAT(form.TakeLog(), ElementsAre("left cboName"));
  form.UserFocus(form.txtSize);
  EXPECT_THAT(form.TakeLog(), IsEmpty()) << "it has the focus already";
  form.cmdNote.MoveFocusHere();
  EXPECT_THAT(form.TakeLog(), ElementsAre("left txtSize")) << "by the program too";
  form.UserClick(form.cmdOK);
  EXPECT_THAT(form.TakeLog(), ElementsAre("left cmdNote", "click cmdOK")) << "before the click";
}

TEST_F(FormTest, HidingTheFocusedControlMovesTheFocusWithoutLostFocus) {
  form.cboName.SetVisible(false);
  EXPECT_EQ(form.FocusName(), "cboKind");
  form.UserFocus(form.txtSize);
  form.TakeLog();
  form.frame.SetVisible(false);
  EXPECT_EQ(form.FocusName(), "chkUrgent") << "hidden with its frame";
  EXPECT_THAT(form.TakeLog(), IsEmpty());
  for (Control* control : form.Controls()) control->SetVisible(false);
  EXPECT_EQ(form.Focus(), nullptr);
  form.UserKey("Tab");
  EXPECT_EQ(form.Focus(), nullptr);
  form.txtSize.SetVisible(true);
  form.frame.SetVisible(true);
  form.UserKey("Tab");
  EXPECT_EQ(form.FocusName(), "txtSize");
}

TEST_F(FormTest, AHiddenControlRemembersThatItIsToHaveTheFocus) {
  form.txtSize.SetVisible(false);
  form.txtSize.SetFocus();
  EXPECT_EQ(form.FocusName(), "cboName");
  form.txtSize.SetVisible(true);
  EXPECT_EQ(form.FocusName(), "txtSize");

  const struct {
    std::function<void()> act;
    std::string_view focus;
    const char* why;
  } cases[] = {
      {[&] { form.UserFocus(form.lstRows); }, "txtSize", "a person only looks elsewhere"},
      {[&] { form.UserKey("Tab"); }, "txtSize", "by keys too"},
      {[&] { form.UserPick(form.cboKind, 1); }, "txtSize", "a choice may be what shows the box"},
      {[&] { form.UserCheck(form.chkUrgent, true); }, "txtSize", "so may a tick"},
      {[&] { form.UserType(form.cboName, "mine"); }, "cboName", "another box is edited"},
      {[&] { form.UserPick(form.cboName, 1); }, "cboName", "as by an item in place of typing"},
      {[&] { form.UserKey("Down"); }, "cboName", "also by keys"},
      {[&] { form.UserClick(form.cmdOK); }, "cmdOK", "OK is pressed again"},
      {[&] { form.UserKey("Enter"); }, "cmdOK", "or by its key"},
      {[&] { form.lstRows.MoveFocusHere(); }, "lstRows", "the program wants another one to have it"},
  };
  for (const auto& c : cases) {
    form.UserFocus(form.cboName);
    form.txtSize.SetVisible(false);
    form.txtSize.SetFocus();
    c.act();
    form.txtSize.SetVisible(true);
    EXPECT_EQ(form.FocusName(), c.focus) << c.why;
  }
}

TEST_F(FormTest, WhatAnEditShowsGetsTheFocusItAskedFor) {
  form.txtSize.SetVisible(false);
  form.cboName.Click = [&] { form.txtSize.SetVisible(true); };
  form.txtSize.SetFocus();
  form.UserType(form.cboName, "Two");
  EXPECT_EQ(form.FocusName(), "txtSize");
}

TEST_F(FormTest, TabGoesToWhatComesInTheNextBoxesPlace) {
  form.cboKind.SetVisible(false);
  form.cboName.LostFocus = [&] {
    form.cboKind.SetVisible(true);
    form.txtSize.SetVisible(false);
  };
  form.UserKey("Tab");
  EXPECT_EQ(form.FocusName(), "cboKind");
}

// Leaving the box for the size hides others.
class LeavingHides : public FormTest {
 protected:
  LeavingHides() {
    form.UserFocus(form.txtSize);
    form.txtSize.LostFocus = [this] {
      form.log.push_back("left txtSize");
      for (Control* hidden : std::initializer_list<Control*>{&form.chkUrgent, &form.lstRows, &form.cboName, &form.cboKind})
        hidden->SetVisible(false);
    };
    form.cboKind.SetText("Two");
    form.TakeLog();
  }
};

TEST_F(LeavingHides, WhatIsHiddenTakesNeitherClickTextNorKey) {
  const struct {
    std::function<void()> act;
    const char* why;
  } cases[] = {
      {[&] { form.UserClick(form.chkUrgent); }, "a click"},
      {[&] { form.UserCheck(form.chkUrgent, true); }, "a tick"},
      {[&] { form.UserKey("Alt+U"); }, "its letter"},
      {[&] { form.UserPick(form.lstRows, 1); }, "a line"},
      {[&] { form.UserDblClick(form.lstRows); }, "a double click"},
      {[&] { form.UserType(form.cboName, "mine"); }, "typing"},
      {[&] { form.UserType(form.cboKind, "Three"); }, "typing an item"},
      {[&] { form.UserPick(form.cboKind, 0); }, "an item"},
      {[&] { form.UserFocus(form.chkUrgent); }, "the focus"},
  };
  for (const auto& c : cases) {
    for (Control* control : form.Controls()) control->SetVisible(true);
    c.act();
    EXPECT_THAT(form.TakeLog(), ElementsAre("left txtSize")) << c.why;
    EXPECT_EQ(form.FocusName(), "txtSize") << c.why;
    EXPECT_FALSE(form.chkUrgent.Checked()) << c.why;
    EXPECT_EQ(form.cboName.Text(), "") << c.why;
    EXPECT_EQ(form.cboKind.Text(), "Two") << c.why;
    EXPECT_EQ(form.lstRows.ListIndex(), -1) << c.why;
  }
}

TEST_F(LeavingHides, TabGoesOnFromTheBoxThatWasLeft) {
  form.UserKey("Tab");
  EXPECT_EQ(form.FocusName(), "cmdOK") << "past what has been hidden";
  EXPECT_THAT(form.TakeLog(), ElementsAre("left txtSize")) << "which it is left but once";

  for (Control* control : form.Controls()) control->SetVisible(true);
  form.UserFocus(form.txtSize);
  form.UserKey("Shift+Tab");
  EXPECT_EQ(form.FocusName(), "cmdNote") << "backwards past what has been hidden";

  for (Control* control : form.Controls()) control->SetVisible(true);
  form.UserFocus(form.txtSize);
  form.UserClick(form.chkUrgent);
  form.UserKey("Tab");
  EXPECT_EQ(form.FocusName(), "cmdOK") << "after a click that went nowhere too";
}

TEST_F(LeavingHides, WithTheBoxThatIsLeftTheFocusGoesToTheNext) {
  form.txtSize.LostFocus = [&] {
    form.frame.SetVisible(false);
    form.chkUrgent.SetVisible(false);
  };
  form.UserClick(form.chkUrgent);
  EXPECT_EQ(form.FocusName(), "lstRows");
}

TEST_F(FormTest, TabFollowsTheOrderOfTheControls) {
  form.frame.SetVisible(false);
  std::vector<std::string> order{form.FocusName()};
  for (int i = 0; i < 7; ++i) {
    form.UserKey("Tab");
    order.push_back(form.FocusName());
  }
  EXPECT_THAT(order, ElementsAre("cboName", "cboKind", "chkUrgent", "lstRows", "cmdOK", "cmdCancel", "cmdNote", "cboName"));
  form.UserKey("Shift+Tab");
  EXPECT_EQ(form.FocusName(), "cmdNote");
}

TEST_F(FormTest, ACombosClickIsRaisedWhenItsItemChanges) {
  form.cboName.SetText("Two");
  EXPECT_THAT(form.TakeLog(), ElementsAre("click cboName")) << "code sets a text that is an item";
  EXPECT_EQ(form.cboName.ListIndex(), 1);
  form.cboName.SetText("Two");
  EXPECT_THAT(form.TakeLog(), IsEmpty()) << "the same item";
  form.cboName.SetListIndex(2);
  EXPECT_THAT(form.TakeLog(), ElementsAre("click cboName")) << "code sets the index";
  EXPECT_EQ(form.cboName.Text(), "Three");
  form.UserType(form.cboName, "Mine");
  EXPECT_THAT(form.TakeLog(), ElementsAre("click cboName")) << "typing leaves the item";
  EXPECT_EQ(form.cboName.ListIndex(), -1);
  form.UserType(form.cboName, "Thre");
  EXPECT_THAT(form.TakeLog(), IsEmpty()) << "no item before, none after";
  form.UserType(form.cboName, "Three");
  EXPECT_THAT(form.TakeLog(), ElementsAre("click cboName")) << "typing arrives at an item";
  form.UserPick(form.cboName, 0);
  EXPECT_THAT(form.TakeLog(), ElementsAre("click cboName"));
  form.UserKey("Down");
  EXPECT_THAT(form.TakeLog(), ElementsAre("click cboName"));
  EXPECT_EQ(form.cboName.Text(), "Two");
  for (int i = 0; i < 3; ++i) form.UserKey("Up");
  EXPECT_THAT(form.TakeLog(), ElementsAre("click cboName")) << "the first item is the end";
  form.cboName.SetListIndex(-1);
  EXPECT_EQ(form.cboName.Text(), "");
}

TEST_F(FormTest, APickOnlyComboTakesItemsOnlyAndShowsWhatTheProgramSets) {
  form.cboKind.SetText("stored long ago");
  EXPECT_EQ(form.cboKind.Text(), "stored long ago");
  EXPECT_EQ(form.cboKind.ListIndex(), -1);
  form.UserType(form.cboKind, "Two");
  EXPECT_EQ(form.cboKind.ListIndex(), 1);
  form.TakeLog();
  ExpectRefused([&] { form.UserType(form.cboKind, "two"); });
  EXPECT_EQ(form.cboKind.Text(), "Two");
  form.UserKey("End");
  EXPECT_EQ(form.cboKind.Text(), "Three");
  form.UserKey("Home");
  EXPECT_EQ(form.cboKind.Text(), "One");
  form.UserFocus(form.cboName);
  form.cboName.SetText("Two");
  form.UserKey("Home");
  EXPECT_EQ(form.cboName.Text(), "Two") << "in a box that takes typing the key belongs to the caret";
}

TEST_F(FormTest, EnterAndEscapePressTheirButtonsAsAClickDoes) {
  form.UserKey("Enter");
  EXPECT_THAT(form.TakeLog(), ElementsAre("left cboName", "click cmdOK"));
  EXPECT_EQ(form.FocusName(), "cmdOK");
  form.UserFocus(form.cmdNote);
  form.TakeLog();
  form.UserKey("Enter");
  EXPECT_THAT(form.TakeLog(), ElementsAre("click cmdNote")) << "the button that has the focus";
  form.UserKey("Escape");
  EXPECT_THAT(form.TakeLog(), ElementsAre("left cmdNote", "click cmdCancel"));
  form.cmdOK.SetVisible(false);
  form.UserFocus(form.txtSize);
  form.TakeLog();
  form.UserKey("Enter");
  EXPECT_THAT(form.TakeLog(), IsEmpty()) << "a hidden button is not pressed";
}

TEST_F(FormTest, EnterAndEscapeCloseAListThatIsDown) {
  for (const char* key : {"Enter", "Escape"}) {
    form.UserFocus(form.cboKind);
    form.UserKey("F4");
    ASSERT_TRUE(form.cboKind.DroppedDown());
    form.TakeLog();
    form.UserKey(key);
    EXPECT_FALSE(form.cboKind.DroppedDown());
    EXPECT_THAT(form.TakeLog(), IsEmpty()) << key;
    EXPECT_EQ(form.FocusName(), "cboKind");
  }
  form.UserKey("Alt+Down");
  EXPECT_TRUE(form.cboKind.DroppedDown());
  form.UserKey("Tab");
  EXPECT_FALSE(form.cboKind.DroppedDown()) << "leaving the box closes its list";
}

TEST_F(FormTest, AccessKeysLeadPressAndToggle) {
  form.UserKey("Alt+K");
  EXPECT_EQ(form.FocusName(), "cboKind") << "a label leads to its control";
  EXPECT_THAT(form.TakeLog(), ElementsAre("left cboName"));
  form.UserKey("Alt+u");
  EXPECT_TRUE(form.chkUrgent.Checked()) << "a check box is toggled";
  EXPECT_THAT(form.TakeLog(), ElementsAre("left cboKind", "click chkUrgent"));
  form.UserKey("Alt+U");
  EXPECT_FALSE(form.chkUrgent.Checked());
  form.UserKey("Alt+N");
  EXPECT_EQ(form.FocusName(), "cmdNote") << "of two with one letter, the next after the focus";
  form.TakeLog();
  form.UserKey("Alt+N");
  EXPECT_EQ(form.FocusName(), "cboName") << "round again";
  form.UserKey("Alt+N");
  EXPECT_THAT(form.TakeLog(), ElementsAre("left cmdNote", "left cboName")) << "nothing is pressed by a letter of several";
  form.lblName.SetVisible(false);
  form.UserKey("Alt+N");
  EXPECT_THAT(form.TakeLog(), ElementsAre("click cmdNote")) << "a button is, by a letter that it alone shows";
  form.frame.SetVisible(false);
  form.UserKey("Alt+S");
  form.UserKey("Alt+Z");
  EXPECT_THAT(form.TakeLog(), IsEmpty()) << "not shown, or nobody's";
}

TEST_F(FormTest, NothingIsToggledByALetterOfSeveral) {
  form.cmdNote.SetCaption("Q&uit");
  form.UserKey("Alt+U");
  EXPECT_EQ(form.FocusName(), "chkUrgent");
  EXPECT_FALSE(form.chkUrgent.Checked());
  form.UserKey("Alt+U");
  EXPECT_EQ(form.FocusName(), "cmdNote");
  EXPECT_THAT(form.TakeLog(), ElementsAre("left cboName", "left chkUrgent"));
}

TEST_F(FormTest, EscapeGivesTheItemBackThatAListWasOpenedOn) {
  form.UserFocus(form.cboKind);
  form.cboKind.SetText("stored long ago");
  form.UserKey("F4");
  form.UserKey("Down");
  form.UserKey("Down");
  form.TakeLog();
  form.UserKey("Escape");
  EXPECT_EQ(form.cboKind.Text(), "stored long ago");
  EXPECT_EQ(form.cboKind.ListIndex(), -1);
  EXPECT_THAT(form.TakeLog(), ElementsAre("click cboKind")) << "the item changes";
  EXPECT_EQ(form.FocusName(), "cboKind");

  form.UserKey("F4");
  form.UserKey("Down");
  form.UserKey("Enter");
  EXPECT_EQ(form.cboKind.Text(), "One") << "Enter keeps the new one";
  form.UserKey("F4");
  form.UserKey("End");
  form.UserKey("F4");
  EXPECT_EQ(form.cboKind.Text(), "Three") << "so does closing the list otherwise";

  form.UserType(form.cboName, "mine");
  form.UserKey("F4");
  form.UserKey("Down");
  form.UserType(form.cboName, "mine too");
  form.UserKey("Down");
  form.UserKey("Escape");
  EXPECT_EQ(form.cboName.Text(), "mine too") << "what was typed is not taken back";
}

TEST_F(FormTest, AFailureWhileAListIsLeftIsShown) {
  form.UserFocus(form.cboKind);
  form.UserKey("F4");
  form.UserKey("Down");
  form.cboKind.Click = [] { throw RuntimeError::Overflow(); };
  form.UserKey("Escape");
  EXPECT_EQ(platform->messages.size(), 1u);
  EXPECT_FALSE(form.cboKind.DroppedDown());
}

TEST_F(FormTest, PagesOfLists) {
  for (int i = 4; i <= 40; ++i) {
    form.cboKind.AddItem(std::to_string(i));
    form.cboName.AddItem(std::to_string(i));
    form.lstRows.AddItem(std::to_string(i));
  }
  form.lstRows.SetPlace({0, 0, 2000, 1600});
  const struct {
    Control& control;
    std::function<int()> index;
    int page;
    const char* why;
  } cases[] = {
      {form.cboKind, [&] { return form.cboKind.ListIndex(); }, 11, "a list that drops down shows twelve items"},
      {form.cboName, [&] { return form.cboName.ListIndex(); }, 11, "one beside a box for typing too"},
      {form.lstRows, [&] { return form.lstRows.ListIndex(); }, 5, "six lines have room"},
  };
  for (const auto& c : cases) {
    form.UserFocus(c.control);
    form.UserKey("Down");
    form.UserKey("PageDown");
    EXPECT_EQ(c.index(), c.page) << c.why;
    form.UserKey("PageDown");
    form.UserKey("PageUp");
    EXPECT_EQ(c.index(), c.page) << c.why;
    for (int i = 0; i < 10; ++i) form.UserKey("PageDown");
    EXPECT_EQ(c.index(), 39) << "the last item is the end";
    form.TakeLog();
    form.UserKey("PageDown");
    EXPECT_THAT(form.TakeLog(), IsEmpty());
    for (int i = 0; i < 10; ++i) form.UserKey("PageUp");
    EXPECT_EQ(c.index(), 0) << "the first item, too";
    form.TakeLog();
    form.UserKey("PageUp");
    EXPECT_THAT(form.TakeLog(), IsEmpty());
  }
  form.UserFocus(form.txtSize);
  form.TakeLog();
  form.UserKey("PageDown");
  EXPECT_THAT(form.TakeLog(), IsEmpty()) << "a box without a list";
  form.cboKind.SetListIndex(-1);
  form.UserFocus(form.cboKind);
  form.UserKey("PageUp");
  EXPECT_EQ(form.cboKind.ListIndex(), -1) << "nothing comes before no item";
}

TEST_F(FormTest, AccessKeysAreReadFromCaptions) {
  const struct {
    std::string_view caption;
    char32_t key;
  } cases[] = {{"&Name", 'n'}, {"Fish && &chips", 'c'}, {"Plain", 0}, {"Odd &", 0}, {"", 0}, {"A &1", '1'}};
  for (const auto& c : cases) {
    form.lblName.SetCaption(c.caption);
    EXPECT_EQ(form.lblName.AccessKey(), c.key) << c.caption;
  }
}

TEST_F(FormTest, SpacePressesAndToggles) {
  form.UserFocus(form.chkUrgent);
  form.UserKey("Space");
  EXPECT_TRUE(form.chkUrgent.Checked());
  form.UserFocus(form.cmdNote);
  form.TakeLog();
  form.UserKey("Space");
  EXPECT_THAT(form.TakeLog(), ElementsAre("click cmdNote"));
  form.UserFocus(form.txtSize);
  form.TakeLog();
  form.UserKey("Space");
  EXPECT_THAT(form.TakeLog(), IsEmpty());
}

TEST_F(FormTest, APersonCannotActOnWhatIsNotShown) {
  form.frame.SetVisible(false);
  form.cmdNote.SetVisible(false);
  form.lstRows.SetVisible(false);
  ExpectRefused([&] { form.UserFocus(form.txtSize); });
  ExpectRefused([&] { form.UserType(form.txtSize, "1"); });
  ExpectRefused([&] { form.UserClick(form.cmdNote); });
  ExpectRefused([&] { form.UserDblClick(form.lstRows); });
  ExpectRefused([&] { form.UserPick(form.lstRows, 0); });
  ExpectRefused([&] { form.UserFocus(form.lblName); });
  ExpectRefused([&] { form.UserClick(form.lblName); });
  ExpectRefused([&] { form.UserPick(form.cboKind, 3); });
  ExpectRefused([&] { form.UserPick(form.cboKind, -1); });
  ExpectRefused([&] { form.UserKey("Hyper+X"); });
  EXPECT_EQ(form.txtSize.Text(), "");
}

TEST_F(FormTest, CheckBoxesClickWhenTheirStateChanges) {
  form.UserCheck(form.chkUrgent, true);
  EXPECT_THAT(form.TakeLog(), ElementsAre("left cboName", "click chkUrgent"));
  form.UserCheck(form.chkUrgent, true);
  EXPECT_THAT(form.TakeLog(), IsEmpty());
  form.chkUrgent.SetChecked(false);
  EXPECT_THAT(form.TakeLog(), ElementsAre("click chkUrgent")) << "by the program too";
}

TEST_F(FormTest, AHandlersFailureIsShownAndTheFormStaysOpen) {
  const struct {
    std::function<void()> handler;
    std::string_view message;
  } cases[] = {{[] { throw HostError(kHostNoSuchCell, "No such cell."); }, "-2032465660\nNo such cell."},
               {[] { throw RuntimeError::Overflow(); }, "6\nOverflow"},
               {[] { throw std::bad_alloc(); }, "7\nOut of memory"}};
  for (const auto& c : cases) {
    form.UserFocus(form.txtSize);
    form.cmdNote.Click = c.handler;
    form.UserClick(form.cmdNote);
    EXPECT_THAT(platform->messages, ElementsAre(RecordingPlatform::Message{std::string(c.message), "Quellis", 48}));
    platform->messages.clear();
    EXPECT_TRUE(form.IsShown());
  }
}

TEST_F(FormTest, ARefusalQuotesShortly) {
  const std::string text = "bell\a" + std::string(1000, 'x');
  const std::function<void()> refused[] = {[&] { form.UserKey(text); }, [&] { form.UserType(form.cboKind, text); }};
  for (const auto& act : refused) {
    try {
      act();
      ADD_FAILURE() << "it was not refused";
    } catch (const RuntimeError& error) {
      EXPECT_THAT(error.description(), testing::HasSubstr("\"bell?xxx"));
      EXPECT_LT(error.description().size(), 300u);
    }
  }
}

TEST_F(FormTest, AFailureOnLeavingABoxIsShownOnce) {
  form.cboName.LostFocus = [] { throw RuntimeError::TypeMismatch(); };
  form.UserClick(form.cmdOK);
  EXPECT_EQ(platform->messages.size(), 1u);
  EXPECT_THAT(form.TakeLog(), IsEmpty()) << "the click is spent on the message";
  EXPECT_EQ(form.FocusName(), "cmdOK");
}

TEST_F(FormTest, LabelsNameTheBoxBehindThem) {
  EXPECT_EQ(form.LabelOf(form.cboName), &form.lblName);
  EXPECT_EQ(form.LabelOf(form.txtSize), &form.lblSize);
  EXPECT_EQ(form.LabelOf(form.cmdOK), nullptr);
  EXPECT_EQ(form.Find("cboKind"), &form.cboKind);
  EXPECT_EQ(form.Find("cbokind"), nullptr);
}

TEST_F(FormTest, RowsOfAList) {
  ListBox& list = form.lstRows;
  const auto lines = [&] { return list.Items(); };
  list.SetListIndex(2);
  list.InsertItem(2, "a");
  EXPECT_THAT(lines(), ElementsAre("One", "Two", "a", "Three"));
  EXPECT_EQ(list.ListIndex(), 3) << "the line that was selected stays selected, so adding there appends";
  list.InsertItem(list.ListIndex(), "b");
  EXPECT_THAT(lines(), ElementsAre("One", "Two", "a", "b", "Three"));
  list.InsertItem(5, "last");
  EXPECT_EQ(list.ListIndex(), 4) << "a line behind it moves nothing";
  list.SetListIndex(1);
  list.SetItem(1, "two");
  EXPECT_EQ(list.ListIndex(), 1);
  list.RemoveItem(1);
  EXPECT_EQ(list.ListIndex(), -1) << "the selected line has gone";
  list.SetListIndex(1);
  EXPECT_EQ(lines()[1], "a") << "the line that moved up";
  list.RemoveItem(0);
  EXPECT_EQ(list.ListIndex(), 0);
  list.RemoveItem(3);
  EXPECT_THAT(lines(), ElementsAre("a", "b", "Three"));
  EXPECT_EQ(list.ListIndex(), 0);
  form.TakeLog();
  form.UserDblClick(list);
  EXPECT_THAT(form.TakeLog(), ElementsAre("left cboName", "dblclick lstRows"));
  form.UserKey("End");
  EXPECT_EQ(list.ListIndex(), 2);

  EXPECT_THROW(list.InsertItem(4, "x"), RuntimeError);
  EXPECT_THROW(list.InsertItem(-1, "x"), RuntimeError);
  EXPECT_THROW(list.RemoveItem(3), RuntimeError);
  EXPECT_THROW(list.SetItem(-1, "x"), RuntimeError);
  EXPECT_THROW(list.SetListIndex(3), RuntimeError);
  EXPECT_EQ(lines().size(), 3u);
}

class CountingObserver : public FormObserver {
 public:
  void ControlChanged(Control& control) override { changed.push_back(control.name()); }
  void FocusMoved(Control* focus) override { moves.push_back(focus ? focus->name() : ""); }
  std::vector<std::string> changed, moves;
};

TEST_F(FormTest, TheObserverHearsOfEveryChange) {
  CountingObserver observer;
  form.SetObserver(&observer);
  form.txtSize.SetText("1");
  form.cboName.AddItem("Four");
  form.lblName.SetCaption("x");
  form.chkUrgent.SetChecked(true);
  form.lstRows.SetListIndex(0);
  EXPECT_THAT(observer.changed, ElementsAre("txtSize", "cboName", "lblName", "chkUrgent", "lstRows"));
  form.UserFocus(form.txtSize);
  form.txtSize.SetVisible(false);
  EXPECT_THAT(observer.moves, ElementsAre("txtSize", "chkUrgent"));
  form.SetObserver(nullptr);
}

}  // namespace
}  // namespace vardo
