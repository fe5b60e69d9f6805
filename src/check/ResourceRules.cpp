#include "check/Amounts.h"
#include "check/Holding.h"
#include "check/Rules.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace vardo {
namespace {

std::string NameOfResource(const CheckedModel& checked, int resource) {
  return Quoted(checked.model.names.Of(Thing::Resource)[static_cast<size_t>(resource)].name);
}

std::string NameOfClaim(const CheckedModel& checked, const Claim& claim) {
  return Quoted(checked.model.names.Of(claim.of.thing)[static_cast<size_t>(claim.of.index)].name);
}

void NeverReleased(const CheckedModel& checked, RuleReport& report) {
  for (const Claim& claim : checked.holding().seized())
    if (!checked.holding().IsReleased(claim))
      report.Field(claim.at, "Nobody gives back " + NameOfClaim(checked, claim) + ", which {m} seizes.");
}

void NeverSeized(const CheckedModel& checked, RuleReport& report) {
  for (const Claim& claim : checked.holding().released())
    if (!claim.resources.empty() && !checked.holding().IsSeized(claim))
      report.Field(claim.at, "{m} gives back " + NameOfClaim(checked, claim) + ", which nobody seizes.");
}

void MayLeaveHeld(const CheckedModel& checked, RuleReport& report) {
  for (const auto& [dispose, process, claim] : checked.holding().losses())
    report.Module(dispose, "An entity can leave at {m} with " + NameOfClaim(checked, *claim) + " from " +
                               NameOf(checked.Module(process)) + ".");
}

void MayReleaseUnheld(const CheckedModel& checked, RuleReport& report) {
  for (const Claim* claim : checked.holding().unheld())
    report.Field(claim->at, "An entity can reach {m} without holding " + NameOfClaim(checked, *claim) + ".");
}

// The last step of a way from one resource to another: where somebody asks for the latter. -1: there is no way.
int LastStep(const Holding::Asking& asking, int from, int to) {
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
  const Holding::Asking& asking = checked.holding().asking();
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
    if ((Seizes(checked, i) || HasAction(checked, i, ProcessAction::DelayRelease)) && checked.Fields(i).rows() == 0)
      report.Field({i, kProcessAction.place}, "{m} seizes or releases, but lists no resource.");
  });
}

void RowsNotUsed(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Process", [&](int i) {
    if (HasAction(checked, i, ProcessAction::Delay) && checked.Fields(i).rows() > 0)
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
