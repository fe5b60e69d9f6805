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

  Label lblName{*this, "lblName", "&Name:"};
  ComboBox cboName{*this, "cboName"};
  Label lblEntityType{*this, "lblEntityType", "&Entity Type:"};
  ComboBox cboEntityType{*this, "cboEntityType"};
  Frame Frame1{*this, "Frame1", "Time Between Arrivals"};
  Label lblType{*this, "lblType", "&Type:"};
  ComboBox cboType{*this, "cboType", ComboBox::Style::PickOnly};
  Label lblValue{*this, "lblValue", "&Value"};
  TextBox txtValue{*this, "txtValue"};
  Label lblExpression{*this, "lblExpression", "E&xpression:"};
  ComboBox cboExpression{*this, "cboExpression"};
  Label lblScheduleName{*this, "lblScheduleName", "&Schedule Name:"};
  ComboBox cboScheduleName{*this, "cboScheduleName"};
  Label lblUnits{*this, "lblUnits", "&Units:"};
  ComboBox cboUnits{*this, "cboUnits", ComboBox::Style::PickOnly};
  Label lblBatchSize{*this, "lblBatchSize", "Entities per &Arrival:"};
  TextBox txtEntitiesPerArrival{*this, "txtEntitiesPerArrival"};
  Label lblMaxBatches{*this, "lblMaxBatches", "&Max Arrivals:"};
  TextBox txtMaxArrivals{*this, "txtMaxArrivals"};
  Label lblFirstCreation{*this, "lblFirstCreation", "&First Creation:"};
  TextBox txtFirstCreation{*this, "txtFirstCreation"};
  Buttons buttons{*this};
};

}  // namespace vardo
