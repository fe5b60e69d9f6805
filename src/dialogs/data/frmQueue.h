// The Queue dialog: in which order a queue's entities leave it.
#pragma once

#include "dialogs/ModuleDialog.h"

namespace vardo {

class frmQueue : public ModuleDialog {
 public:
  frmQueue();
  // The entry method: edits the selected Queue shape.
  void Queue() { Open(); }

 private:
  void AfterLoad() override { cboType_Click(); }
  void cboType_Click();

  Label lblName{*this, "lblName", "&Name:"};
  ComboBox cboName{*this, "cboName"};
  CheckBox chkReportStatistics{*this, "chkReportStatistics", "R&eport Statistics"};
  Label lblType{*this, "lblType", "&Type:"};
  ComboBox cboType{*this, "cboType", ComboBox::Style::PickOnly};
  Label lblAttributeName{*this, "lblAttributeName", "&Attribute Name:"};
  ComboBox cboAttributeName{*this, "cboAttributeName"};
  Buttons buttons{*this};
};

}  // namespace vardo
