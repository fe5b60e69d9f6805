// The names that the drawing holds, by catalogue: read by the drop-downs that offer them and by the tests for unique names.
#pragma once

#include "forms/FieldView.h"
#include "modules/NameLists.h"
#include "props/StringFunctions.h"

#include <string_view>

namespace vardo {

// Fills the catalogues that are still empty; nothing is read from the drawing. They last as long as the add-in is loaded.
void BuildNameCatalogues();

// The names that the drawing holds now, empty ones included, as FillComboFromDrawing gives them. One empty name from a catalogue
// that has not been built.
StringList GatherNames(NameList list, bool unique);

// True when at least `times` of those names, repeats and all, equal the name, case apart.
bool NameIsUsed(NameList list, std::string_view name, int times);

// The fillers add what a unique gathering gives, in that order, without the empty names.
void AddNames(ItemList& items, NameList list);
// Of a single field instead of a catalogue.
void AddNames(ItemList& items, std::string_view kind, std::string_view field);
// Attribute names, with the predefined ones behind them unless they are not wanted.
void FillAttributeCombo(ItemList& items, bool withoutPredefined);
// Queue names, and the queues that batches and processes have.
void FillQueueCombo(ItemList& items);

}  // namespace vardo
