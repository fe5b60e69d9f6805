#include "dialogs/DialogFrame.h"

#include "base/Errors.h"
#include "dialogs/Utilities.h"
#include "platform/Platform.h"

#include <algorithm>

namespace vardo {

DialogFrame::DialogFrame(const ModuleSchema& module, std::string_view name, std::string_view caption, std::string_view helpTopic)
    : Form(name, caption), module_(module), helpTopic_(helpTopic) {}

DialogFrame::Buttons::Buttons(DialogFrame& dialog)
    : cmdOK(dialog, "cmdOK", "OK"), cmdCancel(dialog, "cmdCancel", "Cancel"), cmdHelp(dialog, "cmdHelp", "&Help") {
  cmdOK.Click = [&dialog] { dialog.cmdOK_Click(); };
  cmdCancel.Click = [&dialog] { dialog.cmdCancel_Click(); };
  cmdHelp.Click = [&dialog] { dialog.cmdHelp_Click(); };
  dialog.SetDefaultButtons(cmdOK, cmdCancel);
}

void DialogFrame::Form_Load() { CenterForm(*this); }

void DialogFrame::cmdHelp_Click() { ThePlatform().ShowHelp(kHelpFile, helpTopic_); }

void DialogFrame::CheckInOrder(std::initializer_list<const Control*> controls) { checkOrder_ = controls; }

bool DialogFrame::FieldsAreValid() const {
  const auto order = InOrder(checkOrder_);
  return std::all_of(order.begin(), order.end(), [](const DialogField* field) { return field->IsValid(); });
}

std::vector<const DialogField*> DialogFrame::InOrder(const std::vector<const Control*>& controls) const {
  std::vector<const DialogField*> ordered;
  if (controls.empty())
    for (const DialogField& field : fields_) ordered.push_back(&field);
  for (const Control* control : controls) {
    const auto is = [&](const DialogField& field) { return &field.control() == control; };
    ordered.push_back(&*std::find_if(fields_.begin(), fields_.end(), is));
  }
  return ordered;
}

void DialogFrame::Show(const std::vector<Control*>& controls, bool shown) {
  for (Control* control : controls) control->SetVisible(shown);
}

}  // namespace vardo
