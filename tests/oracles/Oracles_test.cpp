// Models whose long-run values are known exactly, from the theory of queues.
#include "Fingerprint.h"
#include "QueueModels.h"
#include "TestPlatform.h"
#include "base/Numbers.h"
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

using namespace test;

struct Expected {
  std::string output;
  double exact;
  std::string over = {};  // by the value of that output
};

struct Oracle {
  const char* name;
  DrawnModel model;
  int customers;  // of a replication, behind a warm-up of a tenth; as many as the half-widths ask for
  double each;    // seconds between them
  std::vector<Expected> expected;
  TimeUnit unit = TimeUnit::Minutes;
};

std::vector<Expected> QueueValues(double utilisation, double length, double wait, double total, double inSystem) {
  return {{"Resource/R/Utilisation", utilisation},
          {"Queue/Serve.Queue/Length", length},
          {"Queue/Serve.Queue/Waiting time", wait},
          {"Entity/Entity 1/Total time", total},
          {"Entity/Entity 1/In system", inSystem}};
}

// ------------------------------------------------------------------------------------------------------ one queue

std::vector<Oracle> SingleQueues() {
  std::vector<Oracle> oracles;
  oracles.push_back(
      {"1: one server, load .75", OneQueue("1/0.75", Served("EXPO(1)")), 50000, 60 / .75, QueueValues(.75, 2.25, 3, 4, 3)});
  oracles.push_back(
      {"2: one server, load .9", OneQueue("1/0.9", Served("EXPO(1)")), 200000, 60 / .9, QueueValues(.9, 8.1, 9, 10, 9)});
  oracles.push_back({"3: one server, load .625",
                     OneQueue(".2", Served("EXPO(.125)")),
                     30000,
                     12,
                     {{"Resource/R/Utilisation", .625},
                      {"Queue/Serve.Queue/Waiting time", .2083333333},
                      {"Queue/Serve.Queue/Length", 1.0416666667}}});
  oracles.push_back({"4: three units of time",
                     OneQueue("1", Served("EXPO(60/190)"), "1",
                              {{"CreateType", "Expression"}, {"CreateExpression", "EXPO(30)"}, {"CreateUnits", "Seconds"}}),
                     30000,
                     30,
                     {{"Entity/Entity 1/Total time", 1. / 70}, {"Queue/Serve.Queue/Length", 1.0827067669}},
                     TimeUnit::Hours});
  std::vector<Expected> two = QueueValues(.75, 1.9285714286, 1.2857142857, 2.2857142857, 3.4285714286);
  two.push_back({"Queue/Serve.Queue/Waited", .6428571429, "Process/Serve/In"});
  oracles.push_back({"5: two servers", OneQueue("1/1.5", Served("EXPO(1)"), "2"), 50000, 40, two});
  oracles.push_back({"6: three servers",
                     OneQueue("5", Served("EXPO(10)"), "3"),
                     40000,
                     300,
                     {{"Queue/Serve.Queue/Length", .8888888889},
                      {"Queue/Serve.Queue/Waiting time", 4.4444444444},
                      {"Entity/Entity 1/Total time", 14.4444444444},
                      {"Queue/Serve.Queue/Waited", 4. / 9, "Process/Serve/In"}}});
  oracles.push_back({"15: three at a time", OneQueue("5", Served("EXPO(1)"), "1", {{"CreateBatchSize", "3"}}), 30000, 100,
                     QueueValues(.6, 2.4, 4, 5, 3)});
  return oracles;
}

// Poisson arrivals, one server, service times of any kind: length and wait follow from the first two moments.
Oracle OfService(const char* name, const Properties& served, double rate, double mean, double secondMoment,
                 int customers = 40000) {
  const double load = rate * mean;
  const double wait = rate * secondMoment / (2 * (1 - load));
  return {name, OneQueue(NumberText(1 / rate), served), customers, 60 / rate,
          QueueValues(load, rate * wait, wait, wait + mean, rate * (wait + mean))};
}

std::vector<Oracle> KindsOfService() {
  const Properties triangular =
      Served("1", "R", {{"ProcessDelayType", "Triangular"}, {"ProcessMin", ".5"}, {"ProcessValue", "1"}, {"ProcessMax", "1.5"}});
  return {OfService("9: constant service", Served("1"), .8, 1, 1),
          OfService("10: uniform service", Served("UNIF(.5, 1.5)"), .8, 1, 13. / 12),
          OfService("11: triangular service", triangular, .8, 1, 25. / 24),
          OfService("12: Erlang service", Served("ERLA(.5, 2)"), .8, 1, 1.5),
          OfService("gamma service", Served("GAMM(.4, 2.5)"), .8, 1, 1.4, 60000),
          OfService("Weibull service", Served("WEIB(1, 2)"), .8, .88622692545, 1),
          OfService("lognormal service", Served("LOGN(1, .5)"), .8, 1, 1.25),
          OfService("beta service", Served("BETA(2, 3)"), 2, .4, .2),
          OfService("discrete service", Served("DISC(.25, .5, .75, 1, 1, 1.5)"), .8, 1, 1.125),
          OfService("piecewise linear service", Served("CONT(.1, .5, .5, 1, 1, 1.5)"), .8, .975, 1.05)};
}

// ------------------------------------------------------------------------------------------------------ who finds it full goes

Oracle ThreePlaces() {
  DrawnModel model;
  model.Add("Create", "Come", Arrivals("1/3")).Add("Decide", "Room?", Condition("Inside(Serve) < 3"));
  model.Add("Process", "Serve", Served("EXPO(.25)")).Add("Dispose", "Go").Add("Resource", "R", Capacity("2"));
  model.Add("Record", "Taken", Noted("0", "Refusals")).Add("Record", "Refused", Noted("1", "Refusals"));
  model.Add("Record", "In time", SinceCreation());
  model.Chain({"Come", "Room?", "Taken", "Serve", "In time", "Go"}).ConnectSecond("Room?", "Refused").Connect("Refused", "Go");
  return {"7: three places",
          model,
          30000,
          20,
          {{"Tally/Refusals/Value", .04936015},
           {"Process/Serve/Inside", .7623400},
           {"Tally/In time/Value", .2673077},
           {"Resource/R/Busy", .7129799}}};
}

Oracle NoPlaceToWait() {
  DrawnModel model;
  model.Add("Create", "Come", Arrivals("1/1.5")).Add("Decide", "Free?", Condition("Busy(R) < 2"));
  model.Add("Process", "Serve", Served("EXPO(1)")).Add("Dispose", "Go").Add("Resource", "R", Capacity("2"));
  model.Add("Record", "Taken", Noted("0", "Refusals")).Add("Record", "Refused", Noted("1", "Refusals"));
  model.Chain({"Come", "Free?", "Taken", "Serve", "Go"}).ConnectSecond("Free?", "Refused").Connect("Refused", "Go");
  return {"8: who finds both busy goes",
          model,
          20000,
          40,
          {{"Tally/Refusals/Value", .3103448}, {"Resource/R/Busy", 1.0344828}, {"Queue/Serve.Queue/Waiting time", 0}}};
}

// ------------------------------------------------------------------------------------------------------ several queues

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

Oracle InARow() {
  return {"13: two in a row",
          TwoInARow(false),
          30000,
          120,
          {{"Process/First/Inside", 1}, {"Process/Second/Inside", 1.6666667}, {"Entity/Entity 1/Total time", 5.3333333}}};
}

Oracle ComingAgain() {
  DrawnModel model = OneQueue("2", Served("EXPO(1)"));
  model.Add("Decide", "Again?", {{"DecidePercentTrue", "20"}});
  model.Reconnect("Serve", "Again?").Connect("Again?", "Serve").ConnectSecond("Again?", "Go");
  return {"14: one in five comes again",
          model,
          20000,
          120,
          {{"Resource/R/Utilisation", .625},
           {"Entity/Entity 1/In system", 1.6666667},
           {"Entity/Entity 1/Total time", 3.3333333},
           {"Process/Serve/In", 1.25, "Entity/Entity 1/In"}}};
}

// The arrivals at the queue are Erlang ones.
Oracle Pairs() {
  DrawnModel model = OneQueue("1", Served("EXPO(1)"));
  model.Add("Batch", "Pair").Reconnect("Come", "Pair").Connect("Pair", "Serve");
  return {"16: pairs",
          model,
          40000,
          60,
          {{"Queue/Serve.Queue/Waiting time", .6180340}, {"Queue/Pair.Queue/Waiting time", .5}, {"Resource/R/Utilisation", .5}}};
}

Oracle BothHalves() {
  DrawnModel model;
  model.Add("Create", "Come", Arrivals("2")).Add("Separate", "Part", {{"SeparateNumberofDuplicates", "1"}});
  model.Add("Process", "One", Served("EXPO(1)", "R")).Add("Process", "Other", Served("EXPO(1)", "S"));
  model.Add("Resource", "R", Capacity("1")).Add("Resource", "S", Capacity("1"));
  model.Add("Batch", "Join",
            {{"BatchRule", "By Attribute"}, {"BatchAttributeName", "Entity.SerialNumber"}, {"BatchSaveCriterion", "First"}});
  model.Add("Record", "Time", SinceCreation()).Add("Dispose", "Go");
  model.Chain({"Come", "Part", "One", "Join", "Time", "Go"}).ConnectSecond("Part", "Other").Connect("Other", "Join");
  return {"17: both halves", model, 20000, 120, {{"Tally/Time/Value", 2.875}}};
}

std::vector<Oracle> Priorities() {
  DrawnModel two;
  two.Add("Create", "High", Arrivals("1/.3")).Add("Create", "Low", Arrivals("2.5")).Add("Resource", "R", Capacity("1"));
  two.Add("Process", "Q1", Served("EXPO(1)", "R", {{"ProcessPriority", "1"}}))
      .Add("Process", "Q2", Served("EXPO(1)", "R", {{"ProcessPriority", "3"}}));
  two.Add("Dispose", "Go").Chain({"High", "Q1", "Go"}).Chain({"Low", "Q2", "Go"});
  DrawnModel one;
  one.Add("Create", "High", Arrivals("1/.3", {{"CreateEntityType", "Urgent"}}))
      .Add("Create", "Low", Arrivals("2.5", {{"CreateEntityType", "Other"}}));
  one.Add("Process", "Serve", Served("EXPO(1)", "R", {{"ProcessPriority", "Entity.Type"}}))
      .Add("Dispose", "Go")
      .Add("Resource", "R", Capacity("1"));
  one.Chain({"High", "Serve", "Go"}).Connect("Low", "Serve");
  return {{"18: two Processes of unlike priority",
           two,
           40000,
           86,
           {{"Queue/Q1.Queue/Waiting time", 1}, {"Queue/Q2.Queue/Waiting time", 3.3333333}}},
          {"18: two types of unlike priority",
           one,
           40000,
           86,
           {{"Entity/Urgent/Wait time", 1}, {"Entity/Other/Wait time", 3.3333333}}}};
}

// ------------------------------------------------------------------------------------------------------ closed networks

Oracle GoingRound() {
  DrawnModel model;
  model.Add("Create", "Begin", {{"CreateType", "Constant"}, {"CreateBatchSize", "3"}, {"CreateMaxBatches", "1"}});
  model.Add("Process", "Think", Delayed("EXPO(5)")).Add("Process", "Serve", Served("EXPO(1)"));
  model.Add("Resource", "R", Capacity("1")).Chain({"Begin", "Think", "Serve"}).Connect("Serve", "Think");
  return {"19: three that go round",
          model,
          20000,
          120,
          {{"Resource/R/Utilisation", .4703390}, {"Process/Think/Inside", 3 * .7838983}}};
}

// A station of a closed network: how much of its work a round asks for, and whether there is a queue.
struct Station {
  const char* name;
  double demand;
  bool hasQueue;
};
struct NetworkValues {
  double throughput = 0;
  std::vector<double> inside;  // by station
};

// Exact mean value analysis, customer by customer.
NetworkValues MeanValues(const std::vector<Station>& stations, int customers) {
  NetworkValues values{0, std::vector<double>(stations.size(), 0)};
  for (int n = 1; n <= customers; ++n) {
    std::vector<double> times;
    double round = 0;
    for (size_t i = 0; i < stations.size(); ++i) {
      times.push_back(stations[i].demand * (stations[i].hasQueue ? 1 + values.inside[i] : 1));
      round += times.back();
    }
    values.throughput = n / round;
    for (size_t i = 0; i < stations.size(); ++i) values.inside[i] = values.throughput * times[i];
  }
  return values;
}

// Two in five of those that leave the first server go round; the others pass through the second one, and of these one in four
// once more.
Oracle ClosedNetwork() {
  DrawnModel model;
  model.Add("Create", "Begin", {{"CreateType", "Constant"}, {"CreateBatchSize", "6"}, {"CreateMaxBatches", "1"}});
  model.Add("Process", "Think", Delayed("EXPO(8)")).Add("Process", "First", Served("EXPO(1)", "R"));
  model.Add("Decide", "Done?", {{"DecidePercentTrue", "40"}}).Add("Process", "Second", Served("EXPO(1.5)", "S"));
  model.Add("Decide", "Again?", {{"DecidePercentTrue", "25"}});
  model.Add("Resource", "R", Capacity("1")).Add("Resource", "S", Capacity("1"));
  model.Chain({"Begin", "Think", "First", "Done?", "Think"}).ConnectSecond("Done?", "Second").Connect("Second", "Again?");
  model.Connect("Again?", "Second").ConnectSecond("Again?", "Think");
  const std::vector<Station> stations = {{"Think", 8, false}, {"First", 1, true}, {"Second", .6 / .75 * 1.5, true}};
  const NetworkValues values = MeanValues(stations, 6);
  std::vector<Expected> expected;
  for (size_t i = 0; i < stations.size(); ++i)
    expected.push_back({std::string("Process/") + stations[i].name + "/Inside", values.inside[i]});
  expected.push_back({"Resource/R/Utilisation", values.throughput * stations[1].demand});
  expected.push_back({"Resource/S/Utilisation", values.throughput * stations[2].demand});
  return {"a closed network, by its mean values", model, 15000, 120, expected};
}

// ------------------------------------------------------------------------------------------------------ schedules

// Thirty an hour for one hour, ninety for half an hour, again and again: what comes in each part is as much as its rate says.
Oracle TwoRates() {
  DrawnModel model;
  model.Add("Schedule", "Rates",
            {{"ScheduleType", "Arrival"},
             {"Schedule_DCount", "2"},
             {"Schedule_DurationsValue", "15;45"},
             {"Schedule_DurationsDuration", "1;.5"},
             {"ScheduleScaleFactor", "2"}});
  model.Add("Create", "Come", {{"CreateType", "Schedule"}, {"CreateScheduleName", "Rates"}}).Add("Dispose", "Go");
  model.Add("Decide", "Slow?", Condition("MOD(Now(), 90) < 60")).Add("Record", "Slow").Add("Record", "Fast");
  model.Chain({"Come", "Slow?", "Slow", "Go"}).ConnectSecond("Slow?", "Fast").Connect("Fast", "Go");
  // 15 000 customers are 200 rounds of 75, and the warm-up lasts 20 of these.
  return {"two rates by turns", model, 15000, 72, {{"Counter/Slow/Count", 6000}, {"Counter/Fast/Count", 9000}}};
}

// A machine is up for 20 minutes on the average and down for 5, busy or not; work that was stopped goes on. The numbers inside
// follow from the balance equations of (number, up or down).
Oracle Breakdowns() {
  DrawnModel model = OneQueue("2", Served("EXPO(1)"));
  model.Add("Schedule", "Machine",
            {{"Schedule_DCount", "2"},
             {"Schedule_DurationsValue", "1;0"},
             {"Schedule_DurationsDuration", "EXPO(20);EXPO(5)"},
             {"ScheduleTimeUnits", "Minutes"}});
  model.Set("R", "ResourceType", "Schedule")
      .Set("R", "ResourceScheduleName", "Machine")
      .Set("R", "ResourceScheduleRule", "Preempt");
  const double up = 20, down = 5, rate = .5, service = 1;
  const double load = rate * service * (1 + down / up);
  const double available = up / (up + down);
  const double inside = (load + rate * rate * service * down * down / up) / (1 - load) + rate * available * down * down / up;
  return {"a machine that breaks down",
          model,
          60000,
          120,
          {{"Resource/R/Utilisation", load},
           {"Resource/R/Scheduled", available},
           {"Resource/R/Busy", rate * service},
           {"Process/Serve/Delay time", service},
           {"Process/Serve/Inside", inside},
           {"Process/Serve/Total time", inside / rate}}};
}

// ------------------------------------------------------------------------------------------------------ all of them

std::vector<Oracle> Oracles() {
  std::vector<Oracle> oracles = SingleQueues();
  for (Oracle& oracle : KindsOfService()) oracles.push_back(std::move(oracle));
  for (const auto make :
       {ThreePlaces, NoPlaceToWait, InARow, ComingAgain, Pairs, BothHalves, GoingRound, ClosedNetwork, TwoRates, Breakdowns})
    oracles.push_back(make());
  for (Oracle& oracle : Priorities()) oracles.push_back(std::move(oracle));
  return oracles;
}

constexpr int kReplications = 30;
constexpr double kFamilyLevel = 0.01;    // of all values together
constexpr double kMostHalfWidth = 0.02;  // of the exact value

RunSetup SetupOf(const Oracle& oracle) {
  RunSetup setup;
  setup.lastReplication = test::kIsShortened ? 3 : kReplications;
  setup.timeUnit = oracle.unit;
  const double customers = test::Fewer(oracle.customers);
  setup.warmUp = customers * oracle.each / 10;
  setup.length = setup.warmUp + customers * oracle.each;
  return setup;
}

// An output, or the quotient of two of them, replication by replication.
OutputSummary EstimateOf(const Expected& expected, const Program& program, const RunResults& results) {
  const size_t output = FindOutput(program, expected.output).value();
  if (expected.over.empty()) return results.summary.Of(output);
  const std::vector<double>& of = results.summary.ValuesOf(output);
  const std::vector<double>& over = results.summary.ValuesOf(FindOutput(program, expected.over).value());
  Moments moments;
  for (size_t i = 0; i < of.size(); ++i) moments.Add(of[i] / over[i]);
  const double n = static_cast<double>(moments.n);
  OutputSummary summary;
  summary.mean = moments.mean;
  summary.halfWidth = InverseStudent(.975, static_cast<long>(moments.n) - 1) * std::sqrt(moments.squares / (n * (n - 1)));
  return summary;
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
    for (const Expected& expected : oracle.expected) {
      const OutputSummary estimate = EstimateOf(expected, *program, results);
      if (test::kIsShortened) continue;
      std::printf("%-37s %-32s exact %-12.8g estimate %-12.8g half-width %.2g\n", oracle.name, expected.output.c_str(),
                  expected.exact, estimate.mean, estimate.halfWidth);
      EXPECT_LE(std::fabs(estimate.mean - expected.exact), t / t95 * estimate.halfWidth)
          << oracle.name << ", " << expected.output;
      EXPECT_LE(estimate.halfWidth, kMostHalfWidth * expected.exact) << oracle.name << ", " << expected.output;
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
