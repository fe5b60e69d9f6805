#include "dialogs/data/frmSet_Members.h"

#include "dialogs/ItemLists.h"
#include "dialogs/data/frmSet.h"
#include "forms/FormLayout.h"
#include "validate/CheckDataType.h"

namespace vardo {

frmSet_Members::frmSet_Members() : RowDialog("frmSet_Members", "Members", "Set_Shape_Prompts.htm", RowsOf<frmSet>) {
  Add(cboResourceName).Default("Resource 1").Offers(NamesOf<NameList::Resources>).Check(kSymbolName).WhenEmpty();
  Add(cboCounterName).Default("Counter 1").Offers(NamesOf<NameList::Counters>).Check(kSymbolName).WhenEmpty();
  Add(cboTallyName).Default("Tally 1").Offers(NamesOf<NameList::Tallies>).Check(kSymbolName).WhenEmpty();
  Add(cboEntityPicture)
      .Default("Picture.Report")
      .Items(kPictures)
      .Offers(NamesOf<NameList::Pictures>)
      .Check(kSymbolName)
      .WhenEmpty();
  Add(cboEntityType).Default("Entity 1").Offers(NamesOf<NameList::EntityTypes>).Check(kSymbolName).WhenEmpty();

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
