// The schema of the Assign module.
#pragma once

#include "modules/CommonLooks.h"
#include "modules/ModuleSchema.h"

namespace vardo {

inline constexpr ModuleProperty kAssignProperties[] = {
    {"AssignName", "Name", "Assign 1", "The module's name, unique in the drawing"},
    {"AssignCount", "Assignments", "0", kHiddenRow},
    {"AssignType", "Assignment Types", "Variable", kHiddenRow},
    {"AssignVariableName", "Variable Names", "Variable 1", kHiddenRow},
    {"AssignAttributeName", "Attribute Names", "Attribute 1", kHiddenRow},
    {"AssignEntityType", "Entity Types", "Entity 1", kHiddenRow},
    {"AssignEntityPicture", "Entity Pictures", "Picture.Report", kHiddenRow},
    {"AssignOther", "Others", "J", kHiddenRow},
    {"AssignNewValue", "New Values", "1", kHiddenRow},
};

inline constexpr RowColumn kAssignColumns[] = {
    {"AssignType"},       {"AssignVariableName"},  {"AssignNewValue"}, {"AssignAttributeName"},
    {"AssignEntityType"}, {"AssignEntityPicture"}, {"AssignOther"},
};

// On the slanted sides.
inline constexpr Place kAssignConnections[] = {{0.94, 0.5}, {0.06, 0.5}};

inline constexpr ModuleSchema kAssignModule = {
    .kind = "Assign",
    .prompt = "Variables, attributes, entity types and pictures get new values.",
    .keywords = "set value,variable,attribute,change",
    .properties = kAssignProperties,
    .rows = {"AssignCount", kAssignColumns},
    .look = {.colours = kWorkColours,
             .outline = "M0 0 L.88 0 L1 1 L.12 1 Z",
             .textFrom = {0.1, 0},
             .textTo = {0.9, 1},
             .connections = kAssignConnections},
};

}  // namespace vardo
