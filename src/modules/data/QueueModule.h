// The schema of the Queue module.
#pragma once

#include "modules/CommonLooks.h"
#include "modules/ModuleSchema.h"

namespace vardo {

inline constexpr ModuleProperty kQueueProperties[] = {
    {"QueueName", "Name", "Queue 1", "The queue's name, unique in the drawing"},
    {"QueueType", "Type", "FIFO", "FIFO, LIFO, LVF lowest or HVF highest attribute value"},
    {"QueueAttributeName", "Attribute Name", "Attribute 1", "The attribute that ranks the entities"},
    {"ReportStatistics", "Report Statistics", "Yes", "Yes or No"},
};

inline constexpr ModuleSchema kQueueModule = {
    .kind = "Queue",
    .prompt = "Defines how the entities in a queue are ranked.",
    .keywords = "waiting line,rank,order,FIFO,LIFO,priority",
    .properties = kQueueProperties,
    // Three that wait.
    .look = {.colours = kDataColours,
             .outline = kBoxOutline,
             .symbol = "M.06 .76 L.06 .94 M.11 .76 L.11 .94 M.16 .76 L.16 .94 M.21 .85 L.3 .85 M.27 .89 L.3 .85 L.27 .81",
             .textTo = kBelowHeader},
};

}  // namespace vardo
