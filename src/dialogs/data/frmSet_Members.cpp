#include "dialogs/data/frmSet_Members.h"

#include "dialogs/ItemLists.h"
#include "dialogs/data/frmSet.h"
#include "forms/FormLayout.h"
#include "modules/data/SetModule.h"
#include "validate/CheckDataType.h"

namespace vardo {

frmSet_Members::frmSet_Members() : RowDialog(kSetModule, "frmSet_Members", "Members", "Set_Shape_Prompts.htm", RowsOf<frmSet>) {
  Field(cboResourceName, "SetResourceMembers").Offers(NamesOf<NameList::Resources>).Check(kSymbolName).WhenEmpty();
  Field(cboCounterName, "SetCounterMembers").Offers(NamesOf<NameList::Counters>).Check(kSymbolName).WhenEmpty();
  Field(cboTallyName, "SetTallyMembers").Offers(NamesOf<NameList::Tallies>).Check(kSymbolName).WhenEmpty();
  Field(cboEntityPicture, "SetPictureMembers")
      .Items(kPictures)
      .Offers(NamesOf<NameList::Pictures>)
      .Check(kSymbolName)
      .WhenEmpty();
  Field(cboEntityType, "SetEntityMembers").Offers(NamesOf<NameList::EntityTypes>).Check(kSymbolName).WhenEmpty();

  FormLayout(*this, 1900, 2600)
      .Row(lblMemberName, cboResourceName)
      .InPlace(cboCounterName)
      .InPlace(cboTallyName)
      .InPlace(cboEntityPicture)
      .InPlace(cboEntityType)
      .Buttons(buttons.All());
}

void frmSet_Members::ShowMembersOf(std::string_view type) {
  lblMemberName.SetCaption("&Entity Type:");
  const struct {
    std::string_view type, caption;
    ComboBox& box;
  } boxes[] = {
      {"Resource", "&Resource Name:", cboResourceName}, {"Counter", "&Counter Name:", cboCounterName},
      {"Tally", "&Tally Name:", cboTallyName},          {"Entity Picture", "&Picture Name:", cboEntityPicture},
      {"Entity Type", "&Entity Type:", cboEntityType},
  };
  for (const auto& box : boxes) {
    box.box.SetVisible(box.type == type);
    if (box.type == type) lblMemberName.SetCaption(box.caption);
  }
}

std::vector<TextControl*> frmSet_Members::LineBoxes() {
  std::vector<TextControl*> shown;
  for (DialogField& field : fields())
    if (field.control().IsVisible()) shown.push_back(static_cast<ComboBox*>(&field.control()));
  return shown;
}

// All the boxes get the name, the hidden ones too.
void frmSet_Members::SetLine(std::string_view line) {
  for (DialogField& field : fields()) static_cast<ComboBox&>(field.control()).SetText(line);
}

}  // namespace vardo
