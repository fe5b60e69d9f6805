#include "check/Check.h"

#include "check/Rules.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace vardo {
namespace {

template <class Visit>
void ForEachRule(const Visit& visit) {
  for (const auto group : {StructureRules, SubmodelRules, NameRules, FieldRules, ResourceRules, ScheduleRules, FlowRules,
                           LoadRules, RunRules, DamageRules})
    for (const Rule& rule : group()) visit(rule);
}

bool IsIgnored(const RunSetup& setup, std::string_view rule) {
  return std::ranges::find(setup.ignore, rule) != setup.ignore.end();
}

}  // namespace

std::vector<RuleInfo> AllRules() {
  std::vector<RuleInfo> rules;
  ForEachRule([&](const Rule& rule) { rules.push_back({rule.id, rule.severity}); });
  return rules;
}

bool FindRule(std::string_view id) {
  bool found = false;
  ForEachRule([&](const Rule& rule) { found = found || rule.id == id; });
  return found;
}

std::vector<Finding> Check(const Model& model, const RunSetup& setup, CheckFor purpose, std::vector<Finding> before) {
  std::vector<Finding> findings = std::move(before);
  const CheckedModel checked(model, setup, purpose == CheckFor::Run);
  ForEachRule([&](const Rule& rule) {
    RuleReport report(checked, rule, findings);
    rule.find(checked, report);
  });
  std::erase_if(findings, [&](const Finding& finding) {
    return IsIgnored(setup, finding.rule) && (purpose == CheckFor::Itself || finding.severity != Severity::Error);
  });
  std::ranges::stable_sort(
      findings, [](const Finding& a, const Finding& b) { return std::tie(a.order, a.position) < std::tie(b.order, b.position); });
  return findings;
}

int Examined::CountOf(Severity severity) const {
  return static_cast<int>(std::ranges::count(findings, severity, &Finding::severity));
}

Examined Examine(const IVDocumentPtr& document, const SetupTexts& options, const std::vector<RunSetting>& settings,
                 CheckFor purpose) {
  Examined examined;
  ModelSource source = ReadDrawing(document);
  std::vector<Finding> findings;
  examined.setup = ReadSetup(options, source.setup, findings);
  ApplySettings(settings, source, findings);
  examined.model = MakeModel(std::move(source));
  examined.findings = Check(examined.model, examined.setup, purpose, std::move(findings));
  return examined;
}

}  // namespace vardo
