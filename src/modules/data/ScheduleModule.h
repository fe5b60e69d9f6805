// The schema of the Schedule module.
#pragma once

#include "modules/CommonLooks.h"
#include "modules/ModuleSchema.h"

namespace vardo {

inline constexpr ModuleProperty kScheduleProperties[] = {
    {"ScheduleName", "Name", "Schedule 1", "The schedule's name, unique in the drawing"},
    {"ScheduleType", "Type", "Capacity", "Capacity, Arrival or Other"},
    {"ScheduleTimeUnits", "Time Units", "hours", "The unit of the durations"},
    {"ScheduleScaleFactor", "Scale Factor", "1.0", "What the values are multiplied by"},
    {"Schedule_DCount", "Duration Rows", "0", kHiddenRow},
    {"Schedule_DurationsValue", "Values", "1", kHiddenRow},
    {"Schedule_DurationsDuration", "Durations", "", kHiddenRow},
};

inline constexpr RowColumn kScheduleColumns[] = {
    {"Schedule_DurationsValue"},
    {"Schedule_DurationsDuration"},
};

inline constexpr ModuleSchema kScheduleModule = {
    .kind = "Schedule",
    .prompt = "Defines how a capacity or an arrival rate changes with time.",
    .keywords = "calendar,shift,rate,capacity,time",
    .properties = kScheduleProperties,
    .rows = {"Schedule_DCount", kScheduleColumns},
    // Values that change with time.
    .look = {.colours = kDataColours,
             .outline = kBoxOutline,
             .symbol = "M.05 .76 L.05 .84 L.1 .84 L.1 .94 L.15 .94 L.15 .87 L.2 .87 L.2 .81 L.25 .81 L.25 .76 Z",
             .textTo = kBelowHeader},
};

}  // namespace vardo
