#include "dialogs/flow/frmSeparate_Attributes.h"

#include "dialogs/ItemLists.h"
#include "dialogs/flow/frmSeparate.h"
#include "forms/FormLayout.h"
#include "modules/flow/SeparateModule.h"
#include "validate/CheckDataType.h"

namespace vardo {

frmSeparate_Attributes::frmSeparate_Attributes()
    : RowDialog(kSeparateModule, "frmSeparate_Attributes", "Attributes", "Separate_Shape_Prompts.htm", RowsOf<frmSeparate>) {
  Field(cboAttributeName, "AttributeName").Items(kAssignableAttributes).Offers(UserAttributes).Check(kSymbolName).WhenEmpty();

  FormLayout(*this, 1900, 2600).Row(lblAttributeName, cboAttributeName).Buttons(buttons.All());
}

}  // namespace vardo
