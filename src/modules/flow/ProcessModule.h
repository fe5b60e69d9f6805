// The schema of the Process module.
#pragma once

#include "modules/CommonLooks.h"
#include "modules/ModuleSchema.h"

namespace vardo {

inline constexpr ModuleProperty kProcessProperties[] = {
    {"ProcessName", "Name", "Process 1", "The module's name, unique in the drawing"},
    {"ProcessType", "Type", "Standard", "Standard or Submodel"},
    {"ProcessAction", "Action", "D", "D delay, SD seize and delay, SDR seize, delay and release, DR delay and release"},
    {"ProcessPriority", "Priority", "2", "1 high, 2 medium, 3 low, or an expression"},
    {"ProcessDelayType", "Delay Type", "Triangular", "Constant, Normal, Triangular, Uniform or Expression"},
    {"ProcessUnits", "Units", "hours", "The unit of the delay"},
    {"ProcessAllocation", "Allocation", "VA", "Where time and cost go: VA, NVA, Tran, Wait or Other"},
    {"ProcessMin", "Minimum", ".5", "The shortest delay"},
    {"ProcessValue", "Value", "1", "The delay, its mean or its most likely value"},
    {"ProcessMax", "Maximum", "1.5", "The longest delay"},
    {"ProcessStdDev", "Std Dev", ".2", "The standard deviation of a normal delay"},
    {"ProcessExpression", "Expression", "1", "The delay when its type is Expression"},
    {"ReportStatistics", "Report Statistics", "Yes", "Yes or No"},
    {"Process_RCount", "Resource Rows", "0", kHiddenRow},
    {"Process_RType", "Resource Row Types", "Resource", kHiddenRow},
    {"Process_RResourceName", "Resource Names", "Resource 1", kHiddenRow},
    {"Process_RSetName", "Resource Set Names", "Set 1", kHiddenRow},
    {"Process_RQuantity", "Resource Quantities", "1", kHiddenRow},
    {"Process_RSelectionRule", "Selection Rules", "CYC", kHiddenRow},
    {"Process_RSaveAttribute", "Save Attributes", "", kHiddenRow},
    {"Process_RInputAttribute", "Set Indexes", "1", kHiddenRow},
    {"VardoSubPage", "Submodel Page", "", kHiddenRow},
};

// Rows without a specific member hold an attribute's name in the place of its index.
inline constexpr RowColumn kProcessColumns[] = {
    {"Process_RType"},
    {"Process_RSetName"},
    {"Process_RSelectionRule"},
    {"Process_RQuantity"},
    {"Process_RSaveAttribute"},
    {"Process_RResourceName"},
    {"Process_RInputAttribute", "Attribute 1"},
};

inline constexpr ModuleSchema kProcessModule = {
    .kind = "Process",
    .prompt = "Entities are worked on: they wait for resources, are delayed, and release them.",
    .keywords = "work,delay,activity,task,server,seize,release,submodel",
    .properties = kProcessProperties,
    .rows = {"Process_RCount", kProcessColumns},
    .look = {.colours = kWorkColours, .outline = kBoxOutline, .connections = kExitAndEntry},
};

}  // namespace vardo
