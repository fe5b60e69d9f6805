#include "catalog/NameCatalogues.h"

#include "platform/Platform.h"
#include "props/DrawingLists.h"
#include "props/PropertyCells.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>

namespace vardo {
namespace {

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

std::array<Catalogue, kNameListCount> catalogues;

void Fill(Catalogue& catalogue, std::span<const NameSource> sources) {
  for (const auto& [kind, field] : sources) {
    catalogue.kinds.emplace_back(kind);
    catalogue.fields.emplace_back(field);
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
    if (catalogues[i].kinds.empty()) Fill(catalogues[i], NameSources(static_cast<NameList>(i)));
  }
}

StringList GatherNames(NameList list, bool unique) {
  const auto& [kinds, fields] = catalogues[static_cast<size_t>(list)];
  return FillComboFromDrawing(kinds, fields, unique);
}

bool NameIsUsed(NameList list, std::string_view name, int times) {
  const auto& [kinds, fields] = catalogues[static_cast<size_t>(list)];
  return TextOccursAtLeast(kinds, fields, name, times);
}

bool NamesInUse::Contains(std::string_view name) {
  const auto& [kinds, fields] = catalogues[static_cast<size_t>(NameList::AllModules)];
  if (const auto times = TimesByHostsCount(kinds, fields, name)) return *times >= 1;
  if (!keys_) {
    keys_.emplace();
    for (const std::string& value : ValuesInDrawing(kinds, fields)) Add(value);
  }
  return keys_->contains(ThePlatform().CaseFoldKey(name));
}

void NamesInUse::Entered(const IVShapePtr& module, std::string_view kind) {
  if (!keys_) return;
  for (const NameSource& source : NameSources(NameList::AllModules))
    if (source.kind == kind) Add(PropText(module, source.field));
}

void NamesInUse::Add(std::string_view value) {
  keys_->insert(ThePlatform().CaseFoldKey(value));
  if (value.find(kListDelimiter) == std::string_view::npos) return;
  for (const std::string& item : SplitList(value, kListDelimiter)) keys_->insert(ThePlatform().CaseFoldKey(item));
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
    Fill(catalogue, QueueNameSources());
    return catalogue;
  }();
  Add(items, FillComboFromDrawing(queues.kinds, queues.fields, true));
  Add(items, GatherNames(NameList::BatchAndProcess, true), kQueueSuffix);
}

}  // namespace vardo
