// All rules.
#pragma once

#include "check/Rule.h"

#include <span>

namespace vardo {

// One table of each group, in the order in which the rules stand in the help.
std::span<const Rule> StructureRules();
std::span<const Rule> SubmodelRules();
std::span<const Rule> NameRules();
std::span<const Rule> FieldRules();
std::span<const Rule> ResourceRules();
std::span<const Rule> ScheduleRules();
std::span<const Rule> FlowRules();
std::span<const Rule> LoadRules();
std::span<const Rule> RunRules();
std::span<const Rule> DamageRules();

// Finds the expressions that break the very rule: several rules are one function.
void ReportExpressionErrors(const CheckedModel& checked, RuleReport& report);

}  // namespace vardo
