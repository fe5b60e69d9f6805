// The Assign dialog: assignments made, in order, as an entity passes.
#pragma once

#include "dialogs/ModuleDialog.h"

namespace vardo {

class frmAssign : public ModuleDialog {
 public:
  frmAssign();
  // The entry method: edits the selected Assign shape.
  void Assign() { Open(); }

 private:
  void AfterLoad() override;
  void UnloadRowDialog() override;

  Label lblName{*this, "lblName", "&Name:"};
  ComboBox cboName{*this, "cboName"};

 public:
  RowList rows{*this, "lstAssignments", "lblAssignments", "A&ssignments:"};

 private:
  Buttons buttons{*this};
};

}  // namespace vardo
