#include "addin/host/IVApplication.h"
#include "app/Commands.h"
#include "app/ResultsFiles.h"
#include "app/RunWatch.h"
#include "memoryhost/DrawingHost.h"
#include "model/RunSetup.h"
#include "platform/FileSystem.h"
#include "platform/NativePlatform.h"
#include "platform/Platform.h"
#include "report/FindingsReport.h"
#include "report/ResultsReport.h"
#include "report/TraceText.h"
#include "run/PreparedRun.h"

#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <stdexcept>

namespace vardo {
namespace {

using Clock = std::chrono::steady_clock;

std::optional<std::string> EnvironmentOf(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

// What was found is told of on standard error; a quiet run tells of errors alone.
void TellFindings(const std::string& file, const PreparedRun& run, bool isQuiet) {
  std::vector<Finding> told = run.findings;
  if (isQuiet) std::erase_if(told, [](const Finding& finding) { return finding.severity != Severity::Error; });
  if (!told.empty()) PrintFindings(file, told, std::cerr);
}

void TakeNamedPart(const std::string& text, RunSetup& setup) {
  const PartChoice part = ChoosePart(text, EnvironmentOf);
  TakePart(part, setup);
  if (!part.source.empty())
    std::cerr << "Part " << part.part << " of " << part.parts << " (" << part.source << "): replications "
              << setup.firstReplication << ".." << setup.lastReplication << ".\n";
}

// What a run that must be precise is still short of, and how to go on.
void RequirePrecision(const Program& program, const RunSetup& setup, const RunResults& results) {
  if (results.imprecise.empty() || results.isStopped) return;
  const std::uint64_t count = results.summary.replications();
  const double g = *setup.precision / 100;
  double wanted = 0;
  std::string names;
  for (const size_t output : results.imprecise) {
    const OutputSummary of = results.summary.Of(output);
    const double ratio = of.halfWidth / (g / (1 + g) * std::fabs(of.mean));
    wanted = std::max(wanted, std::ceil(static_cast<double>(count) * ratio * ratio));
    names += (names.empty() ? "\"" : ", \"") + NameOf(program.outputs[output]) + "\"";
  }
  std::string sentence =
      "The precision asked for is not reached after " + std::to_string(count) + " replications: " + names + ".";
  constexpr double kMost = 1e6;
  if (wanted > static_cast<double>(count) && wanted < kMost)
    sentence += " It takes about " + std::to_string(static_cast<std::uint64_t>(wanted)) + " of them.";
  throw std::runtime_error(sentence);
}

}  // namespace

Outcome SimulateDrawing(const SimulateOptions& options, std::ostream& output) {
  const std::unique_ptr<Platform> machine = MakeNativePlatform();
  SetPlatform(machine.get());
  DrawingHost host;
  host.Open(options.file);
  const IVDocumentPtr document = host.application()->ActiveDocument();

  PreparedRun run = PrepareRun(document, options.order, PathInWords(options.file.filename()));
  const bool isQuiet = options.results.isQuiet;
  TellFindings(PathInWords(options.file), run, isQuiet);
  if (!run.program) return {1, {}};

  Outcome outcome;
  if (options.savesSetup) {
    KeepSetup(document, options.order.setup);
    outcome.saved = host.Save(std::nullopt);
  }
  RunSetup& setup = run.setup;
  if (!options.part.empty()) TakeNamedPart(options.part, setup);
  RunOptions how{.threads = options.threads,
                 .mostEntities = options.mostEntities,
                 .mostSteps = options.mostSteps,
                 .keepsBuckets = options.keepsBuckets};
  std::optional<OutputFile> traceFile;
  std::optional<TraceWriter> trace;
  if (!options.trace.empty()) {
    how.trace = &trace.emplace(*run.program, traceFile.emplace(MachineFileSystem(), options.trace));
    how.traceReplication = options.traceReplication;
  }
  Progress progress;
  if (setup.warmUpIsProposed) {
    const RunWatch watch(progress, 0);
    FindWarmUp(run, how, progress);
    if (!isQuiet) std::cerr << "The proposed warm-up is " << TimeText(setup.warmUp) << ".\n";
  }

  ResultsFiles files(options.results, *run.program, setup, run.findings, output);
  how.finished = [&](const ReplicationRecord& record) { files.Add(record); };
  const Clock::time_point start = Clock::now();
  const auto simulate = [&] {
    const auto count = static_cast<std::uint64_t>(setup.lastReplication - setup.firstReplication + 1);
    const RunWatch watch(progress, setup.precision ? 0 : count);
    return Simulate(*run.program, setup, how, progress);
  };
  const RunResults results = simulate();
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  files.Finish(results, isatty(STDOUT_FILENO) ? seconds : 0);
  if (traceFile) traceFile->Finish();
  RequirePrecision(*run.program, setup, results);
  outcome.status = results.isStopped ? 1 : 0;
  return outcome;
}

Outcome MergeResults(const MergeOptions& options, std::ostream& output) {
  std::vector<ReadResults> parts;
  std::vector<std::string> names;
  for (const std::filesystem::path& file : options.files) {
    parts.push_back(ReadResultsFile(file));
    names.push_back(PathInWords(file));
  }
  for (const std::string& gap : MergeParts(parts, names)) std::cerr << gap << '\n';
  ReadResults& all = parts.front();
  std::vector<Finding> unreadable;
  const RunSetup precision = ReadSetup(options.precision.setup, {}, unreadable);
  if (!unreadable.empty()) throw std::runtime_error(unreadable.front().message);
  all.setup.precision = precision.precision;
  all.setup.precisionOf = precision.precisionOf;
  ResultsFiles files(options.results, all.program, all.setup, {}, output);
  RunResults results{Summary(all.program, all.setup.confidence)};
  for (const ReplicationRecord& record : all.records) {
    results.summary.Add(record);
    files.Add(record);
  }
  results.imprecise = ImpreciseOutputs(all.program, all.setup, results.summary);
  files.Finish(results, 0);
  RequirePrecision(all.program, all.setup, results);
  return {};
}

}  // namespace vardo
