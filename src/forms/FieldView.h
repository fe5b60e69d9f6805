// What the core needs to know of a form's controls.
#pragma once

#include <string>
#include <string_view>

namespace vardo {

// What a check sees of a field.
class FieldView {
 public:
  virtual ~FieldView() = default;
  virtual bool Visible() const = 0;
  virtual std::string Text() const = 0;
  virtual void SetFocus() = 0;
};

// What a list filler sees of a drop-down.
class ItemList {
 public:
  virtual ~ItemList() = default;
  virtual void AddItem(std::string_view item) = 0;
};

}  // namespace vardo
