// What a forms toolkit does for the program: show forms, and act on them as a person would.
#pragma once

#include "forms/Form.h"

#include <string>
#include <string_view>

namespace vardo {

class FormPresenter {
 public:
  virtual ~FormPresenter() = default;
  // An instance has been made, and is about to go: it can be shown between the two.
  virtual void Loaded(Form& /*form*/) {}
  virtual void Unloaded(Form& /*form*/) {}
  // Shows the form over the one shown before and returns when form.IsShown() has become false.
  virtual void RunModal(Form& form) = 0;
  // The form has just been closed, by a handler that is still running: RunModal returns when that handler has.
  virtual void Closed(Form& form) = 0;
};

// Acts on a shown form through the toolkit's own events, so that what a test sees is what a person gets.
// Every call throws RuntimeError 5, and changes nothing, where a person could not do it.
class FormDriver {
 public:
  virtual ~FormDriver() = default;
  virtual void Focus(Control& control) = 0;
  virtual void Type(TextControl& control, std::string_view text) = 0;
  virtual void Pick(Control& control, int index) = 0;
  virtual void Check(CheckBox& control, bool checked) = 0;
  virtual void Click(Control& control) = 0;
  virtual void DblClick(Control& control) = 0;
  virtual void Key(Form& form, std::string_view key) = 0;
  // Writes a PNG picture of the form; throws RuntimeError 5 when the toolkit draws none or the file cannot be written.
  virtual void Screenshot(Form& form, const std::string& file) = 0;
};

}  // namespace vardo
