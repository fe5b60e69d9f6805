// The schema of the Dispose module.
#pragma once

#include "modules/CommonLooks.h"
#include "modules/ModuleSchema.h"

namespace vardo {

inline constexpr ModuleProperty kDisposeProperties[] = {
    {"DisposeName", "Name", "Dispose 1", "The module's name, unique in the drawing"},
    {"EntityStatistics", "Record Entity Statistics", "Yes", "Yes or No"},
};

inline constexpr Place kDisposeConnections[] = {{0, 0.5}};

inline constexpr ModuleSchema kDisposeModule = {
    .kind = "Dispose",
    .prompt = "Entities leave the model here.",
    .keywords = "end,exit,sink,leave,departure",
    .properties = kDisposeProperties,
    .look = {.colours = kEndColours,
             .outline = "M1 0 L1 1 L.2 1 L0 .5 L.2 0 Z",
             .textFrom = {0.1, 0},
             .connections = kDisposeConnections},
};

}  // namespace vardo
