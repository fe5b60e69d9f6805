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

std::vector<Oracle> Oracles() {
  std::vector<Oracle> oracles;
  oracles.push_back(
      {"1: one server, load .75", OneQueue("1/0.75", Served("EXPO(1)")), 50000, 60 / .75, QueueValues(.75, 2.25, 3, 4, 3)});
  oracles.push_back(
      {"2: one server, load .9", OneQueue("1/0.9", Served("EXPO(1)")), 300000, 60 / .9, QueueValues(.9, 8.1, 9, 10, 9)});
  oracles.push_back({"3: one server, load .625",
                     OneQueue(".2", Served("EXPO(.125)")),
                     150000,
                     12,
                     {{"Resource/R/Utilisation", .625},
                      {"Queue/Serve.Queue/Waiting time", .2083333333},
                      {"Queue/Serve.Queue/Length", 1.0416666667}}});
  oracles.push_back({"4: three units of time",
                     OneQueue("1", Served("EXPO(60/190)"), "1",
                              {{"CreateType", "Expression"}, {"CreateExpression", "EXPO(30)"}, {"CreateUnits", "Seconds"}}),
                     150000,
                     30,
                     {{"Entity/Entity 1/Total time", 1. / 70}, {"Queue/Serve.Queue/Length", 1.0827067669}},
                     TimeUnit::Hours});
  oracles.push_back({"5: two servers", OneQueue("1/1.5", Served("EXPO(1)"), "2"), 50000, 40,
                     QueueValues(.75, 1.9285714286, 1.2857142857, 2.2857142857, 3.4285714286)});
  oracles.push_back({"6: three servers",
                     OneQueue("5", Served("EXPO(10)"), "3"),
                     150000,
                     300,
                     {{"Queue/Serve.Queue/Length", .8888888889},
                      {"Queue/Serve.Queue/Waiting time", 4.4444444444},
                      {"Entity/Entity 1/Total time", 14.4444444444}}});
  oracles.push_back({"9: constant service", OneQueue("1.25", Served("1")), 50000, 75, QueueValues(.8, 1.6, 2, 3, 2.4)});
  oracles.push_back({"10: uniform service",
                     OneQueue("1.25", Served("UNIF(.5, 1.5)")),
                     150000,
                     75,
                     {{"Queue/Serve.Queue/Length", 1.7333333333}, {"Queue/Serve.Queue/Waiting time", 2.1666666667}}});
  oracles.push_back(
      {"11: triangular service",
       OneQueue("1.25",
                Served("1", "R",
                       {{"ProcessDelayType", "Triangular"}, {"ProcessMin", ".5"}, {"ProcessValue", "1"}, {"ProcessMax", "1.5"}})),
       150000,
       75,
       {{"Queue/Serve.Queue/Length", 1.6666666667}, {"Queue/Serve.Queue/Waiting time", 2.0833333333}}});
  oracles.push_back({"12: Erlang service",
                     OneQueue("1.25", Served("ERLA(.5, 2)")),
                     150000,
                     75,
                     {{"Queue/Serve.Queue/Length", 2.4}, {"Queue/Serve.Queue/Waiting time", 3}}});
  oracles.push_back({"15: three at a time", OneQueue("5", Served("EXPO(1)"), "1", {{"CreateBatchSize", "3"}}), 50000, 100,
                     QueueValues(.6, 2.4, 4, 5, 3)});
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

}  // namespace
}  // namespace vardo
