// The names that the drawing holds, by catalogue: read by the drop-downs that offer them and by the tests for unique names.
#pragma once

#include "addin/host/HostFwd.h"
#include "forms/FieldView.h"
#include "modules/NameLists.h"
#include "props/StringFunctions.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace vardo {

// Fills the catalogues that are still empty; nothing is read from the drawing. They last as long as the add-in is loaded.
void BuildNameCatalogues();

// The names that the drawing holds now, empty ones included, as FillComboFromDrawing gives them. One empty name from a catalogue
// that has not been built.
StringList GatherNames(NameList list, bool unique);

// True when at least `times` of those names, repeats and all, equal the name, case apart.
bool NameIsUsed(NameList list, std::string_view name, int times);

// Whether modules have a name, asked many times while nothing but what this is told of changes their names: a host that keeps no
// count is read once.
class NamesInUse {
 public:
  // As NameIsUsed for one of all modules' names.
  bool Contains(std::string_view name);
  // A module of that kind has been entered in its page's register.
  void Entered(const IVShapePtr& module, std::string_view kind);

 private:
  void Add(std::string_view value);

  // Values, and the items of those that are lists, by what is equal without case. None: not read.
  std::optional<std::unordered_set<std::string>> keys_;
};

// The fillers add what a unique gathering gives, in that order, without the empty names.
void AddNames(ItemList& items, NameList list);
// Of a single field instead of a catalogue.
void AddNames(ItemList& items, std::string_view kind, std::string_view field);
// Attribute names, with the predefined ones behind them unless they are not wanted.
void FillAttributeCombo(ItemList& items, bool withoutPredefined);
// Queue names, and the queues that batches and processes have.
void FillQueueCombo(ItemList& items);

}  // namespace vardo
