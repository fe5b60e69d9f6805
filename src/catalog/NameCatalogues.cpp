#include "catalog/NameCatalogues.h"

#include "props/DrawingLists.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>

namespace vardo {
namespace {

struct NamePair {
  const char* kind;
  const char* field;
};

constexpr NamePair kFlowModules[] = {
    {"Create", "CreateName"}, {"Dispose", "DisposeName"},   {"Process", "ProcessName"}, {"Decide", "DecideName"},
    {"Batch", "BatchName"},   {"Separate", "SeparateName"}, {"Assign", "AssignName"},   {"Record", "RecordName"},
};
constexpr NamePair kAttributes[] = {
    {"Batch", "BatchAttributeName"}, {"Assign", "AssignAttributeName"},     {"Decide", "DecideAttributeNamed"},
    {"Queue", "QueueAttributeName"}, {"Process", "Process_RSaveAttribute"}, {"Record", "RecordAttributeName"},
    {"Separate", "AttributeName"},
};
constexpr NamePair kEntityTypes[] = {
    {"Create", "CreateEntityType"}, {"Entity", "EntityName"},    {"Decide", "DecideEntityTypeNamed"},
    {"Assign", "AssignEntityType"}, {"Set", "SetEntityMembers"},
};
constexpr NamePair kResources[] = {
    {"Set", "SetResourceMembers"},
    {"Resource", "ResourceName"},
    {"Process", "Process_RResourceName"},
};
constexpr NamePair kSchedules[] = {
    {"Create", "CreateScheduleName"},
    {"Resource", "ResourceScheduleName"},
    {"Schedule", "ScheduleName"},
};
constexpr NamePair kSets[] = {
    {"Set", "SetName"},
    {"Process", "Process_RSetName"},
    {"Record", "RecordCounterSetName"},
    {"Record", "RecordTallySetName"},
};
constexpr NamePair kVariables[] = {
    {"Assign", "AssignVariableName"},
    {"Decide", "DecideVariableNamed"},
    {"Variable", "VariableName"},
};
constexpr NamePair kBatchAndProcess[] = {{"Batch", "BatchName"}, {"Process", "ProcessName"}};
constexpr NamePair kCounters[] = {{"Set", "SetCounterMembers"}, {"Record", "RecordCounterName"}};
constexpr NamePair kTallies[] = {{"Set", "SetTallyMembers"}, {"Record", "RecordTallyName"}};
constexpr NamePair kAllModules[] = {
    {"Create", "CreateName"},     {"Dispose", "DisposeName"},   {"Process", "ProcessName"}, {"Decide", "DecideName"},
    {"Batch", "BatchName"},       {"Separate", "SeparateName"}, {"Assign", "AssignName"},   {"Record", "RecordName"},
    {"Entity", "EntityName"},     {"Resource", "ResourceName"}, {"Set", "SetName"},         {"Schedule", "ScheduleName"},
    {"Variable", "VariableName"}, {"Queue", "QueueName"},
};
constexpr NamePair kPictures[] = {
    {"Assign", "AssignEntityPicture"},
    {"Entity", "EntityInitialPicture"},
    {"Set", "SetPictureMembers"},
};

// In the order of NameList.
constexpr std::span<const NamePair> kContents[] = {
    kFlowModules, kAttributes,      kEntityTypes, kResources, kSchedules,  kSets,
    kVariables,   kBatchAndProcess, kCounters,    kTallies,   kAllModules, kPictures,
};
static_assert(std::size(kContents) == static_cast<size_t>(NameList::Pictures) + 1);

constexpr NamePair kQueues[] = {{"Queue", "QueueName"}, {"Set", "SetQueueMembers"}};
constexpr std::string_view kQueueSuffix = ".Queue";

constexpr std::string_view kPredefinedAttributes[] = {
    "Entity.CreateTime",   "Entity.Number",    "Entity.NVACost",   "Entity.NVATime", "Entity.TransferCost",
    "Entity.TransferTime", "Entity.OtherCost", "Entity.OtherTime", "Entity.VACost",  "Entity.VATime",
    "Entity.WaitTime",     "Entity.WaitCost",  "Entity.Type",      "Picture",
};

struct Catalogue {
  StringList kinds;
  StringList fields;
};

std::array<Catalogue, std::size(kContents)> catalogues;

void Fill(Catalogue& catalogue, std::span<const NamePair> pairs) {
  for (const auto& [kind, field] : pairs) {
    catalogue.kinds.push_back(kind);
    catalogue.fields.push_back(field);
  }
}

void Add(ItemList& items, const StringList& names, std::string_view suffix = "") {
  for (const auto& name : names) {
    if (!name.empty()) items.AddItem(name + std::string(suffix));
  }
}

}  // namespace

void BuildNameCatalogues() {
  for (size_t i = 0; i < catalogues.size(); ++i) {
    if (catalogues[i].kinds.empty()) Fill(catalogues[i], kContents[i]);
  }
}

StringList GatherNames(NameList list, bool unique) {
  const auto& [kinds, fields] = catalogues[static_cast<size_t>(list)];
  return FillComboFromDrawing(kinds, fields, unique);
}

void AddNames(ItemList& items, NameList list) { Add(items, GatherNames(list, true)); }

void AddNames(ItemList& items, std::string_view kind, std::string_view field) {
  Add(items, FillComboFromDrawing({std::string(kind)}, {std::string(field)}, true));
}

void FillAttributeCombo(ItemList& items, bool withoutPredefined) {
  AddNames(items, NameList::Attributes);
  if (withoutPredefined) return;
  for (const auto attribute : kPredefinedAttributes) items.AddItem(attribute);
}

void FillQueueCombo(ItemList& items) {
  static const Catalogue queues = [] {
    Catalogue catalogue;
    Fill(catalogue, kQueues);
    return catalogue;
  }();
  Add(items, FillComboFromDrawing(queues.kinds, queues.fields, true));
  Add(items, GatherNames(NameList::BatchAndProcess, true), kQueueSuffix);
}

}  // namespace vardo
