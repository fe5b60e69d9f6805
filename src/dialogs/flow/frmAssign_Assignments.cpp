#include "dialogs/flow/frmAssign_Assignments.h"

#include "dialogs/ItemLists.h"
#include "dialogs/flow/frmAssign.h"
#include "forms/FormLayout.h"
#include "modules/flow/AssignModule.h"
#include "validate/CheckDataType.h"

namespace vardo {
namespace {

constexpr std::string_view kVariable = "Variable";
constexpr std::string_view kAttribute = "Attribute";
constexpr std::string_view kEntityType = "Entity Type";
constexpr std::string_view kEntityPicture = "Entity Picture";
constexpr std::string_view kOther = "Other";

}  // namespace

frmAssign_Assignments::frmAssign_Assignments()
    : RowDialog(kAssignModule, "frmAssign_Assignments", "Assignments", "Assign_Shape_Prompts.htm", RowsOf<frmAssign>) {
  Field(cboType, "AssignType").Items({kVariable, kAttribute, kEntityType, kEntityPicture, kOther});
  Field(cboVariableName, "AssignVariableName").Offers(NamesOf<NameList::Variables>).Check(kSymbolName).WhenEmpty();
  Field(cboAttributeName, "AssignAttributeName")
      .Items(kAssignableAttributes)
      .Offers(UserAttributes)
      .Check(kSymbolName)
      .WhenEmpty();
  Field(cboEntityType, "AssignEntityType").Offers(NamesOf<NameList::EntityTypes>).Check(kSymbolName).WhenEmpty();
  Field(cboEntityPicture, "AssignEntityPicture")
      .Items(kPictures)
      .Offers(NamesOf<NameList::Pictures>)
      .Check(kSymbolName)
      .WhenEmpty();
  Field(txtOther, "AssignOther").Check(kExpression).WhenEmpty();
  Field(txtNewValue, "AssignNewValue").Check(kExpression).WhenEmpty();

  cboType.Click = [this] { cboType_Click(); };

  FormLayout(*this, 1900, 2600)
      .Row(lblType, cboType)
      .Row(lblVariableName, cboVariableName)
      .InPlace(lblAttributeName, cboAttributeName)
      .InPlace(lblEntityType, cboEntityType)
      .InPlace(lblEntityPicture, cboEntityPicture)
      .InPlace(lblOther, txtOther)
      .Row(lblNewValue, txtNewValue)
      .Buttons(buttons.All());
}

bool frmAssign_Assignments::HasNewValue() const { return cboType.Text() != kEntityType && cboType.Text() != kEntityPicture; }

void frmAssign_Assignments::cboType_Click() {
  const std::string type = cboType.Text();
  Show({&lblVariableName, &cboVariableName}, type == kVariable);
  Show({&lblAttributeName, &cboAttributeName}, type == kAttribute);
  Show({&lblEntityType, &cboEntityType}, type == kEntityType);
  Show({&lblEntityPicture, &cboEntityPicture}, type == kEntityPicture);
  Show({&lblOther, &txtOther}, type == kOther);
  Show({&lblNewValue, &txtNewValue}, HasNewValue());
}

std::vector<TextControl*> frmAssign_Assignments::LineBoxes() {
  std::vector<TextControl*> boxes = {&cboType};
  for (TextControl* own :
       std::initializer_list<TextControl*>{&cboVariableName, &cboAttributeName, &cboEntityType, &cboEntityPicture, &txtOther})
    if (own->IsVisible()) boxes.push_back(own);
  if (HasNewValue()) boxes.push_back(&txtNewValue);
  return boxes;
}

// The next row can choose the entity type too.
void frmAssign_Assignments::AfterOK() {
  if (cboType.Text() == kEntityType) cboEntityType.AddItem(cboEntityType.Text());
}

}  // namespace vardo
