// Fills a module's dialog in a person's place.
#pragma once

#include "forms/Form.h"

#include <string>
#include <utility>
#include <vector>

namespace vardo {

struct FieldText {
  std::string field, text;  // a property without "Prop."; what is typed, or the code that stands for it
};

// Puts the texts into the fields of the dialog and presses OK, as a person would.
class DialogFiller {
 public:
  explicit DialogFiller(std::vector<FieldText> texts) : texts_(std::move(texts)) {}
  // The dialog of a module, shown. Throws AutomationError when there is no such field, it is not shown or it takes no such text.
  void Fill(Form& form);
  // OK has closed the dialog. Otherwise a message has said why not.
  bool accepted() const { return accepted_; }

 private:
  std::vector<FieldText> texts_;
  bool accepted_ = false;
};

}  // namespace vardo
