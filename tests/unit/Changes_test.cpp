// Changes of a model that must change nothing in its numbers, or everything by the same factor, on random models.
#include "Fingerprint.h"
#include "ModelDrawing.h"
#include "RandomModel.h"
#include "TestFiles.h"
#include "TestPlatform.h"
#include "addin/host/IVDocument.h"
#include "report/ResultsJson.h"
#include "simulate/Parts.h"
#include "simulate/Runner.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace vardo {
namespace {

using namespace test;

constexpr int kModels = 30;
constexpr int kReplications = 3;
constexpr double kHours = 60;

RunSetup UsualSetup() {
  RunSetup setup;
  setup.lastReplication = kReplications;
  setup.length = kHours * 3600;
  setup.warmUp = 5 * 3600;
  return setup;
}

bool AreSame(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

// The same but for a factor of what is measured; where that is a power of two, its logarithm is moved in the buckets.
OutputValue Times(const OutputValue& value, double factor, int powers) {
  OutputValue scaled = value;
  for (double* const x : {&scaled.mean, &scaled.deviation, &scaled.min, &scaled.max, &scaled.last}) *x *= factor;
  for (Buckets::Count& count : scaled.buckets) count.first += count.first > 0 ? 64 * powers : count.first < 0 ? -64 * powers : 0;
  return scaled;
}
bool AreSame(const OutputValue& a, const OutputValue& b) {
  return a.n == b.n && AreSame(a.mean, b.mean) && AreSame(a.deviation, b.deviation) && AreSame(a.min, b.min) &&
         AreSame(a.max, b.max) && AreSame(a.last, b.last) && a.buckets == b.buckets;
}

struct Made {
  std::shared_ptr<const Program> program;
  std::vector<std::string> names;  // of the outputs
  std::vector<ReplicationRecord> records;
  std::uint64_t events = 0;

  Made(std::shared_ptr<const Program> of, const RunSetup& setup, RunOptions options = {.threads = 1}) : program(std::move(of)) {
    for (const Output& output : program->outputs) names.push_back(NameOf(output));
    options.finished = [&](const ReplicationRecord& record) {
      events += record.events;
      records.push_back(record);
    };
    Progress progress;
    Simulate(*program, setup, options, progress);
  }
  Made(const DrawnModel& model, const RunSetup& setup, const RunOptions& options = {.threads = 1})
      : Made(model.Compile(setup), setup, options) {}

  std::uint64_t Hash() const {
    Fingerprint fingerprint;
    const auto add = [&](double x) { fingerprint.Add(std::isnan(x) ? -1 : x + 0.0); };
    for (const ReplicationRecord& record : records) {
      add(record.end);
      fingerprint.Add(record.events);
      for (const OutputValue& value : record.values) {
        fingerprint.Add(value.n);
        for (const double x : {value.mean, value.deviation, value.min, value.max, value.last}) add(x);
        for (const auto& [number, count] : value.buckets) add(number), fingerprint.Add(count);
      }
      for (const WarningCount& warning : record.warnings) fingerprint.Add(warning.count);
    }
    return fingerprint.hash();
  }
};

// Whatever the original shows is the same to the last bit; the changed model may show more.
void ExpectSame(const Made& original, const Made& changed) {
  std::map<std::string, size_t> places;
  for (size_t i = 0; i < changed.names.size(); ++i) places[changed.names[i]] = i;
  for (size_t i = 0; i < original.names.size(); ++i) {
    ASSERT_TRUE(places.contains(original.names[i])) << original.names[i];
    for (size_t r = 0; r < original.records.size(); ++r)
      EXPECT_TRUE(AreSame(original.records[r].values[i], changed.records[r].values[places[original.names[i]]]))
          << original.names[i];
  }
  EXPECT_EQ(original.events, changed.events);
}

class Changes : public testing::TestWithParam<int> {
 protected:
  RandomModel Model(const RandomModelOptions& options = {}) const { return {static_cast<std::uint64_t>(GetParam()), options}; }
  Made Original() const { return Made(Model().model(), UsualSetup()); }

  TestPlatform platform_;
};

// ------------------------------------------------------------------------------------------------------ bit for bit

TEST_P(Changes, OfNamesChangeNothing) {
  const Made original = Original(), renamed(Model({.hasOtherNames = true}).model(), UsualSetup());
  EXPECT_NE(original.names, renamed.names);
  EXPECT_EQ(original.Hash(), renamed.Hash());
}

TEST_P(Changes, OfTheNumberOfThreadsOrATraceChangeNothing) {
  const Made original = Original();
  EXPECT_EQ(original.Hash(), Made(Model().model(), UsualSetup(), {.threads = 3}).Hash());
  struct : TraceSink {
    void Take(const TraceRecord&) override { ++count; }
    int count = 0;
  } sink;
  EXPECT_EQ(original.Hash(), Made(Model().model(), UsualSetup(), {.threads = 1, .trace = &sink, .traceReplication = 2}).Hash());
  EXPECT_GT(sink.count, 0);
}

TEST_P(Changes, OfTheMachineThatDoesAPartChangeNothing) {
  const TempFolder folder;
  const auto program = Model().model().Compile(UsualSetup());
  const auto write = [&](int first, int last) {
    RunSetup setup = UsualSetup();
    setup.firstReplication = first;
    setup.lastReplication = last;
    std::ostringstream text;
    ResultsWriter writer(text, *program, setup);
    Progress progress;
    const RunOptions options{.threads = 1, .finished = [&](const ReplicationRecord& record) { writer.Add(record); }};
    writer.Finish(Simulate(*program, setup, options, progress));
    return text.str();
  };
  std::vector<ReadResults> parts;
  for (const auto& [first, last] : {std::pair(2, 3), std::pair(1, 1)}) {
    WriteFile(folder / "part.json", write(first, last));
    parts.push_back(ReadResultsFile(folder / "part.json"));
  }
  EXPECT_TRUE(MergeParts(parts, {"one", "other"}).empty());
  std::ostringstream merged;
  ResultsWriter writer(merged, parts.front().program, parts.front().setup);
  RunResults results{Summary(parts.front().program, parts.front().setup.confidence)};
  for (const ReplicationRecord& record : parts.front().records) {
    writer.Add(record);
    results.summary.Add(record);
  }
  writer.Finish(results);
  EXPECT_EQ(merged.str(), write(1, kReplications));
}

// A module that does nothing, in the middle of every third connector.
TEST_P(Changes, ThatDoNothingOnTheWayChangeNothing) {
  DrawnModel model = Model().model();
  const size_t connectors = model.source().connectors.size();
  const int page = model.source().connectors.front().page;
  for (size_t i = 0; i < connectors; i += 3) {
    if (model.source().connectors[i].page != page) continue;
    model.Insert(i, "Assign", "Nothing " + std::to_string(i));
    model.Insert(i, "Decide", "Always " + std::to_string(i), {{"DecidePercentTrue", "100"}});
  }
  ExpectSame(Original(), Made(model, UsualSetup()));
}

TEST_P(Changes, OfWhatNobodyReachesChangeNothing) {
  DrawnModel model = Model().model();
  model.GoTo(0);
  model.Add("Assign", "Island", {{"AssignCount", "1"}, {"AssignType", "Variable"}, {"AssignVariableName", "Count"}});
  model.Add("Process", "Lighthouse", Served("EXPO(1)", "Worker 1"))
      .Add("Record", "Ship")
      .Chain({"Island", "Lighthouse", "Ship", "Island"});
  ExpectSame(Original(), Made(model, UsualSetup()));
}

TEST_P(Changes, OfThePageChangeNothing) {
  const Made flat(Model({.hasStreamNumbers = true, .isFlat = true}).model(), UsualSetup());
  const Made paged(Model({.hasStreamNumbers = true}).model(), UsualSetup());
  ExpectSame(flat, paged);
}

// The text of ModelDrawing.
std::string DrawingOf(const ModelSource& source) {
  std::string text;
  for (size_t page = 0; page < source.pages.size(); ++page) {
    if (page > 0) text += "page " + source.pages[page].name + " of " + source.pages[page].parent + "\n";
    for (const SourceModule& module : source.modules) {
      if (module.page != static_cast<int>(page)) continue;
      text += std::string(module.schema->kind) + " " + module.name;
      for (size_t i = 1; i < module.values.size(); ++i)
        if (*module.values[i] != module.schema->properties[i].defaultValue)
          text += " | " + std::string(module.schema->properties[i].field) + "=" + *module.values[i];
      text += "\n";
    }
    for (const SourceConnector& connector : source.connectors)
      if (connector.page == static_cast<int>(page))
        text += source.modules[static_cast<size_t>(connector.begin.module)].name + ":" + std::to_string(connector.begin.point) +
                " -> " + source.modules[static_cast<size_t>(connector.end.module)].name + "\n";
  }
  return text;
}

std::shared_ptr<const Program> ProgramOf(const IVDocumentPtr& document) {
  std::vector<Finding> findings;
  auto program = Compile(MakeModel(ReadDrawing(document)), UsualSetup(), "model.vsdx", findings);
  if (!program) throw std::runtime_error(findings.front().message);
  return program;
}

// Drawn as a whole, which takes longer.
class Drawings : public Changes {};

TEST_P(Drawings, ThatAreMovedAndSavedAreTheSameModels) {
  const RandomModel model = Model({.hasStreamNumbers = true});
  const Made original(model.model(), UsualSetup());
  std::string text = DrawingOf(model.model().source());
  ModelDrawing drawing(text);
  const Made drawn(ProgramOf(drawing.document()), UsualSetup());
  ExpectSame(original, drawn);
  text += "cell Go PinX=3\ncell Count PinY=7\n";
  ModelDrawing moved(text);
  EXPECT_EQ(drawn.Hash(), Made(ProgramOf(moved.document()), UsualSetup()).Hash());
  const TempFolder folder;
  drawing.host().Save(folder / "model.vsdx");
  DrawingHost reopened;
  reopened.Open(folder / "model.vsdx");
  const Made again(ProgramOf(reopened.application()->ActiveDocument()), UsualSetup());
  EXPECT_EQ(drawn.Hash(), again.Hash());
}

// ------------------------------------------------------------------------------------------------------ by a factor

bool Contains(const std::string& text, std::string_view part) { return text.find(part) != std::string::npos; }
bool IsTime(const Output& output) { return !output.unit.empty() || Contains(output.of, "Time"); }

// A power of two loses no bit.
TEST_P(Changes, OfAllTimesToTheirDoubleDoubleTimesAndCosts) {
  RunSetup setup = UsualSetup();
  const Made original(Model().model(), setup);
  setup.length = 2 * *setup.length;
  setup.warmUp *= 2;
  const Made doubled(Model({.scale = 2}).model(), setup);
  ASSERT_EQ(original.names, doubled.names);
  EXPECT_EQ(original.events, doubled.events);
  for (size_t i = 0; i < original.names.size(); ++i) {
    const Output& output = original.program->outputs[i];
    const bool isTwice = IsTime(output) || Contains(std::string(output.statistic), "cost");
    for (size_t r = 0; r < original.records.size(); ++r)
      EXPECT_TRUE(AreSame(Times(original.records[r].values[i], isTwice ? 2 : 1, isTwice ? 1 : 0), doubled.records[r].values[i]))
          << original.names[i];
  }
}

TEST_P(Changes, OfTheBaseUnitChangeTheTimesShownAlone) {
  RunSetup setup = UsualSetup();
  const DrawnModel model = Model({.asksForTime = false}).model();
  const Made hours(model, setup);
  setup.timeUnit = TimeUnit::Minutes;
  const Made minutes(model, setup);
  EXPECT_EQ(hours.events, minutes.events);
  for (size_t i = 0; i < hours.names.size(); ++i) {
    const double factor = IsTime(hours.program->outputs[i]) ? 60 : 1;
    for (size_t r = 0; r < hours.records.size(); ++r) {
      const OutputValue &a = hours.records[r].values[i], &b = minutes.records[r].values[i];
      EXPECT_EQ(a.n, b.n) << hours.names[i];
      for (const auto& [in, out] : {std::pair(a.mean, b.mean), std::pair(a.max, b.max)})
        EXPECT_TRUE(AreSame(in * factor, out) || std::fabs(in * factor - out) <= 1e-9 * (1 + std::fabs(out))) << hours.names[i];
    }
  }
}

INSTANTIATE_TEST_SUITE_P(RandomModels, Changes, testing::Range(1, kModels + 1));
INSTANTIATE_TEST_SUITE_P(RandomModels, Drawings, testing::Range(1, 9));

// On every machine.
TEST(RandomModels, HaveTheirFingerprint) {
  const TestPlatform platform;
  Fingerprint all;
  for (int i = 1; i <= kModels; ++i) all.Add(Made(RandomModel(static_cast<std::uint64_t>(i)).model(), UsualSetup()).Hash());
  EXPECT_EQ(all.hash(), 13165254915063551763u);
}

// ------------------------------------------------------------------------------------------------------ by reason

// How long each customer has waited, by number.
struct Waits : TraceSink {
  std::map<std::uint64_t, double> joined, waited;
  void Take(const TraceRecord& record) override {
    if (record.does == TraceAct::Queue) joined[record.entity] = record.time;
    if (record.does == TraceAct::Seize)
      waited[record.entity] = joined.contains(record.entity) ? record.time - joined[record.entity] : 0;
  }
};

// Of a fixed number of customers, until all have gone.
std::map<std::uint64_t, double> WaitsOf(const std::string& between, const std::string& service, int servers) {
  const DrawnModel model = OneQueue("1", Served(service), std::to_string(servers),
                                    {{"CreateType", "Expression"}, {"CreateExpression", between}, {"CreateMaxBatches", "3000"}});
  RunSetup setup;
  setup.lastReplication = 1;
  Waits waits;
  Progress progress;
  Simulate(*model.Compile(setup), setup, {.threads = 1, .trace = &waits}, progress);
  return waits.waited;
}

// Customer by customer; times differ in their last bits.
void ExpectNoneLonger(const std::map<std::uint64_t, double>& shorter, const std::map<std::uint64_t, double>& longer) {
  ASSERT_EQ(shorter.size(), 3000u);
  ASSERT_EQ(longer.size(), 3000u);
  for (const auto& [number, wait] : shorter) EXPECT_LE(wait, longer.at(number) + 1e-6) << number;
}

TEST(Reason, OneMoreServerLetsNobodyWaitLonger) {
  const TestPlatform platform;
  for (const char* service : {"EXPO(1.8)", "GAMM(.9, 2)", "UNIF(1, 2.6)"})
    for (const int servers : {1, 2, 3})
      ExpectNoneLonger(WaitsOf("EXPO(1)", service, servers + 1), WaitsOf("EXPO(1)", service, servers));
}

TEST(Reason, MoreCustomersLetNobodyWaitShorter) {
  const TestPlatform platform;
  for (const int servers : {1, 2, 3})
    ExpectNoneLonger(WaitsOf("EXPO(1.1)", "EXPO(1.8)", servers), WaitsOf("EXPO(1)", "EXPO(1.8)", servers));
}

TEST(Reason, ExitsThatAreSwappedSwapTheirCounts) {
  const TestPlatform platform;
  std::vector<double> counts;
  for (const char* percent : {"30", "70"}) {
    DrawnModel model;
    model.Add("Create", "Come", {{"CreateType", "Constant"}, {"CreateMaxBatches", "20000"}})
        .Add("Decide", "Ask", {{"DecidePercentTrue", percent}});
    model.Add("Dispose", "Few").Add("Dispose", "Most").Add("Record", "Of few").Chain({"Come", "Ask"}).Connect("Of few", "Few");
    const bool isSwapped = std::string(percent) == "70";
    model.Connect("Ask", isSwapped ? "Most" : "Of few").ConnectSecond("Ask", isSwapped ? "Of few" : "Most");
    RunSetup setup;
    setup.lastReplication = 1;
    const Made run(model, setup);
    counts.push_back(run.records.front().values[FindOutput(*run.program, "Counter/Of few/Count").value()].mean);
  }
  const double deviation = std::sqrt(20000 * .3 * .7);
  EXPECT_NEAR(counts[0], 6000, 3 * deviation);
  EXPECT_NEAR(counts[1], 6000, 3 * deviation);
}

}  // namespace
}  // namespace vardo
