#include "base/Text.h"
#include "check/Amounts.h"
#include "check/Check.h"
#include "check/Rules.h"

#include <string>

namespace vardo {
namespace {

// Where entities are disposed of.
std::vector<bool> LeadsToDispose(const CheckedModel& checked) {
  std::vector<int> disposes;
  checked.ForEach("Dispose", [&](int i) { disposes.push_back(i); });
  return checked.paths.To(disposes);
}

void NoEnd(const CheckedModel& checked, RuleReport& report) {
  if (!checked.toBeRun || checked.setup.length || !checked.setup.until.empty()) return;
  const std::vector<bool> leads = LeadsToDispose(checked);
  bool ends = true;
  checked.ForEach("Create", [&](int i) { ends = ends && !ArrivesForEver(checked, i) && leads[static_cast<size_t>(i)]; });
  if (!ends) report.Drawing("The model never ends by itself: add --length, for example --length 8h.");
}

void WarmUpTooLong(const CheckedModel& checked, RuleReport& report) {
  const RunSetup& setup = checked.setup;
  if (!setup.length || setup.warmUpIsProposed || setup.warmUp < *setup.length) return;
  report.Drawing(setup.warmUp == *setup.length ? "The warm-up is as long as the run." : "The warm-up is longer than the run.");
}

void Setup(const CheckedModel& checked, RuleReport& report) {
  for (const std::string& rule : checked.setup.ignore)
    if (!FindRule(rule)) report.Drawing("There is no rule " + Quoted(rule) + " to ignore.");
  if (checked.toBeRun && checked.setup.precision && checked.setup.precisionOf.empty())
    report.Drawing("A precision is asked for, but not of what: add --of, for example --of \"Queue/Serve.Queue/Waiting time\".");
  if (checked.toBeRun && checked.setup.warmUpIsProposed && !checked.setup.length)
    report.Drawing("A warm-up can be proposed for runs of a length alone: add --length, for example --length 30d.");
  if (checked.setup.until.empty()) return;
  const Expression until = ParseExpression(checked.setup.until, checked.model.names, false);
  if (!until.error) return;
  const bool isQuestion = until.error->sentence.ends_with('?');
  Finding& finding = report.Drawing("The condition that ends a run: " + until.error->sentence + (isQuestion ? "" : "."));
  finding.text = checked.setup.until;
  finding.position = static_cast<int>(until.error->position);
  finding.length = static_cast<int>(until.error->length);
  finding.hint = until.error->hint;
}

void OneReplication(const CheckedModel& checked, RuleReport& report) {
  const RunSetup& setup = checked.setup;
  if (checked.toBeRun && setup.firstReplication == setup.lastReplication && setup.firstReplication == 1 && !setup.precision)
    report.Drawing("One replication gives no half-widths.");
}

constexpr Rule kRules[] = {
    {"run/no-end", Severity::Error, NoEnd},
    {"run/warm-up-too-long", Severity::Error, WarmUpTooLong},
    {"run/setup", Severity::Error, Setup},
    {"run/one-replication", Severity::Warning, OneReplication},
};

}  // namespace

std::span<const Rule> RunRules() { return kRules; }

}  // namespace vardo
