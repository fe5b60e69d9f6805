#include "run/PreparedRun.h"

#include "base/Text.h"
#include "check/Check.h"
#include "model/Compile.h"
#include "simulate/Results.h"

#include <algorithm>
#include <stdexcept>

namespace vardo {
namespace {

Finding SetupError(std::string message) { return {.rule = "run/setup", .message = std::move(message)}; }

bool HasError(const std::vector<Finding>& findings) {
  return std::ranges::any_of(findings, [](const Finding& finding) { return finding.severity == Severity::Error; });
}

std::vector<RunSetting> ReadSettings(const std::vector<std::string>& texts, std::vector<Finding>& findings) {
  std::vector<RunSetting> settings;
  for (const std::string& text : texts) {
    if (const auto setting = ParseSetting(text))
      settings.push_back(*setting);
    else
      findings.push_back(
          SetupError("--set: \"" + InWords(text) + "\" is no setting; write NAME=VALUE or \"MODULE, FIELD=TEXT\"."));
  }
  return settings;
}

// What precision is asked of has to be there.
void CheckOutputs(const Program& program, const RunSetup& setup, std::vector<Finding>& findings) {
  for (const std::string& name : setup.precisionOf)
    if (!FindOutput(program, name))
      findings.push_back(SetupError("There is no output \"" + InWords(name) +
                                    "\"; it is named like \"Queue/Serve.Queue/Waiting time\", and --json lists them all."));
}

}  // namespace

PreparedRun PrepareRun(const IVDocumentPtr& document, const RunOrder& order, const std::string& file) {
  std::vector<Finding> unreadable;
  const std::vector<RunSetting> settings = ReadSettings(order.settings, unreadable);
  Examined examined = Examine(document, order.setup, settings, CheckFor::Run);
  PreparedRun run{std::move(examined.setup), std::move(examined.findings), nullptr};
  run.setup.settings = settings;
  run.findings.insert(run.findings.end(), unreadable.begin(), unreadable.end());
  if (HasError(run.findings)) return run;
  std::shared_ptr<const Program> program = Compile(examined.model, run.setup, file, run.findings);
  if (program) CheckOutputs(*program, run.setup, run.findings);
  if (!HasError(run.findings)) run.program = std::move(program);
  return run;
}

void TakePart(const PartChoice& part, RunSetup& setup) {
  if (setup.precision || setup.warmUpIsProposed)
    throw std::runtime_error("Parts of a run need a fixed number of replications and a fixed warm-up.");
  const ReplicationRange range = RangeOfPart(part, {setup.firstReplication, setup.lastReplication});
  if (range.last < range.first) throw std::runtime_error("There are more parts than replications.");
  setup.firstReplication = range.first;
  setup.lastReplication = range.last;
}

void FindWarmUp(PreparedRun& run, const RunOptions& options, Progress& progress) {
  if (!run.setup.warmUpIsProposed) return;
  run.setup.warmUp = ProposeWarmUp(*run.program, run.setup, options, progress);
  run.setup.warmUpIsProposed = false;
}

}  // namespace vardo
