// The Batch dialog: gathers a number of entities into one.
#pragma once

#include "dialogs/ModuleDialog.h"

namespace vardo {

class frmBatch : public ModuleDialog {
 public:
  frmBatch();
  // The entry method: edits the selected Batch shape.
  void Batch() { Open(); }

 private:
  void AfterLoad() override { cboRule_Click(); }
  void cboRule_Click();

  Label lblName{*this, "lblName", "&Name:"};
  ComboBox cboName{*this, "cboName"};
  Label lblType{*this, "lblType", "&Type:"};
  ComboBox cboType{*this, "cboType", ComboBox::Style::PickOnly};
  Label lblBatchSize{*this, "lblBatchSize", "&Batch Size:"};
  TextBox txtBatchSize{*this, "txtBatchSize"};
  Label lblSaveCriterion{*this, "lblSaveCriterion", "&Save Criterion:"};
  ComboBox cboSaveCriterion{*this, "cboSaveCriterion", ComboBox::Style::PickOnly};
  Label lblRule{*this, "lblRule", "&Rule:"};
  ComboBox cboRule{*this, "cboRule", ComboBox::Style::PickOnly};
  Label lblAttributeName{*this, "lblAttributeName", "&Attribute Name:"};
  ComboBox cboAttributeName{*this, "cboAttributeName"};
  Buttons buttons{*this};
};

}  // namespace vardo
