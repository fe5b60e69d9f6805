#include "dialogs/flow/frmAssign.h"

#include "dialogs/ItemLists.h"
#include "dialogs/flow/frmAssign_Assignments.h"
#include "forms/FormLayout.h"
#include "modules/flow/AssignModule.h"

namespace vardo {
namespace {

constexpr const RowGroup& kRows = kAssignModule.rows;
constexpr size_t kType = kRows.ColumnOf("AssignType"), kVariable = kRows.ColumnOf("AssignVariableName"),
                 kAttribute = kRows.ColumnOf("AssignAttributeName"), kEntityType = kRows.ColumnOf("AssignEntityType"),
                 kPicture = kRows.ColumnOf("AssignEntityPicture"), kOther = kRows.ColumnOf("AssignOther"),
                 kNewValue = kRows.ColumnOf("AssignNewValue");

std::vector<size_t> LineColumns(const StringList& row) {
  const std::string& type = row[kType];
  if (type == "Variable") return {kType, kVariable, kNewValue};
  if (type == "Attribute") return {kType, kAttribute, kNewValue};
  if (type == "Entity Type") return {kType, kEntityType};
  if (type == "Entity Picture") return {kType, kPicture};
  if (type == "Other") return {kType, kOther, kNewValue};
  return {};
}

}  // namespace

frmAssign::frmAssign() : ModuleDialog(kAssignModule, "frmAssign", "Assign", "Assign_.htm") {
  Name(cboName, NamesOf<NameList::FlowModules>);
  Rows(rows, [](std::string_view line) { DefaultForm<frmAssign_Assignments>().Assign_Assignment(line); }).LineShows(LineColumns);

  FormLayout(*this, 1500, 3600).Row(lblName, cboName).List(rows.label, rows.list, rows.Buttons(), 8).Buttons(buttons.All());
}

void frmAssign::AfterLoad() { DefaultForm<frmAssign_Assignments>().FillLists(); }

void frmAssign::UnloadRowDialog() { UnloadIfLoaded<frmAssign_Assignments>(); }

}  // namespace vardo
