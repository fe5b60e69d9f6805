// What every dialog of the add-in has: it opens in the middle of the screen, and has OK, Cancel and Help.
#pragma once

#include "dialogs/DialogField.h"
#include "forms/Form.h"
#include "modules/ModuleSchema.h"

#include <deque>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

class DialogFrame : public Form {
 public:
  void Form_Load() override;

 protected:
  // module: the kind that the dialog edits, or edits rows of.
  DialogFrame(const ModuleSchema& module, std::string_view name, std::string_view caption, std::string_view helpTopic);

  // Registered by each dialog behind its own controls, so that they come last in tab order.
  struct Buttons {
    explicit Buttons(DialogFrame& dialog);
    std::vector<Button*> All() { return {&cmdOK, &cmdCancel, &cmdHelp}; }
    Button cmdOK, cmdCancel, cmdHelp;
  };

  virtual void cmdOK_Click() = 0;
  virtual void cmdCancel_Click() = 0;

  const ModuleSchema& module() const { return module_; }

  // The dialog's next field: one of the kind's.
  template <class C>
  DialogField& Field(C& control, std::string_view field) {
    return fields_.emplace_back(control, module_.Property(field));
  }
  std::deque<DialogField>& fields() { return fields_; }
  const std::deque<DialogField>& fields() const { return fields_; }

  // OK checks the fields as they were added unless another order is given here.
  void CheckInOrder(std::initializer_list<const Control*> controls);
  // Checks one after another; false at the first that fails.
  bool FieldsAreValid() const;
  // The fields of these controls, or all as they were added when none are given.
  std::vector<const DialogField*> InOrder(const std::vector<const Control*>& controls) const;

  static void Show(const std::vector<Control*>& controls, bool shown);

 private:
  void cmdHelp_Click();

  const ModuleSchema& module_;
  std::string helpTopic_;
  std::deque<DialogField> fields_;  // references to its elements stay good
  std::vector<const Control*> checkOrder_;
};

}  // namespace vardo
