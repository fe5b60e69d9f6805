// One member of the Set dialog's list. The box shown is that of the set's type.
#pragma once

#include "dialogs/RowDialog.h"

namespace vardo {

class frmSet_Members : public RowDialog {
 public:
  frmSet_Members();
  // The entry method: edits a line of the list, or makes a new one for kAddRow.
  void Set_Member(std::string_view line) { Open(line); }

  // Shows the box for the members of a set of that type; none for a type that sets do not have.
  void ShowMembersOf(std::string_view type);

 private:
  std::vector<TextControl*> LineBoxes() override;
  void SetLine(std::string_view line) override;

  Label lblMemberName{*this, "lblMemberName", "Resource Name:"};
  ComboBox cboResourceName{*this, "cboResourceName"};
  ComboBox cboCounterName{*this, "cboCounterName"};
  ComboBox cboTallyName{*this, "cboTallyName"};
  ComboBox cboEntityPicture{*this, "cboEntityPicture"};
  ComboBox cboEntityType{*this, "cboEntityType"};
  Buttons buttons{*this};
};

}  // namespace vardo
