// The schema of the Variable module.
#pragma once

#include "modules/CommonLooks.h"
#include "modules/ModuleSchema.h"

namespace vardo {

inline constexpr ModuleProperty kVariableProperties[] = {
    {"VariableName", "Name", "Variable 1", "The variable's name, unique in the drawing"},
    {"VariableRows", "Rows", "", "Empty for a single value"},
    {"VariableColumns", "Columns", "", "Empty for a list"},
    {"VariableStatistics", "Report Statistics", "Yes", "Yes or No"},
    {"Variable_ICount", "Initial Value Rows", "0", kHiddenRow},
    {"VariableInitialValue", "Initial Values", "0.0", kHiddenRow},
};

inline constexpr RowColumn kVariableColumns[] = {
    {"VariableInitialValue"},
};

inline constexpr ModuleSchema kVariableModule = {
    .kind = "Variable",
    .prompt = "Defines a variable: its dimensions and its initial values.",
    .keywords = "value,number,array,initial",
    .properties = kVariableProperties,
    .rows = {"Variable_ICount", kVariableColumns},
    // x =
    .look = {.colours = kDataColours,
             .outline = kBoxOutline,
             .symbol = "M.05 .77 L.14 .93 M.05 .93 L.14 .77 M.19 .82 L.27 .82 M.19 .88 L.27 .88",
             .textTo = kBelowHeader},
};

}  // namespace vardo
