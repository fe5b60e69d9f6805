// One property of a module kind: a row of shape data.
#pragma once

#include <string_view>

namespace vardo {

// In a prompt's place: the row is kept from the host's shape data window.
inline constexpr std::string_view kHiddenRow = {};

struct ModuleProperty {
  std::string_view field;  // the row's name; the cell is "Prop." and this
  std::string_view label;  // what people read beside it
  // Of a new module, and what a dialog takes a missing cell for. As it is stored: a code where the dialog shows a caption.
  std::string_view defaultValue;
  std::string_view prompt;  // the tip shown with the row

  constexpr bool IsHidden() const { return prompt.empty(); }
};

}  // namespace vardo
