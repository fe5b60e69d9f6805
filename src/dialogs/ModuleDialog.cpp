#include "dialogs/ModuleDialog.h"

#include "addin/Global_Variables.h"
#include "addin/host/UndoScope.h"
#include "catalog/NameCatalogues.h"
#include "dialogs/Utilities.h"
#include "platform/Platform.h"
#include "props/PropertyCells.h"
#include "validate/CheckDataType.h"

namespace vardo {
namespace {

IVShapePtr SelectedShape() { return visApp->ActiveWindow()->Selection()->Item(1); }

}  // namespace

ModuleDialog::ModuleDialog(const ModuleSchema& module, std::string_view name, std::string_view caption,
                           std::string_view helpTopic)
    : DialogFrame(module, name, caption, helpTopic), rowGroup_(module) {}

void ModuleDialog::Name(ComboBox& control, DialogField::Filler offered) {
  name_ = &control;
  Field(control, module().Name().field).Offers(offered).Check(kSymbolName).WhenEmpty([this] { return shape_->Text(); });
}

RepeatGroup& ModuleDialog::Rows(RowList& list, std::function<void(std::string_view)> openRow) {
  rowList_ = &list;
  list.openRow = std::move(openRow);
  return rowGroup_;
}

const DialogField* ModuleDialog::FindField(std::string_view property) const {
  for (const DialogField& field : fields())
    if (ThePlatform().EqualTextIgnoringCase(field.property(), property)) return &field;
  return nullptr;
}

// The host may ask for the dialog that a person is working in; what has been typed there stays.
void ModuleDialog::Open() {
  RequireNotShown(*this);
  Load();
  ShowModal(*this);
}

// All of the shape's own values are read before any list is gathered: gathering gives the shape the rows it lacks, empty, and the
// defaults would be lost. A form that is only half filled is not kept: the next opening makes a new one.
void ModuleDialog::Load() try {
  shape_ = SelectedShape();
  nameAtOpening_ = shape_->Text();
  for (DialogField& field : fields())
    field.SetStored(&field.control() == name_ ? nameAtOpening_
                                              : GetPropList(shape_, field.readProperty(), field.defaultText()).front());
  const StringList rows = rowList_ ? ReadRows(shape_) : StringList();
  for (DialogField& field : fields()) field.FillList();
  for (DialogField& field : fields()) field.ShowStored();
  if (rowList_) rowList_->Fill(rows);
  AfterLoad();
} catch (...) {
  UnloadRowDialog();
  Unload(*this);
  throw;
}

StringList ModuleDialog::ReadRows(const IVShapePtr& shape) { return rowGroup_.ReadLines(shape); }

void ModuleDialog::WriteRows(const IVShapePtr& shape) { rowGroup_.WriteLines(shape, rowList_->Rows()); }

void ModuleDialog::cmdOK_Click() {
  if (!FieldsAreValid()) return;
  // Looking for the name may give modules the properties that they lack.
  const UndoScope oneStep(visApp, "Edit " + Caption());
  if (!NameIsFree()) return;
  Write();
  UnloadRowDialog();
  Unload(*this);
}

void ModuleDialog::cmdCancel_Click() {
  UnloadRowDialog();
  Unload(*this);
}

// A new name may not be in use at all; the old one stands in the list once, for the shape itself.
bool ModuleDialog::NameIsFree() {
  if (NameIsUsed(NameList::AllModules, NewName(), IsRenamed() ? 1 : 2))
    ShowFieldError(kDuplicateName);
  else if (const auto why = WhyNotNamed(SelectedShape()))
    ThePlatform().ShowMessage(*why, kProductTitle, kStyleExclamation);
  else
    return true;
  name_->SetFocus();
  return false;
}

void ModuleDialog::Write() {
  const IVShapePtr shape = SelectedShape();
  WriteBeforeName(shape);
  shape->SetText(NewName());
  for (const DialogField* field : InOrder(writeOrder_)) {
    SetPropList(shape, field->property(), field->Value());
    if (&field->control() != name_) continue;
    // The drawing holds the new name now: should a later write fail, the next OK must not take it for another module's.
    nameAtOpening_ = NewName();
    WriteAfterName(shape);
  }
  if (rowList_) WriteRows(shape);
}

}  // namespace vardo
