#include "dialogs/data/frmVariable.h"

#include "dialogs/ItemLists.h"
#include "dialogs/data/frmVariable_InitialValues.h"
#include "forms/FormLayout.h"
#include "modules/data/VariableModule.h"
#include "validate/CheckDataType.h"

namespace vardo {

frmVariable::frmVariable() : ModuleDialog(kVariableModule, "frmVariable", "Variable", "Variable_.htm") {
  Name(cboName, NamesOf<NameList::Variables>);
  Field(txtRows, "VariableRows").Check(kInteger);
  Field(txtColumns, "VariableColumns").Check(kInteger);
  Field(chkStatistics, "VariableStatistics");
  Rows(rows, [](std::string_view line) { DefaultForm<frmVariable_InitialValues>().Variable_InitialValue(line); });

  // The rows are not tidied: a variable without any is a single value.
  txtRows.LostFocus = [this] { ShowDimensions(); };

  FormLayout(*this, 1500, 3200)
      .Row(lblName, cboName)
      .Row(lblRows, txtRows)
      .BeginChoice()
      .Row(lblColumns, txtColumns)
      .Or()
      .Row(chkStatistics)
      .EndChoice()
      .List(rows.label, rows.list, rows.Buttons(), 6)
      .Buttons(buttons.All());
}

void frmVariable::ShowDimensions() {
  Show({&chkStatistics}, txtRows.Text().empty() && txtColumns.Text().empty());
  Show({&lblColumns, &txtColumns}, !txtRows.Text().empty());
}

void frmVariable::UnloadRowDialog() { UnloadIfLoaded<frmVariable_InitialValues>(); }

}  // namespace vardo
