// The schema of the Entity module.
#pragma once

#include "modules/CommonLooks.h"
#include "modules/ModuleSchema.h"

namespace vardo {

inline constexpr ModuleProperty kEntityProperties[] = {
    {"EntityName", "Entity Type", "Entity 1", "The entity type's name, unique in the drawing"},
    {"EntityInitialPicture", "Initial Picture", "Picture.Report", "How its entities look in an animation"},
    {"EntityHoldingCost_Hour", "Holding Cost / Hour", "0.0", "What an hour in the system costs"},
    {"EntityValueAdded", "Value Added", "0.0", "Value-added cost at creation"},
    {"EntityNonValueAdded", "Non-Value Added", "0.0", "Non-value-added cost at creation"},
    {"EntityWaiting", "Waiting", "0.0", "Waiting cost at creation"},
    {"EntityTransfer", "Transfer", "0.0", "Transfer cost at creation"},
    {"EntityOther", "Other", "0.0", "Other cost at creation"},
    {"ReportStatistics", "Report Statistics", "Yes", "Yes or No"},
};

inline constexpr ModuleSchema kEntityModule = {
    .kind = "Entity",
    .prompt = "Defines an entity type: its picture and its costs.",
    .keywords = "type,picture,cost,item,customer",
    .properties = kEntityProperties,
    // A parcel.
    .look = {.colours = kDataColours,
             .outline = kBoxOutline,
             .symbol = "M.05 .76 L.17 .76 L.17 .94 L.05 .94 Z M.05 .87 L.17 .87 M.11 .87 L.11 .94",
             .textTo = kBelowHeader},
};

}  // namespace vardo
