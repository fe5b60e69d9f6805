#include "dialogs/flow/frmProcess_Resource.h"

#include "dialogs/ItemLists.h"
#include "dialogs/flow/ProcessRows.h"
#include "dialogs/flow/frmProcess.h"
#include "forms/FormLayout.h"
#include "modules/flow/ProcessModule.h"
#include "validate/CheckDataType.h"

namespace vardo {

frmProcess_Resource::frmProcess_Resource()
    : RowDialog(kProcessModule, "frmProcess_Resource", "Resources", "Process_Shape_Prompts.htm", RowsOf<frmProcess>) {
  Field(cboType, "Process_RType").Items({kResourceRow, kSetRow});
  Field(cboResourceName, "Process_RResourceName").Offers(NamesOf<NameList::Resources>).Check(kSymbolName).WhenEmpty();
  Field(cboSetName, "Process_RSetName").Offers(NamesOf<NameList::Sets>).Check(kSymbolName).WhenEmpty();
  Field(cboSaveAttribute, "Process_RSaveAttribute").Offers(UserAttributes).Check(kSymbolName);
  Field(txtQuantity, "Process_RQuantity").Check(kExpression).WhenEmpty();
  Field(cboInputAttribute, "Process_RInputAttribute")
      .Items(kAssignableAttributes)
      .Offers(UserAttributes)
      .Check(kExpression)
      .WhenEmpty();
  Field(cboSelectionRule, "Process_RSelectionRule").Default(kSelectionRules[0].text).Items(kSelectionRuleTexts);

  cboType.Click = [this] { cboType_Click(); };
  cboSelectionRule.Click = [this] { cboSelectionRule_Click(); };

  FormLayout(*this, 1900, 3600)
      .Row(lblType, cboType)
      .Row(lblResourceName, cboResourceName)
      .InPlace(lblSetName, cboSetName)
      .Row(lblQuantity, txtQuantity)
      .Row(lblSelectionRule, cboSelectionRule)
      .Row(lblSaveAttribute, cboSaveAttribute)
      .InPlace(lblInputAttribute, cboInputAttribute)
      .Buttons(buttons.All());
}

bool frmProcess_Resource::IsResource() const { return cboType.Text() == kResourceRow; }

bool frmProcess_Resource::IsSpecificMember() const { return cboSelectionRule.Text() == kSpecificMember.text; }

void frmProcess_Resource::cboType_Click() {
  if (!IsResource() && cboType.Text() != kSetRow) return;
  Show({&lblResourceName, &cboResourceName}, IsResource());
  Show({&lblSetName, &cboSetName, &lblSelectionRule, &cboSelectionRule}, !IsResource());
  if (IsResource())
    Show({&lblSaveAttribute, &cboSaveAttribute, &lblInputAttribute, &cboInputAttribute}, false);
  else
    cboSelectionRule_Click();
}

void frmProcess_Resource::cboSelectionRule_Click() {
  Show({&lblSaveAttribute, &cboSaveAttribute}, !IsSpecificMember());
  Show({&lblInputAttribute, &cboInputAttribute}, IsSpecificMember());
}

std::vector<TextControl*> frmProcess_Resource::LineBoxes() {
  if (IsResource()) return {&cboType, &cboResourceName, &txtQuantity};
  TextControl* const attribute = IsSpecificMember() ? &cboInputAttribute : &cboSaveAttribute;
  return {&cboType, &cboSetName, &txtQuantity, &cboSelectionRule, attribute};
}

// The next row can choose the names of this one.
void frmProcess_Resource::AfterOK() {
  if (IsResource()) return cboResourceName.AddItem(cboResourceName.Text());
  const std::string attribute = LineBoxes().back()->Text();
  if (IsSpecificMember() || !attribute.empty())
    for (ComboBox* box : {&cboInputAttribute, &cboSaveAttribute}) box->AddItem(attribute);
  cboSetName.AddItem(cboSetName.Text());
}

}  // namespace vardo
