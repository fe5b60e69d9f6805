// The row lists of six dialogs and the dialogs that edit one row.
#include "DialogHarness.h"

#include <algorithm>

namespace vardo::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

// The tables of the dialogs that have rows.
std::vector<TableParam> WithRows() {
  std::vector<TableParam> params = Params({&ModuleTables()});
  std::erase_if(params, [](TableParam table) { return table->rows.empty(); });
  return params;
}

std::string Joined(const Texts& texts) {
  std::string joined;
  for (size_t i = 0; i < texts.size(); ++i) joined += (i > 0 ? ";" : "") + texts[i];
  return joined;
}

class RowLists : public TableTest {
 protected:
  const RowGroup& rows() const { return table().rows[0]; }
  const DialogTable& rowTable() const { return TableOf(rows().dialog); }
  ListBox& List(const Form& form) const { return ListAt(form, rows().list); }
  int Selected(const Form& form) const { return List(form).ListIndex(); }
  void Select(const Form& form, int line) { presenter_.Pick(List(form), line); }

  // The columns of those rows as stored, or as OK writes them.
  Texts Columns(const std::vector<RowExample>& examples, Texts RowExample::*form) const {
    Texts columns;
    for (size_t column = 0; column < rows().columns.size(); ++column) {
      Texts items;
      for (const RowExample& example : examples) items.push_back((example.*form)[column]);
      columns.push_back(Joined(items));
    }
    return columns;
  }
  // A module whose list shows and holds those rows.
  IVShapePtr DropWith(const std::vector<RowExample>& examples, std::string_view count) {
    const IVShapePtr shape = Drop(table().kind);
    const Texts columns = Columns(examples, &RowExample::stored);
    for (size_t i = 0; i < columns.size(); ++i) SetProperty(shape, rows().columns[i], columns[i]);
    SetProperty(shape, rows().count, count);
    for (const auto& [control, text] : rows().setup)
      for (const FieldRow& field : table().fields)
        if (field.control == control) SetProperty(shape, field.property, CodeOf(table(), control, text));
    return shape;
  }
  // The first two examples: "a", "b", the sentinel.
  IVShapePtr DropWithTwo() { return DropWith({rows().examples[0], rows().examples[1]}, "2"); }
  const std::string& a() const { return rows().examples[0].line; }
  const std::string& b() const { return rows().examples[1].line; }

  void ExpectRowTexts(const Form& form, const Settings& texts) {
    for (const auto& [control, text] : texts) EXPECT_EQ(TextOf(form, control), text) << control;
  }
  Settings AddTexts() const {
    Settings texts;
    for (const FieldRow& field : rowTable().fields) texts.emplace_back(field.control, field.missing);
    return texts;
  }
  Act PressOK() {
    return [this](Form& form) { Click(form, "cmdOK"); };
  }
};

// --- Loading and storing.

TEST_P(RowLists, EveryRowIsShownAndStored) {
  Texts lines;
  for (const RowExample& example : rows().examples) lines.push_back(example.line);
  const std::string count = std::to_string(lines.size());
  lines.emplace_back(kEndOfList);
  const IVShapePtr shape = DropWith(rows().examples, count);
  Open(table(), shape, [&](Form& form) {
    EXPECT_THAT(List(form).Items(), ElementsAreArray(lines));
    EXPECT_EQ(Selected(form), 0);
    Click(form, "cmdOK");
    EXPECT_FALSE(form.IsShown());
  });
  const Texts written = Columns(rows().examples, &RowExample::written);
  for (size_t i = 0; i < written.size(); ++i) EXPECT_EQ(Property(shape, rows().columns[i]), written[i]) << rows().columns[i];
  EXPECT_EQ(Property(shape, rows().count), count);
  Open(table(), shape, [&](Form& form) { EXPECT_THAT(List(form).Items(), ElementsAreArray(lines)); });
}

TEST_P(RowLists, RowsAreWrittenLastColumnByColumnAndThenTheirCount) {
  const IVShapePtr shape = DropWithTwo();
  Open(table(), shape, [&](Form& form) {
    host_.StartWriteLog();
    Click(form, "cmdOK");
  });
  std::vector<CellWrite> expected;
  const Texts written = Columns({rows().examples[0], rows().examples[1]}, &RowExample::written);
  for (size_t i = 0; i < written.size(); ++i)
    expected.push_back({table().kind, "Prop." + rows().columns[i], "\"" + written[i] + "\""});
  expected.push_back({table().kind, "Prop." + rows().count, "\"2\""});
  std::vector<CellWrite> writes = host_.TakeWriteLog();
  ASSERT_GE(writes.size(), expected.size());
  writes.erase(writes.begin(), writes.end() - static_cast<ptrdiff_t>(expected.size()));
  EXPECT_THAT(writes, ElementsAreArray(expected));
}

TEST_P(RowLists, CountsThatAreNoNumberOfRows) {
  for (const char* count : {"abc", "", "-1", "0", " ", "NaN"}) {
    SCOPED_TRACE(count);
    host_.New();
    Open(table(), DropWith({rows().examples[0]}, count),
         [&](Form& form) { EXPECT_THAT(List(form).Items(), ElementsAre(kEndOfList)); });
  }
}

TEST_P(RowLists, OfACountBetweenTwoNumbersTheLowerCounts) {
  Open(table(), DropWith({rows().examples[0]}, "2.6"),
       [&](Form& form) { EXPECT_THAT(List(form).Items(), ElementsAre(a(), rows().shortLine, kEndOfList)); });
}

TEST_P(RowLists, RowsBeyondTheColumnsShowTheDefaults) {
  Open(table(), DropWith({rows().examples[0]}, "3"),
       [&](Form& form) { EXPECT_THAT(List(form).Items(), ElementsAre(a(), rows().shortLine, rows().shortLine, kEndOfList)); });
}

TEST_P(RowLists, ADamagedCountDoesNotFillTheMemory) {
  Open(table(), DropWith({rows().examples[0]}, "2000000000"),
       [&](Form& form) { EXPECT_EQ(List(form).Items().size(), 100'001u); });
}

TEST_P(RowLists, FewerThanTheColumnsHoldAreShown) {
  Open(table(), DropWith({rows().examples[0], rows().examples[1]}, "1"),
       [&](Form& form) { EXPECT_THAT(List(form).Items(), ElementsAre(a(), kEndOfList)); });
}

TEST_P(RowLists, MissingColumnsShowTheFirstWordsOfTheDefaults) {
  const IVShapePtr shape = DropWith({}, "1");
  for (const std::string& column : rows().columns) RemoveProperty(shape, column);
  Open(table(), shape, [&](Form& form) { EXPECT_THAT(List(form).Items(), ElementsAre(rows().missingLine, kEndOfList)); });
}

TEST_P(RowLists, WithoutRowsTheFillersAreWritten) {
  const IVShapePtr shape = DropWithTwo();
  Open(table(), shape, [&](Form& form) {
    Select(form, 0);
    Click(form, "cmdDelete");
    Click(form, "cmdDelete");
    Click(form, "cmdOK");
  });
  for (size_t i = 0; i < rows().noRows.size(); ++i) EXPECT_EQ(Property(shape, rows().columns[i]), rows().noRows[i]);
  EXPECT_EQ(Property(shape, rows().count), "0");
}

// --- Add, Edit and Delete.

TEST_P(RowLists, AddAtTheEndOfTheListAppends) {
  Open(table(), DropWithTwo(), [&](Form& form) {
    Select(form, 2);
    Add(form, rowTable(), PressOK());
    EXPECT_THAT(List(form).Items(), ElementsAre(a(), b(), rows().added, kEndOfList));
    EXPECT_EQ(Selected(form), 3) << "so the next one is appended too";
    EXPECT_TRUE(form.IsShown());
  });
}

TEST_P(RowLists, AddInsertsAboveTheSelectedRow) {
  for (const int line : {0, 1}) {
    host_.New();
    Open(table(), DropWithTwo(), [&](Form& form) {
      Select(form, line);
      Add(form, rowTable(), PressOK());
      Texts expected = {a(), b(), kEndOfList};
      expected.insert(expected.begin() + line, rows().added);
      EXPECT_THAT(List(form).Items(), ElementsAreArray(expected));
    });
  }
}

TEST_P(RowLists, AddStartsFromTheDefaultsWhateverWasEditedBefore) {
  Open(table(), DropWithTwo(), [&](Form& form) {
    Edit(form, rowTable(), 1, PressOK());
    Add(form, rowTable(), [&](Form& row) { ExpectRowTexts(row, AddTexts()); });
    Add(form, rowTable(), [&](Form& row) { ExpectRowTexts(row, AddTexts()); });
  });
}

TEST_P(RowLists, EditShowsTheRowAndReplacesIt) {
  Open(table(), DropWith(rows().examples, std::to_string(rows().examples.size())), [&](Form& form) {
    for (size_t i = 0; i < rows().examples.size(); ++i) {
      SCOPED_TRACE(rows().examples[i].line);
      const Texts before = List(form).Items();
      Edit(form, rowTable(), static_cast<int>(i), [&](Form& row) {
        ExpectRowTexts(row, rows().examples[i].shown);
        Click(row, "cmdOK");
        EXPECT_FALSE(row.IsShown());
      });
      EXPECT_THAT(List(form).Items(), ElementsAreArray(before)) << "unchanged";
      EXPECT_EQ(Selected(form), static_cast<int>(i));
    }
    // The row after it becomes what is typed into it.
    Edit(form, rowTable(), 0, [&](Form& row) {
      Put(row, rows().examples[1].shown);
      Click(row, "cmdOK");
    });
    EXPECT_EQ(List(form).Items()[0], b());
    EXPECT_EQ(List(form).Items().size(), rows().examples.size() + 1);
  });
}

TEST_P(RowLists, EditOnTheEndOfTheListDoesNothing) {
  Open(table(), DropWithTwo(), [&](Form& form) {
    Select(form, 2);
    Click(form, "cmdEdit");  // a row dialog that was shown would be a failure
    EXPECT_THAT(List(form).Items(), ElementsAre(a(), b(), kEndOfList));
  });
}

TEST_P(RowLists, DoubleClickEditsARowAndAddsAtTheEnd) {
  Open(table(), DropWithTwo(), [&](Form& form) {
    int shown = 0;
    OnForm(rows().dialog, [&](Form& row) {
      ++shown;
      ExpectRowTexts(row, rows().examples[1].shown);
      Click(row, "cmdOK");
    });
    Select(form, 1);
    presenter_.DblClick(List(form));
    EXPECT_THAT(List(form).Items(), ElementsAre(a(), b(), kEndOfList));
    OnForm(rows().dialog, [&](Form& row) {
      ++shown;
      ExpectRowTexts(row, AddTexts());
      Click(row, "cmdOK");
    });
    Select(form, 2);
    presenter_.DblClick(List(form));
    EXPECT_THAT(List(form).Items(), ElementsAre(a(), b(), rows().added, kEndOfList));
    EXPECT_EQ(shown, 2);
  });
}

TEST_P(RowLists, DeleteTakesTheSelectedRowAndKeepsThePlace) {
  Open(table(), DropWithTwo(), [&](Form& form) {
    Select(form, 2);
    Click(form, "cmdDelete");
    EXPECT_THAT(List(form).Items(), ElementsAre(a(), b(), kEndOfList)) << "the end of the list is no row";
    EXPECT_EQ(Selected(form), 2);
    Select(form, 0);
    Click(form, "cmdDelete");
    EXPECT_THAT(List(form).Items(), ElementsAre(b(), kEndOfList));
    EXPECT_EQ(Selected(form), 0) << "the row that moved up";
    Click(form, "cmdDelete");
    EXPECT_THAT(List(form).Items(), ElementsAre(kEndOfList));
    EXPECT_EQ(Selected(form), 0) << "the end of the list";
    Click(form, "cmdDelete");
    EXPECT_THAT(List(form).Items(), ElementsAre(kEndOfList));
    EXPECT_THAT(platform_->messages, IsEmpty()) << "nobody is asked";
  });
}

TEST_P(RowLists, NoSelectedLineCountsAsTheEndOfTheList) {
  Open(table(), DropWithTwo(), [&](Form& form) {
    List(form).SetListIndex(-1);
    Click(form, "cmdDelete");
    Click(form, "cmdEdit");
    EXPECT_THAT(List(form).Items(), ElementsAre(a(), b(), kEndOfList));
    Add(form, rowTable(), PressOK());
    EXPECT_THAT(List(form).Items(), ElementsAre(a(), b(), rows().added, kEndOfList));
    List(form).SetListIndex(-1);
    OnForm(rows().dialog, PressOK());
    presenter_.DblClick(List(form));
    EXPECT_THAT(List(form).Items(), ElementsAre(a(), b(), rows().added, rows().added, kEndOfList));
  });
  EXPECT_THAT(platform_->messages, IsEmpty());
}

TEST_P(RowLists, CancelOfTheRowDialogChangesNothing) {
  for (const bool escape : {false, true}) {
    host_.New();
    Open(table(), DropWithTwo(), [&](Form& form) {
      const Act leave = [&](Form& row) {
        Put(row, rows().examples[1].shown);
        if (escape)
          presenter_.Key(row, "Escape");
        else
          Click(row, "cmdCancel");
        EXPECT_FALSE(row.IsShown());
      };
      Edit(form, rowTable(), 0, leave);
      Add(form, rowTable(), leave);
      EXPECT_THAT(List(form).Items(), ElementsAre(a(), b(), kEndOfList));
      EXPECT_TRUE(form.IsShown());
    });
  }
}

TEST_P(RowLists, TheRowDialogWritesNothingToTheShape) {
  const IVShapePtr shape = DropWithTwo();
  const auto before = Drawn();
  host_.StartWriteLog();
  Open(table(), shape, [&](Form& form) {
    Add(form, rowTable(), PressOK());
    Edit(form, rowTable(), 0, PressOK());
    Click(form, "cmdDelete");
    EXPECT_THAT(Difference(before, Drawn()), IsEmpty());
    Click(form, "cmdCancel");
  });
  EXPECT_THAT(host_.TakeWriteLog(), IsEmpty());
  EXPECT_THAT(Difference(before, Drawn()), IsEmpty());
}

TEST_P(RowLists, RowsAddedEditedAndDeletedAreStored) {
  const IVShapePtr shape = DropWithTwo();
  Open(table(), shape, [&](Form& form) {
    Select(form, 2);
    Add(form, rowTable(), [&](Form& row) {
      Put(row, rows().examples[0].shown);
      Click(row, "cmdOK");
    });
    Select(form, 0);
    Click(form, "cmdDelete");
    Click(form, "cmdOK");
  });
  const Texts written = Columns({rows().examples[1], rows().examples[0]}, &RowExample::written);
  for (size_t i = 0; i < written.size(); ++i) EXPECT_EQ(Property(shape, rows().columns[i]), written[i]) << rows().columns[i];
  EXPECT_EQ(Property(shape, rows().count), "2");
}

TEST_P(RowLists, WhatIsLeftLoaded) {
  const IVShapePtr shape = DropWithTwo();
  const auto openAndLeave = [&](bool withRow, std::string_view button) {
    Open(table(), shape, [&](Form& form) {
      if (withRow) {
        Add(form, rowTable(), [](Form&) {});
        EXPECT_THAT(LoadedForms(), Contains(rows().dialog)) << "hidden, not unloaded";
      }
      Click(form, button);
    });
    return LoadedForms();
  };
  for (const bool withRow : {false, true}) {
    EXPECT_THAT(openAndLeave(withRow, "cmdOK"), IsEmpty());
    if (!rows().rowDialogStaysOnCancel || !withRow) {
      EXPECT_THAT(openAndLeave(withRow, "cmdCancel"), IsEmpty());
    }
  }
  if (rows().rowDialogStaysOnCancel) {
    EXPECT_THAT(openAndLeave(true, "cmdCancel"), ElementsAre(rows().dialog));
    EXPECT_THAT(openAndLeave(false, "cmdOK"), IsEmpty()) << "the next OK unloads it";
  }
}

INSTANTIATE_TEST_SUITE_P(Forms, RowLists, testing::ValuesIn(WithRows()), ParamName);

// --- What is one dialog's own.

class OwnRows : public DialogHarness {
 protected:
  static Texts Items(const Form& form, std::string_view combo) { return dynamic_cast<ComboBox&>(At(form, combo)).Items(); }
};

TEST_F(OwnRows, NamesTypedInOneResourceRowAreOfferedInTheNext) {
  const DialogTable& table = TableOf("frmProcess");
  const DialogTable& rowTable = TableOf("frmProcess_Resource");
  Open(table, Drop("Process"), [&](Form& form) {
    Put(form, table.rows[0].setup);
    const auto add = [&](const Settings& texts) {
      Add(form, rowTable, [&](Form& row) {
        Put(row, texts);
        Click(row, "cmdOK");
        EXPECT_FALSE(row.IsShown());
      });
    };
    for (int i = 0; i < 2; ++i) add({{"cboType", "Resource"}, {"cboResourceName", "Clerk"}});
    add({{"cboSelectionRule", "Random"}, {"cboType", "Set"}, {"cboSetName", "Crew"}, {"cboSaveAttribute", "Chosen"}});
    add({{"cboSelectionRule", "Random"}, {"cboType", "Set"}, {"cboSetName", "Team"}, {"cboSaveAttribute", ""}});
    add({{"cboSelectionRule", "Specific Member"}, {"cboType", "Set"}, {"cboSetName", "Team"}, {"cboInputAttribute", "Which"}});
    Add(form, rowTable, [&](Form& row) {
      EXPECT_THAT(Items(row, "cboResourceName"), Contains("Clerk").Times(2)) << "once per OK";
      EXPECT_THAT(Items(row, "cboSetName"), Contains("Crew").Times(1));
      EXPECT_THAT(Items(row, "cboSetName"), Contains("Team").Times(2));
      for (const char* combo : {"cboSaveAttribute", "cboInputAttribute"}) {
        EXPECT_THAT(Items(row, combo), Contains("Chosen").Times(1)) << combo;
        EXPECT_THAT(Items(row, combo), Contains("Which").Times(1)) << combo;
        EXPECT_THAT(Items(row, combo), Contains("").Times(0)) << combo;
      }
    });
    EXPECT_THAT(ListAt(form, "lstResources").Items(),
                ElementsAre("Resource;Clerk;1", "Resource;Clerk;1", "Set;Crew;1;Random;Chosen", "Set;Team;1;Random;",
                            "Set;Team;1;Specific Member;Which", kEndOfList));
  });
}

TEST_F(OwnRows, ARowOfAForeignTypeIsForASetAndSoStored) {
  const IVShapePtr shape = Drop("Process");
  SetProperty(shape, "Process_RType", "Robot");
  SetProperty(shape, "Process_RSetName", "Crew");
  SetProperty(shape, "Process_RCount", "1");
  Open(TableOf("frmProcess"), shape, [&](Form& form) {
    EXPECT_THAT(ListAt(form, "lstResources").Items(), ElementsAre("Set;Crew;1;Cyclical;", kEndOfList));
    Click(form, "cmdOK");
  });
  EXPECT_EQ(Property(shape, "Process_RType"), "Set");
}

TEST_F(OwnRows, ASetsRowBeyondTheColumnsShowsTheDefaultOfEach) {
  const IVShapePtr shape = Drop("Process");
  SetProperty(shape, "Process_RType", "Set;Set;Set");
  for (const char* column : {"Process_RSetName", "Process_RSaveAttribute"}) SetProperty(shape, column, "Own");
  SetProperty(shape, "Process_RInputAttribute", "7");
  SetProperty(shape, "Process_RCount", "3");
  Open(TableOf("frmProcess"), shape, [&](Form& form) {
    EXPECT_THAT(ListAt(form, "lstResources").Items(),
                ElementsAre("Set;Own;1;Cyclical;Own", "Set;Set 1;1;Cyclical;", "Set;Set 1;1;Cyclical;", kEndOfList));
  });
  SetProperty(shape, "Process_RSelectionRule", "SM;SM;SM");
  Open(TableOf("frmProcess"), shape, [&](Form& form) {
    EXPECT_THAT(ListAt(form, "lstResources").Items(), ElementsAre("Set;Own;1;Specific Member;7", "Set;Set 1;1;Specific Member;1",
                                                                  "Set;Set 1;1;Specific Member;1", kEndOfList));
  });
}

TEST_F(OwnRows, AnIndexThatIsStillEmptyIsTakenAndOfferedAsItIs) {
  const DialogTable& rowTable = TableOf("frmProcess_Resource");
  Open(TableOf("frmProcess"), Drop("Process"), [&](Form& form) {
    Put(form, TableOf("frmProcess").rows[0].setup);
    Add(form, rowTable, [&](Form& row) {
      Put(row, {{"cboType", "Set"}, {"cboSelectionRule", "Specific Member"}});
      dynamic_cast<ComboBox&>(At(row, "cboInputAttribute")).SetText("");
      dynamic_cast<Button&>(At(row, "cmdOK")).Click();
      EXPECT_FALSE(row.IsShown());
    });
    EXPECT_THAT(ListAt(form, "lstResources").Items(), ElementsAre("Set;Set 1;1;Specific Member;", kEndOfList));
    Add(form, rowTable, [&](Form& row) {
      for (const char* combo : {"cboSaveAttribute", "cboInputAttribute"})
        EXPECT_THAT(Items(row, combo), Contains("").Times(1)) << combo;
    });
  });
}

TEST_F(OwnRows, AnEntityTypeTypedInOneAssignmentIsOfferedInTheNext) {
  const DialogTable& rowTable = TableOf("frmAssign_Assignments");
  Open(TableOf("frmAssign"), Drop("Assign"), [&](Form& form) {
    const auto add = [&](const char* type, const char* entityType) {
      Add(form, rowTable, [&](Form& row) {
        Put(row, {{"cboType", type}, {"cboEntityType", entityType}});
        Click(row, "cmdOK");
      });
    };
    add("Entity Type", "Lorry");
    add("Variable", "Van");
    Add(form, rowTable, [&](Form& row) {
      EXPECT_THAT(Items(row, "cboEntityType"), Contains("Lorry").Times(1));
      EXPECT_THAT(Items(row, "cboEntityType"), Contains("Van").Times(0)) << "only of a row that is one";
    });
  });
}

TEST_F(OwnRows, AnAssignmentOfUnknownTypeIsNotShown) {
  const IVShapePtr shape = Drop("Assign");
  SetProperty(shape, "AssignType", "Variable;Odd;Other");
  SetProperty(shape, "AssignVariableName", "x;y;z");
  SetProperty(shape, "AssignOther", "o;p;q");
  SetProperty(shape, "AssignNewValue", "1;2;3");
  SetProperty(shape, "AssignCount", "3");
  Open(TableOf("frmAssign"), shape, [&](Form& form) {
    EXPECT_THAT(ListAt(form, "lstAssignments").Items(), ElementsAre("Variable;x;1", "Other;q;3", kEndOfList));
  });
}

TEST_F(OwnRows, TheScheduleTypeNamesTheValuesOfItsRows) {
  const struct {
    const char* type;
    const char* caption;
  } cases[] = {
      {"Arrival", "&Value (Arrival Rate):"}, {"Other", "&Value:"}, {"Odd", "&Value:"}, {"Capacity", "&Value (Capacity):"}};
  Open(TableOf("frmSchedule"), Drop("Schedule"), [&](Form& form) {
    for (const auto& [type, caption] : cases) {
      Put(form, "cboType", type);
      Add(form, TableOf("frmSchedule_Durations"), [&](Form& row) {
        EXPECT_EQ(At(row, "lblValueCapacity").Caption(), caption) << type;
        Click(row, "cmdOK");
      });
      Edit(form, TableOf("frmSchedule_Durations"), 0,
           [&](Form& row) { EXPECT_EQ(At(row, "lblValueCapacity").Caption(), caption) << type << ", edited"; });
    }
  });
}

// A set's type: where its members are kept, and what its row dialog shows.
struct SetType {
  const char* type;
  const char* cell;
  const char* combo;
  const char* label;
  const char* rowDefault;
  const char* missing;
};
constexpr SetType kSetTypes[] = {
    {"Resource", "SetResourceMembers", "cboResourceName", "&Resource Name:", "Resource 1", "Resource"},
    {"Counter", "SetCounterMembers", "cboCounterName", "&Counter Name:", "Counter 1", "Counter"},
    {"Tally", "SetTallyMembers", "cboTallyName", "&Tally Name:", "Tally 1", "Tally"},
    {"Entity Type", "SetEntityMembers", "cboEntityType", "&Entity Type:", "Entity 1", "Entity"},
    {"Entity Picture", "SetPictureMembers", "cboEntityPicture", "&Picture Name:", "Picture.Report", "Picture"},
};

TEST_F(OwnRows, ASetShowsAndStoresTheMembersOfItsType) {
  for (const SetType& chosen : kSetTypes) {
    SCOPED_TRACE(chosen.type);
    host_.New();
    const IVShapePtr shape = Drop("Set");
    for (const SetType& type : kSetTypes) SetProperty(shape, type.cell, std::string(type.type) + " A;B");
    SetProperty(shape, "SetType", chosen.type);
    SetProperty(shape, "SetM_Count", "2");
    const std::string first = std::string(chosen.type) + " A";
    Open(TableOf("frmSet"), shape, [&](Form& form) {
      EXPECT_THAT(ListAt(form, "lstMembers").Items(), ElementsAre(first, "B", kEndOfList));
      Click(form, "cmdOK");
    });
    for (const char* copy : {"SetMembers", "SetMembers2", "SetMembers3", "SetMembers4", "SetMembers5"})
      EXPECT_EQ(Property(shape, copy), first + ";B") << copy;
    for (const SetType& type : kSetTypes)
      EXPECT_EQ(Property(shape, type.cell), &type == &chosen ? first + ";B" : type.rowDefault) << type.cell;
    EXPECT_EQ(Property(shape, "SetM_Count"), "2");
    RemoveProperty(shape, chosen.cell);
    SetProperty(shape, "SetM_Count", "1");
    Open(TableOf("frmSet"), shape,
         [&](Form& form) { EXPECT_THAT(ListAt(form, "lstMembers").Items(), ElementsAre(chosen.missing, kEndOfList)); });
  }
}

TEST_F(OwnRows, ASetsTypeDecidesWhatItsRowDialogShowsAndGives) {
  Open(TableOf("frmSet"), Drop("Set"), [&](Form& form) {
    for (const SetType& chosen : kSetTypes) {
      SCOPED_TRACE(chosen.type);
      presenter_.Pick(At(form, "cboType"), static_cast<int>(&chosen - kSetTypes));
      const auto expectShown = [&](Form& row) {
        EXPECT_EQ(At(row, "lblMemberName").Caption(), chosen.label);
        for (const SetType& type : kSetTypes) EXPECT_EQ(At(row, type.combo).IsVisible(), &type == &chosen) << type.combo;
      };
      Add(form, TableOf("frmSet_Members"), [&](Form& row) {
        expectShown(row);
        EXPECT_EQ(row.Focus(), row.Find(chosen.combo));
        EXPECT_EQ(TextOf(row, chosen.combo), chosen.rowDefault);
        Put(row, chosen.combo, "Mine");
        Click(row, "cmdOK");
      });
      EXPECT_EQ(ListAt(form, "lstMembers").Items()[0], "Mine");
      Edit(form, TableOf("frmSet_Members"), 0, [&](Form& row) {
        expectShown(row);
        for (const SetType& type : kSetTypes) EXPECT_EQ(TextOf(row, type.combo), "Mine") << type.combo;
        Put(row, chosen.combo, std::string("Other ") + chosen.type);
        Click(row, "cmdOK");
      });
      EXPECT_EQ(ListAt(form, "lstMembers").Items()[0], std::string("Other ") + chosen.type);
    }
    Put(form, "cboType", "Odd");
    Add(form, TableOf("frmSet_Members"), [&](Form& row) {
      EXPECT_EQ(At(row, "lblMemberName").Caption(), "&Entity Type:");
      for (const SetType& type : kSetTypes) EXPECT_FALSE(At(row, type.combo).IsVisible()) << type.combo;
    });
  });
}

TEST_F(OwnRows, ATypeOutsideTheListKeepsSetsOfResources) {
  const IVShapePtr shape = Drop("Set");
  SetProperty(shape, "SetType", "Odd");
  SetProperty(shape, "SetResourceMembers", "Clerk");
  SetProperty(shape, "SetM_Count", "1");
  Open(TableOf("frmSet"), shape,
       [&](Form& form) { EXPECT_THAT(ListAt(form, "lstMembers").Items(), ElementsAre("Clerk", kEndOfList)); });
}

TEST_F(OwnRows, ChangingASetsTypeKeepsTheRowsOnTheList) {
  const IVShapePtr shape = Drop("Set");
  SetProperty(shape, "SetResourceMembers", "Clerk");
  SetProperty(shape, "SetM_Count", "1");
  Open(TableOf("frmSet"), shape, [&](Form& form) {
    Put(form, "cboType", "Tally");
    EXPECT_THAT(ListAt(form, "lstMembers").Items(), ElementsAre("Clerk", kEndOfList));
    Click(form, "cmdOK");
  });
  EXPECT_EQ(Property(shape, "SetTallyMembers"), "Clerk");
  EXPECT_EQ(Property(shape, "SetResourceMembers"), "Resource 1");
}

}  // namespace
}  // namespace vardo::test
