#include "modules/ModuleGeometry.h"

namespace vardo {
namespace {

constexpr Look kEnds{"#e2f0d9", "#548235"};
constexpr Look kWork{"#deebf7", "#2e75b6"};
constexpr Look kRouting{"#fff2cc", "#bf9000"};
constexpr Look kData{"#ece7f4", "#6a5194"};

constexpr Place kExitOnly[] = {{1, 0.5}};
constexpr Place kEntryOnly[] = {{0, 0.5}};
constexpr Place kExitAndEntry[] = {{1, 0.5}, {0, 0.5}};
constexpr Place kSlantedExitAndEntry[] = {{0.94, 0.5}, {0.06, 0.5}};
constexpr Place kTrueEntryFalse[] = {{1, 0.5}, {0, 0.5}, {0.5, 0}};
// The exit of the duplicates is known by exactly this place.
constexpr Place kOriginalEntryDuplicate[] = {{1, 0.5}, {0, 0.5}, {0.8912, 0}};

constexpr std::string_view kBox = "M0 0 L1 0 L1 1 L0 1 Z";
constexpr Place kBelowHeader{1, 0.7};

constexpr ModuleGeometry kModules[] = {
    {.kind = "Create",
     .prompt = "Entities arrive here and enter the model.",
     .look = kEnds,
     .outline = "M0 0 L.8 0 L1 .5 L.8 1 L0 1 Z",
     .textTo = {0.9, 1},
     .connections = kExitOnly},
    {.kind = "Process",
     .prompt = "Entities are worked on: they wait for resources, are delayed, and release them.",
     .look = kWork,
     .outline = kBox,
     .connections = kExitAndEntry},
    {.kind = "Decide",
     .prompt = "Entities leave by one of two exits, by chance or by condition.",
     .width = 1.5,
     .height = 1,
     .look = kRouting,
     .outline = "M0 .5 L.5 0 L1 .5 L.5 1 Z",
     .textFrom = {0.15, 0.25},
     .textTo = {0.85, 0.75},
     .connections = kTrueEntryFalse},
    {.kind = "Assign",
     .prompt = "Variables, attributes, entity types and pictures get new values.",
     .look = kWork,
     .outline = "M0 0 L.88 0 L1 1 L.12 1 Z",
     .textFrom = {0.1, 0},
     .textTo = {0.9, 1},
     .connections = kSlantedExitAndEntry},
    {.kind = "Batch",
     .prompt = "A number of entities are gathered into one.",
     .look = kRouting,
     .outline = "M0 0 L.7 0 L1 .22 L1 .78 L.7 1 L0 1 Z",
     .connections = kExitAndEntry},
    {.kind = "Separate",
     .prompt = "Entities are duplicated, or a batch is split into its members.",
     .look = kRouting,
     .outline = "M0 .22 L.3 0 L1 0 L1 1 L.3 1 L0 .78 Z",
     .connections = kOriginalEntryDuplicate},
    {.kind = "Record",
     .prompt = "A count, a time or an expression is recorded as entities pass.",
     .look = kWork,
     .outline = "M0 .12 C.35 -.14 .65 .38 1 .12 L1 1 L0 1 Z",
     .textFrom = {0, 0.2},
     .connections = kExitAndEntry},
    {.kind = "Dispose",
     .prompt = "Entities leave the model here.",
     .look = kEnds,
     .outline = "M1 0 L1 1 L.2 1 L0 .5 L.2 0 Z",
     .textFrom = {0.1, 0},
     .connections = kEntryOnly},
    // A parcel.
    {.kind = "Entity",
     .prompt = "Defines an entity type: its picture and its costs.",
     .look = kData,
     .outline = kBox,
     .details = "M0 .7 L1 .7 M.05 .76 L.17 .76 L.17 .94 L.05 .94 Z M.05 .87 L.17 .87 M.11 .87 L.11 .94",
     .textTo = kBelowHeader},
    // Three that wait.
    {.kind = "Queue",
     .prompt = "Defines how the entities in a queue are ranked.",
     .look = kData,
     .outline = kBox,
     .details = "M0 .7 L1 .7 M.06 .76 L.06 .94 M.11 .76 L.11 .94 M.16 .76 L.16 .94 M.21 .85 L.3 .85 M.27 .89 L.3 .85 L.27 .81",
     .textTo = kBelowHeader},
    // A nut.
    {.kind = "Resource",
     .prompt = "Defines a resource: its capacity and its costs.",
     .look = kData,
     .outline = kBox,
     .details = "M0 .7 L1 .7 M.05 .85 L.08 .76 L.14 .76 L.17 .85 L.14 .94 L.08 .94 Z M.09 .85 L.11 .88 L.13 .85 L.11 .82 Z",
     .textTo = kBelowHeader},
    // Values that change with time.
    {.kind = "Schedule",
     .prompt = "Defines how a capacity or an arrival rate changes with time.",
     .look = kData,
     .outline = kBox,
     .details = "M0 .7 L1 .7 M.05 .76 L.05 .84 L.1 .84 L.1 .94 L.15 .94 L.15 .87 L.2 .87 L.2 .81 L.25 .81 L.25 .76 Z",
     .textTo = kBelowHeader},
    // A stack of cards.
    {.kind = "Set",
     .prompt = "Defines a named list of resources, counters, tallies, entity types or pictures.",
     .look = kData,
     .outline = kBox,
     .details = "M0 .7 L1 .7 M.05 .76 L.13 .76 L.13 .88 L.05 .88 Z M.08 .88 L.08 .91 L.16 .91 L.16 .79 L.13 .79 "
                "M.11 .91 L.11 .94 L.19 .94 L.19 .82 L.16 .82",
     .textTo = kBelowHeader},
    // x =
    {.kind = "Variable",
     .prompt = "Defines a variable: its dimensions and its initial values.",
     .look = kData,
     .outline = kBox,
     .details = "M0 .7 L1 .7 M.05 .77 L.14 .93 M.05 .93 L.14 .77 M.19 .82 L.27 .82 M.19 .88 L.27 .88",
     .textTo = kBelowHeader},
};

}  // namespace

std::span<const ModuleGeometry> ModuleGeometries() { return kModules; }

}  // namespace vardo
