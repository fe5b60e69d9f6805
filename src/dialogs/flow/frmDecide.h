// The Decide dialog: a branch with two exits, by chance or by a condition.
#pragma once

#include "dialogs/ModuleDialog.h"

namespace vardo {

class frmDecide : public ModuleDialog {
 public:
  frmDecide();
  // The entry method: edits the selected Decide shape.
  void Decide() { Open(); }

 private:
  void AfterLoad() override { ShowWhatTheBranchNeeds(); }
  void ShowWhatTheBranchNeeds();

  Label lblName{*this, "lblName", "&Name:"};
  ComboBox cboName{*this, "cboName"};
  Label lblType{*this, "lblType", "&Type:"};
  ComboBox cboType{*this, "cboType", ComboBox::Style::PickOnly};
  Label lblPercentTrue{*this, "lblPercentTrue", "&Percent True (0 - 100):"};
  ComboBox cboPercentTrue{*this, "cboPercentTrue"};
  Label lblPercentSign{*this, "lblPercentSign", "%"};
  Label lblIf{*this, "lblIf", "&If:"};
  ComboBox cboIf{*this, "cboIf", ComboBox::Style::PickOnly};
  Label lblNamed{*this, "lblNamed", "Na&med:"};
  ComboBox cboVariableNamed{*this, "cboVariableNamed"};
  ComboBox cboEntityTypeNamed{*this, "cboEntityTypeNamed"};
  ComboBox cboAttributeNamed{*this, "cboAttributeNamed"};
  Label lblIs{*this, "lblIs", "I&s:"};
  ComboBox cboIs{*this, "cboIs", ComboBox::Style::PickOnly};
  Label lblValue{*this, "lblValue", "&Value:"};
  TextBox txtValue{*this, "txtValue"};
  Buttons buttons{*this};
};

}  // namespace vardo
