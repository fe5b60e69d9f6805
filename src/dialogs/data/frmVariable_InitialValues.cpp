#include "dialogs/data/frmVariable_InitialValues.h"

#include "dialogs/data/frmVariable.h"
#include "forms/FormLayout.h"
#include "validate/CheckDataType.h"

namespace vardo {

frmVariable_InitialValues::frmVariable_InitialValues()
    : RowDialog("frmVariable_InitialValues", "Initial Values", "Variable_Shape_Prompts.htm", RowsOf<frmVariable>) {
  Add(txtInitialValue).Default("0.0").Check(kReal).WhenEmpty();

  FormLayout(*this, 1500, 2600).Row(lblInitialValue, txtInitialValue).Buttons(buttons.All());
}

}  // namespace vardo
