#include "simulate/Runner.h"

#include "DrawnModel.h"
#include "Fingerprint.h"
#include "TestFiles.h"
#include "TestPlatform.h"
#include "report/ResultsJson.h"
#include "simulate/Parts.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace vardo {
namespace {

using test::DrawnModel;

class Runs : public testing::Test {
 protected:
  // Customers come every two minutes on the average, each is served for a minute.
  static DrawnModel Queue() {
    DrawnModel model;
    model.Add("Create", "Come", {{"CreateValue", "2"}, {"CreateUnits", "Minutes"}});
    model.Add("Process", "Serve",
              {{"ProcessAction", "SDR"},
               {"ProcessDelayType", "Expression"},
               {"ProcessExpression", "EXPO(1)"},
               {"ProcessUnits", "Minutes"},
               {"Process_RCount", "1"},
               {"Process_RResourceName", "Clerk"}});
    model.Add("Dispose", "Go").Add("Resource", "Clerk", {{"ResourceBusy_Hour", "30"}, {"ResourceIdle_Hour", "10"}});
    return model.Chain({"Come", "Serve", "Go"});
  }
  static RunSetup Setup(int first, int last) {
    RunSetup setup;
    setup.firstReplication = first;
    setup.lastReplication = last;
    setup.length = 8 * 3600;
    setup.warmUp = 3600;
    return setup;
  }
  static std::string JsonOf(const Program& program, const RunSetup& setup, unsigned threads) {
    std::ostringstream text;
    ResultsWriter writer(text, program, setup);
    Progress progress;
    const RunResults results = Simulate(
        program, setup, {.threads = threads, .finished = [&](const ReplicationRecord& record) { writer.Add(record); }}, progress);
    writer.Finish(results);
    return text.str();
  }

  TestPlatform platform_;
};

TEST_F(Runs, GiveTheSameBytesWithAnyNumberOfThreads) {
  const RunSetup setup = Setup(1, 9);
  const auto program = Queue().Compile(setup);
  const std::string one = JsonOf(*program, setup, 1);
  EXPECT_EQ(JsonOf(*program, setup, 2), one);
  EXPECT_EQ(JsonOf(*program, setup, 7), one);
}

TEST_F(Runs, HaveTheirFingerprint) {
  const RunSetup setup = Setup(1, 5);
  const auto program = Queue().Compile(setup);
  test::Fingerprint fingerprint;
  Progress progress;
  Simulate(*program, setup,
           {.finished =
                [&](const ReplicationRecord& record) {
                  for (const OutputValue& value : record.values) fingerprint.Add(value.n), fingerprint.Add(value.mean + 0.0);
                }},
           progress);
  EXPECT_EQ(fingerprint.hash(), 13344628507889427748u);
}

TEST_F(Runs, ArePutTogetherFromPartsInAnyOrder) {
  const test::TempFolder folder;
  const RunSetup setup = Setup(1, 10);
  const auto program = Queue().Compile(setup);
  const std::string whole = JsonOf(*program, setup, 1);
  std::vector<ReadResults> parts;
  std::vector<std::string> names;
  for (const auto& [first, last] : std::vector<std::pair<int, int>>{{8, 10}, {1, 4}, {3, 7}}) {
    const auto file = folder / ("part" + std::to_string(first) + ".json");
    test::WriteFile(file, JsonOf(*program, Setup(first, last), 2));
    parts.push_back(ReadResultsFile(file));
    names.push_back(file.filename().string());
  }
  EXPECT_TRUE(MergeParts(parts, names).empty());
  std::ostringstream merged;
  ResultsWriter writer(merged, parts.front().program, parts.front().setup);
  RunResults results{Summary(parts.front().program, parts.front().setup.confidence)};
  for (const ReplicationRecord& record : parts.front().records) {
    writer.Add(record);
    results.summary.Add(record);
  }
  writer.Finish(results);
  EXPECT_EQ(merged.str(), whole);
}

TEST_F(Runs, OfAnotherSeedAreNoPart) {
  const test::TempFolder folder;
  RunSetup setup = Setup(1, 2);
  const auto program = Queue().Compile(setup);
  std::vector<ReadResults> parts;
  for (const int seed : {1, 2}) {
    setup.seed = static_cast<std::uint64_t>(seed);
    test::WriteFile(folder / "part.json", JsonOf(*program, setup, 1));
    parts.push_back(ReadResultsFile(folder / "part.json"));
  }
  EXPECT_THROW(MergeParts(parts, {"one", "other"}), std::runtime_error);
}

TEST_F(Runs, NameTheReplicationsThatAreMissing) {
  const test::TempFolder folder;
  const auto program = Queue().Compile(Setup(1, 2));
  std::vector<ReadResults> parts;
  for (const int first : {1, 6}) {
    test::WriteFile(folder / "part.json", JsonOf(*program, Setup(first, first + 1), 1));
    parts.push_back(ReadResultsFile(folder / "part.json"));
  }
  EXPECT_EQ(MergeParts(parts, {"one", "other"}), std::vector<std::string>{"Replications 3..5 are missing."});
}

TEST_F(Runs, EndWhenTheyArePreciseEnoughWhateverTheThreads) {
  RunSetup setup = Setup(1, 10);
  setup.precision = 5;
  setup.precisionOf = {"queue/serve.queue/waiting time"};
  const auto program = Queue().Compile(setup);
  std::vector<std::uint64_t> counts;
  for (const unsigned threads : {1u, 2u, 5u}) {
    Progress progress;
    const RunResults results = Simulate(*program, setup, {.threads = threads}, progress);
    EXPECT_TRUE(results.imprecise.empty());
    const OutputSummary wait = results.summary.Of(FindOutput(*program, setup.precisionOf.front()).value());
    EXPECT_LE(wait.halfWidth, .05 / 1.05 * wait.mean);
    counts.push_back(results.summary.replications());
  }
  EXPECT_GT(counts[0], 10u);
  EXPECT_EQ(counts, (std::vector<std::uint64_t>(3, counts[0])));
}

TEST_F(Runs, SayWhenTheyAreNotPreciseEnough) {
  RunSetup setup = Setup(1, 10);
  setup.precision = .1;
  setup.precisionOf = {"Queue/Serve.Queue/Waiting time"};
  setup.maxReplications = 12;
  const auto program = Queue().Compile(setup);
  Progress progress;
  const RunResults results = Simulate(*program, setup, {}, progress);
  EXPECT_EQ(results.imprecise, std::vector<size_t>{FindOutput(*program, setup.precisionOf.front()).value()});
  EXPECT_EQ(results.summary.replications(), 12u);
}

TEST_F(Runs, ProposeAWarmUpThatIsAPartOfTheLength) {
  RunSetup setup = Setup(1, 1);
  setup.length = 3600. * 200;
  setup.warmUp = 0;
  const auto program = Queue().Compile(setup);
  Progress progress;
  const double warmUp = ProposeWarmUp(*program, setup, {}, progress);
  EXPECT_GE(warmUp, 0);
  EXPECT_LT(warmUp, *setup.length / 2);
}

TEST_F(Runs, OfOneReplicationHaveHalfWidthsByBatchesOfTime) {
  RunSetup setup = Setup(1, 1);
  setup.length = 3600. * 2000;
  const auto program = Queue().Compile(setup);
  Progress progress;
  const RunResults results = Simulate(*program, setup, {}, progress);
  const size_t wait = FindOutput(*program, "Queue/Serve.Queue/Waiting time").value();
  ASSERT_EQ(results.batchHalfWidths.size(), program->outputs.size());
  EXPECT_LE(results.batchCorrelations[wait], .2);
  EXPECT_NEAR(results.summary.Of(wait).mean, 1. / 60, 3 * results.batchHalfWidths[wait]);
}

TEST_F(Runs, CostWhatTimeAndUnitsCost) {
  const RunSetup setup = Setup(1, 2);
  const auto program = Queue().Compile(setup);
  Progress progress;
  const RunResults results = Simulate(*program, setup, {}, progress);
  const auto mean = [&](const char* name) { return results.summary.Of(FindOutput(*program, name).value()).mean; };
  EXPECT_NEAR(mean("Resource/Clerk/Busy cost"), 30 * 7 * mean("Resource/Clerk/Busy"), 1e-9);
  EXPECT_NEAR(mean("Resource/Clerk/Idle cost"), 10 * 7 * (1 - mean("Resource/Clerk/Busy")), 1e-9);
  EXPECT_NEAR(mean("Process/Serve/Delay cost"), 30 * mean("Process/Serve/Delay time"), 1e-9);
  EXPECT_EQ(mean("Process/Serve/Wait cost"), 0);
}

TEST_F(Runs, ThatFailNameReplicationTimeModuleAndField) {
  DrawnModel model = Queue();
  model.Set("Serve", "ProcessExpression", "SQRT(-2)");
  const RunSetup setup = Setup(3, 5);
  const auto program = model.Compile(setup);
  Progress progress;
  try {
    Simulate(*program, setup, {.threads = 3}, progress);
    FAIL();
  } catch (const RunError& error) {
    EXPECT_EQ(std::string(error.what()),
              "Replication 3 at 0 h: Page-1: Process \"Serve\", Expression: square root of -2 at character 1.");
  }
}

TEST_F(Runs, CountNegativeDelaysAndSayTheirShare) {
  DrawnModel model = Queue();
  model.Set("Serve", "ProcessExpression", "NORM(1, 1)");
  const RunSetup setup = Setup(1, 3);
  const auto program = model.Compile(setup);
  Progress progress;
  const RunResults results = Simulate(*program, setup, {}, progress);
  ASSERT_EQ(results.summary.warnings().size(), 1u);
  const WarningCount& warning = results.summary.warnings().front();
  EXPECT_NEAR(static_cast<double>(warning.count) / static_cast<double>(warning.of), .1587, .05);
  EXPECT_TRUE(SentenceOf(warning, *program).ends_with(" % of the delays were negative and counted as 0."));
}

// ------------------------------------------------------------------------------------------------------ parts of a run

PartChoice Choose(const std::string& text, const std::map<std::string, std::string>& variables = {}) {
  return ChoosePart(text, [&](const char* name) -> std::optional<std::string> {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  });
}

TEST(Parts, AreGivenOrTakenFromTheLauncher) {
  const struct {
    std::string text;
    std::map<std::string, std::string> variables;
    int part, parts;
  } cases[] = {
      {"2/10", {}, 2, 10},
      {"auto", {{"OMPI_COMM_WORLD_RANK", "3"}, {"OMPI_COMM_WORLD_SIZE", "8"}}, 4, 8},
      {"auto", {{"PMI_RANK", "0"}, {"PMI_SIZE", "2"}, {"SLURM_PROCID", "0"}, {"SLURM_NTASKS", "1"}}, 1, 2},
      {"auto",
       {{"SLURM_ARRAY_TASK_ID", "9"},
        {"SLURM_ARRAY_TASK_MIN", "5"},
        {"SLURM_ARRAY_TASK_STEP", "2"},
        {"SLURM_ARRAY_TASK_COUNT", "4"}},
       3,
       4},
      {"auto/5", {{"JOB_COMPLETION_INDEX", "4"}}, 5, 5},
  };
  for (const auto& [text, variables, part, parts] : cases) {
    const PartChoice choice = Choose(text, variables);
    EXPECT_EQ(choice.part, part) << text;
    EXPECT_EQ(choice.parts, parts) << text;
  }
}

TEST(Parts, ThatCannotBeToldAreRefused) {
  EXPECT_THROW(Choose("auto"), std::runtime_error);
  EXPECT_THROW(Choose("auto", {{"JOB_COMPLETION_INDEX", "4"}}), std::runtime_error);
  EXPECT_THROW(Choose("auto", {{"PMI_RANK", "0"}, {"PMI_SIZE", "2"}, {"SLURM_PROCID", "0"}, {"SLURM_NTASKS", "3"}}),
               std::runtime_error);
  for (const char* text : {"0/3", "4/3", "x", "1/", "/2", ""}) EXPECT_THROW(Choose(text), std::runtime_error) << text;
}

TEST(Parts, CoverAllReplicationsOnce) {
  int next = 11;
  for (int part = 1; part <= 7; ++part) {
    const ReplicationRange range = RangeOfPart({part, 7, ""}, {11, 33});
    EXPECT_EQ(range.first, next);
    EXPECT_GE(range.last - range.first + 1, 3);
    next = range.last + 1;
  }
  EXPECT_EQ(next, 34);
}

}  // namespace
}  // namespace vardo
