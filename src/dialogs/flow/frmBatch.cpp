#include "dialogs/flow/frmBatch.h"

#include "dialogs/ItemLists.h"
#include "forms/FormLayout.h"
#include "validate/CheckDataType.h"

namespace vardo {

frmBatch::frmBatch() : ModuleDialog("frmBatch", "Batch", "Batch_.htm") {
  Name(cboName, "BatchName", NamesOf<NameList::FlowModules>);
  Field(cboType, "BatchType").Default("Permanent").Items({"Permanent", "Temporary"});
  Field(txtBatchSize, "BatchBatchSize").Default("2").Check(kExpression).WhenEmpty();
  Field(cboSaveCriterion, "BatchSaveCriterion").Default("Last").Items({"First", "Last", "Sum", "Product"});
  Field(cboRule, "BatchRule").Default("Any Entity").Items({"Any Entity", "By Attribute"});
  Field(cboAttributeName, "BatchAttributeName")
      .Default("Attribute 1")
      .Items(kEntityAttributes)
      .Offers(UserAttributes)
      .Check(kSymbolName)
      .WhenEmpty();
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
