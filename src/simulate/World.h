// The state of a replication, and what everything that happens in it is made of: values of fields, time that entities spend, what
// is observed, and complaints.
#pragma once

#include "model/Program.h"
#include "simulate/Calendar.h"
#include "simulate/Distributions.h"
#include "simulate/Entities.h"
#include "simulate/RunError.h"
#include "simulate/Statistics.h"
#include "simulate/Streams.h"
#include "simulate/Trace.h"

#include <string>
#include <vector>

namespace vardo {

class World {
 public:
  explicit World(const Program& program) : program_(program) {}

  // As before the first event.
  void Clear(const RandomRun& run);
  // Statistics begin anew, levels from their present value.
  void RestartStatistics();

  const Program& program() const { return program_; }
  const RandomRun& run() const { return run_; }

  double now = 0;
  double statisticsSince = 0;
  Calendar calendar;
  Entities entities;
  std::vector<double> variables;
  std::vector<double> courseValues;
  std::vector<double> capacities;  // planned, by resource
  std::vector<Tally> tallies;
  std::vector<Buckets> buckets;
  std::vector<Level> levels;
  std::vector<double> counters;
  std::vector<WarningCount> warnings;
  TraceSink* trace = nullptr;

  // --- Values of fields. The row is kNone where there is no entity. All throw ModelError.
  double Evaluate(std::uint32_t value, std::uint32_t row) {
    const Value& v = program_.values[value];
    if (v.kind == ValueKind::Constant) return v.constant;
    if (v.kind == ValueKind::Draw) return DrawConstant(v.distribution, program_.draws[v.first]);
    return Interpret(v, row);
  }
  // A whole number, not below the least.
  double Count(std::uint32_t value, std::uint32_t row, double least = 0) {
    const double x = Evaluate(value, row);
    if (x >= least && x <= UINT32_MAX && static_cast<double>(static_cast<std::uint32_t>(x)) == x) return x;
    return CountOf(x, program_.values[value].place, least);
  }
  // The same of a number that has been evaluated already.
  double CountOf(double x, std::uint32_t place, double least = 0);
  // A time in a unit, in seconds; negative ones count as 0.
  double Duration(std::uint32_t value, std::uint32_t row, double unit) {
    const double seconds = Evaluate(value, row) * unit;
    if (seconds >= 0) return seconds + 0.0;
    return NegativeTime(program_.values[value].place, seconds);
  }
  // What is outside 0 and 100 counts as these.
  double Percent(std::uint32_t value, std::uint32_t row);
  double Uniform(std::uint32_t source) { return streams_[source].Uniform(); }
  Stream& StreamOf(std::uint32_t source) { return streams_[source]; }
  // The place of an element among all variables' values.
  size_t ElementAt(const VariableTable& variable, double i, double j, std::uint32_t place) const;
  // From 0.
  std::uint32_t IndexInSet(const SetTable& set, double index, std::uint32_t place) const;
  std::uint32_t MemberOf(const SetTable& set, double index, std::uint32_t place) const {
    return program_.setMembers[set.members.first + IndexInSet(set, index, place)];
  }

  // --- What happens next.
  void Schedule(double time, std::uint32_t row) { entities[row].order = calendar.Push(time, now, row); }
  // A time from now that may be too long for a double.
  void ScheduleIn(double seconds, std::uint32_t row, std::uint32_t place);

  // --- What is observed.
  void Observe(std::uint32_t tally, double x) { Observe(tally, x, tallies[tally].ShareOfNext()); }
  void Observe(std::uint32_t tally, double x, double share) {
    tallies[tally].Add(x, share);
    const std::uint32_t counts = program_.bucketsOfTally[tally];
    if (counts != kNone) buckets[counts].Add(x);
  }
  void AddLevel(std::uint32_t level, double x) { levels[level].Add(now, x); }
  void SetLevel(std::uint32_t level, double x) { levels[level].Set(now, x); }
  void CountUp(std::uint32_t counter, double x = 1) { counters[counter] += x; }

  // --- Time and cost of entities.
  // What has passed since an entity's time was last accounted for goes to that category; inDelay says to which part of its
  // Process.
  void Account(std::uint32_t row, Allocation category, bool inDelay);
  void AddCost(std::uint32_t row, Allocation category, double cost, bool inDelay);
  // Per hour.
  double CostRateOf(std::uint32_t row);
  // Times and costs into the tallies of its type.
  void RecordEntity(std::uint32_t row);

  void Warn(RunWarning warning, std::uint32_t place, std::uint64_t of = 0);
  void Trace(TraceAct act, std::uint32_t row, std::uint32_t what = 0, double number = 0) {
    if (trace != nullptr) [[unlikely]]
      Tell(act, row, what, number);
  }

 private:
  double DrawConstant(Distribution distribution, const DrawTable& draw) {
    return Draw(distribution, {program_.constants.data() + draw.firstConstant, draw.count}, streams_[draw.source]);
  }
  double Interpret(const Value& value, std::uint32_t row);
  double Interpret(const Value& value, std::uint32_t row, const Instruction*& at);
  double NegativeTime(std::uint32_t place, double seconds);
  double UnitsCostRateOf(std::uint32_t row);
  void Tell(TraceAct act, std::uint32_t row, std::uint32_t what, double number);

  const Program& program_;
  RandomRun run_;
  std::vector<Stream> streams_;
};

}  // namespace vardo
