// Forms without a screen: a program reads and fills them through the model.
#pragma once

#include "forms/FormPresenter.h"

#include <functional>

namespace vardo {

class HeadlessPresenter : public FormPresenter, public FormDriver {
 public:
  // pump acts on the shown form until it is closed; a form still open when it returns is cancelled with Escape.
  explicit HeadlessPresenter(std::function<void(Form&)> pump) : pump_(std::move(pump)) {}

  void RunModal(Form& form) override;
  void Closed(Form&) override {}

  void Focus(Control& control) override { control.form().UserFocus(control); }
  void Type(TextControl& control, std::string_view text) override { control.form().UserType(control, text); }
  void Pick(Control& control, int index) override { control.form().UserPick(control, index); }
  void Check(CheckBox& control, bool checked) override { control.form().UserCheck(control, checked); }
  void Click(Control& control) override { control.form().UserClick(control); }
  void DblClick(Control& control) override { control.form().UserDblClick(control); }
  void Key(Form& form, std::string_view key) override { form.UserKey(key); }
  void Screenshot(Form& form, const std::string& file) override;

 private:
  std::function<void(Form&)> pump_;
};

}  // namespace vardo
