// The Set dialog: an ordered list of resources, counters, tallies, entity types or pictures.
#pragma once

#include "dialogs/ModuleDialog.h"

namespace vardo {

class frmSet : public ModuleDialog {
 public:
  frmSet();
  // The entry method: edits the selected Set shape.
  void SetSub() { Open(); }

 private:
  void AfterLoad() override;
  StringList ReadRows(const IVShapePtr& shape) override;
  void WriteRows(const IVShapePtr& shape) override;
  void UnloadRowDialog() override;
  void cboType_Click();

  Label lblName{*this, "lblName", "&Name:"};
  ComboBox cboName{*this, "cboName"};
  Label lblType{*this, "lblType", "&Type:"};
  ComboBox cboType{*this, "cboType", ComboBox::Style::PickOnly};

 public:
  RowList rows{*this, "lstMembers", "lblDurations", "&Members:"};

 private:
  Buttons buttons{*this};
};

}  // namespace vardo
