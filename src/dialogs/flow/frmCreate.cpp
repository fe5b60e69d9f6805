#include "dialogs/flow/frmCreate.h"

#include "dialogs/ItemLists.h"
#include "forms/FormLayout.h"
#include "validate/CheckDataType.h"

namespace vardo {

frmCreate::frmCreate() : ModuleDialog("frmCreate", "Create", "Create_.htm") {
  Name(cboName, "CreateName", NamesOf<NameList::FlowModules>);
  Field(cboEntityType, "CreateEntityType")
      .Default("Entity 1")
      .Offers(NamesOf<NameList::EntityTypes>)
      .Check(kSymbolName)
      .WhenEmpty();
  Field(cboType, "CreateType").Default("Random").Items({"Random", "Schedule", "Constant", "Expression"});
  Field(txtValue, "CreateValue").Default("1").Check(kExpression).WhenEmpty();
  Field(cboUnits, "CreateUnits").Default("Hours").Items(kTimeUnits);
  Field(txtEntitiesPerArrival, "CreateBatchSize").Default("1").Check(kExpression).WhenEmpty();
  Field(txtMaxArrivals, "CreateMaxBatches").Default("Infinite").Check(kExpression).WhenEmpty();
  Field(txtFirstCreation, "CreateFirstCreation").Default("0.0").Check(kExpression).WhenEmpty();
  Field(cboExpression, "CreateExpression").Default("1").Items(kExpressionTemplates).Check(kExpression).WhenEmpty();
  Field(cboScheduleName, "CreateScheduleName")
      .Default("Schedule 1")
      .Offers(NamesOf<NameList::Schedules>)
      .Check(kSymbolName)
      .WhenEmpty();

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
      .Buttons(buttons.All());
}

void frmCreate::cboType_Click() {
  const std::string type = cboType.Text();
  Show({&lblUnits, &cboUnits, &lblFirstCreation, &txtFirstCreation}, type != "Schedule");
  Show({&lblValue, &txtValue}, type == "Random" || type == "Constant");
  Show({&lblExpression, &cboExpression}, type == "Expression");
  Show({&lblScheduleName, &cboScheduleName}, type == "Schedule");
}

}  // namespace vardo
