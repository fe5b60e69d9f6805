// One assignment of the Assign dialog's list: what is assigned, and its new value.
#pragma once

#include "dialogs/RowDialog.h"

namespace vardo {

class frmAssign_Assignments : public RowDialog {
 public:
  frmAssign_Assignments();
  // The entry method: edits a line of the list, or makes a new one for kAddRow.
  void Assign_Assignment(std::string_view line) { Open(line); }

 private:
  std::vector<TextControl*> LineBoxes() override;
  void AfterLoad() override { cboType_Click(); }
  void AfterOK() override;
  void cboType_Click();
  bool HasNewValue() const;

  Label lblType{*this, "lblType", "&Type:"};
  ComboBox cboType{*this, "cboType", ComboBox::Style::PickOnly};
  Label lblVariableName{*this, "lblVariableName", "&Variable Name:"};
  ComboBox cboVariableName{*this, "cboVariableName"};
  Label lblAttributeName{*this, "lblAttributeName", "&Attribute Name:"};
  ComboBox cboAttributeName{*this, "cboAttributeName"};
  Label lblEntityType{*this, "lblEntityType", "&Entity Type:"};
  ComboBox cboEntityType{*this, "cboEntityType"};
  Label lblEntityPicture{*this, "lblEntityPicture", "Entity &Picture:"};
  ComboBox cboEntityPicture{*this, "cboEntityPicture"};
  Label lblOther{*this, "lblOther", "&Other:"};
  TextBox txtOther{*this, "txtOther"};
  Label lblNewValue{*this, "lblNewValue", "&New Value:"};
  TextBox txtNewValue{*this, "txtNewValue"};
  Buttons buttons{*this};
};

}  // namespace vardo
