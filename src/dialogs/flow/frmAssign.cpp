#include "dialogs/flow/frmAssign.h"

#include "dialogs/ItemLists.h"
#include "dialogs/flow/frmAssign_Assignments.h"
#include "forms/FormLayout.h"

namespace vardo {
namespace {

enum Column : size_t { kType, kVariable, kNewValue, kAttribute, kEntityType, kPicture, kOther };

// In the order of the enumeration.
const std::vector<RowColumn> kColumns = {
    {"AssignType", "Variable", "Variable"},
    {"AssignVariableName", "Variable 1", "Variable 1"},
    {"AssignNewValue", "1", "1"},
    {"AssignAttributeName", "Attribute 1", "Attribute 1"},
    {"AssignEntityType", "Entity 1", "Entity 1"},
    {"AssignEntityPicture", "Picture.Report", "Picture.Report"},
    {"AssignOther", "J", "J"},
};

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

frmAssign::frmAssign() : ModuleDialog("frmAssign", "Assign", "Assign_.htm") {
  Name(cboName, "AssignName", NamesOf<NameList::FlowModules>);
  Rows(rows, {"AssignCount", kColumns, LineColumns},
       [](std::string_view line) { DefaultForm<frmAssign_Assignments>().Assign_Assignment(line); });

  FormLayout(*this, 1500, 3600).Row(lblName, cboName).List(rows.label, rows.list, rows.Buttons(), 8).Buttons(buttons.All());
}

void frmAssign::AfterLoad() { DefaultForm<frmAssign_Assignments>().FillLists(); }

void frmAssign::UnloadRowDialog() { UnloadIfLoaded<frmAssign_Assignments>(); }

}  // namespace vardo
