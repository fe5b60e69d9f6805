#include "dialogs/flow/frmCreate.h"

#include "dialogs/ItemLists.h"
#include "forms/FormLayout.h"
#include "modules/flow/CreateModule.h"
#include "validate/CheckDataType.h"

namespace vardo {

frmCreate::frmCreate() : ModuleDialog(kCreateModule, "frmCreate", "Create", "Create_.htm") {
  Name(cboName, NamesOf<NameList::FlowModules>);
  Field(cboEntityType, "CreateEntityType").Offers(NamesOf<NameList::EntityTypes>).Check(kSymbolName).WhenEmpty();
  Field(cboType, "CreateType").Items({"Random", "Schedule", "Constant", "Expression"});
  Field(txtValue, "CreateValue").Check(kExpression).WhenEmpty();
  Field(cboUnits, "CreateUnits").Items(kTimeUnits);
  Field(txtEntitiesPerArrival, "CreateBatchSize").Check(kExpression).WhenEmpty();
  Field(txtMaxArrivals, "CreateMaxBatches").Check(kExpression).WhenEmpty();
  Field(txtFirstCreation, "CreateFirstCreation").Check(kExpression).WhenEmpty();
  Field(cboExpression, "CreateExpression").Items(kExpressionTemplates).Check(kExpression).WhenEmpty();
  Field(cboScheduleName, "CreateScheduleName").Offers(NamesOf<NameList::Schedules>).Check(kSymbolName).WhenEmpty();

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
