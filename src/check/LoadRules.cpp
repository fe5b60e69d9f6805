#include "check/Amounts.h"
#include "check/Load.h"
#include "check/Rules.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace vardo {
namespace {

constexpr double kNearlyFull = 0.95;
// What is asked for exactly as much as it can do may keep up, when nothing is random.
constexpr double kOverloaded = 1 + 1e-9;

// Whether what one lets through comes to the other. A bottleneck lets less through than has been reckoned, so behind it nothing
// is known; in a ring the one that is most asked for is the bottleneck.
bool IsFedBy(const CheckedModel& checked, const ResourceLoad& load, const ResourceLoad& other) {
  const auto leadsTo = [&](const ResourceLoad& from, const ResourceLoad& to) {
    const std::vector<int> reached = checked.paths.From(from.nodes);
    return std::ranges::any_of(to.nodes, [&](int node) { return reached[static_cast<size_t>(node)] >= 0; });
  };
  if (!leadsTo(other, load)) return false;
  return !leadsTo(load, other) || other.utilisation > load.utilisation ||
         (other.utilisation == load.utilisation && other.resource < load.resource);
}

template <class Visit>
void ForEachKnown(const CheckedModel& checked, const Visit& visit) {
  const std::vector<ResourceLoad> loads = RoughCutLoad(checked);
  for (const ResourceLoad& load : loads) {
    if (load.utilisation < kNearlyFull) continue;
    const bool isBehind = std::ranges::any_of(loads, [&](const ResourceLoad& other) {
      return other.resource != load.resource && other.utilisation > kOverloaded && IsFedBy(checked, load, other);
    });
    if (!isBehind) visit(load);
  }
}

Finding& Report(const CheckedModel& checked, RuleReport& report, const ResourceLoad& load, const std::string& message) {
  const int module = ModuleOf(checked, {Thing::Resource, load.resource});
  return report.Module(module >= 0 ? module : load.nodes.front(),
                       Quoted(checked.model.names.Of(Thing::Resource)[static_cast<size_t>(load.resource)].name) + message);
}

void Overloaded(const CheckedModel& checked, RuleReport& report) {
  ForEachKnown(checked, [&](const ResourceLoad& load) {
    if (load.utilisation <= kOverloaded) return;
    const std::string times =
        std::isinf(load.utilisation) ? "without limit more than" : Short(std::round(load.utilisation * 100) / 100) + " times";
    Finding& finding =
        Report(checked, report, load, " is asked for " + times + " what it can do: its queues grow as long as the run.");
    if (!load.mayFinishLater) return;
    finding.severity = Severity::Note;
    finding.message.insert(finding.message.size() - 1, ", unless what is finished after hours makes up for it");
  });
}

void NearlyFull(const CheckedModel& checked, RuleReport& report) {
  ForEachKnown(checked, [&](const ResourceLoad& load) {
    if (load.utilisation > kOverloaded || load.mayFinishLater) return;
    const double percent = std::floor(std::min(load.utilisation, 1.0) * 1000 + 0.5) / 10;
    Report(checked, report, load,
           " is busy at least " + Short(percent) + " % of the time: it needs a long warm-up and long runs.");
  });
}

constexpr Rule kRules[] = {
    {"load/overloaded", Severity::Warning, Overloaded},
    {"load/nearly-full", Severity::Note, NearlyFull},
};

}  // namespace

std::span<const Rule> LoadRules() { return kRules; }

}  // namespace vardo
