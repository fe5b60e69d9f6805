#include "dialogs/data/frmSet.h"

#include "dialogs/ItemLists.h"
#include "dialogs/data/frmSet_Members.h"
#include "forms/FormLayout.h"
#include "modules/data/SetModule.h"
#include "props/PropertyCells.h"

#include <algorithm>

namespace vardo {
namespace {

constexpr const RowGroup& kRows = kSetModule.rows;

// What a set can hold, and where: each type keeps its members in a column of its own.
constexpr struct MemberList {
  std::string_view type;
  size_t column;
} kMemberLists[] = {
    {"Resource", kRows.ColumnOf("SetResourceMembers")},  {"Counter", kRows.ColumnOf("SetCounterMembers")},
    {"Tally", kRows.ColumnOf("SetTallyMembers")},        {"Entity Picture", kRows.ColumnOf("SetPictureMembers")},
    {"Entity Type", kRows.ColumnOf("SetEntityMembers")},
};

// Copies of the members, whatever their type, for those who read the shape.
constexpr std::string_view kCopies[] = {"SetMembers", "SetMembers2", "SetMembers3", "SetMembers4", "SetMembers5"};

// A type that is none of the five shares the resources' list.
const MemberList& MemberListOf(std::string_view type) {
  const auto* const found = std::ranges::find(kMemberLists, type, &MemberList::type);
  return found == std::end(kMemberLists) ? kMemberLists[0] : *found;
}

}  // namespace

frmSet::frmSet() : ModuleDialog(kSetModule, "frmSet", "Set", "Set_.htm") {
  Name(cboName, NamesOf<NameList::Sets>);
  Field(cboType, "SetType").Items({"Resource", "Counter", "Tally", "Entity Type", "Entity Picture"});
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
  const ModuleProperty& type = kSetModule.Property("SetType");
  const MemberList& list = MemberListOf(GetPropList(shape, type.field, type.defaultValue).front());
  return RepeatGroup(kSetModule, kRows.columns.subspan(list.column, 1)).ReadLines(shape);
}

// A set keeps the members of its own type alone.
void frmSet::WriteRows(const IVShapePtr& shape) {
  RepeatGroup(kSetModule).WriteLines(shape, {});
  const StringList members = rows.Rows();
  if (members.empty()) return;
  for (const std::string_view copy : kCopies) SetPropList(shape, copy, members);
  SetPropList(shape, kRows.columns[MemberListOf(cboType.Text()).column].field, members);
  SetPropList(shape, kRows.count, std::to_string(members.size()));
}

void frmSet::UnloadRowDialog() { UnloadIfLoaded<frmSet_Members>(); }

}  // namespace vardo
