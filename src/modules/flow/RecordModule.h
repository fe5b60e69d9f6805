// The schema of the Record module.
#pragma once

#include "modules/CommonLooks.h"
#include "modules/ModuleSchema.h"

namespace vardo {

// A counter or tally without a name of its own bears the module's.
inline constexpr ModuleProperty kRecordProperties[] = {
    {"RecordName", "Name", "Record 1", "The module's name, unique in the drawing"},
    {"RecordType", "Type", "Count", "Count, Entity, Interval, Between or Expression"},
    {"RecordValue", "Value", "1", "What is counted or recorded"},
    {"RecordAttributeName", "Attribute Name", "Attribute 1", "The attribute that holds the interval's beginning"},
    {"RecordInSet", "Record into Set", "No", "Yes or No"},
    {"RecordCounterName", "Counter Name", "", "Empty: the module's name"},
    {"RecordTallyName", "Tally Name", "", "Empty: the module's name"},
    {"RecordCounterSetName", "Counter Set Name", "Counter Set 1", "The set when counts go into a set"},
    {"RecordTallySetName", "Tally Set Name", "Tally Set 1", "The set when tallies go into a set"},
    {"RecordSetIndex", "Set Index", "1", "Which member of the set"},
};

inline constexpr ModuleSchema kRecordModule = {
    .kind = "Record",
    .prompt = "A count, a time or an expression is recorded as entities pass.",
    .keywords = "count,tally,measure,statistics,time",
    .properties = kRecordProperties,
    .look = {.colours = kWorkColours,
             .outline = "M0 .12 C.35 -.14 .65 .38 1 .12 L1 1 L0 1 Z",
             .textFrom = {0, 0.2},
             .connections = kExitAndEntry},
};

}  // namespace vardo
