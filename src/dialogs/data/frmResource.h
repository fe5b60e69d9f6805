// The Resource dialog: how much of a resource there is, and what it costs.
#pragma once

#include "dialogs/ModuleDialog.h"

namespace vardo {

class frmResource : public ModuleDialog {
 public:
  frmResource();
  // The entry method: edits the selected Resource shape.
  void Resource() { Open(); }

 private:
  void AfterLoad() override { cboType_Click(); }
  void WriteAfterName(const IVShapePtr& shape) override;
  void cboType_Click();
  bool FollowsSchedule() const;

  Label lblName{*this, "lblName", "&Name:"};
  ComboBox cboName{*this, "cboName"};
  Frame Frame1{*this, "Frame1", "Costs"};
  Label lblBusy_Hour{*this, "lblBusy_Hour", "&Busy / Hour:"};
  TextBox txtBusy_Hour{*this, "txtBusy_Hour"};
  Label lblIdle_Hour{*this, "lblIdle_Hour", "&Idle / Hour:"};
  TextBox txtIdle_Hour{*this, "txtIdle_Hour"};
  Label lblPerUse{*this, "lblPerUse", "&Per Use:"};
  TextBox txtPerUse{*this, "txtPerUse"};
  CheckBox chkReportStatistics{*this, "chkReportStatistics", "R&eport Statistics"};
  Label lblType{*this, "lblType", "&Type:"};
  ComboBox cboType{*this, "cboType", ComboBox::Style::PickOnly};
  Label lblCapacity{*this, "lblCapacity", "&Capacity:"};
  TextBox txtCapacity{*this, "txtCapacity"};
  Label lblScheduleName{*this, "lblScheduleName", "&Schedule Name:"};
  ComboBox cboScheduleName{*this, "cboScheduleName"};
  Label lblScheduleRule{*this, "lblScheduleRule", "Schedule &Rule:"};
  ComboBox cboScheduleRule{*this, "cboScheduleRule", ComboBox::Style::PickOnly};
  Buttons buttons{*this};
};

}  // namespace vardo
