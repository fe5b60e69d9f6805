#include "dialogs/data/frmSet.h"

#include "dialogs/ItemLists.h"
#include "dialogs/data/frmSet_Members.h"
#include "forms/FormLayout.h"
#include "props/PropertyCells.h"

#include <algorithm>

namespace vardo {
namespace {

// What a set can hold, and where: each type keeps its members in a cell of its own.
constexpr struct MemberCell {
  std::string_view type;
  std::string_view property;
  std::string_view filler;
} kMemberCells[] = {
    {"Resource", "SetResourceMembers", "Resource 1"}, {"Counter", "SetCounterMembers", "Counter 1"},
    {"Tally", "SetTallyMembers", "Tally 1"},          {"Entity Picture", "SetPictureMembers", "Picture.Report"},
    {"Entity Type", "SetEntityMembers", "Entity 1"},
};

// Copies of the members, whatever their type, for those who read the shape.
constexpr std::string_view kCopies[] = {"SetMembers", "SetMembers2", "SetMembers3", "SetMembers4", "SetMembers5"};
constexpr std::string_view kCount = "SetM_Count";

// A type that is none of the five has the resources' cell on reading, and none on writing.
const MemberCell* FindMemberCell(std::string_view type) {
  const auto found =
      std::find_if(std::begin(kMemberCells), std::end(kMemberCells), [&](const MemberCell& c) { return c.type == type; });
  return found == std::end(kMemberCells) ? nullptr : found;
}

}  // namespace

frmSet::frmSet() : ModuleDialog("frmSet", "Set", "Set_.htm") {
  Name(cboName, "SetName", NamesOf<NameList::Sets>);
  Field(cboType, "SetType").Default("Resource").Items({"Resource", "Counter", "Tally", "Entity Type", "Entity Picture"});
  Rows(rows, [](std::string_view line) { DefaultForm<frmSet_Members>().Set_Member(line); });

  cboType.Click = [this] { cboType_Click(); };

  FormLayout(*this, 1500, 3200)
      .Row(lblName, cboName)
      .Row(lblType, cboType)
      .List(rows.label, rows.list, rows.Buttons(), 6)
      .Buttons(buttons.All());
}

void frmSet::AfterLoad() {
  DefaultForm<frmSet_Members>().FillLists();
  cboType_Click();
}

// The row dialog may not be there yet while the fields are being loaded.
void frmSet::cboType_Click() {
  if (frmSet_Members* members = LoadedForm<frmSet_Members>()) members->ShowMembersOf(cboType.Text());
}

StringList frmSet::ReadRows(const IVShapePtr& shape) {
  const MemberCell* found = FindMemberCell(GetPropList(shape, "SetType", "Resource").front());
  const MemberCell& cell = found ? *found : kMemberCells[0];
  return RepeatGroup(kCount, {{cell.property, cell.filler, cell.filler}}).ReadLines(shape);
}

// A set keeps the members of its own type alone.
void frmSet::WriteRows(const IVShapePtr& shape) {
  for (const std::string_view copy : kCopies) SetPropList(shape, copy, kMemberCells[0].filler);
  for (const MemberCell& cell : kMemberCells) SetPropList(shape, cell.property, cell.filler);
  SetPropList(shape, kCount, "0");
  const StringList members = rows.Rows();
  if (members.empty()) return;
  for (const std::string_view copy : kCopies) SetPropList(shape, copy, members);
  if (const MemberCell* cell = FindMemberCell(cboType.Text())) SetPropList(shape, cell->property, members);
  SetPropList(shape, kCount, std::to_string(members.size()));
}

void frmSet::UnloadRowDialog() { UnloadIfLoaded<frmSet_Members>(); }

}  // namespace vardo
