// The Separate dialog: duplicates an entity, or splits a batch into its members.
#pragma once

#include "dialogs/ModuleDialog.h"

namespace vardo {

class frmSeparate : public ModuleDialog {
 public:
  frmSeparate();
  // The entry method: edits the selected Separate shape.
  void Separate() { Open(); }

 private:
  void AfterLoad() override;
  void WriteAfterName(const IVShapePtr& shape) override;
  void UnloadRowDialog() override;
  void cboType_Click();
  void cboMemberAttributes_Click();
  bool Duplicates() const;

  Label lblName{*this, "lblName", "&Name:"};
  ComboBox cboName{*this, "cboName"};
  Label lblType{*this, "lblType", "&Type:"};
  ComboBox cboType{*this, "cboType", ComboBox::Style::PickOnly};
  Label lblCostToDuplicates{*this, "lblCostToDuplicates", "&Percent Cost to Duplicates (0 - 100):"};
  TextBox txtCostToDuplicates{*this, "txtCostToDuplicates"};
  Label lblPercentSign{*this, "lblPercentSign", "%"};
  Label lblNumofDuplicates{*this, "lblNumofDuplicates", "# of &Duplicates:"};
  TextBox txtNumofDuplicates{*this, "txtNumofDuplicates"};
  Label lblMemberAttributes{*this, "lblMemberAttributes", "&Member Attributes:"};
  ComboBox cboMemberAttributes{*this, "cboMemberAttributes", ComboBox::Style::PickOnly};

 public:
  RowList rows{*this, "lstAttributes", "lblAttributes", "&Attributes:"};

 private:
  Buttons buttons{*this};
};

}  // namespace vardo
