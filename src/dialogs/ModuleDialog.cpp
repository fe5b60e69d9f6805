#include "dialogs/ModuleDialog.h"

#include "addin/Global_Variables.h"
#include "addin/host/IVApplication.h"
#include "dialogs/Utilities.h"
#include "forms/Forms.h"
#include "platform/Platform.h"
#include "props/PropertyCells.h"
#include "props/StringFunctions.h"
#include "validate/CheckDataType.h"

namespace vardo {
namespace {

// A field as OK checks it: hidden fields are checked too.
class CheckedWhetherShownOrNot : public FieldView {
 public:
  explicit CheckedWhetherShownOrNot(TextControl& control) : control_(control) {}
  bool Visible() const override { return true; }
  std::string Text() const override { return control_.Text(); }
  void SetFocus() override { control_.MoveFocusHere(); }

 private:
  TextControl& control_;
};

IVShapePtr SelectedShape() { return visApp->ActiveWindow()->Selection()->Item(1); }

}  // namespace

DialogField& DialogField::Default(std::string_view text) {
  default_ = text;
  return *this;
}

DialogField& DialogField::Items(std::span<const std::string_view> items) {
  items_.assign(items.begin(), items.end());
  return *this;
}

DialogField& DialogField::Offers(NameList names) {
  offers_ = names;
  return *this;
}

DialogField& DialogField::Check(std::string_view kind) {
  check_ = kind;
  return *this;
}

DialogField& DialogField::WhenEmpty(std::string_view text) {
  control_.LostFocus = [&control = control_, text = std::string(text)] { TrimControlText(control, text); };
  return *this;
}

ModuleDialog::Buttons::Buttons(ModuleDialog& dialog)
    : cmdOK(dialog, "cmdOK"), cmdCancel(dialog, "cmdCancel"), cmdHelp(dialog, "cmdHelp") {
  cmdOK.SetCaption("OK");
  cmdCancel.SetCaption("Cancel");
  cmdHelp.SetCaption("&Help");
  cmdOK.Click = [&dialog] { dialog.cmdOK_Click(); };
  cmdCancel.Click = [&dialog] { dialog.cmdCancel_Click(); };
  cmdHelp.Click = [&dialog] { dialog.cmdHelp_Click(); };
  dialog.SetDefaultButtons(cmdOK, cmdCancel);
}

ModuleDialog::ModuleDialog(std::string_view name, std::string_view caption, std::string_view helpTopic)
    : Form(name, caption), helpTopic_(helpTopic) {}

void ModuleDialog::Form_Load() { CenterForm(*this); }

void ModuleDialog::Name(ComboBox& control, std::string_view property, NameList offered) {
  name_ = &control;
  fields_.emplace_back(control, property).Offers(offered).Check(kSymbolName);
  control.LostFocus = [this] { TrimControlText(*name_, shape_->Text()); };
}

DialogField& ModuleDialog::Field(TextControl& control, std::string_view property) {
  return fields_.emplace_back(control, property);
}

const DialogField* ModuleDialog::FindField(std::string_view property) const {
  for (const DialogField& field : fields_)
    if (ThePlatform().EqualTextIgnoringCase(field.property(), property)) return &field;
  return nullptr;
}

void ModuleDialog::Open() {
  Load();
  ShowModal(*this);
}

// A form that is only half filled is not kept: the next opening makes a new one.
void ModuleDialog::Load() try {
  shape_ = SelectedShape();
  nameAtOpening_ = shape_->Text();
  ReadFields();
  FillLists();
  SetTexts();
  AfterLoad();
} catch (...) {
  Unload(*this);
  throw;
}

// All of the shape's own fields are read before any list is gathered: gathering gives the shape the rows it lacks, empty, and the
// defaults would be lost.
void ModuleDialog::ReadFields() {
  for (DialogField& field : fields_)
    field.stored_ = &field.control_ == name_ ? nameAtOpening_ : GetPropList(shape_, field.property_, field.default_).front();
}

void ModuleDialog::FillLists() {
  for (DialogField& field : fields_) {
    auto* combo = dynamic_cast<ComboBox*>(&field.control_);
    if (!combo) continue;
    for (const std::string& item : field.items_) combo->AddItem(item);
    if (field.offers_) AddNames(*combo, *field.offers_);
  }
}

void ModuleDialog::SetTexts() {
  for (DialogField& field : fields_) field.control_.SetText(field.stored_);
}

void ModuleDialog::cmdOK_Click() {
  if (!FieldsAreValid()) return;
  if (!NameIsUnique()) return;
  WriteFields();
  Unload(*this);
}

void ModuleDialog::cmdCancel_Click() { Unload(*this); }

void ModuleDialog::cmdHelp_Click() { ThePlatform().ShowHelp(kHelpFile, helpTopic_); }

bool ModuleDialog::FieldsAreValid() {
  for (const DialogField& field : fields_) {
    CheckedWhetherShownOrNot view(field.control_);
    if (!field.check_.empty() && !ValidateField(view, field.check_)) return false;
  }
  return true;
}

// A new name may not be in use at all; the old one stands in the list once, for the shape itself.
bool ModuleDialog::NameIsUnique() {
  const int allowed = name_->Text() == nameAtOpening_ ? 2 : 1;
  if (!NameOccursAtLeast(GatherNames(NameList::AllModules, false), name_->Text(), allowed)) return true;
  ShowFieldError(kDuplicateName);
  name_->SetFocus();
  return false;
}

void ModuleDialog::WriteFields() {
  const IVShapePtr shape = SelectedShape();
  shape->SetText(name_->Text());
  for (const DialogField& field : fields_) {
    SetPropList(shape, field.property_, field.control_.Text());
    // The drawing holds the new name now: should a later write fail, the next OK must not take it for another module's.
    if (&field.control_ == name_) nameAtOpening_ = name_->Text();
  }
}

void ModuleDialog::Show(std::initializer_list<Control*> controls, bool shown) {
  for (Control* control : controls) control->SetVisible(shown);
}

}  // namespace vardo
