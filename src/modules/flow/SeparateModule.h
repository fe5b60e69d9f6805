// The schema of the Separate module.
#pragma once

#include "modules/CommonLooks.h"
#include "modules/ModuleSchema.h"

namespace vardo {

// The number of duplicates is spelled here as the dialog writes it; cell names are found whatever their letter case.
inline constexpr ModuleProperty kSeparateProperties[] = {
    {"SeparateName", "Name", "Separate 1", "The module's name, unique in the drawing"},
    {"SeparateType", "Type", "Duplicate", "Duplicate: duplicate original, Split: split existing batch"},
    {"SeparateCostToDuplicates", "Percent Cost to Duplicates", "50", "How much of a hundred goes to the duplicates"},
    {"SeparateNumberofDuplicates", "# of Duplicates", "1", "How many copies are made"},
    {"SeparateMemberAttributes", "Member Attributes", "Retain", "Retain, All or Specific"},
    {"Separate_ACount", "Attribute Rows", "0", kHiddenRow},
    {"AttributeName", "Attribute Names", "Attribute 1", kHiddenRow},
};

inline constexpr RowColumn kSeparateColumns[] = {
    {"AttributeName"},
};

// The original, the entry, the duplicates, whose exit is known by exactly this place.
inline constexpr Place kSeparateConnections[] = {{1, 0.5}, {0, 0.5}, {0.8912, 0}};

inline constexpr ModuleSchema kSeparateModule = {
    .kind = "Separate",
    .prompt = "Entities are duplicated, or a batch is split into its members.",
    .keywords = "split,duplicate,copy,ungroup",
    .properties = kSeparateProperties,
    .rows = {"Separate_ACount", kSeparateColumns},
    .look = {.colours = kRoutingColours, .outline = "M0 .22 L.3 0 L1 0 L1 1 L.3 1 L0 .78 Z", .connections = kSeparateConnections},
};

}  // namespace vardo
