// The shape data of the fourteen module kinds: which Prop. rows a module of each kind has, and what a new one holds.
#pragma once

#include <span>
#include <string_view>

namespace vardo {

struct ModuleProperty {
  std::string_view field;   // the row's name; the cell is "Prop." and this
  std::string_view label;   // what people read beside it
  std::string_view value;   // of a new module, as it is stored: a code where the dialog shows a caption
  bool hidden;              // kept from the host's shape data window
  std::string_view prompt;  // the tip shown with a visible row
};

// In the order in which the rows stand on the shape; empty for a text that is no kind. Kinds compare exactly.
std::span<const ModuleProperty> PropertiesOf(std::string_view kind);

}  // namespace vardo
