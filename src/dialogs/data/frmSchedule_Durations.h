// One step of the Schedule dialog's list: a value and how long it holds.
#pragma once

#include "dialogs/RowDialog.h"

namespace vardo {

class frmSchedule_Durations : public RowDialog {
 public:
  frmSchedule_Durations();
  // The entry method: edits a line of a schedule of that type, or makes a new one for kAddRow.
  void Durations(std::string_view type, std::string_view line);

 private:
  std::vector<TextControl*> LineBoxes() override { return {&txtValueCapacity, &txtDuration}; }

  Label lblValueCapacity{*this, "lblValueCapacity", "&Value (Capacity):"};
  TextBox txtValueCapacity{*this, "txtValueCapacity"};
  Label lblDuration{*this, "lblDuration", "&Duration:"};
  TextBox txtDuration{*this, "txtDuration"};
  Buttons buttons{*this};
};

}  // namespace vardo
