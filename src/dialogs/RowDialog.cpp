#include "dialogs/RowDialog.h"

#include "dialogs/RepeatGroup.h"

namespace vardo {

RowDialog::RowDialog(const ModuleSchema& module, std::string_view name, std::string_view caption, std::string_view helpTopic,
                     RowList& (*rows)())
    : DialogFrame(module, name, caption, helpTopic), rows_(rows) {}

void RowDialog::FillLists() {
  for (DialogField& field : fields()) field.FillList();
}

void RowDialog::Open(std::string_view line) {
  edits_ = line != kAddRow;
  for (DialogField& field : fields()) {
    field.SetStored(field.defaultText());
    field.ShowStored();
  }
  if (edits_) SetLine(line);
  AfterLoad();
  ShowModal(*this);
}

// The first items choose the type, and with it the boxes that the further ones go into.
void RowDialog::SetLine(std::string_view line) {
  const StringList items = FieldsOf(line, LineBoxes().size());
  for (size_t i = 0; i < LineBoxes().size(); ++i) LineBoxes()[i]->SetText(i < items.size() ? items[i] : "");
}

std::string RowDialog::Line() {
  StringList items;
  for (const TextControl* box : LineBoxes()) items.push_back(box->Text());
  return JoinList(items);
}

void RowDialog::cmdOK_Click() {
  if (!FieldsAreValid()) return;
  if (!LineBoxes().empty()) TakeLine();
  Hide(*this);
}

void RowDialog::TakeLine() {
  if (edits_)
    rows_().Replace(Line());
  else
    rows_().Insert(Line());
  AfterOK();
}

void RowDialog::cmdCancel_Click() { Hide(*this); }

}  // namespace vardo
