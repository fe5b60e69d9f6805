// The Record dialog: what is counted or recorded as an entity passes, and where it goes.
#pragma once

#include "dialogs/ModuleDialog.h"

namespace vardo {

class frmRecord : public ModuleDialog {
 public:
  frmRecord();
  // The entry method: edits the selected Record shape.
  void Record() { Open(); }

 private:
  void AfterLoad() override;
  void cboType_Click();

  Label lblName{*this, "lblName", "&Name:"};
  ComboBox cboName{*this, "cboName"};
  Label lblType{*this, "lblType", "&Type:"};
  ComboBox cboType{*this, "cboType", ComboBox::Style::PickOnly};
  Label lblValue{*this, "lblValue", "&Value:"};
  TextBox txtValue{*this, "txtValue"};
  Label lblAttributeName{*this, "lblAttributeName", "&Attribute Name:"};
  ComboBox cboAttributeName{*this, "cboAttributeName"};
  CheckBox chkRecordIntoSet{*this, "chkRecordIntoSet", "&Record into Set"};
  Label lblCounterName{*this, "lblCounterName", "&Counter Name:"};
  ComboBox cboCounterName{*this, "cboCounterName"};
  Label lblTallyName{*this, "lblTallyName", "Tall&y Name:"};
  ComboBox cboTallyName{*this, "cboTallyName"};
  Label lblCounterSetName{*this, "lblCounterSetName", "&Counter Set Name:"};
  ComboBox cboCounterSetName{*this, "cboCounterSetName"};
  Label lblTallySetName{*this, "lblTallySetName", "&Tally Set Name:"};
  ComboBox cboTallySetName{*this, "cboTallySetName"};
  Label lblSetIndex{*this, "lblSetIndex", "&Set Index:"};
  ComboBox cboSetIndex{*this, "cboSetIndex"};
  Buttons buttons{*this};
};

}  // namespace vardo
