#include "script/DialogFiller.h"

#include "base/Errors.h"
#include "base/Text.h"
#include "dialogs/ModuleDialog.h"

#include <fmt/format.h>

#include <algorithm>

namespace vardo {
namespace {

AutomationError Refused(const std::string& sentence) { return AutomationError(5, sentence); }

std::string FieldNames(const ModuleDialog& dialog) {
  std::string names;
  for (const DialogField& field : dialog.Fields()) names += (names.empty() ? "" : ", ") + field.property();
  return names;
}

void Type(ModuleDialog& dialog, const FieldText& wanted) {
  const DialogField* field = dialog.FindField(wanted.field);
  if (!field)
    throw Refused(fmt::format("The {} dialog has no field {}; its fields are {}.", dialog.Caption(), InWords(wanted.field),
                              FieldNames(dialog)));
  Control& control = field->control();
  if (!control.Shown())
    throw Refused(fmt::format("The field {} is not shown now: choose the type that uses it first.", field->property()));
  const std::string text = field->ItemFor(wanted.text);
  const std::vector<std::string> choices = field->Choices();
  if (!choices.empty() && std::find(choices.begin(), choices.end(), text) == choices.end())
    throw Refused(fmt::format("{} takes one of {}, not \"{}\".", field->property(), fmt::join(choices, ", "), InWords(text)));
  if (auto* check = dynamic_cast<CheckBox*>(&control)) return dialog.UserCheck(*check, text == choices.front());
  dialog.UserType(dynamic_cast<TextControl&>(control), text);
}

}  // namespace

void DialogFiller::Fill(Form& form) {
  auto& dialog = dynamic_cast<ModuleDialog&>(form);
  for (const FieldText& wanted : texts_) {
    Type(dialog, wanted);
    // Leaving a box tidies it, and may show or hide the next.
    form.UserFocus(*form.DefaultButton());
  }
  form.UserKey("Enter");
  accepted_ = !form.IsShown();
}

}  // namespace vardo
