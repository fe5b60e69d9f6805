// OK of every module's dialog in a host that refuses one call: the first, the second and so on.
#include "DialogHarness.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace vardo::test {
namespace {

using testing::IsEmpty;

bool Writes(const std::string& member) {
  const std::string verb = member.substr(member.find('.') + 1);
  return verb.starts_with("Set") || verb.starts_with("Add") || verb.starts_with("Delete");
}

class DialogFaults : public TableTest {
 protected:
  // The drawing is prepared once; each OK is undone before the next.
  void Sweep(const DialogTable& table, const IVShapePtr& shape, const Act& edit) {
    const auto before = Drawn();
    std::vector<CellWrite> writes;
    faults_.Start(std::numeric_limits<int>::max());
    Open(table, shape, [&](Form& form) {
      edit(form);
      host_.StartWriteLog();
      faults_.Start(std::numeric_limits<int>::max());
      Click(form, "cmdOK");
      writes = host_.TakeWriteLog();
      ASSERT_FALSE(form.IsShown());
    });
    const int calls = faults_.calls();
    const auto firstWrite = std::find_if(faults_.members.begin(), faults_.members.end(), Writes) - faults_.members.begin() + 1;
    faults_.SwitchOff();
    ASSERT_LT(firstWrite, calls);
    const auto expected = Drawn();
    ASSERT_NE(expected, before);
    host_.Undo();
    ASSERT_THAT(Difference(before, Drawn()), IsEmpty());

    for (int call = 1; call <= calls && !HasFailure(); ++call) {
      SCOPED_TRACE("call " + std::to_string(call) + " of " + std::to_string(calls) + " fails");
      Open(table, shape, [&](Form& form) {
        edit(form);
        host_.StartWriteLog();
        faults_.Start(call);
        Click(form, "cmdOK");
        faults_.SwitchOff();
        SCOPED_TRACE(faults_.members[static_cast<size_t>(call) - 1]);
        ASSERT_EQ(faults_.failures(), 1);
        ExpectStart(host_.TakeWriteLog(), writes, call < firstWrite);
        if (platform_->messages.empty()) {
          EXPECT_FALSE(form.IsShown()) << "what was met was no failure";
          return;
        }
        ExpectOneFailureMessage();
        ASSERT_TRUE(form.IsShown());
        Click(form, "cmdOK");
        EXPECT_THAT(platform_->messages, IsEmpty());
        EXPECT_FALSE(form.IsShown());
      });
      EXPECT_THAT(LoadedForms(), IsEmpty());
      EXPECT_THAT(Difference(expected, Drawn()), IsEmpty()) << "the same drawing as without the failure";
      EXPECT_EQ(expected.size(), Drawn().size());
      host_.Undo();
      EXPECT_THAT(Difference(before, Drawn()), IsEmpty()) << "in one step";
    }
  }

 private:
  void ExpectStart(std::vector<CellWrite> writes, std::vector<CellWrite> whole, bool beforeFirst) {
    const bool completed = platform_->messages.empty();
    if (beforeFirst && !completed) {
      EXPECT_THAT(writes, IsEmpty()) << "nothing before all is checked";
    }
    // The link to a page that could not be renamed is put back.
    for (auto* log : {&writes, &whole})
      std::erase_if(*log, [](const CellWrite& write) { return write.cell == "Prop.VardoSubPage"; });
    ASSERT_LE(writes.size(), whole.size());
    EXPECT_TRUE(std::equal(writes.begin(), writes.end(), whole.begin())) << "what is written is written in order";
  }
  void ExpectOneFailureMessage() {
    EXPECT_EQ(platform_->messages.size(), 1u);
    const RecordingPlatform::Message message = platform_->messages[0];
    platform_->messages.clear();
    EXPECT_EQ(message.title, "Quellis");
    EXPECT_EQ(message.style, 48);
    // The number on a line of its own, then the description.
    const size_t lineEnd = message.text.find('\n');
    ASSERT_NE(lineEnd, std::string::npos) << message.text;
    EXPECT_EQ(std::to_string(std::atoi(message.text.c_str())), message.text.substr(0, lineEnd));
    EXPECT_GT(message.text.size(), lineEnd + 1) << message.text;
    EXPECT_EQ(message.text.find('\n', lineEnd + 1), std::string::npos) << message.text;
  }
};

TEST_P(DialogFaults, AnOKThatFailsShowsOneMessageAndCanBePressedAgain) {
  Drop("Create");
  const IVShapePtr shape = DropFilled(table());
  Sweep(table(), shape, [&](Form& form) { ChangeEverything(table(), form); });
}

TEST_P(DialogFaults, WithRowsToo) {
  if (table().rows.empty()) return;
  const RowGroup& rows = table().rows[0];
  const IVShapePtr shape = DropFilled(table());
  Sweep(table(), shape, [&](Form& form) {
    Put(form, rows.setup);
    for (const RowExample& example : rows.examples)
      Add(form, TableOf(rows.dialog), [&](Form& row) {
        Put(row, example.shown);
        Click(row, "cmdOK");
      });
  });
}

INSTANTIATE_TEST_SUITE_P(Forms, DialogFaults, testing::ValuesIn(Params({&ModuleTables()})), ParamName);

// A Separate's third connection point comes and goes with its type.
class SeparateFaults : public DialogFaults {};

TEST_P(SeparateFaults, TheThirdConnectionPointComesOnce) {
  const IVShapePtr shape = DropFilled(table());
  Open(table(), shape, [&](Form& form) { Click(form, "cmdOK"); });
  const int points = shape->RowCount(kSectionConnectionPts);
  const auto choose = [&](const char* type) {
    return [this, type](Form& form) {
      Put(form, "cboName", std::string("New ") + type);
      Put(form, "cboType", type);
    };
  };
  Sweep(table(), shape, choose("Duplicate Original"));
  EXPECT_EQ(shape->RowCount(kSectionConnectionPts), points);
  Open(table(), shape, [&](Form& form) {
    choose("Duplicate Original")(form);
    Click(form, "cmdOK");
  });
  EXPECT_EQ(shape->RowCount(kSectionConnectionPts), points + 1);
  const short third = 2;
  EXPECT_EQ(shape->CellsSRC(kSectionConnectionPts, third, kCellConnectionX)->Formula(), "Width*0.8912");
  EXPECT_EQ(shape->CellsSRC(kSectionConnectionPts, third, kCellConnectionY)->Formula(), "Height*0");
  SetProperty(shape, "SeparateCostToDuplicates", "12");
  Sweep(table(), shape, [&](Form& form) { Put(form, "txtCostToDuplicates", "13"); });
  Sweep(table(), shape, choose("Split Existing Batch"));
  EXPECT_EQ(shape->RowCount(kSectionConnectionPts), points + 1) << "as each was undone";
}

TEST_P(SeparateFaults, APointThatCannotBePlacedGoesAgainWhereverItStood) {
  const IVShapePtr shape = DropFilled(table());
  while (shape->RowCount(kSectionConnectionPts) > 1) shape->DeleteRow(kSectionConnectionPts, 1);
  const auto save = [&](Form& form, int failing) {
    Put(form, "cboType", "Duplicate Original");
    faults_.Start(failing);
    Click(form, "cmdOK");
    faults_.SwitchOff();
  };
  Open(table(), shape, [&](Form& form) { save(form, std::numeric_limits<int>::max()); });
  const auto added = std::ranges::find(faults_.members, "Shape.AddRow");
  const auto placed = std::find(added, faults_.members.end(), "Cell.SetFormula") - faults_.members.begin() + 1;
  ASSERT_EQ(shape->RowCount(kSectionConnectionPts), 2);
  host_.Undo();
  ASSERT_EQ(shape->RowCount(kSectionConnectionPts), 1);

  Open(table(), shape, [&](Form& form) {
    save(form, static_cast<int>(placed));
    EXPECT_EQ(faults_.members.at(static_cast<size_t>(placed) - 1), "Cell.SetFormula");
    EXPECT_EQ(platform_->messages.size(), 1u);
    EXPECT_EQ(shape->RowCount(kSectionConnectionPts), 1);
    Click(form, "cmdOK");
  });
  EXPECT_EQ(shape->RowCount(kSectionConnectionPts), 2);
  EXPECT_EQ(shape->CellsSRC(kSectionConnectionPts, 1, kCellConnectionX)->Formula(), "Width*0.8912");
}

INSTANTIATE_TEST_SUITE_P(Forms, SeparateFaults, testing::Values(&TableOf("frmSeparate")), ParamName);

// A Process that is renamed takes its submodel page along.
class SubmodelFaults : public DialogFaults {};

TEST_P(SubmodelFaults, ARenamedProcessTakesItsPageAlong) {
  for (const char* name : {"Grind", "Grind and polish the castings"}) {
    SCOPED_TRACE(name);
    host_.New();
    const int page = host_.ActivePage().id();
    const IVShapePtr shape = Drop("Process");
    host_.RunCommand("Edit Submodel", [&] { addin_.Submodel(app_, shape); });
    host_.ShowPage(page);
    Sweep(table(), shape, [&](Form& form) { Put(form, "cboName", name); });
  }
}

INSTANTIATE_TEST_SUITE_P(Forms, SubmodelFaults, testing::Values(&TableOf("frmProcess")), ParamName);

}  // namespace
}  // namespace vardo::test
