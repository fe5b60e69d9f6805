// The Dispose dialog: where entities leave the model.
#pragma once

#include "dialogs/ModuleDialog.h"

namespace vardo {

class frmDispose : public ModuleDialog {
 public:
  frmDispose();
  // The entry method: edits the selected Dispose shape.
  void Dispose() { Open(); }

 private:
  Label lblName{*this, "lblName", "&Name:"};
  ComboBox cboName{*this, "cboName"};
  CheckBox chkStatistics{*this, "chkStatistics", "&Record Entity Statistics"};
  Buttons buttons{*this};
};

}  // namespace vardo
