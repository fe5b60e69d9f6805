// The schema of the Set module.
#pragma once

#include "modules/CommonLooks.h"
#include "modules/ModuleSchema.h"

namespace vardo {

// Five copies of the members in force, one list a type, and the queues, which no dialog edits but lists of queues gather.
inline constexpr ModuleProperty kSetProperties[] = {
    {"SetName", "Name", "Set 1", "The set's name, unique in the drawing"},
    {"SetType", "Type", "Resource", "Resource, Counter, Tally, Entity Type or Entity Picture"},
    {"SetM_Count", "Member Rows", "0", kHiddenRow},
    {"SetMembers", "Members", "Resource 1", kHiddenRow},
    {"SetMembers2", "Members (2)", "Resource 1", kHiddenRow},
    {"SetMembers3", "Members (3)", "Resource 1", kHiddenRow},
    {"SetMembers4", "Members (4)", "Resource 1", kHiddenRow},
    {"SetMembers5", "Members (5)", "Resource 1", kHiddenRow},
    {"SetResourceMembers", "Resource Members", "Resource 1", kHiddenRow},
    {"SetCounterMembers", "Counter Members", "Counter 1", kHiddenRow},
    {"SetTallyMembers", "Tally Members", "Tally 1", kHiddenRow},
    {"SetEntityMembers", "Entity Type Members", "Entity 1", kHiddenRow},
    {"SetPictureMembers", "Entity Picture Members", "Picture.Report", kHiddenRow},
    {"SetQueueMembers", "Queue Members", "", kHiddenRow},
};

inline constexpr RowColumn kSetColumns[] = {
    {"SetMembers"},         {"SetMembers2"},       {"SetMembers3"},     {"SetMembers4"},       {"SetMembers5"},
    {"SetResourceMembers"}, {"SetCounterMembers"}, {"SetTallyMembers"}, {"SetPictureMembers"}, {"SetEntityMembers"},
};

inline constexpr ModuleSchema kSetModule = {
    .kind = "Set",
    .prompt = "Defines a named list of resources, counters, tallies, entity types or pictures.",
    .keywords = "group,list,members",
    .properties = kSetProperties,
    .rows = {"SetM_Count", kSetColumns},
    // A stack of cards.
    .look = {.colours = kDataColours,
             .outline = kBoxOutline,
             .symbol = "M.05 .76 L.13 .76 L.13 .88 L.05 .88 Z M.08 .88 L.08 .91 L.16 .91 L.16 .79 L.13 .79 "
                       "M.11 .91 L.11 .94 L.19 .94 L.19 .82 L.16 .82",
             .textTo = kBelowHeader},
};

}  // namespace vardo
