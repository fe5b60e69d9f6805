#include "dialogs/flow/frmDecide.h"

#include "dialogs/ItemLists.h"
#include "forms/FormLayout.h"
#include "modules/flow/DecideModule.h"
#include "validate/CheckDataType.h"

namespace vardo {
namespace {

constexpr std::string_view kByChance = "2-way by Chance";
constexpr std::string_view kByCondition = "2-way by Condition";
constexpr CodeRow kTypes[] = {{"With", kByChance}, {"If", kByCondition}};

}  // namespace

frmDecide::frmDecide() : ModuleDialog(kDecideModule, "frmDecide", "Decide", "Decide_.htm") {
  Name(cboName, NamesOf<NameList::FlowModules>);
  Field(cboType, "DecideType").Codes(kTypes, UnknownCode::ShowsLastText);
  Field(cboPercentTrue, "DecidePercentTrue").Items({"10", "25", "33", "50", "66", "75", "90"}).Check(kExpression).WhenEmpty();
  Field(cboIf, "DecideIf").Items({"Variable", "Attribute", "Entity Type", "Expression"});
  Field(cboVariableNamed, "DecideVariableNamed").Offers(NamesOf<NameList::Variables>).Check(kSymbolName).WhenEmpty();
  Field(cboEntityTypeNamed, "DecideEntityTypeNamed").Offers(NamesOf<NameList::EntityTypes>).Check(kSymbolName).WhenEmpty();
  Field(cboAttributeNamed, "DecideAttributeNamed").Items(kEntityAttributes).Offers(UserAttributes).Check(kSymbolName).WhenEmpty();
  Field(cboIs, "DecideIs").Items({">", ">=", "==", "<", "<=", "<>"});
  Field(txtValue, "DecideValue").Check(kExpression).WhenEmpty();

  CheckInOrder({&cboName, &cboPercentTrue, &cboVariableNamed, &txtValue, &cboEntityTypeNamed, &cboAttributeNamed});
  WriteInOrder({&cboName, &cboType, &cboPercentTrue, &cboVariableNamed, &cboIs, &txtValue, &cboIf, &cboEntityTypeNamed,
                &cboAttributeNamed});

  cboType.Click = cboIf.Click = [this] { ShowWhatTheBranchNeeds(); };

  FormLayout(*this, 2300, 2800)
      .Row(lblName, cboName)
      .Row(lblType, cboType)
      .Row(lblPercentTrue, cboPercentTrue)
      .Behind(cboPercentTrue, lblPercentSign)
      .InPlace(lblIf, cboIf)
      .Row(lblNamed, cboVariableNamed)
      .InPlace(cboEntityTypeNamed)
      .InPlace(cboAttributeNamed)
      .Row(lblIs, cboIs)
      .Row(lblValue, txtValue)
      .Buttons(buttons.All());
}

void frmDecide::ShowWhatTheBranchNeeds() {
  const bool chance = cboType.Text() == kByChance;
  const bool condition = cboType.Text() == kByCondition;
  const std::string about = cboIf.Text();
  const bool compared = about == "Variable" || about == "Attribute";
  Show({&lblPercentTrue, &cboPercentTrue, &lblPercentSign}, chance);
  Show({&lblIf, &cboIf}, condition);
  Show({&lblNamed}, condition && about != "Expression");
  Show({&cboVariableNamed}, condition && about == "Variable");
  Show({&cboAttributeNamed}, condition && about == "Attribute");
  Show({&cboEntityTypeNamed}, condition && about == "Entity Type");
  Show({&lblIs, &cboIs}, condition && compared);
  Show({&lblValue, &txtValue}, condition && (compared || about == "Expression"));
}

}  // namespace vardo
