// The fourteen kinds of module.
#pragma once

#include "modules/ModuleSchema.h"
#include "modules/data/EntityModule.h"
#include "modules/data/QueueModule.h"
#include "modules/data/ResourceModule.h"
#include "modules/data/ScheduleModule.h"
#include "modules/data/SetModule.h"
#include "modules/data/VariableModule.h"
#include "modules/flow/AssignModule.h"
#include "modules/flow/BatchModule.h"
#include "modules/flow/CreateModule.h"
#include "modules/flow/DecideModule.h"
#include "modules/flow/DisposeModule.h"
#include "modules/flow/ProcessModule.h"
#include "modules/flow/RecordModule.h"
#include "modules/flow/SeparateModule.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace vardo {

// In the order of the stencil and of a page's registers.
inline constexpr ModuleSchema kModules[] = {kCreateModule,   kProcessModule,  kDecideModule,  kAssignModule,  kBatchModule,
                                            kSeparateModule, kRecordModule,   kDisposeModule, kEntityModule,  kQueueModule,
                                            kResourceModule, kScheduleModule, kSetModule,     kVariableModule};

// Their names, in the same order.
inline constexpr auto kModuleKinds = [] {
  std::array<std::string_view, std::size(kModules)> kinds;
  std::ranges::transform(kModules, kinds.begin(), &ModuleSchema::kind);
  return kinds;
}();

// Letter case counts; null when there is no such kind.
constexpr const ModuleSchema* FindModule(std::string_view kind) {
  const auto* const found = std::ranges::find(kModules, kind, &ModuleSchema::kind);
  return found == std::end(kModules) ? nullptr : found;
}

constexpr bool IsModuleKind(std::string_view name) { return FindModule(name) != nullptr; }

}  // namespace vardo
