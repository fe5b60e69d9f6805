// Where the names of the model stand: catalogues of fields, by what they name.
#pragma once

#include "modules/ModuleKinds.h"

#include <cstddef>
#include <span>
#include <string_view>

namespace vardo {

enum class NameList {
  FlowModules,
  Attributes,
  EntityTypes,
  Resources,
  Schedules,
  Sets,
  Variables,
  BatchAndProcess,
  Counters,
  Tallies,
  AllModules,
  Pictures,
};
inline constexpr size_t kNameListCount = static_cast<size_t>(NameList::Pictures) + 1;

// A field that holds a name, or several as a list. Does not compile for a kind or a field that there is not.
struct NameSource {
  consteval NameSource(std::string_view ofKind, std::string_view ofField)
      : kind(FindModule(ofKind)->kind), field(FindModule(ofKind)->Property(ofField).field) {}

  std::string_view kind, field;
};

// In the order in which names are gathered.
std::span<const NameSource> NameSources(NameList list);
// Of queues; those that batches and processes have are named after them.
std::span<const NameSource> QueueNameSources();

}  // namespace vardo
