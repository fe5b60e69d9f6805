#include "dialogs/flow/frmCreate.h"

#include "dialogs/ItemLists.h"
#include "forms/FormLayout.h"
#include "validate/CheckDataType.h"

namespace vardo {

frmCreate::frmCreate() : ModuleDialog("frmCreate", "Create", "Create_.htm") {
  lblName.SetCaption("&Name:");
  lblEntityType.SetCaption("&Entity Type:");
  Frame1.SetCaption("Time Between Arrivals");
  lblType.SetCaption("&Type:");
  lblValue.SetCaption("&Value");
  lblUnits.SetCaption("&Units:");
  lblExpression.SetCaption("E&xpression:");
  lblScheduleName.SetCaption("&Schedule Name:");
  lblBatchSize.SetCaption("Entities per &Arrival:");
  lblMaxBatches.SetCaption("&Max Arrivals:");
  lblFirstCreation.SetCaption("&First Creation:");

  Name(cboName, "CreateName", NameList::FlowModules);
  Field(cboEntityType, "CreateEntityType")
      .Default("Entity 1")
      .Offers(NameList::EntityTypes)
      .Check(kSymbolName)
      .WhenEmpty("Entity 1");
  Field(cboType, "CreateType").Default("Random").Items({"Random", "Schedule", "Constant", "Expression"});
  Field(txtValue, "CreateValue").Default("1").Check(kExpression).WhenEmpty("1");
  Field(cboUnits, "CreateUnits").Default("Hours").Items({"Seconds", "Minutes", "Hours", "Days"});
  Field(txtEntitiesPerArrival, "CreateBatchSize").Default("1").Check(kExpression).WhenEmpty("1");
  Field(txtMaxArrivals, "CreateMaxBatches").Default("Infinite").Check(kExpression).WhenEmpty("Infinite");
  Field(txtFirstCreation, "CreateFirstCreation").Default("0.0").Check(kExpression).WhenEmpty("0.0");
  Field(cboExpression, "CreateExpression").Default("1").Items(kExpressionTemplates).Check(kExpression).WhenEmpty("1");
  Field(cboScheduleName, "CreateScheduleName")
      .Default("Schedule 1")
      .Offers(NameList::Schedules)
      .Check(kSymbolName)
      .WhenEmpty("Schedule 1");

  cboType.Click = [this] { cboType_Click(); };

  FormLayout(*this, 2100, 3000)
      .Row(lblName, cboName)
      .Row(lblEntityType, cboEntityType)
      .BeginFrame(Frame1)
      .Row(lblType, cboType)
      .Row(lblValue, txtValue)
      .InPlace(lblExpression, cboExpression)
      .InPlace(lblScheduleName, cboScheduleName)
      .Row(lblUnits, cboUnits)
      .EndFrame()
      .Row(lblBatchSize, txtEntitiesPerArrival)
      .Row(lblMaxBatches, txtMaxArrivals)
      .Row(lblFirstCreation, txtFirstCreation)
      .Buttons({&buttons.cmdOK, &buttons.cmdCancel, &buttons.cmdHelp});
}

void frmCreate::cboType_Click() {
  const std::string type = cboType.Text();
  Show({&lblUnits, &cboUnits, &lblFirstCreation, &txtFirstCreation}, type != "Schedule");
  Show({&lblValue, &txtValue}, type == "Random" || type == "Constant");
  Show({&lblExpression, &cboExpression}, type == "Expression");
  Show({&lblScheduleName, &cboScheduleName}, type == "Schedule");
}

}  // namespace vardo
