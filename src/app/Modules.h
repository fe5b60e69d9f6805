// What a person sees of a drawing as a model: its modules and their properties.
#pragma once

#include "document/Drawing.h"

#include <string>
#include <utility>
#include <vector>

namespace vardo {

// The kind in User.ClassName; empty for a shape that is no module.
std::string ModuleKindOf(const Sheet& shape);

// The custom properties in order: names without "Prop.", and their values as text.
std::vector<std::pair<std::string, std::string>> PropertiesOfShape(const Sheet& shape);

}  // namespace vardo
