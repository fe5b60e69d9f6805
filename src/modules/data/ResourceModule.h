// The schema of the Resource module.
#pragma once

#include "modules/CommonLooks.h"
#include "modules/ModuleSchema.h"

namespace vardo {

// The last two hold whichever of capacity and schedule is in force, for those who need not know the type.
inline constexpr ModuleProperty kResourceProperties[] = {
    {"ResourceName", "Name", "Resource 1", "The resource's name, unique in the drawing"},
    {"ResourceType", "Type", "Capacity", "Capacity: fixed capacity, Schedule: based on schedule"},
    {"ResourceCapacity", "Capacity", "1", "How many units there are"},
    {"ResourceScheduleName", "Schedule Name", "Schedule 1", "The schedule that gives the capacity"},
    {"ResourceScheduleRule", "Schedule Rule", "Wait", "When capacity falls while busy: Wait, Ignore or Preempt"},
    {"ResourceBusy_Hour", "Busy / Hour", "0.0", "What a busy hour costs"},
    {"ResourceIdle_Hour", "Idle / Hour", "0.0", "What an idle hour costs"},
    {"ResourcePerUse", "Per Use", "0.0", "What each use costs"},
    {"ReportStatistics", "Report Statistics", "Yes", "Yes or No"},
    {"ResourceCapacityOrSchedule", "Capacity or Schedule", "1", kHiddenRow},
    {"ResourceCapacityOrSchedule2", "Capacity or Schedule (2)", "1", kHiddenRow},
};

inline constexpr ModuleSchema kResourceModule = {
    .kind = "Resource",
    .prompt = "Defines a resource: its capacity and its costs.",
    .keywords = "capacity,staff,machine,worker,server,cost",
    .properties = kResourceProperties,
    // A nut.
    .look = {.colours = kDataColours,
             .outline = kBoxOutline,
             .symbol = "M.05 .85 L.08 .76 L.14 .76 L.17 .85 L.14 .94 L.08 .94 Z M.09 .85 L.11 .88 L.13 .85 L.11 .82 Z",
             .textTo = kBelowHeader},
};

}  // namespace vardo
