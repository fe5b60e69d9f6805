// What must hold of the schemas, checked when they are compiled.
#include "base/Text.h"
#include "modules/ModuleKinds.h"

#include <algorithm>
#include <string_view>

namespace vardo {
namespace {

// As cells are found, without regard to case.
constexpr bool EqualNames(std::string_view a, std::string_view b) {
  return std::ranges::equal(
      a, b, {}, [](char c) { return LowerAscii(c); }, [](char c) { return LowerAscii(c); });
}

// No two items are equal in that part.
template <class Items, class Part>
constexpr bool AreUnique(const Items& items, Part part) {
  return std::ranges::all_of(items, [&](const auto& item) {
    return std::ranges::count_if(items, [&](const auto& other) { return EqualNames(other.*part, item.*part); }) == 1;
  });
}

constexpr bool IsKeptInStep(const ModuleSchema& module, std::string_view field) {
  return std::ranges::any_of(module.properties,
                             [&](const ModuleProperty& property) { return property.field == field && property.IsHidden(); });
}

static_assert(AreUnique(kModules, &ModuleSchema::kind));
static_assert(std::ranges::all_of(kModules, [](const ModuleSchema& module) {
  return AreUnique(module.properties, &ModuleProperty::field) && AreUnique(module.properties, &ModuleProperty::label);
}));

// The name is known by its kind, and a new module's is the first of it.
static_assert(std::ranges::all_of(kModules, [](const ModuleSchema& module) {
  const ModuleProperty& name = module.Name();
  return name.field.starts_with(module.kind) && name.field.substr(module.kind.size()) == "Name" &&
         name.defaultValue.starts_with(module.kind) && name.defaultValue.substr(module.kind.size()) == " 1";
}));

// Columns and their count are properties; edited by hand they would fall out of step, so they are hidden.
static_assert(std::ranges::all_of(kModules, [](const ModuleSchema& module) {
  const RowGroup& rows = module.rows;
  return rows.count.empty() == rows.columns.empty() && (rows.count.empty() || IsKeptInStep(module, rows.count)) &&
         AreUnique(rows.columns, &RowColumn::field) &&
         std::ranges::all_of(rows.columns, [&](const RowColumn& column) { return IsKeptInStep(module, column.field); });
}));

}  // namespace
}  // namespace vardo
