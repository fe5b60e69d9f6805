// The Create dialog: where entities come from, what they are and how often they arrive.
#pragma once

#include "dialogs/ModuleDialog.h"

namespace vardo {

class frmCreate : public ModuleDialog {
 public:
  frmCreate();
  // The entry method: edits the selected Create shape.
  void Create() { Open(); }

 private:
  void AfterLoad() override { cboType_Click(); }
  void cboType_Click();

  Label lblName{*this, "lblName"};
  ComboBox cboName{*this, "cboName"};
  Label lblEntityType{*this, "lblEntityType"};
  ComboBox cboEntityType{*this, "cboEntityType"};
  Frame Frame1{*this, "Frame1"};
  Label lblType{*this, "lblType"};
  ComboBox cboType{*this, "cboType", ComboBox::Style::PickOnly};
  Label lblValue{*this, "lblValue"};
  TextBox txtValue{*this, "txtValue"};
  Label lblExpression{*this, "lblExpression"};
  ComboBox cboExpression{*this, "cboExpression"};
  Label lblScheduleName{*this, "lblScheduleName"};
  ComboBox cboScheduleName{*this, "cboScheduleName"};
  Label lblUnits{*this, "lblUnits"};
  ComboBox cboUnits{*this, "cboUnits", ComboBox::Style::PickOnly};
  Label lblBatchSize{*this, "lblBatchSize"};
  TextBox txtEntitiesPerArrival{*this, "txtEntitiesPerArrival"};
  Label lblMaxBatches{*this, "lblMaxBatches"};
  TextBox txtMaxArrivals{*this, "txtMaxArrivals"};
  Label lblFirstCreation{*this, "lblFirstCreation"};
  TextBox txtFirstCreation{*this, "txtFirstCreation"};
  Buttons buttons{*this};
};

}  // namespace vardo
