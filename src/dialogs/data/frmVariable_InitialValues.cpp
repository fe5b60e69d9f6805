#include "dialogs/data/frmVariable_InitialValues.h"

#include "dialogs/data/frmVariable.h"
#include "forms/FormLayout.h"
#include "modules/data/VariableModule.h"
#include "validate/CheckDataType.h"

namespace vardo {

frmVariable_InitialValues::frmVariable_InitialValues()
    : RowDialog(kVariableModule, "frmVariable_InitialValues", "Initial Values", "Variable_Shape_Prompts.htm",
                RowsOf<frmVariable>) {
  Field(txtInitialValue, "VariableInitialValue").Check(kReal).WhenEmpty();

  FormLayout(*this, 1500, 2600).Row(lblInitialValue, txtInitialValue).Buttons(buttons.All());
}

}  // namespace vardo
