#include "dialogs/flow/frmBatch.h"

#include "dialogs/ItemLists.h"
#include "forms/FormLayout.h"
#include "modules/flow/BatchModule.h"
#include "validate/CheckDataType.h"

namespace vardo {

frmBatch::frmBatch() : ModuleDialog(kBatchModule, "frmBatch", "Batch", "Batch_.htm") {
  Name(cboName, NamesOf<NameList::FlowModules>);
  Field(cboType, "BatchType").Items({"Permanent", "Temporary"});
  Field(txtBatchSize, "BatchBatchSize").Check(kExpression).WhenEmpty();
  Field(cboSaveCriterion, "BatchSaveCriterion").Items({"First", "Last", "Sum", "Product"});
  Field(cboRule, "BatchRule").Items({"Any Entity", "By Attribute"});
  Field(cboAttributeName, "BatchAttributeName").Items(kEntityAttributes).Offers(UserAttributes).Check(kSymbolName).WhenEmpty();
  WriteInOrder({&cboName, &cboType, &txtBatchSize, &cboRule, &cboAttributeName, &cboSaveCriterion});

  cboRule.Click = [this] { cboRule_Click(); };

  FormLayout(*this, 1700, 3000)
      .Row(lblName, cboName)
      .Row(lblType, cboType)
      .Row(lblBatchSize, txtBatchSize)
      .Row(lblSaveCriterion, cboSaveCriterion)
      .Row(lblRule, cboRule)
      .Row(lblAttributeName, cboAttributeName)
      .Buttons(buttons.All());
}

void frmBatch::cboRule_Click() { Show({&lblAttributeName, &cboAttributeName}, cboRule.Text() == "By Attribute"); }

}  // namespace vardo
