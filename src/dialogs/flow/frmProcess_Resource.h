// One row of the Process dialog's list: a resource, or a set of resources and how a member is selected.
#pragma once

#include "dialogs/RowDialog.h"

namespace vardo {

class frmProcess_Resource : public RowDialog {
 public:
  frmProcess_Resource();
  // The entry method: edits a line of the list, or makes a new one for kAddRow.
  void Process_Resource(std::string_view line) { Open(line); }

 private:
  std::vector<TextControl*> LineBoxes() override;
  void AfterLoad() override { cboType_Click(); }
  void AfterOK() override;
  void cboType_Click();
  void cboSelectionRule_Click();
  bool IsResource() const;
  bool IsSpecificMember() const;

  Label lblType{*this, "lblType", "&Type:"};
  ComboBox cboType{*this, "cboType", ComboBox::Style::PickOnly};
  Label lblResourceName{*this, "lblResourceName", "&Resource Name:"};
  ComboBox cboResourceName{*this, "cboResourceName"};
  Label lblSetName{*this, "lblSetName", "&Set Name:"};
  ComboBox cboSetName{*this, "cboSetName"};
  Label lblQuantity{*this, "lblQuantity", "&Quantity:"};
  TextBox txtQuantity{*this, "txtQuantity"};
  Label lblSelectionRule{*this, "lblSelectionRule", "Selection &Rule:"};
  ComboBox cboSelectionRule{*this, "cboSelectionRule", ComboBox::Style::PickOnly};
  Label lblSaveAttribute{*this, "lblSaveAttribute", "Sa&ve Attribute:"};
  ComboBox cboSaveAttribute{*this, "cboSaveAttribute"};
  Label lblInputAttribute{*this, "lblInputAttribute", "S&et Index:"};
  ComboBox cboInputAttribute{*this, "cboInputAttribute"};
  Buttons buttons{*this};
};

}  // namespace vardo
