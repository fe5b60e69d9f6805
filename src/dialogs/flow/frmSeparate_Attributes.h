// One attribute of the Separate dialog's list.
#pragma once

#include "dialogs/RowDialog.h"

namespace vardo {

class frmSeparate_Attributes : public RowDialog {
 public:
  frmSeparate_Attributes();
  // The entry method: edits a line of the list, or makes a new one for kAddRow.
  void Separate_Attribute(std::string_view line) { Open(line); }

 private:
  std::vector<TextControl*> LineBoxes() override { return {&cboAttributeName}; }

  Label lblAttributeName{*this, "lblAttributeName", "&Attribute Name:"};
  ComboBox cboAttributeName{*this, "cboAttributeName"};
  Buttons buttons{*this};
};

}  // namespace vardo
