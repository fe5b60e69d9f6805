// The Process dialog: what happens to an entity, how long it takes, and which resources it needs; or a submodel of its own.
#pragma once

#include "dialogs/ModuleDialog.h"

#include <string>
#include <string_view>

namespace vardo {

// How a member is selected from a set of resources: between the code that a shape holds and the words shown. Empty for a value
// that is none of the rules.
std::string RuleCodeToText(std::string_view code);
std::string RuleTextToCode(std::string_view text);

class frmProcess : public ModuleDialog {
 public:
  frmProcess();
  // The entry method: edits the selected Process shape.
  void Process() { Open(); }

 private:
  void AfterLoad() override;
  std::optional<std::string> WhyNotNamed(const IVShapePtr& shape) override;
  void WriteBeforeName(const IVShapePtr& shape) override;
  void UnloadRowDialog() override;
  void cboType_Click();
  void cboAction_Click();
  void cboDelayType_Click();
  bool IsStandard() const;

  Label lblName{*this, "lblName", "&Name:"};
  ComboBox cboName{*this, "cboName"};
  Label lblType{*this, "lblType", "&Type:"};
  ComboBox cboType{*this, "cboType", ComboBox::Style::PickOnly};
  Frame Frame1{*this, "Frame1", "Logic"};
  Label lblAction{*this, "lblAction", "&Action:"};
  ComboBox cboAction{*this, "cboAction", ComboBox::Style::PickOnly};
  Line DelayLine1{*this, "DelayLine1"};
  Label lblDelayType{*this, "lblDelayType", "&Delay Type:"};
  ComboBox cboDelayType{*this, "cboDelayType", ComboBox::Style::PickOnly};
  Label lblUnits{*this, "lblUnits", "&Units:"};
  ComboBox cboUnits{*this, "cboUnits", ComboBox::Style::PickOnly};
  Label lblAllocation{*this, "lblAllocation", "&Allocation:"};
  ComboBox cboAllocation{*this, "cboAllocation", ComboBox::Style::PickOnly};
  Line DelayLine2{*this, "DelayLine2"};
  Label lblValue{*this, "lblValue", "&Value:"};
  TextBox txtValue{*this, "txtValue"};
  Label lblMin{*this, "lblMin", "&Minimum:"};
  TextBox txtMin{*this, "txtMin"};
  Label lblMax{*this, "lblMax", "Max&imum:"};
  TextBox txtMax{*this, "txtMax"};
  Label lblStdDev{*this, "lblStdDev", "&Std Dev:"};
  TextBox txtStdDev{*this, "txtStdDev"};
  Label lblExpression{*this, "lblExpression", "E&xpression:"};
  ComboBox cboExpression{*this, "cboExpression"};
  Label lblPriority{*this, "lblPriority", "&Priority:"};
  ComboBox cboPriority{*this, "cboPriority"};

 public:
  RowList rows{*this, "lstResources", "lblResources", "&Resources:"};

 private:
  CheckBox chkReportStatistics{*this, "chkReportStatistics", "R&eport Statistics"};
  Line SubmodelLine{*this, "SubmodelLine"};
  Frame EditSubmodelFrame{*this, "EditSubmodelFrame"};
  Label EditSubmodelLabel1{*this, "EditSubmodelLabel1", "To flowchart the submodel logic:"};
  Line EditSubmodelLine1{*this, "EditSubmodelLine1"};
  Label EditSubmodelLabel2{*this, "EditSubmodelLabel2",
                           "Right-click on this shape and select the Edit Submodel menu item. A new page will be created where "
                           "you may define the submodel logic."};
  Frame CloseSubmodelFrame{*this, "CloseSubmodelFrame"};
  Label CloseSubmodelLabel1{*this, "CloseSubmodelLabel1", "To exit the submodel logic:"};
  Line CloseSubmodelLine1{*this, "CloseSubmodelLine1"};
  Label CloseSubmodelLabel2{*this, "CloseSubmodelLabel2",
                            "Right-click on the submodel page and select the Close Submodel menu item. This action will take "
                            "you back to the page containing this shape."};
  Buttons buttons{*this};
};

}  // namespace vardo
