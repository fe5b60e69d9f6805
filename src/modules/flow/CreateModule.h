// The schema of the Create module.
#pragma once

#include "modules/CommonLooks.h"
#include "modules/ModuleSchema.h"

namespace vardo {

inline constexpr ModuleProperty kCreateProperties[] = {
    {"CreateName", "Name", "Create 1", "The module's name, unique in the drawing"},
    {"CreateEntityType", "Entity Type", "Entity 1", "The type of the entities created"},
    {"CreateType", "Type", "Random", "Random, Schedule, Constant or Expression"},
    {"CreateValue", "Value", "1", "The time between arrivals, or its mean"},
    {"CreateUnits", "Units", "Hours", "The unit of the time between arrivals"},
    {"CreateBatchSize", "Entities per Arrival", "1", "How many entities arrive at a time"},
    {"CreateMaxBatches", "Max Arrivals", "Infinite", "After how many arrivals creation ends"},
    {"CreateFirstCreation", "First Creation", "0.0", "When the first entity arrives"},
    {"CreateExpression", "Expression", "1", "The time between arrivals when the type is Expression"},
    {"CreateScheduleName", "Schedule Name", "Schedule 1", "The arrival schedule when the type is Schedule"},
};

inline constexpr Place kCreateConnections[] = {{1, 0.5}};

inline constexpr ModuleSchema kCreateModule = {
    .kind = "Create",
    .prompt = "Entities arrive here and enter the model.",
    .keywords = "arrival,start,source,begin,enter,generate",
    .properties = kCreateProperties,
    .look = {.colours = kEndColours,
             .outline = "M0 0 L.8 0 L1 .5 L.8 1 L0 1 Z",
             .textTo = {0.9, 1},
             .connections = kCreateConnections},
};

}  // namespace vardo
