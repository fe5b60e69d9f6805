// The Schedule dialog: values that follow each other for a while each, for a capacity or an arrival rate.
#pragma once

#include "dialogs/ModuleDialog.h"

namespace vardo {

class frmSchedule : public ModuleDialog {
 public:
  frmSchedule();
  // The entry method: edits the selected Schedule shape.
  void Schedule() { Open(); }

 private:
  void AfterLoad() override { cboType_Click(); }
  void UnloadRowDialog() override;
  // The row dialog stays loaded when nothing was stored.
  void cmdCancel_Click() override { Unload(*this); }
  void cboType_Click();

  Label lblName{*this, "lblName", "&Name:"};
  ComboBox cboName{*this, "cboName"};
  Label lblType{*this, "lblType", "&Type:"};
  ComboBox cboType{*this, "cboType", ComboBox::Style::PickOnly};
  Label lblTimeUnits{*this, "lblTimeUnits", "Time &Units:"};
  ComboBox cboTimeUnits{*this, "cboTimeUnits", ComboBox::Style::PickOnly};

 public:
  RowList rows{*this, "lstDurations", "lblDurations", "&Durations"};

 private:
  Label lblScaleFactor{*this, "lblScaleFactor", "&Scale Factor:"};
  TextBox txtScaleFactor{*this, "txtScaleFactor"};
  Buttons buttons{*this};
};

}  // namespace vardo
