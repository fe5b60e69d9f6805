#include "dialogs/flow/frmSeparate.h"

#include "addin/host/HostConstants.h"
#include "base/Errors.h"
#include "dialogs/ItemLists.h"
#include "dialogs/flow/frmSeparate_Attributes.h"
#include "forms/FormLayout.h"
#include "modules/flow/SeparateModule.h"
#include "validate/CheckDataType.h"

namespace vardo {
namespace {

constexpr std::string_view kDuplicate = "Duplicate Original";
constexpr CodeRow kTypes[] = {{"Duplicate", kDuplicate}, {"Split", "Split Existing Batch"}};

constexpr std::string_view kSpecific = "Take Specific Representative Values";
constexpr CodeRow kMemberAttributes[] = {
    {"Retain", "Retain Original Entity Values"},
    {"All", "Take All Representative Values"},
    {"Specific", kSpecific},
};

// The connection point that duplicates leave by, on the shape's lower edge.
constexpr short kDuplicateExit = 2;
constexpr std::string_view kDuplicateExitX = "Width*0.8912";
constexpr std::string_view kDuplicateExitY = "Height*0";

void SeparateNames(ItemList& items) { AddNames(items, kSeparateModule.kind, kSeparateModule.Name().field); }

bool HasDuplicateExit(IVShape& shape) {
  return shape.RowExists(kSectionConnectionPts, kDuplicateExit, kExistsAnywhere) &&
         shape.CellsSRC(kSectionConnectionPts, kDuplicateExit, kCellConnectionX)->Formula() == kDuplicateExitX;
}

// A point that could not be placed is taken away again, so that the next OK makes it anew.
void AddDuplicateExit(IVShape& shape) {
  // Another row than the one asked for when the shape has lost points of its own.
  const short row = shape.AddRow(kSectionConnectionPts, kDuplicateExit, kTagDefault);
  try {
    shape.CellsSRC(kSectionConnectionPts, row, kCellConnectionX)->SetFormula(kDuplicateExitX);
    shape.CellsSRC(kSectionConnectionPts, row, kCellConnectionY)->SetFormula(kDuplicateExitY);
  } catch (const AutomationError&) {
    shape.DeleteRow(kSectionConnectionPts, row);
    throw;
  }
}

}  // namespace

frmSeparate::frmSeparate() : ModuleDialog(kSeparateModule, "frmSeparate", "Separate", "Separate_.htm") {
  Name(cboName, SeparateNames);
  Field(cboType, "SeparateType").Codes(kTypes, UnknownCode::ShowsLastText);
  Field(txtCostToDuplicates, "SeparateCostToDuplicates").Check(kExpression).WhenEmpty();
  // Other programs know the cell by either spelling; a cell is found whatever its letter case.
  Field(txtNumofDuplicates, "SeparateNumberofDuplicates").ReadAs("SeparateNumberOfDuplicates").Check(kExpression).WhenEmpty();
  Field(cboMemberAttributes, "SeparateMemberAttributes").Codes(kMemberAttributes, UnknownCode::ShowsLastText);
  Rows(rows, [](std::string_view line) { DefaultForm<frmSeparate_Attributes>().Separate_Attribute(line); });

  cboType.Click = [this] { cboType_Click(); };
  cboMemberAttributes.Click = [this] { cboMemberAttributes_Click(); };

  FormLayout(*this, 4000, 3900)
      .Row(lblName, cboName)
      .Row(lblType, cboType)
      .BeginChoice()
      .Row(lblCostToDuplicates, txtCostToDuplicates)
      .Behind(txtCostToDuplicates, lblPercentSign)
      .Row(lblNumofDuplicates, txtNumofDuplicates)
      .Or()
      .Row(lblMemberAttributes, cboMemberAttributes)
      .List(rows.label, rows.list, rows.Buttons(), 6)
      .EndChoice()
      .Buttons(buttons.All());
}

void frmSeparate::AfterLoad() {
  DefaultForm<frmSeparate_Attributes>().FillLists();
  cboType_Click();
}

bool frmSeparate::Duplicates() const { return cboType.Text() == kDuplicate; }

void frmSeparate::cboType_Click() {
  Show({&lblCostToDuplicates, &txtCostToDuplicates, &lblPercentSign, &lblNumofDuplicates, &txtNumofDuplicates}, Duplicates());
  Show({&lblMemberAttributes, &cboMemberAttributes}, !Duplicates());
  if (Duplicates())
    Show(rows.Controls(), false);
  else
    cboMemberAttributes_Click();
}

void frmSeparate::cboMemberAttributes_Click() { Show(rows.Controls(), cboMemberAttributes.Text() == kSpecific); }

// Duplicates leave by an exit of their own, members of a batch do not.
void frmSeparate::WriteAfterName(const IVShapePtr& shape) {
  if (Duplicates() == HasDuplicateExit(*shape)) return;
  if (Duplicates())
    AddDuplicateExit(*shape);
  else
    shape->DeleteRow(kSectionConnectionPts, kDuplicateExit);
}

void frmSeparate::UnloadRowDialog() { UnloadIfLoaded<frmSeparate_Attributes>(); }

}  // namespace vardo
