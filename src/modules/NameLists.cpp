#include "modules/NameLists.h"

#include <algorithm>
#include <iterator>

namespace vardo {
namespace {

constexpr NameSource kFlowModules[] = {
    {"Create", "CreateName"}, {"Dispose", "DisposeName"},   {"Process", "ProcessName"}, {"Decide", "DecideName"},
    {"Batch", "BatchName"},   {"Separate", "SeparateName"}, {"Assign", "AssignName"},   {"Record", "RecordName"},
};
constexpr NameSource kAttributes[] = {
    {"Batch", "BatchAttributeName"}, {"Assign", "AssignAttributeName"},     {"Decide", "DecideAttributeNamed"},
    {"Queue", "QueueAttributeName"}, {"Process", "Process_RSaveAttribute"}, {"Record", "RecordAttributeName"},
    {"Separate", "AttributeName"},
};
constexpr NameSource kEntityTypes[] = {
    {"Create", "CreateEntityType"}, {"Entity", "EntityName"},    {"Decide", "DecideEntityTypeNamed"},
    {"Assign", "AssignEntityType"}, {"Set", "SetEntityMembers"},
};
constexpr NameSource kResources[] = {
    {"Set", "SetResourceMembers"},
    {"Resource", "ResourceName"},
    {"Process", "Process_RResourceName"},
};
constexpr NameSource kSchedules[] = {
    {"Create", "CreateScheduleName"},
    {"Resource", "ResourceScheduleName"},
    {"Schedule", "ScheduleName"},
};
constexpr NameSource kSets[] = {
    {"Set", "SetName"},
    {"Process", "Process_RSetName"},
    {"Record", "RecordCounterSetName"},
    {"Record", "RecordTallySetName"},
};
constexpr NameSource kVariables[] = {
    {"Assign", "AssignVariableName"},
    {"Decide", "DecideVariableNamed"},
    {"Variable", "VariableName"},
};
constexpr NameSource kBatchAndProcess[] = {{"Batch", "BatchName"}, {"Process", "ProcessName"}};
constexpr NameSource kCounters[] = {{"Set", "SetCounterMembers"}, {"Record", "RecordCounterName"}};
constexpr NameSource kTallies[] = {{"Set", "SetTallyMembers"}, {"Record", "RecordTallyName"}};
constexpr NameSource kAllModules[] = {
    {"Create", "CreateName"},     {"Dispose", "DisposeName"},   {"Process", "ProcessName"}, {"Decide", "DecideName"},
    {"Batch", "BatchName"},       {"Separate", "SeparateName"}, {"Assign", "AssignName"},   {"Record", "RecordName"},
    {"Entity", "EntityName"},     {"Resource", "ResourceName"}, {"Set", "SetName"},         {"Schedule", "ScheduleName"},
    {"Variable", "VariableName"}, {"Queue", "QueueName"},
};
constexpr NameSource kPictures[] = {
    {"Assign", "AssignEntityPicture"},
    {"Entity", "EntityInitialPicture"},
    {"Set", "SetPictureMembers"},
};

constexpr NameSource kQueues[] = {{"Queue", "QueueName"}, {"Set", "SetQueueMembers"}};

// In the order of NameList.
constexpr std::span<const NameSource> kNameLists[] = {
    kFlowModules, kAttributes,      kEntityTypes, kResources, kSchedules,  kSets,
    kVariables,   kBatchAndProcess, kCounters,    kTallies,   kAllModules, kPictures,
};
static_assert(std::size(kNameLists) == kNameListCount);

// Every module's name is looked at once when a name is tested for being in use.
static_assert(std::size(kAllModules) == std::size(kModules));
static_assert(std::ranges::all_of(kModules, [](const ModuleSchema& module) {
  return std::ranges::count(kAllModules, module.Name().field, &NameSource::field) == 1;
}));

}  // namespace

std::span<const NameSource> NameSources(NameList list) { return kNameLists[static_cast<size_t>(list)]; }

std::span<const NameSource> QueueNameSources() { return kQueues; }

}  // namespace vardo
