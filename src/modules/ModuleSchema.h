// What is to be said of one kind of module, once: its shape data, its rows and its look.
#pragma once

#include "modules/ModuleLook.h"
#include "modules/ModuleProperty.h"
#include "modules/RowGroup.h"

#include <span>
#include <stdexcept>
#include <string_view>

namespace vardo {

struct ModuleSchema {
  std::string_view kind;      // the master's name
  std::string_view prompt;    // the master's tip in the stencil
  std::string_view keywords;  // by which people find the master, parted by commas
  // In the order in which the rows stand on the shape; the first holds the module's name.
  std::span<const ModuleProperty> properties;
  RowGroup rows = {};
  ModuleLook look;

  constexpr const ModuleProperty& Name() const { return properties.front(); }

  // Letter case counts. Throws std::out_of_range for a field that the kind does not have; in a constant it does not compile.
  constexpr const ModuleProperty& Property(std::string_view field) const {
    for (const ModuleProperty& property : properties)
      if (property.field == field) return property;
    throw std::out_of_range("no such property");
  }
};

}  // namespace vardo
