// The schema of the Batch module.
#pragma once

#include "modules/CommonLooks.h"
#include "modules/ModuleSchema.h"

namespace vardo {

inline constexpr ModuleProperty kBatchProperties[] = {
    {"BatchName", "Name", "Batch 1", "The module's name, unique in the drawing"},
    {"BatchType", "Type", "Permanent", "Permanent or Temporary"},
    {"BatchBatchSize", "Batch Size", "2", "How many entities make a batch"},
    {"BatchSaveCriterion", "Save Criterion", "Last", "How the batch's attributes come about: First, Last, Sum or Product"},
    {"BatchRule", "Rule", "Any Entity", "Any Entity or By Attribute"},
    {"BatchAttributeName", "Attribute Name", "Attribute 1", "The attribute that entities of a batch share"},
};

inline constexpr ModuleSchema kBatchModule = {
    .kind = "Batch",
    .prompt = "A number of entities are gathered into one.",
    .keywords = "group,gather,combine,collect,join",
    .properties = kBatchProperties,
    .look = {.colours = kRoutingColours, .outline = "M0 0 L.7 0 L1 .22 L1 .78 L.7 1 L0 1 Z", .connections = kExitAndEntry},
};

}  // namespace vardo
