#include "check/Holding.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace vardo {
namespace {

constexpr int kOnlyExit = 0, kSecondExit = 1;

bool Has(const std::vector<int>& sorted, int value) { return std::ranges::binary_search(sorted, value); }

std::vector<Claim> ClaimsOfAll(const CheckedModel& checked, ProcessAction action) {
  std::vector<Claim> all;
  checked.ForEach("Process", [&](int i) {
    if (!HasAction(checked, i, action)) return;
    std::vector<Claim> own = ClaimsOf(checked, i);
    std::ranges::move(own, std::back_inserter(all));
  });
  return all;
}

}  // namespace

bool HasAction(const CheckedModel& checked, int process, ProcessAction action) {
  const FieldValue& value = checked.Fields(process)[kProcessAction];
  return value.counts && value.Is(action);
}

bool Seizes(const CheckedModel& checked, int process) {
  return HasAction(checked, process, ProcessAction::SeizeDelay) || HasAction(checked, process, ProcessAction::SeizeDelayRelease);
}

std::vector<Claim> ClaimsOf(const CheckedModel& checked, int process) {
  std::vector<Claim> claims;
  const ModuleFields& fields = checked.Fields(process);
  for (int row = 0; row < fields.rows(); ++row) {
    const Field field = fields(kProcessRowResource, row).counts ? kProcessRowResource : kProcessRowSet;
    Claim claim{fields(field, row).reference, ResourcesOfRow(checked.model, process, row), {process, field.place, row}};
    if (claim.of) claims.push_back(std::move(claim));
  }
  return claims;
}

Holding::ByResource Holding::Sorted(const std::vector<Claim>& claims) {
  ByResource sorted;
  for (const Claim& claim : claims)
    for (const int resource : claim.resources) sorted[resource].push_back(&claim);
  return sorted;
}

bool Holding::IsSharedBy(const Claim& claim, const ByResource& others) {
  return std::ranges::any_of(claim.resources, [&](int resource) { return others.contains(resource); });
}

Holding::Holding(const CheckedModel& checked)
    : checked_(checked),
      seized_(ClaimsOfAll(checked, ProcessAction::SeizeDelay)),
      released_(ClaimsOfAll(checked, ProcessAction::DelayRelease)),
      seizedBy_(Sorted(seized_)),
      releasedBy_(Sorted(released_)) {
  checked.ForEach("Process", [&](int i) {
    if (Seizes(checked, i)) seizers_.push_back(i);
  });
  checked.ForEach("Create", [&](int i) { unladen_.push_back({i, kOnlyExit}); });
  checked.ForEach("Separate", [&](int i) {
    if (checked.Node(i).isReachable) unladen_.push_back({i, kSecondExit});
  });
  std::set<std::pair<Thing, int>> followed;
  for (const Claim& claim : seized_)
    if (followed.insert({claim.of.thing, claim.of.index}).second) Follow(claim);
}

// Duplicates hold nothing.
bool Holding::Duplicates(int node, int exit) const {
  const FlowNode& of = checked_.Node(node);
  return exit == kSecondExit && of.kind == FlowNode::Kind::Module && checked_.Is(of.module, "Separate");
}

void Holding::Follow(const Claim& claim) {
  std::vector<int> takers, givers;
  std::vector<const Claim*> giving;
  for (const int resource : claim.resources) {
    for (const Claim* other : seizedBy_.at(resource))
      if (other->of == claim.of) takers.push_back(other->at.module);
    if (const auto found = releasedBy_.find(resource); found != releasedBy_.end())
      giving.insert(giving.end(), found->second.begin(), found->second.end());
  }
  for (const Claim* of : giving) givers.push_back(of->at.module);
  std::ranges::sort(takers);
  std::ranges::sort(givers);
  const std::vector<int> held =
      checked_.paths.From(takers, [&](int node, int exit) { return !Has(givers, node) && !Duplicates(node, exit); });
  if (!giving.empty())
    checked_.ForEach("Dispose", [&](int i) {
      if (const int process = held[static_cast<size_t>(i)]; process >= 0) losses_.push_back({i, process, &claim});
    });
  if (!claim.IsSure()) return;
  const std::vector<int> unheld = WhereUnheld(takers, givers, held);
  for (const Claim* of : giving)
    if (of->IsSure() && unheld[static_cast<size_t>(of->at.module)] >= 0) unheld_.push_back(of);
  for (const int i : seizers_) {
    if (held[static_cast<size_t>(i)] < 0 || unheld[static_cast<size_t>(i)] >= 0) continue;
    for (const Claim& wanted : ClaimsOf(checked_, i))
      if (wanted.IsSure() && wanted.of != claim.of) asking_[claim.of.index].try_emplace(wanted.of.index, i);
  }
}

std::vector<int> Holding::WhereUnheld(const std::vector<int>& takers, const std::vector<int>& givers,
                                      const std::vector<int>& held) const {
  std::vector<ExitOfNode> from = unladen_;
  for (const int giver : givers)
    if (checked_.Node(giver).isReachable) from.push_back({giver, kOnlyExit});
  return checked_.paths.From(from, [&](int node, int) {
    // In a batch one of the members may hold it.
    const FlowNode& of = checked_.Node(node);
    const bool isBatch = of.kind == FlowNode::Kind::Module && checked_.Is(of.module, "Batch");
    return !Has(takers, node) && !(isBatch && held[static_cast<size_t>(node)] >= 0);
  });
}

}  // namespace vardo
