// The dialogs of the fourteen modules against the shapes they edit: what they show of them, write to them and leave alone.
#include "DialogHarness.h"

#include "props/PropertyCells.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace vardo::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

std::string Shows(const std::string& text, const std::string& shapeText) { return text == kShapeText ? shapeText : text; }

class ModuleDialogs : public TableTest {
 protected:
  // What OK will write for the form as it is, in order. Without rows.
  std::vector<CellWrite> ExpectedWrites(const Form& form, const std::string& sheet) {
    std::vector<CellWrite> writes;
    for (const WriteRow& row : table().writes) {
      const std::string text = WrittenBy(table(), row, form);
      if (row.property.empty())
        writes.push_back({sheet, "", text});
      else if (row.property.find('.') != std::string::npos)
        writes.push_back({sheet, row.property, text});
      else
        writes.push_back({sheet, CellName(row.property), InQuotes(text)});
    }
    for (const RowGroup& rows : table().rows) {
      for (size_t i = 0; i < rows.noRows.size(); ++i)
        writes.push_back({sheet, CellName(rows.columns[i]), InQuotes(rows.noRows[i])});
      if (!rows.noRows.empty()) writes.push_back({sheet, CellName(rows.count), InQuotes("0")});
    }
    return writes;
  }
  // Presses OK and returns what it wrote.
  std::vector<CellWrite> OK(Form& form) {
    host_.StartWriteLog();
    Click(form, "cmdOK");
    EXPECT_FALSE(form.IsShown());
    EXPECT_THAT(platform_->messages, IsEmpty());
    return host_.TakeWriteLog();
  }
};

// --- Loading.

TEST_P(ModuleDialogs, AShapeWithoutPropertiesShowsTheFirstWordsOfTheDefaults) {
  const IVShapePtr shape = DropBare(table().kind);
  Open(table(), shape, [&](Form& form) {
    for (const FieldRow& field : table().fields)
      EXPECT_EQ(TextOf(form, field.control), Shows(field.missing, table().kind + " 1")) << field.control;
    for (const RowGroup& rows : table().rows) {
      EXPECT_THAT(ListAt(form, rows.list).Items(), ElementsAre(kEndOfList));
      EXPECT_EQ(ListAt(form, rows.list).ListIndex(), 0);
    }
  });
}

TEST_P(ModuleDialogs, AShapeWithAllPropertiesShowsThem) {
  const IVShapePtr shape = DropFilled(table());
  Open(table(), shape, [&](Form& form) {
    for (const FieldRow& field : table().fields)
      EXPECT_EQ(TextOf(form, field.control), FilledShows(table(), field, table().kind + " 1")) << field.control;
    for (const RowGroup& rows : table().rows) EXPECT_THAT(ListAt(form, rows.list).Items(), ElementsAre(kEndOfList));
  });
}

TEST_P(ModuleDialogs, OfAListTheFirstItemIsShown) {
  const IVShapePtr shape = DropFilled(table());
  for (const FieldRow& field : table().fields) SetProperty(shape, field.property, FilledWith(table(), field) + ";second");
  Open(table(), shape, [&](Form& form) {
    for (const FieldRow& field : table().fields)
      EXPECT_EQ(TextOf(form, field.control), FilledShows(table(), field, table().kind + " 1")) << field.control;
  });
}

TEST_P(ModuleDialogs, TheLastOpeningLeavesNothingBehind) {
  const IVShapePtr shape = Drop(table().kind);
  std::map<std::string, std::string> first, second;
  const auto read = [&](std::map<std::string, std::string>& texts) {
    return [&](Form& form) {
      for (const FieldRow& field : table().fields) texts[field.control] = TextOf(form, field.control);
      ChangeEverything(table(), form);
      Click(form, "cmdCancel");
    };
  };
  Open(table(), shape, read(first));
  Open(table(), shape, read(second));
  EXPECT_EQ(first, second);
}

// --- Codes.

TEST_P(ModuleDialogs, EveryItemOfEveryFixedListIsStoredAsItsCodeAndShownAgain) {
  const IVShapePtr shape = DropFilled(table());
  for (const ListRow& list : table().lists) {
    const auto field = std::find_if(table().fields.begin(), table().fields.end(),
                                    [&](const FieldRow& row) { return row.control == list.control; });
    for (size_t i = 0; i < list.items.size(); ++i) {
      SCOPED_TRACE(list.control + " " + list.items[i]);
      Open(table(), shape, [&](Form& form) {
        auto& combo = dynamic_cast<ComboBox&>(At(form, list.control));
        if (combo.Shown())
          presenter_.Pick(combo, static_cast<int>(i));
        else
          combo.SetListIndex(static_cast<int>(i));
        EXPECT_EQ(combo.Text(), list.items[i]);
        ExpectRules(table(), form);
        OK(form);
      });
      EXPECT_EQ(Property(shape, field->property), CodeOf(table(), list.control, list.items[i]));
      Open(table(), shape, [&](Form& form) { EXPECT_EQ(TextOf(form, list.control), list.items[i]); });
    }
  }
}

TEST_P(ModuleDialogs, CheckBoxesAreStoredAsYesAndNo) {
  const IVShapePtr shape = Drop(table().kind);
  for (const FieldRow& field : table().fields) {
    for (const char* text : {"Yes", "No"}) {
      Open(table(), shape, [&](Form& form) {
        auto* check = dynamic_cast<CheckBox*>(&At(form, field.control));
        if (!check) return;
        if (check->Shown())
          presenter_.Check(*check, std::string_view(text) == "Yes");
        else
          check->SetChecked(std::string_view(text) == "Yes");
        OK(form);
        EXPECT_EQ(Property(shape, field.property), text) << field.control;
      });
    }
  }
}

TEST_P(ModuleDialogs, StoredTextsThatNoTableKnows) {
  for (const OddRow& odd : table().odd) {
    SCOPED_TRACE(odd.control + " \"" + odd.stored + "\"");
    host_.New();
    const IVShapePtr shape = DropFilled(table());
    const auto field = std::find_if(table().fields.begin(), table().fields.end(),
                                    [&](const FieldRow& row) { return row.control == odd.control; });
    SetProperty(shape, field->property, odd.stored);
    Open(table(), shape, [&](Form& form) {
      EXPECT_EQ(TextOf(form, odd.control), Shows(odd.shown, shape->Text()));
      ExpectRules(table(), form);
      OK(form);
    });
    EXPECT_EQ(Property(shape, field->property), Shows(odd.written, shape->Text())) << "left alone";
    SetProperty(shape, field->property, odd.stored);
    Open(table(), shape, [&](Form& form) {
      auto* combo = dynamic_cast<ComboBox*>(&At(form, odd.control));
      if (!combo || combo->Items().empty()) return;
      combo->SetListIndex(0);
      const std::string chosen = CodeOf(table(), odd.control, combo->Text());
      OK(form);
      EXPECT_EQ(Property(shape, field->property), chosen) << "an item chosen instead";
    });
  }
}

// --- OK.

TEST_P(ModuleDialogs, OKWritesTheListedCellsInOrder) {
  const IVShapePtr shape = DropFilled(table());
  Open(table(), shape, [&](Form& form) {
    const auto expected = ExpectedWrites(form, table().kind);
    EXPECT_THAT(OK(form), ElementsAreArray(expected)) << "nothing changed";
  });
  Open(table(), shape, [&](Form& form) {
    ChangeEverything(table(), form);
    const auto expected = ExpectedWrites(form, table().kind);
    const auto writes = OK(form);
    if (table().kind == "Separate") {  // its third connection point comes behind the name
      std::vector<CellWrite> others;
      std::copy_if(writes.begin(), writes.end(), std::back_inserter(others),
                   [](const CellWrite& write) { return write.cell.find("Connections") == std::string::npos; });
      EXPECT_THAT(others, ElementsAreArray(expected));
    } else {
      EXPECT_THAT(writes, ElementsAreArray(expected)) << "everything changed";
    }
  });
  EXPECT_THAT(LoadedForms(), IsEmpty());
}

TEST_P(ModuleDialogs, OpeningAndOKChangeOnlyWhatIsListed) {
  const IVShapePtr shape = Drop(table().kind);
  std::map<std::string, std::string> changes(table().changes.begin(), table().changes.end());
  const auto before = Drawn();
  Open(table(), shape, [&](Form& form) { OK(form); });
  for (const auto& [property, text] : changes) EXPECT_EQ(Property(shape, property), text);
  for (const std::string& line : Difference(before, Drawn())) {
    const size_t row = line.find(" Prop.");
    const size_t end = row == std::string::npos ? row : line.find(':', row);
    EXPECT_TRUE(end != std::string::npos && changes.contains(line.substr(row + 6, end - row - 6))) << line;
  }
}

TEST_P(ModuleDialogs, OpeningAndOKGiveAShapeWithoutPropertiesWhatIsShown) {
  const IVShapePtr shape = DropBare(table().kind);
  const auto before = Drawn();
  std::vector<CellWrite> expected;
  Open(table(), shape, [&](Form& form) {
    expected = ExpectedWrites(form, table().kind);
    OK(form);
  });
  std::set<std::string> written;
  for (const CellWrite& write : expected) {
    written.insert(write.cell);
    if (write.cell.empty())
      EXPECT_EQ(shape->Text(), write.text);
    else
      EXPECT_EQ(shape->Cells(write.cell)->Formula(), write.text) << write.cell;
  }
  // What the lists gathered has an empty row.
  for (const std::string& line : Difference(before, Drawn())) {
    const size_t row = line.find(" Prop.");
    const std::string cell = row == std::string::npos ? line : line.substr(row + 1, line.find(':', row) - row - 1);
    if (!written.contains(cell)) {
      EXPECT_TRUE(line[0] == '+' && row != std::string::npos && shape->Cells(cell)->Formula() == "\"\"") << line;
      EXPECT_EQ(shape->Cells(cell + ".Invisible")->Formula(), "1") << line;
    }
  }
}

TEST_P(ModuleDialogs, TwiceOKIsAsGoodAsOnce) {
  const IVShapePtr shape = DropBare(table().kind);
  Open(table(), shape, [&](Form& form) { OK(form); });
  const auto once = Drawn();
  Open(table(), shape, [&](Form& form) { OK(form); });
  EXPECT_THAT(Difference(once, Drawn()), IsEmpty());
}

TEST_P(ModuleDialogs, WhatIsSavedIsShownAgain) {
  const IVShapePtr shape = DropFilled(table());
  std::map<std::string, std::string> saved;
  Open(table(), shape, [&](Form& form) {
    ChangeEverything(table(), form);
    for (const FieldRow& field : table().fields) saved[field.control] = TextOf(form, field.control);
    OK(form);
  });
  Open(table(), shape, [&](Form& form) {
    for (const auto& [control, text] : saved) EXPECT_EQ(TextOf(form, control), text) << control;
  });
}

// --- Opening what is open.

TEST_P(ModuleDialogs, AskingForTheDialogThatIsOpenLeavesItAsItIs) {
  const IVShapePtr shape = DropFilled(table());
  Open(table(), shape, [&](Form& form) {
    ChangeEverything(table(), form);
    const auto seen = [&] {
      std::vector<std::string> texts;
      for (const Control* control : form.Controls()) {
        texts.push_back(control->name() + (control->Shown() ? "" : " hidden"));
        if (const auto* box = dynamic_cast<const TextControl*>(control)) texts.push_back(box->Text());
        if (const auto* combo = dynamic_cast<const ComboBox*>(control)) texts.push_back(std::to_string(combo->Items().size()));
        if (const auto* list = dynamic_cast<const ListBox*>(control)) texts.push_back(std::to_string(list->Items().size()));
      }
      return texts;
    };
    const std::vector<std::string> before = seen();
    EXPECT_THROW(addin_.ShowEditor(app_, shape), RuntimeError);
    EXPECT_TRUE(form.IsShown());
    EXPECT_EQ(seen(), before);
  });
}

// --- Cancel.

TEST_P(ModuleDialogs, CancelAndEscapeWriteNothing) {
  for (const bool bare : {false, true}) {
    for (const bool escape : {false, true}) {
      SCOPED_TRACE(std::string(bare ? "without properties" : "with all properties") + (escape ? ", Escape" : ", Cancel"));
      host_.New();
      const IVShapePtr shape = bare ? DropBare(table().kind) : DropFilled(table());
      const auto before = Drawn();
      host_.StartWriteLog();
      Open(table(), shape, [&](Form& form) {
        ChangeEverything(table(), form);
        if (escape)
          presenter_.Key(form, "Escape");
        else
          Click(form, "cmdCancel");
        EXPECT_FALSE(form.IsShown());
      });
      EXPECT_THAT(LoadedForms(), IsEmpty());
      const auto writes = host_.TakeWriteLog();
      if (!bare) {
        EXPECT_THAT(writes, IsEmpty());
        EXPECT_THAT(Difference(before, Drawn()), IsEmpty());
      }
      for (const std::string& line : Difference(before, Drawn())) {
        const size_t row = line.find(" Prop.");
        ASSERT_TRUE(line[0] == '+' && row != std::string::npos) << line;
        const std::string cell = line.substr(row + 1, line.find(':', row) - row - 1);
        EXPECT_EQ(shape->Cells(cell)->Formula(), "\"\"") << line;
        EXPECT_EQ(shape->Cells(cell + ".Invisible")->Formula(), "1") << line;
      }
    }
  }
}

// --- The name.

TEST_P(ModuleDialogs, ANameInUseIsRefusedWhateverItsCase) {
  for (const DialogTable& other : ModuleTables()) {
    SCOPED_TRACE("a name of " + other.kind);
    host_.New();
    SetProperty(Drop(other.kind), other.fields[0].property, "Taken");
    const IVShapePtr shape = Drop(table().kind);
    Open(table(), shape, [&](Form& form) {
      for (const char* name : {"Taken", "taken", "TAKEN"}) {
        Put(form, table().name, name);
        host_.StartWriteLog();
        Click(form, "cmdOK");
        EXPECT_THAT(host_.TakeWriteLog(), IsEmpty());
        ASSERT_TRUE(form.IsShown());
        ASSERT_EQ(platform_->messages.size(), 1u);
        EXPECT_EQ(platform_->messages[0], (RecordingPlatform::Message{"Shape names must be unique.", "Quellis", 16}));
        EXPECT_EQ(form.Focus(), form.Find(table().name));
        platform_->messages.clear();
      }
      Put(form, table().name, "Taken 2");
      OK(form);
    });
    EXPECT_EQ(shape->Text(), "Taken 2");
    EXPECT_EQ(Property(shape, table().fields[0].property), "Taken 2");
  }
}

TEST_P(ModuleDialogs, OfItsOwnNameOnlyAnotherCaseIsRefused) {
  const IVShapePtr shape = Drop(table().kind);
  Open(table(), shape, [&](Form& form) {
    std::string name = TextOf(form, table().name);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    Put(form, table().name, name);
    Click(form, "cmdOK");
    EXPECT_EQ(platform_->messages.size(), 1u);
    EXPECT_TRUE(form.IsShown());
    platform_->messages.clear();
    Put(form, table().name, shape->Text());
    OK(form);
  });
}

TEST_P(ModuleDialogs, AnotherModuleOfTheSameNameIsRefusedEvenIfTheNameIsUnchanged) {
  const IVShapePtr shape = Drop(table().kind);
  SetProperty(Drop("Dispose"), "DisposeName", shape->Text());
  Open(table(), shape, [&](Form& form) {
    Click(form, "cmdOK");
    EXPECT_EQ(platform_->messages.size(), 1u);
    EXPECT_TRUE(form.IsShown());
    platform_->messages.clear();
  });
}

INSTANTIATE_TEST_SUITE_P(Forms, ModuleDialogs, testing::ValuesIn(Params({&ModuleTables()})), ParamName);

}  // namespace
}  // namespace vardo::test
