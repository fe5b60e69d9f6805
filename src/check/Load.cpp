#include "check/Load.h"

#include "check/Amounts.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

namespace vardo {
namespace {

constexpr double kSecondsOfAnHour = 3600;
constexpr int kMostRounds = 10000;
constexpr double kSettled = 1e-12, kBeyondAll = 1e12;

// Entities a second that a Create makes for ever; 0 where that is not known.
double RateOf(const CheckedModel& checked, int create) {
  if (!ArrivesForEver(checked, create)) return 0;
  const ModuleFields& fields = checked.Fields(create);
  const double size = checked.Mean(fields[kCreateBatchSize]).value_or(0);
  if (fields[kCreateScheduleName].counts) {
    const int schedule = ModuleOf(checked, fields[kCreateScheduleName].reference);
    return schedule < 0 ? 0 : MeanOfSchedule(checked, schedule).value_or(0) / kSecondsOfAnHour * size;
  }
  const FieldValue& between = fields[kCreateValue].counts ? fields[kCreateValue] : fields[kCreateExpression];
  if (!between.counts || fields[kCreateUnits].choice < 0) return 0;
  const double mean = checked.Mean(between).value_or(0) * SecondsOf(fields[kCreateUnits].As<TimeUnit>());
  return mean > 0 ? size / mean : 0;
}

// How many leave by an exit for each that comes; 0 where that is not known.
double ShareOf(const CheckedModel& checked, const FlowNode& node, int exit) {
  if (node.kind != FlowNode::Kind::Module) return 1;
  const ModuleFields& fields = checked.Fields(node.module);
  if (checked.Is(node.module, "Decide")) {
    const auto percent = fields[kDecideType].Is(DecideType::Chance) ? checked.Constant(fields[kDecidePercentTrue]) : std::nullopt;
    if (!percent) return 0;
    const double isTrue = std::clamp(*percent / 100, 0.0, 1.0);
    return exit == 0 ? isTrue : 1 - isTrue;
  }
  if (checked.Is(node.module, "Batch")) {
    const auto size = fields[kBatchRule].Is(BatchRule::AnyEntity) ? checked.Constant(fields[kBatchSize]) : std::nullopt;
    return size && *size >= 1 ? 1 / std::floor(*size + 0.5) : 0;
  }
  if (checked.Is(node.module, "Separate")) {
    if (fields[kSeparateType].Is(SeparateType::Split)) return 0;
    return exit == 0 ? 1 : std::max(0.0, checked.Mean(fields[kSeparateDuplicates]).value_or(0));
  }
  return 1;
}

// How many entities a second come to each node. Infinite at those that are part of a loop which makes more than it lets go, or
// are fed by one.
std::vector<double> RatesAtNodes(const CheckedModel& checked) {
  const std::vector<FlowNode>& nodes = checked.model.graph.nodes;
  struct Way {
    int from;
    double share;
  };
  std::vector<std::vector<Way>> into(nodes.size());
  std::vector<double> made(nodes.size()), rates(nodes.size());
  std::vector<int> order;  // as entities come to them, so that most rates are right at once
  double all = 0;
  std::vector<bool> seen(nodes.size());
  const auto see = [&](int node) {
    if (node < 0 || seen[static_cast<size_t>(node)]) return;
    seen[static_cast<size_t>(node)] = true;
    order.push_back(node);
  };
  checked.ForEach("Create", [&](int i) {
    all += made[static_cast<size_t>(i)] = RateOf(checked, i);
    see(i);
  });
  for (size_t at = 0; at < order.size(); ++at) {
    const FlowNode& node = checked.Node(order[at]);
    for (int exit = 0; exit < kMostExits; ++exit) {
      const int next = node.next[static_cast<size_t>(exit)];
      see(next);
      if (next < 0) continue;
      if (const double share = ShareOf(checked, node, exit); share > 0)
        into[static_cast<size_t>(next)].push_back({order[at], share});
    }
  }
  for (int round = 0; round < kMostRounds; ++round) {
    double change = 0;
    for (const int node : order) {
      const auto i = static_cast<size_t>(node);
      double rate = made[i];
      for (const Way& way : into[i]) rate += rates[static_cast<size_t>(way.from)] * way.share;
      if (rate > all * kBeyondAll) rate = std::numeric_limits<double>::infinity();
      if (rate != rates[i]) change = std::max(change, std::isinf(rate) ? 1 : (rate - rates[i]) / rate);
      rates[i] = rate;
    }
    if (change <= kSettled) return rates;
  }
  // Still growing: whatever is part of it never settles.
  return rates;
}

bool MayFinishLater(const CheckedModel& checked, int resource) {
  const int module = ModuleOf(checked, {Thing::Resource, resource});
  if (module < 0 || !checked.Fields(module)[kResourceType].Is(ResourceType::Schedule)) return false;
  return !checked.Fields(module)[kResourceRule].Is(ScheduleRule::Preempt);
}

}  // namespace

std::vector<ResourceLoad> RoughCutLoad(const CheckedModel& checked) {
  const std::vector<double> rates = RatesAtNodes(checked);
  std::map<int, ResourceLoad> loads;
  checked.ForEach("Process", [&](int i) {
    const ModuleFields& fields = checked.Fields(i);
    const double rate = rates[static_cast<size_t>(i)], delay = MeanDelay(checked, i).value_or(0);
    if (!fields[kProcessAction].counts || !fields[kProcessAction].Is(ProcessAction::SeizeDelayRelease) || rate <= 0 || delay <= 0)
      return;
    for (int row = 0; row < fields.rows(); ++row) {
      const Reference resource = fields(kProcessRowResource, row).reference;
      if (!resource) continue;
      const auto capacity = MeanCapacity(checked, resource.index);
      if (!capacity || *capacity <= 0) continue;
      const double quantity = checked.Mean(fields(kProcessRowQuantity, row)).value_or(0);
      ResourceLoad& load =
          loads.try_emplace(resource.index, ResourceLoad{resource.index, 0, {}, MayFinishLater(checked, resource.index)})
              .first->second;
      load.utilisation += rate * quantity * delay / *capacity;
      load.nodes.push_back(i);
    }
  });
  std::vector<ResourceLoad> all;
  for (auto& [resource, load] : loads) all.push_back(std::move(load));
  return all;
}

}  // namespace vardo
