// Programs without a drawing: Create - Process (seize, delay, release) - Dispose, once or several in a row.
#pragma once

#include "model/Program.h"
#include "model/Sources.h"

#include <string>

namespace vardo::test {

struct QueueModel {
  double between = 1;    // mean time between arrivals, in seconds
  double service = 0.5;  // mean
  double capacity = 1;
  std::uint32_t attributes = 0;
  bool hasCosts = false;
  std::uint32_t entities = 1;  // per arrival
  double maxArrivals = 0;      // 0: without end
  bool isConstant = false;     // both times are, instead of exponential
};

class HandMadeProgram {
 public:
  explicit HandMadeProgram(const QueueModel& model) {
    program_.unit = 1;
    program_.timeUnit = "Seconds";
    program_.hasCosts = model.hasCosts;
    AddColumns(model);
    AddType(model);
    const std::uint32_t create = AddCreate(model);
    const std::uint32_t process = AddProcess(model, create);
    AddDispose(process);
    program_.actors = {create};
  }

  const Program& program() const { return program_; }
  Program& program() { return program_; }

  // What the model above counts.
  std::uint32_t inSystem = 0, queueLength = 0, busy = 0, queueWait = 0, total = 0;

  std::uint32_t Constant(double x) {
    program_.values.push_back({ValueKind::Constant, {}, x, 0, 0, Place("Value")});
    return Last(program_.values);
  }
  std::uint32_t Time(const QueueModel& model, double mean) {
    if (model.isConstant) return Constant(mean);
    program_.sources.push_back(SourceOf(1, 1, program_.sources.size(), 0));
    program_.constants.push_back(mean);
    program_.draws.push_back({Last(program_.sources), Last(program_.constants), 1});
    program_.values.push_back({ValueKind::Draw, Distribution::Expo, 0, Last(program_.draws), 0, Place("Time")});
    return Last(program_.values);
  }
  std::uint32_t Level() { return program_.levels++; }
  std::uint32_t Counter() { return program_.counters++; }
  std::uint32_t Tally(bool hasBuckets = false) {
    program_.bucketsOfTally.push_back(hasBuckets ? program_.buckets++ : kNone);
    return Last(program_.bucketsOfTally);
  }
  std::uint32_t Tallies(int count) {
    const std::uint32_t first = Tally();
    for (int i = 1; i < count; ++i) Tally();
    return first;
  }
  std::uint32_t Place(const std::string& field) {
    program_.places.push_back({"Page-1", "Process", "Serve", 1, field, field});
    return Last(program_.places);
  }
  std::uint32_t AddStep(Op op, std::uint32_t table) {
    program_.steps.push_back({op, table, static_cast<std::uint32_t>(program_.steps.size()) + 1, kNone, 0, 0});
    program_.placeOfStep.push_back(Place(""));
    return Last(program_.steps);
  }

 private:
  template <class List>
  static std::uint32_t Last(const List& list) {
    return static_cast<std::uint32_t>(list.size()) - 1;
  }

  void AddColumns(const QueueModel& model) {
    const auto add = [&](EntityAttribute attribute) { program_.builtIn[static_cast<size_t>(attribute)] = program_.columns++; };
    add(EntityAttribute::VATime);
    add(EntityAttribute::WaitTime);
    if (model.hasCosts) {
      add(EntityAttribute::VACost);
      add(EntityAttribute::WaitCost);
      program_.processCosts = program_.columns;
      program_.columns += 2;
    }
    program_.firstUserColumn = program_.columns;
    program_.userColumns = model.attributes;
    program_.columns += model.attributes;
  }

  void AddType(const QueueModel& model) {
    EntityTypeTable type;
    type.name = "Entity 1";
    type.in = Counter();
    type.out = Counter();
    type.inSystem = inSystem = Level();
    type.times = Tallies(6);
    total = type.times + 5;
    if (model.hasCosts) type.costs = Tallies(6);
    program_.types.push_back(type);
  }

  std::uint32_t AddCreate(const QueueModel& model) {
    CreateTable create;
    create.interval = Time(model, model.between);
    create.entities = Constant(model.entities);
    create.firstCreation = Constant(0);
    if (model.maxArrivals > 0) create.maxArrivals = Constant(model.maxArrivals);
    program_.creates.push_back(create);
    return AddStep(Op::Create, 0);
  }

  std::uint32_t AddProcess(const QueueModel& model, std::uint32_t) {
    ProcessTable process{"Serve", Counter(), Counter(), Level(), Tally(), Tally(), Tally(true)};
    if (model.hasCosts) {
      process.waitCost = Tally();
      process.delayCost = Tally();
      process.totalCost = Tally();
    }
    program_.processes.push_back(process);
    QueueTable queue;
    queue.name = "Serve.Queue";
    queue.wait = queueWait = Tally(true);
    queue.length = queueLength = Level();
    queue.waited = Counter();
    program_.queues.push_back(queue);
    ResourceTable resource;
    resource.name = "Server";
    resource.capacity = Constant(model.capacity);
    resource.busyCostRate = model.hasCosts ? 10 : 0;
    resource.seizes = {0, 1};
    resource.busy = busy = Level();
    resource.scheduled = Level();
    resource.utilisation = Level();
    resource.available = Level();
    resource.seized = Counter();
    program_.resources.push_back(resource);
    program_.resourceSeizes.push_back(0);
    SeizeRow row;
    row.resource = 0;
    row.quantity = Constant(1);
    program_.seizeRows.push_back(row);
    SeizeTable seize;
    seize.rows = {0, 1};
    seize.priority = Constant(2);
    program_.seizes.push_back(seize);
    program_.delays.push_back({Time(model, model.service), 1, Allocation::ValueAdded, 0});
    program_.releases.push_back({0, {}});
    const std::uint32_t enter = AddStep(Op::Enter, 0);
    for (const Op op : {Op::Seize, Op::Delay, Op::DelayEnd, Op::Release, Op::Leave}) AddStep(op, 0);
    return enter;
  }

  void AddDispose(std::uint32_t) {
    program_.disposes.push_back({true, {}, Place("")});
    AddStep(Op::Dispose, 0);
  }

  Program program_;
};

}  // namespace vardo::test
