// What every dialog has in common, seen through its table: what it is made of, shows, refuses and writes.
#include "DialogHarness.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace vardo::test {
namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

ControlKind ToolkitKind(Kind kind) {
  switch (kind) {
    case Kind::Combo:
    case Kind::Pick:
      return ControlKind::Combo;
    case Kind::Text:
      return ControlKind::Text;
    case Kind::Check:
      return ControlKind::Check;
    case Kind::Button:
      return ControlKind::Button;
    case Kind::List:
      return ControlKind::List;
    case Kind::Frame:
      return ControlKind::Frame;
    case Kind::Line:
      return ControlKind::Line;
    case Kind::Label:
      return ControlKind::Label;
  }
  return ControlKind::Line;
}

std::string Expected(const std::string& text, const std::string& shapeText, const Form& form, const DialogTable& table) {
  if (text == kShapeText) return shapeText;
  if (text == kNameBox) return TextOf(form, table.name);
  return text;
}

class AllDialogs : public TableTest {
 protected:
  void ExpectVisibility(const Form& form) {
    ExpectRules(table(), form);
    std::set<std::string> ruled;
    for (const RuleRow& rule : table().rules) ruled.insert(rule.controls.begin(), rule.controls.end());
    for (const Control* control : form.Controls()) {
      if (!ruled.contains(control->name())) {
        EXPECT_TRUE(control->IsVisible()) << control->name();
      }
    }
  }
  void ExpectLayout(const Form& form);
  // Runs act in every state that the table's choices make.
  void InEveryState(const Form& form, const std::function<void()>& act) { InEveryState(form, {}, act); }

 private:
  void InEveryState(const Form& form, const Settings& chosen, const std::function<void()>& act) {
    if (chosen.size() == table().choices.size()) {
      Put(form, chosen);
      SCOPED_TRACE(testing::PrintToString(chosen));
      return act();
    }
    const ChoiceRow& choice = table().choices[chosen.size()];
    for (const std::string& text : choice.texts) {
      Settings more = chosen;
      more.emplace_back(choice.control, text);
      InEveryState(form, more, act);
    }
  }
};

bool Holds(const TwipsRect& outer, const TwipsRect& inner) {
  return inner.left >= outer.left && inner.top >= outer.top && inner.left + inner.width <= outer.left + outer.width &&
         inner.top + inner.height <= outer.top + outer.height;
}

bool Overlap(const TwipsRect& a, const TwipsRect& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height && b.top < a.top + a.height;
}

bool StandsIn(const Control& control, const Control& frame) {
  for (const Frame* parent = control.parent(); parent; parent = parent->parent())
    if (parent == &frame) return true;
  return false;
}

void AllDialogs::ExpectLayout(const Form& form) {
  const TwipsRect whole = {0, 0, form.Place().width, form.Place().height};
  std::vector<const Control*> shown;
  std::copy_if(form.Controls().begin(), form.Controls().end(), std::back_inserter(shown),
               [](const Control* control) { return control->Shown(); });
  for (const Control* control : shown) {
    EXPECT_TRUE(Holds(whole, control->Place())) << control->name() << " stands within the form";
    if (control->parent()) {
      EXPECT_TRUE(Holds(control->parent()->Place(), control->Place())) << control->name() << " stands within its frame";
    }
    if (control->kind() != ControlKind::Line) {
      EXPECT_GT(control->Place().width, 0) << control->name();
      EXPECT_GT(control->Place().height, 0) << control->name();
    }
    for (const Control* other : shown) {
      if (other <= control || StandsIn(*control, *other) || StandsIn(*other, *control)) continue;
      EXPECT_FALSE(Overlap(control->Place(), other->Place())) << control->name() << " and " << other->name() << " overlap";
    }
  }
  for (const ControlRow& row : table().controls) {
    const Control& box = At(form, row.name);
    if (row.label.empty() || !box.Shown()) continue;
    const TwipsRect& label = At(form, row.label).Place();
    EXPECT_TRUE(label.left + label.width <= box.Place().left || label.top + label.height <= box.Place().top)
        << row.label << " stands left of " << row.name << " or above it";
  }
}

// What comes and goes stands last, so that a dialog opens without a gap that a row would fill.
TEST_P(AllDialogs, OpensWithoutAHole) {
  OpenAny(table(), false, [&](Form& form) {
    std::map<const Frame*, std::vector<TwipsRect>> places;
    for (const Control* control : form.Controls())
      if (control->Shown() && control->kind() != ControlKind::Button) places[control->parent()].push_back(control->Place());
    for (auto& [frame, rows] : places) {
      std::sort(rows.begin(), rows.end(), [](const TwipsRect& a, const TwipsRect& b) { return a.top < b.top; });
      double end = frame ? frame->Place().top : 0;
      for (const TwipsRect& row : rows) {
        EXPECT_LT(row.top - end, 420) << (frame ? frame->name() : "the form") << " at " << end;
        end = std::max(end, row.top + row.height);
      }
    }
  });
}

TEST_P(AllDialogs, TitlesOfFramesStandOnTheLabelColumn) {
  OpenAny(table(), false, [&](Form& form) {
    for (const Control* control : form.Controls())
      if (control->parent() && control->kind() == ControlKind::Label) {
        EXPECT_EQ(control->Place().left, form.Controls().front()->Place().left) << control->name();
        EXPECT_EQ(control->Place().left - control->parent()->Place().left, 135) << control->name();
      }
  });
}

TEST_P(AllDialogs, IsMadeOfItsControls) {
  OpenAny(table(), false, [&](Form& form) {
    EXPECT_EQ(form.Caption(), table().caption);
    std::set<std::string> expected;
    for (const ControlRow& row : table().controls) {
      SCOPED_TRACE(row.name);
      expected.insert(row.name);
      const Control* control = form.Find(row.name);
      ASSERT_NE(control, nullptr);
      EXPECT_EQ(control->kind(), ToolkitKind(row.kind));
      if (const auto* combo = dynamic_cast<const ComboBox*>(control)) {
        EXPECT_EQ(combo->PickOnly(), row.kind == Kind::Pick);
      }
      if (row.label.empty()) {
        EXPECT_EQ(control->Caption(), row.caption);
        continue;
      }
      expected.insert(row.label);
      ASSERT_NE(form.Find(row.label), nullptr) << row.label;
      EXPECT_EQ(At(form, row.label).kind(), ControlKind::Label);
      EXPECT_EQ(At(form, row.label).Caption(), row.caption);
      EXPECT_EQ(form.LabelOf(*control), form.Find(row.label)) << "found by its label";
    }
    for (const Control* control : form.Controls())
      EXPECT_TRUE(expected.contains(control->name())) << "besides " << control->name();
    EXPECT_EQ(form.Controls().size(), expected.size());
    EXPECT_EQ(form.DefaultButton(), form.Find("cmdOK"));
    EXPECT_EQ(form.Focus(), form.Find(table().controls[0].name));
  });
}

TEST_P(AllDialogs, TabGoesThroughWhatIsShownAsOneReads) {
  OpenAny(table(), false, [&](Form& form) {
    InEveryState(form, [&] {
      std::vector<Control*> boxes;
      std::copy_if(form.Controls().begin(), form.Controls().end(), std::back_inserter(boxes),
                   [](const Control* control) { return control->Shown() && control->TakesFocus(); });
      const auto placeOf = [](const Control* box) { return std::pair(box->Place().top, box->Place().left); };
      std::ranges::sort(boxes, {}, placeOf);
      form.FocusFirst();
      for (const Control* box : boxes) {
        EXPECT_EQ(form.Focus()->name(), box->name());
        presenter_.Key(form, "Tab");
      }
      EXPECT_EQ(form.Focus(), boxes.front()) << "and round again";
    });
  });
}

TEST_P(AllDialogs, FramesHoldTheirControls) {
  OpenAny(table(), false, [&](Form& form) {
    std::map<std::string, std::string> frameOf;
    for (const FrameRow& frame : table().frames)
      for (const std::string& control : frame.controls) frameOf[control] = frame.frame;
    for (const ControlRow& row : table().controls)
      if (!row.label.empty() && frameOf.contains(row.name)) frameOf[row.label] = frameOf[row.name];
    for (const Control* control : form.Controls())
      EXPECT_EQ(control->parent() ? control->parent()->name() : "", frameOf[control->name()]) << control->name();
  });
}

TEST_P(AllDialogs, AccessKeysAreSharedOnlyWhereTheCaptionsForceIt) {
  OpenAny(table(), false, [&](Form& form) {
    std::map<char32_t, int> uses;
    for (const Control* control : form.Controls())
      if (control->AccessKey()) ++uses[control->AccessKey()];
    std::string shared;
    for (const auto& [key, count] : uses)
      if (count > 1) shared += static_cast<char>(key);
    EXPECT_EQ(shared, table().sharedKeys);
  });
}

TEST_P(AllDialogs, HelpOpensItsTopicAndLeavesTheDialogOpen) {
  OpenAny(table(), false, [&](Form& form) {
    Click(form, "cmdHelp");
    presenter_.Key(form, "Alt+h");
    EXPECT_TRUE(form.IsShown());
  });
  ASSERT_FALSE(platform_->helpCalls.empty());
  EXPECT_EQ(platform_->helpCalls[0], (RecordingPlatform::HelpCall{"Quellis.chm", table().helpTopic}));
}

TEST_P(AllDialogs, StandsInTheMiddleOfTheScreen) {
  OpenAny(table(), false, [&](Form& form) {
    const TwipsSize screen = ThePlatform().ScreenSize();
    EXPECT_DOUBLE_EQ(form.Place().left, screen.width / 2.0 - form.Place().width / 2.0);
    EXPECT_DOUBLE_EQ(form.Place().top, screen.height / 2.0 - form.Place().height / 2.0);
  });
}

TEST_P(AllDialogs, ListsOfferTheirFixedItemsAndThenWhatTheDrawingHolds) {
  for (const DialogTable& module : ModuleTables()) DropFilled(module);
  OpenAny(table(), false, [&](Form& form) {
    std::set<std::string> listed;
    for (const ListRow& row : table().lists) {
      SCOPED_TRACE(row.control);
      listed.insert(row.control);
      struct Items : ItemList {
        void AddItem(std::string_view item) override { texts.emplace_back(item); }
        Texts texts;
      } offered;
      if (row.offers) row.offers(offered);
      Texts expected = row.items;
      expected.insert(expected.end(), offered.texts.begin(), offered.texts.end());
      EXPECT_THAT(dynamic_cast<ComboBox&>(At(form, row.control)).Items(), ElementsAreArray(expected));
    }
    for (const ControlRow& row : table().controls) {
      if (row.kind == Kind::Combo || row.kind == Kind::Pick) {
        EXPECT_TRUE(listed.contains(row.name)) << row.name;
      }
    }
  });
}

TEST_P(AllDialogs, WhatIsVisibleFollowsFromWhatIsChosen) {
  OpenAny(table(), false, [&](Form& form) {
    ExpectVisibility(form);
    InEveryState(form, [&] { ExpectVisibility(form); });
  });
  OpenAny(table(), true, [&](Form& form) { ExpectVisibility(form); });
}

TEST_P(AllDialogs, NothingOverlapsAndTheWindowKeepsItsSize) {
  OpenAny(table(), false, [&](Form& form) {
    const TwipsRect place = form.Place();
    ExpectLayout(form);
    InEveryState(form, [&] {
      ExpectLayout(form);
      EXPECT_EQ(form.Place().width, place.width);
      EXPECT_EQ(form.Place().height, place.height);
    });
  });
}

TEST_P(AllDialogs, TidiesABoxThatIsLeft) {
  OpenAny(table(), false, [&](Form& form) {
    // The name box stands in for a name as its text when it is tidied itself.
    const std::string shapeText = table().name.empty() ? "" : TextOf(form, table().name);
    // A hidden box is left by program only.
    const auto leave = [&](TextControl& box, std::string_view text) {
      if (box.Shown()) presenter_.Focus(box);
      box.SetText(text);
      if (box.Shown())
        presenter_.Focus(At(form, "cmdHelp"));
      else if (box.LostFocus)
        box.LostFocus();
      return box.Text();
    };
    for (const FieldRow& field : table().fields) {
      auto* box = dynamic_cast<TextControl*>(&At(form, field.control));
      if (!box) continue;
      SCOPED_TRACE(field.control);
      const std::string before = box->Text();
      const bool tidied = field.whenEmpty != kNotTidied;
      EXPECT_EQ(leave(*box, ""), tidied ? Expected(field.whenEmpty, shapeText, form, table()) : "");
      EXPECT_EQ(leave(*box, "   "), tidied ? "" : "   ") << "blanks alone become nothing, not the default";
      EXPECT_EQ(leave(*box, "  a b\t "), tidied ? "a b\t" : "  a b\t ");
      box->SetText(before);
    }
  });
}

// --- Checks.

class Checked : public AllDialogs {
 protected:
  static void Spoil(const Form& form, const CheckRow& check) {
    dynamic_cast<TextControl&>(At(form, check.control)).SetText(BadTextOf(check.kind).text);
  }
  // Pressing OK shows the message of the check alone, puts the focus on its box, writes nothing and leaves the dialog open.
  void ExpectRefusal(Form& form, const CheckRow& check) {
    SCOPED_TRACE(check.control);
    const auto before = Drawn();
    host_.StartWriteLog();
    Click(form, "cmdOK");
    EXPECT_THAT(host_.TakeWriteLog(), IsEmpty());
    EXPECT_THAT(Difference(before, Drawn()), IsEmpty());
    ASSERT_TRUE(form.IsShown());
    ASSERT_EQ(platform_->messages.size(), 1u);
    EXPECT_EQ(platform_->messages[0], (RecordingPlatform::Message{BadTextOf(check.kind).message, "Quellis", 16}));
    platform_->messages.clear();
    ExpectFocusOn(form, At(form, check.control));
  }
  // A hidden box has asked for the focus: it gets it once it is shown.
  void ExpectFocusOn(const Form& form, Control& control) {
    std::vector<Control*> hidden;
    for (Control* around = &control; around; around = around->parent())
      if (!around->IsVisible()) hidden.push_back(around);
    for (Control* around : hidden) around->SetVisible(true);
    EXPECT_EQ(form.Focus(), &control);
    for (Control* around : hidden) around->SetVisible(false);
  }
};

TEST_P(Checked, EveryBoxIsRefusedABadText) {
  OpenAny(table(), false, [&](Form& form) {
    for (const CheckRow& check : table().checks) {
      const std::string before = TextOf(form, check.control);
      Spoil(form, check);
      ExpectRefusal(form, check);
      dynamic_cast<TextControl&>(At(form, check.control)).SetText(before);
    }
  });
}

TEST_P(Checked, HiddenBoxesToo) {
  OpenAny(table(), false, [&](Form& form) {
    InEveryState(form, [&] {
      for (const CheckRow& check : table().checks) {
        if (At(form, check.control).Shown()) continue;
        const std::string before = TextOf(form, check.control);
        Spoil(form, check);
        ExpectRefusal(form, check);
        dynamic_cast<TextControl&>(At(form, check.control)).SetText(before);
      }
    });
  });
}

TEST_P(Checked, OfSeveralBadTextsTheFirstInOrderIsReported) {
  OpenAny(table(), false, [&](Form& form) {
    std::vector<std::string> before;
    for (const CheckRow& check : table().checks) {
      before.push_back(TextOf(form, check.control));
      Spoil(form, check);
    }
    for (size_t i = 0; i < table().checks.size(); ++i) {
      ExpectRefusal(form, table().checks[i]);
      dynamic_cast<TextControl&>(At(form, table().checks[i].control)).SetText(before[i]);
    }
  });
}

TEST_P(Checked, OtherBoxesAreNotChecked) {
  OpenAny(table(), true, [&](Form& form) {
    for (const FieldRow& field : table().fields) {
      const auto isChecked = [&](const CheckRow& check) { return check.control == field.control; };
      auto* box = dynamic_cast<TextControl*>(&At(form, field.control));
      if (box && std::none_of(table().checks.begin(), table().checks.end(), isChecked)) box->SetText("(a,b:");
    }
    Click(form, "cmdOK");
    EXPECT_FALSE(form.IsShown());
    EXPECT_THAT(platform_->messages, IsEmpty());
  });
}

TEST_P(Checked, EmptyTextsPass) {
  OpenAny(table(), false, [&](Form& form) {
    for (const CheckRow& check : table().checks)
      if (check.control != table().name) dynamic_cast<TextControl&>(At(form, check.control)).SetText("");
    Click(form, "cmdOK");
    EXPECT_FALSE(form.IsShown());
    EXPECT_THAT(platform_->messages, IsEmpty());
  });
}

INSTANTIATE_TEST_SUITE_P(Forms, Checked, testing::ValuesIn(Params({&ModuleTables(), &RowTables()})), ParamName);

INSTANTIATE_TEST_SUITE_P(Forms, AllDialogs, testing::ValuesIn(Params({&ModuleTables(), &RowTables()})), ParamName);

}  // namespace
}  // namespace vardo::test
