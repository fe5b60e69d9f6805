// The schema of the Decide module.
#pragma once

#include "modules/CommonLooks.h"
#include "modules/ModuleSchema.h"

namespace vardo {

inline constexpr ModuleProperty kDecideProperties[] = {
    {"DecideName", "Name", "Decide 1", "The module's name, unique in the drawing"},
    {"DecideType", "Type", "With", "With: 2-way by chance, If: 2-way by condition"},
    {"DecidePercentTrue", "Percent True", "50", "How many of a hundred entities leave by the True exit"},
    {"DecideIf", "If", "Entity Type", "Variable, Attribute, Entity Type or Expression"},
    {"DecideVariableNamed", "Variable Named", "Variable 1", "The variable that the condition looks at"},
    {"DecideEntityTypeNamed", "Entity Type Named", "Entity 1", "The entity type that the condition looks for"},
    {"DecideAttributeNamed", "Attribute Named", "Attribute 1", "The attribute that the condition looks at"},
    {"DecideIs", "Is", ">=", ">, >=, ==, <, <= or <>"},
    {"DecideValue", "Value", "1", "What is compared with, or the whole expression"},
};

// True, the entry, False.
inline constexpr Place kDecideConnections[] = {{1, 0.5}, {0, 0.5}, {0.5, 0}};

inline constexpr ModuleSchema kDecideModule = {
    .kind = "Decide",
    .prompt = "Entities leave by one of two exits, by chance or by condition.",
    .keywords = "branch,condition,choice,if,chance,decision",
    .properties = kDecideProperties,
    .look = {.width = 1.5,
             .height = 1,
             .colours = kRoutingColours,
             .outline = "M0 .5 L.5 0 L1 .5 L.5 1 Z",
             .textFrom = {0.15, 0.25},
             .textTo = {0.85, 0.75},
             .connections = kDecideConnections},
};

}  // namespace vardo
