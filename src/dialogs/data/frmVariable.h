// The Variable dialog: a variable, its dimensions and its initial values.
#pragma once

#include "dialogs/ModuleDialog.h"

namespace vardo {

class frmVariable : public ModuleDialog {
 public:
  frmVariable();
  // The entry method: edits the selected Variable shape.
  void Variable() { Open(); }

 private:
  void AfterLoad() override { ShowDimensions(); }
  void UnloadRowDialog() override;
  void ShowDimensions();

  Label lblName{*this, "lblName", "&Name:"};
  ComboBox cboName{*this, "cboName"};
  Label lblRows{*this, "lblRows", "&Rows:"};
  TextBox txtRows{*this, "txtRows"};
  Label lblColumns{*this, "lblColumns", "&Columns:"};
  TextBox txtColumns{*this, "txtColumns"};
  CheckBox chkStatistics{*this, "chkStatistics", "&Report Statistics"};

 public:
  RowList rows{*this, "lstInitialValues", "lblInitialValues", "&Initial Values:"};

 private:
  Buttons buttons{*this};
};

}  // namespace vardo
