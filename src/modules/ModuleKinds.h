// The kinds of module, by the names of their masters.
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

namespace vardo {

// In the order of a page's registers.
inline constexpr std::string_view kModuleKinds[] = {"Create",   "Process",  "Decide",  "Assign",  "Batch",
                                                    "Separate", "Record",   "Dispose", "Entity",  "Queue",
                                                    "Resource", "Schedule", "Set",     "Variable"};

// Letter case counts.
constexpr bool IsModuleKind(std::string_view name) {
  return std::find(std::begin(kModuleKinds), std::end(kModuleKinds), name) != std::end(kModuleKinds);
}

}  // namespace vardo
