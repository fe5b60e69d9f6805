// Batches and records.
#include "check/Amounts.h"
#include "check/Rules.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace vardo {
namespace {

bool IsModule(const CheckedModel& checked, int node, std::string_view kind) {
  const FlowNode& of = checked.Node(node);
  return of.kind == FlowNode::Kind::Module && checked.Is(of.module, kind);
}
bool Splits(const CheckedModel& checked, int node) {
  return IsModule(checked, node, "Separate") && checked.Fields(node)[kSeparateType].Is(SeparateType::Split);
}

std::vector<int> TemporaryBatches(const CheckedModel& checked) {
  std::vector<int> batches;
  checked.ForEach("Batch", [&](int i) {
    if (checked.Fields(i)[kBatchType].Is(BatchType::Temporary)) batches.push_back(i);
  });
  return batches;
}
bool GathersForGood(const CheckedModel& checked, int node) {
  return IsModule(checked, node, "Batch") && checked.Fields(node)[kBatchType].Is(BatchType::Permanent);
}

void NeverSplit(const CheckedModel& checked, RuleReport& report) {
  const std::vector<int> batched = checked.paths.From(
      TemporaryBatches(checked), [&](int node, int) { return !Splits(checked, node) && !GathersForGood(checked, node); });
  checked.ForEach("Dispose", [&](int i) {
    const int from = batched[static_cast<size_t>(i)];
    if (from >= 0) report.Module(from, "Batches from {m} can leave at " + NameOf(checked.Module(i)) + " unsplit.");
  });
}

void NothingToSplit(const CheckedModel& checked, RuleReport& report) {
  const std::vector<int> batched =
      checked.paths.From(TemporaryBatches(checked), [&](int node, int) { return !GathersForGood(checked, node); });
  checked.ForEach("Separate", [&](int i) {
    if (checked.Node(i).isReachable && Splits(checked, i) && batched[static_cast<size_t>(i)] < 0)
      report.Module(i, "No temporary batch reaches {m}.");
  });
}

// How many entities a Create makes at most; none when nobody knows.
std::optional<double> MostEntities(const CheckedModel& checked, int create) {
  const auto arrivals = MostArrivals(checked, create), size = checked.Constant(checked.Fields(create)[kCreateBatchSize]);
  return arrivals && size ? std::optional(std::floor(*arrivals + 0.5) * std::floor(*size + 0.5)) : std::nullopt;
}

void Starves(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Batch", [&](int i) {
    const auto size = checked.Constant(checked.Fields(i)[kBatchSize]);
    if (!size || *size < 2 || !checked.Node(i).isReachable) return;
    // What comes round again, or is made on the way, comes more than once.
    const std::vector<bool> feeds = checked.paths.To({i});
    if (checked.paths.From(std::vector{i})[static_cast<size_t>(i)] >= 0) return;
    double most = 0;
    for (int node = 0; node < static_cast<int>(feeds.size()); ++node) {
      if (!feeds[static_cast<size_t>(node)] || !checked.Node(node).isReachable) continue;
      if (IsModule(checked, node, "Separate")) return;
      if (!IsModule(checked, node, "Create")) continue;
      const auto entities = MostEntities(checked, node);
      if (!entities) return;
      most += *entities;
    }
    if (most < std::floor(*size + 0.5))
      report.Module(i, "{m} waits for " + Short(*size) + ", but only " + Short(most) +
                           (most == 1 ? " entity ever comes." : " entities ever come."));
  });
}

void CountedTwice(const CheckedModel& checked, RuleReport& report) {
  std::vector<int> disposes;
  checked.ForEach("Dispose", [&](int i) {
    if (checked.Fields(i)[kDisposeStatistics].Is(YesNo::Yes)) disposes.push_back(i);
  });
  const std::vector<bool> leadsThere = checked.paths.To(disposes);
  checked.ForEach("Record", [&](int i) {
    if (!checked.Fields(i)[kRecordType].Is(RecordType::EntityStatistics) || !leadsThere[static_cast<size_t>(i)]) return;
    const std::vector<int> reached = checked.paths.From(std::vector{i});
    const auto dispose = std::ranges::find_if(disposes, [&](int at) { return reached[static_cast<size_t>(at)] >= 0; });
    if (dispose != disposes.end())
      report.Module(i, "Entities recorded at {m} are recorded again at " + NameOf(checked.Module(*dispose)) + ".");
  });
}

// The index of a row of a Process or of a Record, and the set that it is one of.
void RequireMember(const CheckedModel& checked, RuleReport& report, const FieldPlace& at, const FieldValue& index,
                   const FieldValue& set) {
  const auto constant = checked.Constant(index);
  const int module = ModuleOf(checked, set.reference);
  if (!index.counts || !constant || module < 0) return;
  const double rounded = std::floor(*constant + 0.5);
  const int members = checked.Fields(module).rows();
  if (members > 0 && (rounded < 1 || rounded > members))
    report.Field(at, "{m}: set " + Quoted(set.text) + " has " + Counted(members, "member") + ", not " + Short(rounded) + ".");
}

void SetIndex(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Record", [&](int i) {
    const ModuleFields& fields = checked.Fields(i);
    const FieldValue& set = fields[kRecordCounterSet].counts ? fields[kRecordCounterSet] : fields[kRecordTallySet];
    RequireMember(checked, report, {i, kRecordSetIndex.place}, fields[kRecordSetIndex], set);
  });
  checked.ForEach("Process", [&](int i) {
    const ModuleFields& fields = checked.Fields(i);
    for (int row = 0; row < fields.rows(); ++row)
      RequireMember(checked, report, {i, kProcessRowIndex.place, row}, fields(kProcessRowIndex, row),
                    fields(kProcessRowSet, row));
  });
}

void IntervalFrom(const CheckedModel& checked, RuleReport& report) {
  checked.ForEach("Record", [&](int i) {
    const FieldValue& from = checked.Fields(i)[kRecordAttribute];
    if (!from.counts || !from.reference) return;
    const bool isTime = from.reference.thing == Thing::EntityAttribute
                            ? IsTime(static_cast<EntityAttribute>(from.reference.index)) ||
                                  IsAssignable(static_cast<EntityAttribute>(from.reference.index))
                            : static_cast<bool>(checked.uses.Of(Thing::Attribute, from.reference.index).assigned);
    if (!isTime) report.Field({i, kRecordAttribute.place}, "{m}: " + Quoted(from.text) + " is never set to a time.");
  });
}

constexpr Rule kRules[] = {
    {"batch/never-split", Severity::Warning, NeverSplit}, {"batch/nothing-to-split", Severity::Warning, NothingToSplit},
    {"batch/starves", Severity::Warning, Starves},        {"record/counted-twice", Severity::Warning, CountedTwice},
    {"record/set-index", Severity::Error, SetIndex},      {"record/interval-from", Severity::Warning, IntervalFrom},
};

}  // namespace

std::span<const Rule> FlowRules() { return kRules; }

}  // namespace vardo
