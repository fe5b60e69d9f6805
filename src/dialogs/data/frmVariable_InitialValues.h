// One initial value of the Variable dialog's list.
#pragma once

#include "dialogs/RowDialog.h"

namespace vardo {

class frmVariable_InitialValues : public RowDialog {
 public:
  frmVariable_InitialValues();
  // The entry method: edits a line of the list, or makes a new one for kAddRow.
  void Variable_InitialValue(std::string_view line) { Open(line); }

 private:
  std::vector<TextControl*> LineBoxes() override { return {&txtInitialValue}; }

  Label lblInitialValue{*this, "lblInitialValue", "&Initial Value:"};
  TextBox txtInitialValue{*this, "txtInitialValue"};
  Buttons buttons{*this};
};

}  // namespace vardo
