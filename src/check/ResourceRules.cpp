#include "check/Amounts.h"
#include "check/Rules.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace vardo {
namespace {

constexpr int kOnlyExit = 0, kSecondExit = 1;

bool Acts(const CheckedModel& checked, int process, ProcessAction action) {
  const FieldValue& value = checked.Fields(process)[kProcessAction];
  return value.counts && value.Is(action);
}
bool Seizes(const CheckedModel& checked, int process) {
  return Acts(checked, process, ProcessAction::SeizeDelay) || Acts(checked, process, ProcessAction::SeizeDelayRelease);
}

std::string NameOfResource(const CheckedModel& checked, int resource) {
  return Quoted(checked.model.names.Of(Thing::Resource)[static_cast<size_t>(resource)].name);
}

// What a row of a Process asks for or gives back: a resource, or any member of a set.
struct Claim {
  Reference of;
  std::vector<int> resources;
  FieldPlace at;
  bool IsSure() const { return of.thing == Thing::Resource; }
  bool Shares(const Claim& other) const {
    return std::ranges::any_of(
        resources, [&](int resource) { return std::ranges::find(other.resources, resource) != other.resources.end(); });
  }
};

std::vector<Claim> ClaimsOf(const CheckedModel& checked, int process) {
  std::vector<Claim> claims;
  const ModuleFields& fields = checked.Fields(process);
  for (int row = 0; row < fields.rows(); ++row) {
    const bool isResource = fields(kProcessRowResource, row).counts;
    const Field field = isResource ? kProcessRowResource : kProcessRowSet;
    Claim claim{fields(field, row).reference, ResourcesOfRow(checked.model, process, row), {process, field.place, row}};
    if (claim.of) claims.push_back(std::move(claim));
  }
  return claims;
}

std::string NameOfClaim(const CheckedModel& checked, const Claim& claim) {
  return Quoted(checked.model.names.Of(claim.of.thing)[static_cast<size_t>(claim.of.index)].name);
}

std::vector<Claim> ClaimsOfAll(const CheckedModel& checked, ProcessAction action) {
  std::vector<Claim> all;
  checked.ForEach("Process", [&](int i) {
    if (!Acts(checked, i, action)) return;
    std::vector<Claim> own = ClaimsOf(checked, i);
    std::ranges::move(own, std::back_inserter(all));
  });
  return all;
}

// Those that have something in common, by resource.
std::map<int, std::vector<const Claim*>> ByResource(const std::vector<Claim>& claims) {
  std::map<int, std::vector<const Claim*>> by;
  for (const Claim& claim : claims)
    for (const int resource : claim.resources) by[resource].push_back(&claim);
  return by;
}

bool IsSharedBy(const Claim& claim, const std::map<int, std::vector<const Claim*>>& others) {
  return std::ranges::any_of(claim.resources, [&](int resource) { return others.contains(resource); });
}

void NeverReleased(const CheckedModel& checked, RuleReport& report) {
  const std::vector<Claim> released = ClaimsOfAll(checked, ProcessAction::DelayRelease);
  const auto byResource = ByResource(released);
  for (const Claim& claim : ClaimsOfAll(checked, ProcessAction::SeizeDelay))
    if (!IsSharedBy(claim, byResource))
      report.Field(claim.at, "Nobody gives back " + NameOfClaim(checked, claim) + ", which {m} seizes.");
}

void NeverSeized(const CheckedModel& checked, RuleReport& report) {
  const std::vector<Claim> seized = ClaimsOfAll(checked, ProcessAction::SeizeDelay);
  const auto byResource = ByResource(seized);
  for (const Claim& claim : ClaimsOfAll(checked, ProcessAction::DelayRelease))
    if (!claim.resources.empty() && !IsSharedBy(claim, byResource))
      report.Field(claim.at, "{m} gives back " + NameOfClaim(checked, claim) + ", which nobody seizes.");
}

// Who holds what, for one claim after the other.
class Holding {
 public:
  explicit Holding(const CheckedModel& checked)
      : checked_(checked),
        seized_(ClaimsOfAll(checked, ProcessAction::SeizeDelay)),
        released_(ClaimsOfAll(checked, ProcessAction::DelayRelease)),
        releasedBy_(ByResource(released_)) {
    for (const Claim& claim : seized_) claims_.try_emplace({claim.of.thing, claim.of.index}, &claim);
  }

  struct State {
    const Claim* claim;                // the first of its kind
    std::vector<const Claim*> giving;  // the rows that give it back
    std::vector<int> held;             // for each node, the SD Process from which somebody comes who may hold it; -1: nobody
    std::vector<int> unheld;           // for each node, from where somebody comes who may not hold it; -1: nobody
  };
  template <class Visit>
  void ForEach(const Visit& visit) const {
    for (const auto& [of, claim] : claims_) visit(StateOf(*claim));
  }

 private:
  bool Duplicates(int node, int exit) const {
    const FlowNode& of = checked_.Node(node);
    return exit == kSecondExit && of.kind == FlowNode::Kind::Module && checked_.Is(of.module, "Separate");
  }

  State StateOf(const Claim& claim) const {
    State state{&claim, {}, {}, {}};
    std::set<int> givers;
    for (const int resource : claim.resources)
      if (const auto found = releasedBy_.find(resource); found != releasedBy_.end())
        for (const Claim* giving : found->second)
          if (givers.insert(giving->at.module).second) state.giving.push_back(giving);
    std::vector<int> takers;
    for (const Claim& other : seized_)
      if (other.of == claim.of) takers.push_back(other.at.module);
    // Duplicates hold nothing.
    state.held =
        checked_.paths.From(takers, [&](int node, int exit) { return !givers.contains(node) && !Duplicates(node, exit); });
    std::vector<ExitOfNode> free;
    for (int i = 0; i < static_cast<int>(checked_.model.graph.nodes.size()); ++i) {
      const FlowNode& node = checked_.Node(i);
      if (node.kind != FlowNode::Kind::Module || !node.isReachable) continue;
      if (checked_.Is(node.module, "Create") || givers.contains(i)) free.push_back({i, kOnlyExit});
      if (Duplicates(i, kSecondExit)) free.push_back({i, kSecondExit});
    }
    const std::set<int> taking(takers.begin(), takers.end());
    state.unheld = checked_.paths.From(free, [&](int node, int) {
      // In a batch one of the members may hold it.
      const bool isBatch = checked_.Node(node).kind == FlowNode::Kind::Module && checked_.Is(checked_.Node(node).module, "Batch");
      return !(claim.IsSure() && taking.contains(node)) && !(isBatch && state.held[static_cast<size_t>(node)] >= 0);
    });
    return state;
  }

  const CheckedModel& checked_;
  std::vector<Claim> seized_, released_;
  std::map<int, std::vector<const Claim*>> releasedBy_;
  std::map<std::pair<Thing, int>, const Claim*> claims_;
};

void MayLeaveHeld(const CheckedModel& checked, RuleReport& report) {
  Holding(checked).ForEach([&](const Holding::State& state) {
    if (state.giving.empty()) return;
    checked.ForEach("Dispose", [&](int i) {
      const int from = state.held[static_cast<size_t>(i)];
      if (from >= 0)
        report.Module(i, "An entity can leave at {m} with " + NameOfClaim(checked, *state.claim) + " from " +
                             NameOf(checked.Module(from)) + ".");
    });
  });
}

void MayReleaseUnheld(const CheckedModel& checked, RuleReport& report) {
  Holding(checked).ForEach([&](const Holding::State& state) {
    if (!state.claim->IsSure()) return;
    for (const Claim* giving : state.giving)
      if (giving->IsSure() && state.unheld[static_cast<size_t>(giving->at.module)] >= 0)
        report.Field(giving->at, "An entity can reach {m} without holding " + NameOfClaim(checked, *state.claim) + ".");
  });
}

// Who surely holds one resource asks for another: the module where that is, by both.
using Asking = std::map<int, std::map<int, int>>;

Asking WhoAsksForMore(const CheckedModel& checked) {
  Asking asking;
  Holding(checked).ForEach([&](const Holding::State& state) {
    if (!state.claim->IsSure()) return;
    checked.ForEach("Process", [&](int i) {
      const auto node = static_cast<size_t>(i);
      if (!Seizes(checked, i) || state.held[node] < 0 || state.unheld[node] >= 0) return;
      for (const Claim& claim : ClaimsOf(checked, i))
        if (claim.IsSure() && claim.of != state.claim->of) asking[state.claim->of.index].try_emplace(claim.of.index, i);
    });
  });
  return asking;
}

// The last step of a way from one resource to another: where somebody asks for the latter. -1: there is no way.
int LastStep(const Asking& asking, int from, int to) {
  std::set<int> seen{from};
  std::vector<int> found{from};
  for (size_t at = 0; at < found.size(); ++at) {
    const auto asked = asking.find(found[at]);
    if (asked == asking.end()) continue;
    for (const auto& [resource, module] : asked->second) {
      if (resource == to) return module;
      if (seen.insert(resource).second) found.push_back(resource);
    }
  }
  return -1;
}

// Each ring once, at its first resource.
void Deadlock(const CheckedModel& checked, RuleReport& report) {
  const Asking asking = WhoAsksForMore(checked);
  std::set<int> told;
  for (const auto& [held, asked] : asking)
    for (const auto& [wanted, module] : asked) {
      const int back = LastStep(asking, wanted, held);
      if (back < 0 || told.contains(held) || told.contains(wanted)) continue;
      told.insert({held, wanted});
      report
          .Module(module, "Who holds " + NameOfResource(checked, held) + " waits for " + NameOfResource(checked, wanted) +
                              " at {m}, and the other way round at " + NameOf(checked.Module(back)) + ".")
          .hint = "Seize both in one Process, or always in the same order.";
    }
}

// --- Quantities

// Each resource that a Process seizes by name, with the sum of its quantities where all are constants.
void QuantityAboveCapacity(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Process", [&](int i) {
    if (!Seizes(checked, i)) return;
    std::map<int, double> wanted;
    for (const Claim& claim : ClaimsOf(checked, i)) {
      const auto quantity = checked.Constant(checked.Fields(i)(kProcessRowQuantity, claim.at.row));
      if (!quantity || claim.resources.empty()) continue;
      double most = 0;
      bool isKnown = true;
      for (const int resource : claim.resources) {
        const auto capacity = MostCapacity(checked, resource);
        isKnown = isKnown && capacity.has_value();
        most = std::max(most, capacity.value_or(0));
      }
      const double sum = claim.IsSure() ? wanted[claim.of.index] += std::floor(*quantity + 0.5) : std::floor(*quantity + 0.5);
      if (isKnown && most > 0 && sum > most)
        report.Field(claim.at, "{m} wants " + Short(sum) + " of " + NameOfClaim(checked, claim) + "; there are never more than " +
                                   Short(most) + ".");
    }
  });
}

void NoCapacity(const CheckedModel& checked, RuleReport& report) {
  std::set<int> told;
  checked.ForEach("Process", [&](int i) {
    if (!Seizes(checked, i)) return;
    for (const Claim& claim : ClaimsOf(checked, i))
      if (claim.IsSure() && MostCapacity(checked, claim.of.index) == 0 && told.insert(claim.of.index).second)
        report.Field(claim.at, NameOfClaim(checked, claim) + " never has a unit: {m} waits for ever.");
  });
}

void NoRows(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Process", [&](int i) {
    if ((Seizes(checked, i) || Acts(checked, i, ProcessAction::DelayRelease)) && checked.Fields(i).rows() == 0)
      report.Field({i, kProcessAction.place}, "{m} seizes or releases, but lists no resource.");
  });
}

void RowsNotUsed(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Process", [&](int i) {
    if (Acts(checked, i, ProcessAction::Delay) && checked.Fields(i).rows() > 0)
      report.Field({i, kProcessAction.place}, "{m} only delays; its resources are not used.");
  });
}

void WrongScheduleType(const CheckedModel& checked, RuleReport& report) {
  constexpr std::string_view kWords[] = {"a Capacity schedule", "an Arrival schedule", "a schedule of type Other"};
  checked.ForEachField([&](const FieldPlace& at, const FieldValue& value, const FieldMeaning& meaning) {
    if (meaning.meaning != Meaning::Reference || meaning.thing != Thing::Schedule || !value.reference) return;
    const FieldValue& type = checked.Fields(ModuleOf(checked, value.reference))[kScheduleType];
    const ScheduleType wanted = checked.Is(at.module, "Create") ? ScheduleType::Arrival : ScheduleType::Capacity;
    if (type.choice < 0 || type.Is(wanted)) return;
    report.Field(at, "{m} wants " + std::string(kWords[static_cast<size_t>(wanted)]) + "; " + Quoted(value.text) + " is " +
                         std::string(kWords[static_cast<size_t>(type.choice)]) + ".");
  });
}

constexpr Rule kRules[] = {
    {"resource/never-released", Severity::Warning, NeverReleased},
    {"resource/may-leave-held", Severity::Warning, MayLeaveHeld},
    {"resource/never-seized", Severity::Error, NeverSeized},
    {"resource/may-release-unheld", Severity::Warning, MayReleaseUnheld},
    {"resource/quantity-above-capacity", Severity::Error, QuantityAboveCapacity},
    {"resource/no-capacity", Severity::Error, NoCapacity},
    {"resource/no-rows", Severity::Warning, NoRows},
    {"resource/rows-not-used", Severity::Note, RowsNotUsed},
    {"resource/deadlock", Severity::Warning, Deadlock},
    {"resource/schedule-type", Severity::Error, WrongScheduleType},
};

}  // namespace

std::span<const Rule> ResourceRules() { return kRules; }

}  // namespace vardo
