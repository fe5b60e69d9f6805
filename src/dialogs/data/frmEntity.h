// The Entity dialog: an entity type, its picture and its initial costs.
#pragma once

#include "dialogs/ModuleDialog.h"

namespace vardo {

class frmEntity : public ModuleDialog {
 public:
  frmEntity();
  // The entry method: edits the selected Entity shape.
  void Entity() { Open(); }

 private:
  Label lblEntityType{*this, "lblEntityType", "&Entity Type:"};
  ComboBox cboEntityType{*this, "cboEntityType"};
  Label lblInitialPicture{*this, "lblInitialPicture", "&Initial Picture:"};
  ComboBox cboInitialPicture{*this, "cboInitialPicture"};
  Label lblHoldingCosts_Hour{*this, "lblHoldingCosts_Hour", "&Holding Cost / Hour:"};
  TextBox txtHoldingCosts_Hour{*this, "txtHoldingCosts_Hour"};
  Frame Frame1{*this, "Frame1", "Initial Costs"};
  Label lblValueAdded{*this, "lblValueAdded", "&Value Added:"};
  TextBox txtValueAdded{*this, "txtValueAdded"};
  Label lblNonValueAdded{*this, "lblNonValueAdded", "&Non-Value Added:"};
  TextBox txtNonValueAdded{*this, "txtNonValueAdded"};
  Label lblWaiting{*this, "lblWaiting", "&Waiting:"};
  TextBox txtWaiting{*this, "txtWaiting"};
  Label lblTransfer{*this, "lblTransfer", "&Transfer:"};
  TextBox txtTransfer{*this, "txtTransfer"};
  Label lblOther{*this, "lblOther", "&Other:"};
  TextBox txtOther{*this, "txtOther"};
  CheckBox chkReportStatistics{*this, "chkReportStatistics", "&Report Statistics"};
  Buttons buttons{*this};
};

}  // namespace vardo
