#include "app/Commands.h"

#include "addin/host/IVApplication.h"
#include "base/FileError.h"
#include "base/Text.h"
#include "check/Check.h"
#include "memoryhost/DrawingHost.h"
#include "model/Compile.h"
#include "platform/FileSystem.h"
#include "platform/NativePlatform.h"
#include "platform/Platform.h"
#include "report/FindingsReport.h"
#include "report/ResultsJson.h"
#include "report/ResultsReport.h"
#include "simulate/Parts.h"
#include "simulate/Runner.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>

namespace vardo {
namespace {

constexpr std::string_view kToStandardOutput = "-";

// The file appears when all of it is written.
void WriteText(const std::filesystem::path& file, const std::string& text) {
  std::ofstream stream(file, std::ios::binary);
  stream << text;
  stream.close();
  if (!stream) throw FileError(PathInWords(file) + " could not be written; choose another place.");
}

std::vector<RunSetting> SettingsOf(const std::vector<std::string>& texts) {
  std::vector<RunSetting> settings;
  for (const std::string& text : texts) {
    const auto setting = ParseSetting(text);
    if (!setting)
      throw std::runtime_error("\"" + InWords(text) + "\" is no setting; write NAME=VALUE or \"MODULE, FIELD=TEXT\".");
    settings.push_back(*setting);
  }
  return settings;
}

void TakePart(const std::string& part, RunSetup& setup) {
  const PartChoice choice = ChoosePart(part, [](const char* name) -> std::optional<std::string> {
    const char* value = std::getenv(name);
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
  });
  if (setup.precision || setup.warmUpIsProposed)
    throw std::runtime_error("Parts of a run need a fixed number of replications and a fixed warm-up.");
  const ReplicationRange range = RangeOfPart(choice, {setup.firstReplication, setup.lastReplication});
  if (range.last < range.first) throw std::runtime_error("There are more parts than replications.");
  setup.firstReplication = range.first;
  setup.lastReplication = range.last;
  if (!choice.source.empty())
    std::cerr << "Part " << choice.part << " of " << choice.parts << " (" << choice.source << "): replications " << range.first
              << ".." << range.last << ".\n";
}

// The outputs that a precision is asked of are there.
void CheckPrecision(const Program& program, const RunSetup& setup) {
  if (!setup.precision) return;
  if (setup.precisionOf.empty())
    throw std::runtime_error("--precision needs --of OUTPUT, for example \"Queue/Serve.Queue/Waiting time\".");
  for (const std::string& name : setup.precisionOf)
    if (!FindOutput(program, name)) throw std::runtime_error("There is no output \"" + InWords(name) + "\"; --json lists them.");
}

}  // namespace

Outcome SimulateDrawing(const SimulateOptions& options, std::ostream& output) {
  const std::unique_ptr<Platform> machine = MakeNativePlatform();
  SetPlatform(machine.get());
  DrawingHost host;
  host.Open(options.file);

  Examined examined = Examine(host.application()->ActiveDocument(), options.setup, SettingsOf(options.settings), CheckFor::Run);
  const std::string file = PathInWords(options.file);
  std::shared_ptr<const Program> program;
  if (examined.CountOf(Severity::Error) == 0)
    program = Compile(examined.model, examined.setup, PathInWords(options.file.filename()), examined.findings);
  if (!examined.findings.empty() && (!program || !options.isQuiet)) PrintFindings(file, examined.findings, std::cerr);
  if (!program) return {1, {}};

  RunSetup& setup = examined.setup;
  setup.settings = SettingsOf(options.settings);
  if (!options.part.empty()) TakePart(options.part, setup);
  CheckPrecision(*program, setup);
  RunOptions run{.threads = options.threads, .mostEntities = options.mostEntities, .mostSteps = options.mostSteps};
  Progress progress;
  if (setup.warmUpIsProposed) {
    if (!setup.length) throw std::runtime_error("--warm-up auto needs --length.");
    setup.warmUp = ProposeWarmUp(*program, setup, run, progress);
    setup.warmUpIsProposed = false;
    if (!options.isQuiet) std::cerr << "The proposed warm-up is " << TimeText(setup.warmUp) << ".\n";
  }

  std::ostringstream json;
  std::optional<ResultsWriter> writer;
  if (!options.json.empty()) {
    writer.emplace(json, *program, setup);
    run.finished = [&](const ReplicationRecord& record) { writer->Add(record); };
  }
  const RunResults results = Simulate(*program, setup, run, progress);
  if (writer) {
    writer->Finish(results);
    if (options.json == kToStandardOutput)
      output << json.str();
    else
      WriteText(options.json, json.str());
  }
  if (!options.isQuiet && options.json != kToStandardOutput) PrintResults(*program, setup, results, options.all, output);
  if (!results.isPrecise)
    throw std::runtime_error("The precision asked for is not reached after " + std::to_string(results.summary.replications()) +
                             " replications.");
  return {results.isStopped ? 1 : 0, {}};
}

Outcome MergeResults(const MergeOptions& options, std::ostream& output) {
  std::vector<ReadResults> parts;
  std::vector<std::string> names;
  for (const std::filesystem::path& file : options.files) {
    parts.push_back(ReadResultsFile(file));
    names.push_back(PathInWords(file));
  }
  for (const std::string& gap : MergeParts(parts, names)) std::cerr << gap << '\n';
  const ReadResults& all = parts.front();
  RunResults results{Summary(all.program, all.setup.confidence)};
  for (const ReplicationRecord& record : all.records) results.summary.Add(record);
  if (!options.json.empty()) {
    std::ostringstream json;
    ResultsWriter writer(json, all.program, all.setup);
    for (const ReplicationRecord& record : all.records) writer.Add(record);
    writer.Finish(results);
    if (options.json == kToStandardOutput) {
      output << json.str();
      return {};
    }
    WriteText(options.json, json.str());
  }
  PrintResults(all.program, all.setup, results, options.all, output);
  return {};
}

}  // namespace vardo
