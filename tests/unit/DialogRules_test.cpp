// What one module's dialog does that no other does.
#include "DialogHarness.h"

namespace vardo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr short kThirdPoint = 2;

class DialogRules : public DialogHarness {
 protected:
  std::string PointX(const IVShapePtr& shape, short row) {
    return shape->RowExists(kSectionConnectionPts, row, kExistsAnywhere)
               ? shape->CellsSRC(kSectionConnectionPts, row, kCellConnectionX)->Formula()
               : "<none>";
  }
  std::string PointY(const IVShapePtr& shape, short row) {
    return shape->CellsSRC(kSectionConnectionPts, row, kCellConnectionY)->Formula();
  }
  // Opens, edits and presses OK; returns what was written.
  std::vector<CellWrite> Save(const DialogTable& table, const IVShapePtr& shape, const Settings& settings) {
    std::vector<CellWrite> writes;
    Open(table, shape, [&](Form& form) {
      Put(form, settings);
      host_.StartWriteLog();
      Click(form, "cmdOK");
      writes = host_.TakeWriteLog();
      EXPECT_FALSE(form.IsShown());
      EXPECT_THAT(platform_->messages, IsEmpty());
    });
    return writes;
  }
  std::vector<std::string> PageNames() {
    std::vector<std::string> names;
    for (int i = 1; i <= host_.drawing().PageCount(); ++i) names.push_back(host_.drawing().PageAt(i).Name());
    return names;
  }
};

// --- Process.

TEST_F(DialogRules, TheDelayTypeNamesTheValueOrLeavesItsNameAlone) {
  const struct {
    const char* type;
    const char* caption;
  } cases[] = {{"Constant", "Value:"},
               {"Uniform", "Value:"},
               {"Normal", "Value (Mean):"},
               {"Expression", "Value (Mean):"},
               {"Triangular", "Value (Most Likely):"},
               {"Uniform", "Value (Most Likely):"}};
  Open(TableOf("frmProcess"), Drop("Process"), [&](Form& form) {
    for (const auto& [type, caption] : cases) {
      presenter_.Type(dynamic_cast<TextControl&>(At(form, "cboDelayType")), type);
      EXPECT_EQ(At(form, "lblValue").Caption(), caption) << type;
    }
  });
  const IVShapePtr shape = Drop("Process");
  SetProperty(shape, "ProcessDelayType", "Uniform");
  Open(TableOf("frmProcess"), shape, [&](Form& form) { EXPECT_EQ(At(form, "lblValue").Caption(), "&Value:"); });
}

TEST_F(DialogRules, ASubmodelsShortcutMenuIsAnother) {
  const DialogTable& table = TableOf("frmProcess");
  const IVShapePtr shape = Drop("Process");
  Save(table, shape, {{"cboType", "Submodel"}});
  EXPECT_EQ(shape->Cells("User.menuid")->Formula(), "0");
  Save(table, shape, {{"cboType", "Standard"}});
  EXPECT_EQ(shape->Cells("User.menuid")->Formula(), "1");
}

TEST_F(DialogRules, AProcessWithoutTheMenuCellGetsIt) {
  const IVShapePtr shape = Drop("Process");
  for (short row = 0; row < shape->RowCount(kSectionUser);) {
    const int rows = shape->RowCount(kSectionUser);
    const std::string before = shape->CellsSRC(kSectionUser, row, kCellUserValue)->Formula();
    if (before == "\"Process\"") {
      ++row;
      continue;
    }
    shape->DeleteRow(kSectionUser, row);
    ASSERT_LT(shape->RowCount(kSectionUser), rows);
  }
  ASSERT_FALSE(shape->CellExists("User.menuid", kExistsAnywhere));
  Save(TableOf("frmProcess"), shape, {{"cboType", "Submodel"}});
  EXPECT_EQ(shape->Cells("User.menuid")->Formula(), "0");
}

TEST_F(DialogRules, ARenamedProcessTakesItsSubmodelPageAlong) {
  const DialogTable& table = TableOf("frmProcess");
  const int page = host_.ActivePage().id();
  const IVShapePtr shape = Drop("Process");
  host_.RunCommand("Edit Submodel", [&] { addin_.Submodel(app_, shape); });
  host_.ShowPage(page);
  const auto writes = Save(table, shape, {{"cboName", "Grind"}});
  ASSERT_GE(writes.size(), 3u);
  EXPECT_EQ(writes[0], (CellWrite{"Process", "User.menuid", "1"}));
  EXPECT_EQ(writes[1], (CellWrite{"Process", "Prop.VardoSubPage", "\"Grind (Submodel)\""}));
  EXPECT_EQ(writes[2], (CellWrite{"Process", "", "Grind"}));
  EXPECT_THAT(PageNames(), ElementsAre("Page-1", "Grind (Submodel)"));
  EXPECT_EQ(Property(shape, "VardoSubPage"), "Grind (Submodel)");
  Save(table, shape, {{"cboAction", "Seize Delay"}});
  EXPECT_THAT(PageNames(), ElementsAre("Page-1", "Grind (Submodel)")) << "not renamed";
  Save(table, shape, {{"cboName", "Grind and polish the castings"}});
  EXPECT_THAT(PageNames(), ElementsAre("Page-1", "Grind and polish t0 (Submodel)"));
  EXPECT_EQ(Property(shape, "VardoSubPage"), "Grind and polish t0 (Submodel)");
  Save(table, shape, {{"cboName", "Grind and polish the castings twice"}});
  EXPECT_THAT(PageNames(), ElementsAre("Page-1", "Grind and polish t0 (Submodel)")) << "it begins alike";
}

TEST_F(DialogRules, ALinkToAPageThatHasGoneIsRenamedAllTheSame) {
  const IVShapePtr shape = Drop("Process");
  SetProperty(shape, "VardoSubPage", "Gone");
  Save(TableOf("frmProcess"), shape, {{"cboName", "Grind"}});
  EXPECT_EQ(Property(shape, "VardoSubPage"), "Grind (Submodel)");
  EXPECT_THAT(PageNames(), ElementsAre("Page-1"));
}

TEST_F(DialogRules, ARenamedProcessWithoutSubmodelGetsNoLink) {
  const DialogTable& table = TableOf("frmProcess");
  for (const bool bare : {false, true}) {
    host_.New();
    const IVShapePtr shape = bare ? DropBare("Process") : Drop("Process");
    Save(table, shape, {{"cboName", "Grind"}});
    EXPECT_EQ(Property(shape, "VardoSubPage"), bare ? "<missing>" : "");
  }
}

// --- Separate.

TEST_F(DialogRules, TheThirdPointOfASeparateIsWrittenBehindItsName) {
  const DialogTable& table = TableOf("frmSeparate");
  const IVShapePtr shape = Drop("Separate");
  Save(table, shape, {{"cboType", "Split Existing Batch"}});
  const int points = shape->RowCount(kSectionConnectionPts);
  const std::string first = PointX(shape, 0), second = PointX(shape, 1);
  const auto writes = Save(table, shape, {{"cboType", "Duplicate Original"}});
  ASSERT_GE(writes.size(), 5u);
  EXPECT_EQ(writes[1].cell, "Prop.SeparateName");
  EXPECT_EQ(writes[2].text, "Width*0.8912");
  EXPECT_EQ(writes[3].text, "Height*0");
  EXPECT_EQ(writes[4].cell, "Prop.SeparateType");
  EXPECT_EQ(shape->RowCount(kSectionConnectionPts), points + 1);
  EXPECT_EQ(PointX(shape, kThirdPoint), "Width*0.8912");
  EXPECT_EQ(PointY(shape, kThirdPoint), "Height*0");
  EXPECT_EQ(PointX(shape, 0), first);
  EXPECT_EQ(PointX(shape, 1), second);
  Save(table, shape, {});
  Save(table, shape, {});
  EXPECT_EQ(shape->RowCount(kSectionConnectionPts), points + 1) << "once, however often it is saved";
  Open(table, shape, [&](Form& form) {
    Put(form, "cboType", "Split Existing Batch");
    Click(form, "cmdCancel");
  });
  EXPECT_EQ(shape->RowCount(kSectionConnectionPts), points + 1) << "Cancel takes none away";
  Save(table, shape, {{"cboType", "Split Existing Batch"}});
  EXPECT_EQ(shape->RowCount(kSectionConnectionPts), points);
  Save(table, shape, {});
  EXPECT_EQ(shape->RowCount(kSectionConnectionPts), points);
}

TEST_F(DialogRules, AThirdPointElsewhereIsSomebodyElses) {
  const DialogTable& table = TableOf("frmSeparate");
  for (const char* other : {"Width*0.5", "width*0.8912", "Width*0.891"}) {
    SCOPED_TRACE(other);
    host_.New();
    const IVShapePtr shape = Drop("Separate");
    Save(table, shape, {{"cboType", "Split Existing Batch"}});
    ASSERT_EQ(shape->AddRow(kSectionConnectionPts, kThirdPoint, kTagDefault), kThirdPoint);
    shape->CellsSRC(kSectionConnectionPts, kThirdPoint, kCellConnectionX)->SetFormula(other);
    const int points = shape->RowCount(kSectionConnectionPts);
    Save(table, shape, {{"cboType", "Split Existing Batch"}});
    EXPECT_EQ(PointX(shape, kThirdPoint), other);
    EXPECT_EQ(shape->RowCount(kSectionConnectionPts), points);
    Save(table, shape, {{"cboType", "Duplicate Original"}});
    EXPECT_EQ(PointX(shape, kThirdPoint), "Width*0.8912");
    EXPECT_EQ(shape->RowCount(kSectionConnectionPts), points + 1);
    Save(table, shape, {});
    EXPECT_EQ(shape->RowCount(kSectionConnectionPts), points + 1);
  }
}

TEST_F(DialogRules, TheNumberOfDuplicatesIsFoundInEitherSpelling) {
  const DialogTable& table = TableOf("frmSeparate");
  const IVShapePtr shape = DropBare("Separate");
  SetProperty(shape, "SeparateNumberOfDuplicates", "7");
  Open(table, shape, [&](Form& form) { EXPECT_EQ(TextOf(form, "txtNumofDuplicates"), "7"); });
  Save(table, shape, {{"txtNumofDuplicates", "8"}});
  Open(table, shape, [&](Form& form) { EXPECT_EQ(TextOf(form, "txtNumofDuplicates"), "8"); });
  EXPECT_EQ(Property(shape, "SeparateNumberOfDuplicates"), "8");
}

// A name may begin with "e" and hold anything.
TEST_F(DialogRules, RowsOfOneFieldAreKeptWhole) {
  const struct {
    const char* form;
    const char* kind;
    const char* column;
    const char* count;
    const char* box;
  } cases[] = {{"frmSeparate", "Separate", "AttributeName", "Separate_ACount", "cboAttributeName"},
               {"frmSet", "Set", "SetResourceMembers", "SetM_Count", "cboResourceName"}};
  for (const auto& [formName, kind, column, count, box] : cases) {
    SCOPED_TRACE(formName);
    const DialogTable& table = TableOf(formName);
    const RowGroup& rows = table.rows[0];
    const IVShapePtr shape = Drop(kind);
    Open(table, shape, [&](Form& form) {
      Put(form, rows.setup);
      Add(form, TableOf(rows.dialog), [&, box = box](Form& row) {
        Put(row, box, "e;x");
        Click(row, "cmdOK");
      });
      EXPECT_THAT(ListAt(form, rows.list).Items(), ElementsAre("e;x", kEndOfList));
      Edit(form, TableOf(rows.dialog), 0, [&, box = box](Form& row) {
        EXPECT_EQ(TextOf(row, box), "e;x");
        Click(row, "cmdOK");
      });
      Click(form, "cmdOK");
    });
    EXPECT_EQ(Property(shape, column), "e;x");
    EXPECT_EQ(Property(shape, count), "1");
  }
}

// --- Record.

TEST_F(DialogRules, ANewNameOfARecordIsNotItsCountersUnlessThatIsEmptied) {
  const DialogTable& table = TableOf("frmRecord");
  const IVShapePtr shape = Drop("Record");
  Open(table, shape, [&](Form& form) {
    EXPECT_EQ(TextOf(form, "cboCounterName"), "Record 1");
    presenter_.Type(dynamic_cast<TextControl&>(At(form, "cboName")), "Passes");
    presenter_.Focus(At(form, "cmdOK"));
    EXPECT_EQ(TextOf(form, "cboCounterName"), "Record 1");
    Click(form, "cmdOK");
  });
  EXPECT_EQ(Property(shape, "RecordName"), "Passes");
  EXPECT_EQ(Property(shape, "RecordCounterName"), "Record 1");
  Open(table, shape, [&](Form& form) {
    presenter_.Type(dynamic_cast<TextControl&>(At(form, "cboName")), "Goes");
    presenter_.Type(dynamic_cast<TextControl&>(At(form, "cboCounterName")), "");
    presenter_.Focus(At(form, "cmdOK"));
    EXPECT_EQ(TextOf(form, "cboCounterName"), "Goes") << "the name as it is in its box";
  });
}

TEST_F(DialogRules, RecordingIntoASetSurvivesEntityStatistics) {
  Open(TableOf("frmRecord"), Drop("Record"), [&](Form& form) {
    presenter_.Check(dynamic_cast<CheckBox&>(At(form, "chkRecordIntoSet")), true);
    EXPECT_TRUE(At(form, "cboCounterSetName").Shown());
    EXPECT_TRUE(At(form, "cboSetIndex").Shown());
    EXPECT_FALSE(At(form, "cboCounterName").Shown());
    presenter_.Type(dynamic_cast<TextControl&>(At(form, "cboType")), "Entity Statistics");
    for (const char* box :
         {"chkRecordIntoSet", "cboCounterSetName", "cboTallySetName", "cboSetIndex", "cboCounterName", "cboTallyName"})
      EXPECT_FALSE(At(form, box).Shown()) << box;
    EXPECT_EQ(TextOf(form, "chkRecordIntoSet"), "Yes");
    presenter_.Type(dynamic_cast<TextControl&>(At(form, "cboType")), "Time Between");
    EXPECT_TRUE(At(form, "cboTallySetName").Shown());
  });
}

// --- Variable.

TEST_F(DialogRules, DimensionsAreLookedAtWhenTheRowsAreLeft) {
  Open(TableOf("frmVariable"), Drop("Variable"), [&](Form& form) {
    const auto type = [&](const char* box, const char* text) {
      presenter_.Type(dynamic_cast<TextControl&>(At(form, box)), text);
    };
    EXPECT_TRUE(At(form, "chkStatistics").Shown());
    EXPECT_FALSE(At(form, "txtColumns").Shown());
    type("txtRows", "2");
    EXPECT_TRUE(At(form, "chkStatistics").Shown()) << "while it is typed";
    presenter_.Focus(At(form, "cboName"));
    EXPECT_FALSE(At(form, "chkStatistics").Shown());
    EXPECT_TRUE(At(form, "txtColumns").Shown());
    type("txtColumns", "3");
    type("txtRows", "");
    presenter_.Focus(At(form, "cboName"));
    EXPECT_FALSE(At(form, "txtColumns").Shown());
    EXPECT_FALSE(At(form, "chkStatistics").Shown()) << "the hidden columns still count";
    type("txtRows", "2");
    presenter_.Focus(At(form, "cboName"));
    type("txtColumns", "");
    type("cboName", "Stock");
    dynamic_cast<TextControl&>(At(form, "txtRows")).SetText("");
    EXPECT_FALSE(At(form, "chkStatistics").Shown()) << "until the rows are left";
    presenter_.Focus(At(form, "txtRows"));
    presenter_.Focus(At(form, "cboName"));
    EXPECT_TRUE(At(form, "chkStatistics").Shown());
  });
}

// --- Texts that pass.

// Programs can show what a person cannot pick.
TEST_F(DialogRules, AChoiceOutsideItsListIsStoredAsTheLast) {
  const struct {
    const char *form, *kind, *box, *property, *stored;
  } cases[] = {
      {"frmDecide", "Decide", "cboType", "DecideType", "If"},
      {"frmSeparate", "Separate", "cboType", "SeparateType", "Split"},
      {"frmSeparate", "Separate", "cboMemberAttributes", "SeparateMemberAttributes", "Specific"},
      {"frmProcess", "Process", "cboAllocation", "ProcessAllocation", "Other"},
      {"frmResource", "Resource", "cboType", "ResourceType", "Schedule"},
  };
  for (const auto& c : cases) {
    const IVShapePtr shape = Drop(c.kind);
    Save(TableOf(c.form), shape, {{c.box, "Odd"}});
    EXPECT_EQ(Property(shape, c.property), c.stored) << c.box;
  }
}

TEST_F(DialogRules, TextsThatTheChecksLetPass) {
  const struct {
    const char* form;
    const char* control;
    const char* text;
    const char* property;
  } cases[] = {
      {"frmDecide", "cboPercentTrue", "33.3", "DecidePercentTrue"},
      {"frmDecide", "cboPercentTrue", "250", "DecidePercentTrue"},
      {"frmDecide", "txtValue", ")(", "DecideValue"},
      {"frmEntity", "txtWaiting", "-1", "EntityWaiting"},
      {"frmEntity", "cboInitialPicture", "Picture.New one", "EntityInitialPicture"},
      {"frmQueue", "cboAttributeName", "Entity.Type", "QueueAttributeName"},
      {"frmResource", "txtBusy_Hour", "2.5", "ResourceBusy_Hour"},
      {"frmVariable", "txtRows", "99999999999", "VariableRows"},
      {"frmVariable", "txtRows", "007", "VariableRows"},
      {"frmProcess", "cboPriority", "Entity.Type", "ProcessPriority"},
      {"frmProcess", "cboPriority", "", "ProcessPriority"},
      {"frmBatch", "cboAttributeName", "e:;,", "BatchAttributeName"},
  };
  for (const auto& [form, control, text, property] : cases) {
    SCOPED_TRACE(std::string(control) + " " + text);
    host_.New();
    const DialogTable& table = TableOf(form);
    const IVShapePtr shape = Drop(table.kind);
    Open(table, shape, [&, control = control, text = text](Form& shown) {
      dynamic_cast<TextControl&>(At(shown, control)).SetText(text);
      Click(shown, "cmdOK");
      EXPECT_FALSE(shown.IsShown());
    });
    EXPECT_EQ(Property(shape, property), text);
    EXPECT_THAT(platform_->messages, IsEmpty());
  }
}

// --- All of them: which shape.

class AnyModule : public TableTest {};

TEST_P(AnyModule, AnEmptiedNameGetsTheTextThatTheShapeHasByThen) {
  const IVShapePtr shape = Drop(table().kind);
  Open(table(), shape, [&](Form& form) {
    shape->SetText("By then");
    presenter_.Type(dynamic_cast<TextControl&>(At(form, table().name)), "");
    presenter_.Focus(At(form, "cmdHelp"));
    EXPECT_EQ(TextOf(form, table().name), "By then");
  });
}

TEST_P(AnyModule, ANameIsInUseWhenItIsSoByThen) {
  const IVShapePtr other = Drop(table().kind), shape = Drop(table().kind);
  const std::string nameProperty = table().fields.front().property;
  Open(table(), shape, [&](Form& form) {
    Put(form, table().name, "Taken");
    SetProperty(other, nameProperty, "taken");
    Click(form, "cmdOK");
    EXPECT_TRUE(form.IsShown());
    SetProperty(other, nameProperty, "free");
    Click(form, "cmdOK");
    EXPECT_FALSE(form.IsShown());
  });
  EXPECT_EQ(shape->Text(), "Taken");
}

TEST_P(AnyModule, OKWritesToTheShapeThatIsSelectedByThen) {
  const IVShapePtr opened = Drop(table().kind);
  const IVShapePtr other = Drop(table().kind);
  const std::string openedText = opened->Text();
  Open(table(), opened, [&](Form& form) {
    Put(form, table().name, "Somebody");
    host_.Select({other->ID()});
    Click(form, "cmdOK");
    EXPECT_FALSE(form.IsShown());
  });
  EXPECT_EQ(opened->Text(), openedText);
  EXPECT_EQ(other->Text(), "Somebody");
  EXPECT_EQ(Property(other, table().fields[0].property), "Somebody");
}

INSTANTIATE_TEST_SUITE_P(Forms, AnyModule, testing::ValuesIn(Params({&ModuleTables()})), ParamName);

}  // namespace
}  // namespace vardo::test
