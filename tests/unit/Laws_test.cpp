// What holds in every run, whatever the model: nothing is lost, and time and cost add up.
#include "RandomModel.h"
#include "TestPlatform.h"
#include "simulate/Replication.h"
#include "simulate/Results.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace vardo {
namespace {

using namespace test;

constexpr int kModels = 30;
constexpr double kHour = 3600;

bool AlmostEqual(double a, double b) { return std::fabs(a - b) <= 1e-9 * std::max({1.0, std::fabs(a), std::fabs(b)}); }

// Keeps its own account of a replication, from what it is told and from the state at the first thing it is told at an instant.
class Accountant : public TraceSink {
 public:
  Accountant(const Program& program, Replication& replication) : program_(program), world_(replication.world()) {
    world_.trace = this;
    timeWaited.assign(program.queues.size(), 0);
  }

  std::vector<double> timeWaited;                             // by queue of a Process, within the time of the statistics
  double initial = 0, holding = 0, leftBehind = 0, gone = 0;  // costs
  std::vector<std::string> complaints;

  void Take(const TraceRecord& record) override {
    if (record.time != last_) Pass(record);
    switch (record.does) {
      case TraceAct::Create:
        for (const double cost : program_.types[record.type].initialCosts) initial += cost;
        break;
      case TraceAct::Queue:
        if (program_.steps[record.step].op != Op::Batch) joined_[record.entity] = record.time;
        break;
      case TraceAct::Seize:
        EndWait(record);
        break;
      case TraceAct::Dispose:
        Leave(RowOf(record.entity));
        break;
      case TraceAct::WarmUp:
        since_ = record.time;
        std::fill(timeWaited.begin(), timeWaited.end(), 0);
        break;
      default:
        break;
    }
    CheckCapacities();
  }

  // At the end, when those who are there cost what they have cost so far.
  void Finish() {
    for (const auto& [entity, time] : joined_) AddWait(QueueOf(world_.entities[RowOf(entity)].step), time);
    ForEachTop([&](std::uint32_t row) {
      CheckTimes(row);
      gone += CostOf(row) + (world_.now - world_.entities[row].since) / kHour * world_.CostRateOf(row);
    });
  }

 private:
  // Time has passed in the state that there is, but for who is just being created.
  void Pass(const TraceRecord& record) {
    const double hours = (record.time - last_) / kHour;
    last_ = record.time;
    const std::uint32_t rate = program_.ColumnOf(EntityAttribute::HoldCostRate);
    ForEachTop([&](std::uint32_t row) {
      const bool isNew = record.does == TraceAct::Create && world_.entities[row].number == record.entity;
      if (!isNew) holding += hours * world_.entities.Get(row, rate);
    });
    for (std::uint32_t i = 0; i < world_.entities.heldRows(); ++i)
      if (const Held& held = world_.entities.HeldAt(i); held.units != 0 && held.owner == kNone)
        leftBehind += hours * held.units * program_.resources[held.resource].busyCostRate;
  }

  template <class Visit>
  void ForEachTop(const Visit& visit) {
    for (auto row = static_cast<std::uint32_t>(program_.actors.size()); row < world_.entities.rows(); ++row)
      if (world_.entities[row].number != 0 && world_.entities[row].owner == kNone) visit(row);
  }
  std::uint32_t RowOf(std::uint64_t number) {
    for (std::uint32_t row = 0; row < world_.entities.rows(); ++row)
      if (world_.entities[row].number == number) return row;
    throw std::logic_error("nobody has that number");
  }
  // Who waits for a resource, or has just got it, stands in front of the delay.
  std::uint32_t QueueOf(std::uint32_t step) const { return program_.seizes[program_.steps[step - 1].table].queue; }

  void EndWait(const TraceRecord& record) {
    const auto joined = joined_.find(record.entity);
    if (joined == joined_.end()) return;
    AddWait(QueueOf(record.step), joined->second);
    joined_.erase(joined);
  }
  void AddWait(std::uint32_t queue, double joined) { timeWaited[queue] += world_.now - std::max(joined, since_); }

  double CostOf(std::uint32_t row) {
    double cost = 0;
    for (size_t i = 0; i < kCategories; ++i) cost += world_.entities.Get(row, program_.costColumn(static_cast<Allocation>(i)));
    for (std::uint32_t member = world_.entities[row].members; member != kNone; member = world_.entities[member].next)
      cost += CostOf(member);
    return cost;
  }
  // A batch's time is not its members' before it is split.
  void CheckTimes(std::uint32_t row) {
    double times = 0;
    for (size_t i = 0; i < kCategories; ++i) times += world_.entities.Get(row, program_.timeColumn(static_cast<Allocation>(i)));
    const Entity& entity = world_.entities[row];
    if (!AlmostEqual(times, entity.since - entity.created)) complaints.push_back("the times do not add up");
  }
  void Leave(std::uint32_t row) {
    if (world_.entities[row].since != world_.now) complaints.push_back("time is not accounted for");
    CheckTimes(row);
    gone += CostOf(row);
  }
  void CheckCapacities() {
    for (const ResourceTable& resource : program_.resources)
      if (resource.rule != ScheduleRule::Ignore && world_.levels[resource.busy].value > world_.levels[resource.scheduled].value)
        complaints.push_back("more units of " + resource.name + " are busy than there are");
  }

  const Program& program_;
  World& world_;
  double last_ = 0, since_ = 0;
  std::map<std::uint64_t, double> joined_;
};

struct Followed {
  std::shared_ptr<const Program> program;
  Replication replication;
  Accountant accountant;

  Followed(std::uint64_t number, double hours, double warmUp)
      : program(Compiled(number)), replication(*program), accountant(*program, replication) {
    if (warmUp > 0)
      replication.milestones.push_back({warmUp * kHour, [this] {
                                          replication.world().RestartStatistics();
                                          replication.world().Trace(TraceAct::WarmUp, kNone);
                                        }});
    replication.Run({.seed = number}, {.length = hours * kHour}, [](std::uint64_t) { return true; });
    accountant.Finish();
  }
  static std::shared_ptr<const Program> Compiled(std::uint64_t number) { return RandomModel(number).model().Compile({}); }
  World& world() { return replication.world(); }
};

class Laws : public testing::TestWithParam<int> {
 protected:
  TestPlatform platform_;
  std::uint64_t number_ = static_cast<std::uint64_t>(GetParam());
};

TEST_P(Laws, TheAreaUnderTheLengthOfAQueueIsTheTimeSpentInIt) {
  for (const double warmUp : {0., 40.}) {
    Followed run(number_, 200, warmUp);
    std::set<std::uint32_t> ofProcesses;
    for (const SeizeTable& seize : run.program->seizes) ofProcesses.insert(seize.queue);
    for (const std::uint32_t queue : ofProcesses) {
      const double area = run.world().levels[run.program->queues[queue].length].AreaUntil(run.world().now);
      EXPECT_TRUE(AlmostEqual(area, run.accountant.timeWaited[queue]))
          << run.program->queues[queue].name << ": " << area << ", " << run.accountant.timeWaited[queue];
    }
  }
}

TEST_P(Laws, WhoCameInAndDidNotGoOutIsThere) {
  Followed run(number_, 200, 0);
  for (const EntityTypeTable& type : run.program->types)
    EXPECT_EQ(run.world().counters[type.in] - run.world().counters[type.out], run.world().levels[type.inSystem].value)
        << type.name;
}

TEST_P(Laws, WhatAllHaveCostIsWhatTheyBroughtAndHoldingBusyTimeAndUses) {
  Followed run(number_, 200, 0);
  double busy = 0, uses = 0;
  for (const ResourceTable& resource : run.program->resources) {
    busy += run.world().levels[resource.busy].AreaUntil(run.world().now) / kHour * resource.busyCostRate;
    if (resource.useCost != kNone) uses += run.world().counters[resource.useCost];
  }
  const Accountant& accountant = run.accountant;
  const double expected = accountant.initial + accountant.holding + busy - accountant.leftBehind + uses;
  EXPECT_TRUE(AlmostEqual(accountant.gone, expected)) << accountant.gone << " instead of " << expected;
}

TEST_P(Laws, TheTimesOfAnEntityAddUpAndNoMoreUnitsAreBusyThanThereAre) {
  Followed run(number_, 200, 0);
  EXPECT_EQ(run.accountant.complaints, std::vector<std::string>());
  const auto output = FindOutput(*run.program, "Tally/Times/Value");
  ASSERT_TRUE(output);
  const Tally& times = run.world().tallies[run.program->outputs[*output].index];
  EXPECT_GT(times.n, 0u);
  EXPECT_LT(std::max(-times.min, times.max), 1e-9);
}

INSTANTIATE_TEST_SUITE_P(RandomModels, Laws, testing::Range(1, kModels + 1));

}  // namespace
}  // namespace vardo
