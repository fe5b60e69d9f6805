// Models whose long-run values are known exactly, from the theory of queues.
#include "DrawnModel.h"
#include "Fingerprint.h"
#include "TestPlatform.h"
#include "simulate/Elementary.h"
#include "simulate/Runner.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace vardo {
namespace {

using test::DrawnModel;
using test::Properties;

struct Expected {
  std::string output;
  double exact;
  double allowed = 0.02;  // the half-width at most, as a share of the exact value; of 0, in itself
};

struct Oracle {
  const char* name;
  DrawnModel model;
  double customers;  // of a replication, behind the first sixteenth
  double each;       // seconds between them
  std::vector<Expected> expected;
  TimeUnit unit = TimeUnit::Minutes;
};

Properties With(Properties properties, const Properties& more) {
  properties.insert(properties.end(), more.begin(), more.end());
  return properties;
}

Properties Arrivals(const std::string& mean, const Properties& more = {}) {
  return With({{"CreateType", "Random"}, {"CreateValue", mean}, {"CreateUnits", "Minutes"}}, more);
}
Properties Delayed(const std::string& expression, const Properties& more = {}) {
  return With({{"ProcessDelayType", "Expression"}, {"ProcessExpression", expression}, {"ProcessUnits", "Minutes"}}, more);
}
Properties Served(const std::string& expression, const std::string& resource = "R", const Properties& more = {}) {
  return With(Delayed(expression, {{"ProcessAction", "SDR"}, {"Process_RCount", "1"}, {"Process_RResourceName", resource}}),
              more);
}
Properties Capacity(const std::string& units) { return {{"ResourceCapacity", units}}; }

DrawnModel OneQueue(const std::string& between, const Properties& served, const std::string& capacity = "1",
                    const Properties& arrivals = {}) {
  DrawnModel model;
  model.Add("Create", "Come", Arrivals(between, arrivals)).Add("Process", "Serve", served).Add("Dispose", "Go");
  model.Add("Resource", "R", Capacity(capacity)).Chain({"Come", "Serve", "Go"});
  return model;
}

std::vector<Expected> QueueValues(double utilisation, double length, double wait, double total, double inSystem) {
  return {{"Resource/R/Utilisation", utilisation},
          {"Queue/Serve.Queue/Length", length},
          {"Queue/Serve.Queue/Waiting time", wait},
          {"Entity/Entity 1/Total time", total},
          {"Entity/Entity 1/In system", inSystem}};
}

// Two queues in a row; the second on a page of its own, or beside the first. All draws are of streams with numbers.
DrawnModel TwoInARow(bool isFlat) {
  DrawnModel model;
  const int page = isFlat ? 0 : model.AddPage("Second", "Page-1");
  model.Add("Create", "Come", {{"CreateType", "Expression"}, {"CreateExpression", "EXPO(2, 1)"}, {"CreateUnits", "Minutes"}});
  model.Add("Process", "First", Served("EXPO(1, 2)"));
  if (isFlat)
    model.Add("Process", "Second", Served("EXPO(1.25, 3)", "S"));
  else
    model.Add("Process", "Second", {{"ProcessType", "Submodel"}, {"VardoSubPage", "Second"}});
  model.Add("Dispose", "Go").Add("Resource", "R", Capacity("1")).Add("Resource", "S", Capacity("1"));
  model.Chain({"Come", "First", "Second", "Go"});
  if (isFlat) return model;
  model.GoTo(page);
  model.Add("Process", "Inner", Served("EXPO(1.25, 3)", "S"));
  return model;
}

std::vector<Oracle> Oracles() {
  std::vector<Oracle> oracles;
  oracles.push_back(
      {"1: one server, load .75", OneQueue("1/0.75", Served("EXPO(1)")), 50000, 60 / .75, QueueValues(.75, 2.25, 3, 4, 3)});
  oracles.push_back(
      {"2: one server, load .9", OneQueue("1/0.9", Served("EXPO(1)")), 300000, 60 / .9, QueueValues(.9, 8.1, 9, 10, 9)});
  oracles.push_back({"3: one server, load .625",
                     OneQueue(".2", Served("EXPO(.125)")),
                     50000,
                     12,
                     {{"Resource/R/Utilisation", .625},
                      {"Queue/Serve.Queue/Waiting time", .2083333333},
                      {"Queue/Serve.Queue/Length", 1.0416666667}}});
  oracles.push_back({"4: three units of time",
                     OneQueue("1", Served("EXPO(60/190)"), "1",
                              {{"CreateType", "Expression"}, {"CreateExpression", "EXPO(30)"}, {"CreateUnits", "Seconds"}}),
                     50000,
                     30,
                     {{"Entity/Entity 1/Total time", 1. / 70}, {"Queue/Serve.Queue/Length", 1.0827067669}},
                     TimeUnit::Hours});
  oracles.push_back({"5: two servers", OneQueue("1/1.5", Served("EXPO(1)"), "2"), 50000, 40,
                     QueueValues(.75, 1.9285714286, 1.2857142857, 2.2857142857, 3.4285714286)});
  oracles.push_back({"6: three servers",
                     OneQueue("5", Served("EXPO(10)"), "3"),
                     50000,
                     300,
                     {{"Queue/Serve.Queue/Length", .8888888889},
                      {"Queue/Serve.Queue/Waiting time", 4.4444444444},
                      {"Entity/Entity 1/Total time", 14.4444444444}}});
  oracles.push_back({"9: constant service", OneQueue("1.25", Served("1")), 50000, 75, QueueValues(.8, 1.6, 2, 3, 2.4)});
  oracles.push_back({"10: uniform service",
                     OneQueue("1.25", Served("UNIF(.5, 1.5)")),
                     50000,
                     75,
                     {{"Queue/Serve.Queue/Length", 1.7333333333}, {"Queue/Serve.Queue/Waiting time", 2.1666666667}}});
  oracles.push_back(
      {"11: triangular service",
       OneQueue("1.25",
                Served("1", "R",
                       {{"ProcessDelayType", "Triangular"}, {"ProcessMin", ".5"}, {"ProcessValue", "1"}, {"ProcessMax", "1.5"}})),
       50000,
       75,
       {{"Queue/Serve.Queue/Length", 1.6666666667}, {"Queue/Serve.Queue/Waiting time", 2.0833333333}}});
  oracles.push_back({"12: Erlang service",
                     OneQueue("1.25", Served("ERLA(.5, 2)")),
                     50000,
                     75,
                     {{"Queue/Serve.Queue/Length", 2.4}, {"Queue/Serve.Queue/Waiting time", 3}}});
  oracles.push_back({"15: three at a time", OneQueue("5", Served("EXPO(1)"), "1", {{"CreateBatchSize", "3"}}), 50000, 100,
                     QueueValues(.6, 2.4, 4, 5, 3)});
  // Who finds three inside goes away.
  DrawnModel few;
  few.Add("Create", "Come", Arrivals("1/3"))
      .Add("Decide", "Room?", {{"DecideType", "If"}, {"DecideIf", "Expression"}, {"DecideValue", "Inside(Serve) < 3"}});
  few.Add("Process", "Serve", Served("EXPO(.25)"))
      .Add("Record", "Refused")
      .Add("Dispose", "Go")
      .Add("Resource", "R", Capacity("2"));
  few.Add("Record", "Share", {{"RecordType", "Expression"}, {"RecordValue", "0"}})
      .Add("Record", "One", {{"RecordType", "Expression"}});
  few.Add("Record", "In time", {{"RecordType", "Interval"}, {"RecordAttributeName", "Entity.CreateTime"}});
  for (const char* record : {"Share", "One"}) few.Set(record, "RecordTallyName", "Refusals");
  few.Chain({"Come", "Room?", "Share", "Serve", "In time", "Go"}).ConnectSecond("Room?", "One").Chain({"One", "Refused", "Go"});
  oracles.push_back({"7: three places",
                     few,
                     100000,
                     20,
                     {{"Tally/Refusals/Value", .04936015},
                      {"Process/Serve/Inside", .7623400},
                      {"Tally/In time/Value", .2673077},
                      {"Resource/R/Busy", .7129799}}});
  DrawnModel loss;
  loss.Add("Create", "Come", Arrivals("1/1.5"))
      .Add("Decide", "Free?", {{"DecideType", "If"}, {"DecideIf", "Expression"}, {"DecideValue", "Busy(R) < 2"}});
  loss.Add("Process", "Serve", Served("EXPO(1)")).Add("Dispose", "Go").Add("Resource", "R", Capacity("2"));
  loss.Add("Record", "Taken", {{"RecordType", "Expression"}, {"RecordValue", "0"}, {"RecordTallyName", "Refusals"}});
  loss.Add("Record", "Refused", {{"RecordType", "Expression"}, {"RecordValue", "1"}, {"RecordTallyName", "Refusals"}});
  loss.Chain({"Come", "Free?", "Taken", "Serve", "Go"}).ConnectSecond("Free?", "Refused").Connect("Refused", "Go");
  oracles.push_back(
      {"8: who finds both busy goes",
       loss,
       50000,
       40,
       {{"Tally/Refusals/Value", .3103448}, {"Resource/R/Busy", 1.0344828}, {"Queue/Serve.Queue/Waiting time", 0, 0}}});
  oracles.push_back(
      {"13: two in a row",
       TwoInARow(false),
       50000,
       120,
       {{"Process/First/Inside", 1}, {"Process/Second/Inside", 1.6666667}, {"Entity/Entity 1/Total time", 5.3333333}}});
  DrawnModel again = OneQueue("2", Served("EXPO(1)"));
  again.Add("Decide", "Again?", {{"DecidePercentTrue", "20"}});
  again.Reconnect("Serve", "Again?").Connect("Again?", "Serve").ConnectSecond("Again?", "Go");
  oracles.push_back(
      {"14: one in five comes again",
       again,
       50000,
       120,
       {{"Resource/R/Utilisation", .625}, {"Entity/Entity 1/In system", 1.6666667}, {"Entity/Entity 1/Total time", 3.3333333}}});
  DrawnModel pairs = OneQueue("1", Served("EXPO(1)"));
  pairs.Add("Batch", "Pair").Reconnect("Come", "Pair").Connect("Pair", "Serve");
  oracles.push_back(
      {"16: pairs",
       pairs,
       80000,
       60,
       {{"Queue/Serve.Queue/Waiting time", .6180340}, {"Queue/Pair.Queue/Waiting time", .5}, {"Resource/R/Utilisation", .5}}});
  DrawnModel halves;
  halves.Add("Create", "Come", Arrivals("2")).Add("Separate", "Part", {{"SeparateNumberofDuplicates", "1"}});
  halves.Add("Process", "One", Served("EXPO(1)", "R")).Add("Process", "Other", Served("EXPO(1)", "S"));
  halves.Add("Resource", "R", Capacity("1")).Add("Resource", "S", Capacity("1"));
  halves.Add("Batch", "Join",
             {{"BatchRule", "By Attribute"}, {"BatchAttributeName", "Entity.SerialNumber"}, {"BatchSaveCriterion", "First"}});
  halves.Add("Record", "Time", {{"RecordType", "Interval"}, {"RecordAttributeName", "Entity.CreateTime"}}).Add("Dispose", "Go");
  halves.Chain({"Come", "Part", "One", "Join", "Time", "Go"}).ConnectSecond("Part", "Other").Connect("Other", "Join");
  oracles.push_back({"17: both halves", halves, 50000, 120, {{"Tally/Time/Value", 2.875}}});
  DrawnModel ranks;
  ranks.Add("Create", "High", Arrivals("1/.3", {{"CreateEntityType", "Urgent"}}))
      .Add("Create", "Low", Arrivals("2.5", {{"CreateEntityType", "Other"}}));
  ranks.Add("Process", "Q1", Served("EXPO(1)", "R", {{"ProcessPriority", "1"}}))
      .Add("Process", "Q2", Served("EXPO(1)", "R", {{"ProcessPriority", "3"}}));
  ranks.Add("Dispose", "Go").Add("Resource", "R", Capacity("1")).Chain({"High", "Q1", "Go"}).Chain({"Low", "Q2", "Go"});
  oracles.push_back({"18: two Processes of unlike priority",
                     ranks,
                     100000,
                     86,
                     {{"Queue/Q1.Queue/Waiting time", 1}, {"Queue/Q2.Queue/Waiting time", 3.3333333}}});
  DrawnModel types;
  types.Add("Create", "High", Arrivals("1/.3", {{"CreateEntityType", "Urgent"}}))
      .Add("Create", "Low", Arrivals("2.5", {{"CreateEntityType", "Other"}}));
  types.Add("Process", "Serve", Served("EXPO(1)", "R", {{"ProcessPriority", "Entity.Type"}}))
      .Add("Dispose", "Go")
      .Add("Resource", "R", Capacity("1"));
  types.Chain({"High", "Serve", "Go"}).Connect("Low", "Serve");
  oracles.push_back({"18: two types of unlike priority",
                     types,
                     100000,
                     86,
                     {{"Entity/Urgent/Wait time", 1}, {"Entity/Other/Wait time", 3.3333333}}});
  DrawnModel closed;
  closed.Add("Create", "Begin", {{"CreateType", "Constant"}, {"CreateBatchSize", "3"}, {"CreateMaxBatches", "1"}});
  closed.Add("Process", "Think", Delayed("EXPO(5)"))
      .Add("Process", "Serve", Served("EXPO(1)"))
      .Add("Resource", "R", Capacity("1"));
  closed.Chain({"Begin", "Think", "Serve"}).Connect("Serve", "Think");
  oracles.push_back({"19: three that go round",
                     closed,
                     40000,
                     180,
                     {{"Resource/R/Utilisation", .4703390}, {"Process/Think/Inside", 3 * .7838983}}});
  return oracles;
}

constexpr int kReplications = 30;
constexpr double kFamilyLevel = 0.01;

RunSetup SetupOf(const Oracle& oracle) {
  RunSetup setup;
  setup.lastReplication = test::kIsShortened ? 3 : kReplications;
  setup.timeUnit = oracle.unit;
  const double customers = test::Fewer(static_cast<int>(oracle.customers));
  setup.warmUp = customers * oracle.each / 15;
  setup.length = setup.warmUp + customers * oracle.each;
  return setup;
}

TEST(Oracles, LongRunsMeetTheExactValues) {
  const TestPlatform platform;
  const std::vector<Oracle> oracles = Oracles();
  size_t values = 0;
  for (const Oracle& oracle : oracles) values += oracle.expected.size();
  const double t = InverseStudent(1 - kFamilyLevel / (2 * static_cast<double>(values)), kReplications - 1);
  const double t95 = InverseStudent(.975, kReplications - 1);
  for (const Oracle& oracle : oracles) {
    const RunSetup setup = SetupOf(oracle);
    const auto program = oracle.model.Compile(setup);
    Progress progress;
    const RunResults results = Simulate(*program, setup, {}, progress);
    for (const auto& [name, exact, allowed] : oracle.expected) {
      const auto output = FindOutput(*program, name);
      ASSERT_TRUE(output) << oracle.name << ", " << name;
      if (test::kIsShortened) continue;
      const OutputSummary summary = results.summary.Of(*output);
      std::printf("%-28s %-36s exact %-12.8g estimate %-12.8g half-width %.2g\n", oracle.name, name.c_str(), exact, summary.mean,
                  summary.halfWidth);
      EXPECT_LE(std::fabs(summary.mean - exact), t / t95 * summary.halfWidth) << oracle.name << ", " << name;
      EXPECT_LE(summary.halfWidth, exact == 0 ? allowed : allowed * exact) << oracle.name << ", " << name;
    }
  }
}

// Drawn flat or with a page of its own, the model is the same, bit for bit.
TEST(Oracles, ASubmodelAddsNoEventAndNoDraw) {
  const TestPlatform platform;
  RunSetup setup;
  setup.lastReplication = 3;
  setup.length = 600000;
  std::vector<std::vector<double>> means;
  for (const bool isFlat : {true, false}) {
    const auto program = TwoInARow(isFlat).Compile(setup);
    Progress progress;
    const RunResults results = Simulate(*program, setup, {}, progress);
    means.emplace_back();
    for (const char* name : {"Entity/Entity 1/Total time", "Entity/Entity 1/In system", "Process/Second/Inside",
                             "Process/Second/Total time", "Resource/S/Utilisation"})
      means.back().push_back(results.summary.Of(FindOutput(*program, name).value()).mean);
    means.back().push_back(static_cast<double>(results.summary.events()));
  }
  EXPECT_EQ(means[0], means[1]);
}

}  // namespace
}  // namespace vardo
