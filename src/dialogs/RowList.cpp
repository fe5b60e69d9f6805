#include "dialogs/RowList.h"

namespace vardo {
namespace {

constexpr std::string_view kEndOfList = "<End of list>";

}  // namespace

RowList::RowList(Form& form, std::string_view listName, std::string_view labelName, std::string_view labelCaption)
    : label(form, labelName, labelCaption),
      list(form, listName),
      cmdAdd(form, "cmdAdd", "&Add..."),
      cmdEdit(form, "cmdEdit", "&Edit..."),
      cmdDelete(form, "cmdDelete", "&Delete") {
  cmdAdd.Click = [this] { openRow(kAddRow); };
  cmdEdit.Click = [this] { EditSelected(); };
  cmdDelete.Click = [this] { DeleteSelected(); };
  list.DblClick = [this] { AddOrEdit(); };
}

void RowList::Fill(const StringList& rows) {
  for (const std::string& row : rows) list.AddItem(row);
  list.AddItem(kEndOfList);
  list.SetListIndex(0);
}

StringList RowList::Rows() const { return {list.Items().begin(), list.Items().end() - 1}; }

void RowList::Insert(std::string_view row) {
  const int end = static_cast<int>(list.Items().size()) - 1;
  list.InsertItem(list.ListIndex() < 0 ? end : list.ListIndex(), row);
}

void RowList::Replace(std::string_view row) { list.SetItem(list.ListIndex(), row); }

std::string_view RowList::SelectedLine() const {
  return list.ListIndex() < 0 ? kEndOfList : std::string_view(list.Items()[static_cast<size_t>(list.ListIndex())]);
}

void RowList::EditSelected() {
  if (SelectedLine() != kEndOfList) openRow(SelectedLine());
}

void RowList::AddOrEdit() { openRow(SelectedLine() == kEndOfList ? kAddRow : SelectedLine()); }

// A row that reads like the end line can be deleted, the end line cannot.
void RowList::DeleteSelected() {
  const int index = list.ListIndex();
  if (index < 0 || index + 1 == static_cast<int>(list.Items().size())) return;
  list.RemoveItem(index);
  list.SetListIndex(index);
}

}  // namespace vardo
