#include "simulate/World.h"

#include "base/Numbers.h"
#include "simulate/Elementary.h"

#include <algorithm>
#include <cmath>

namespace vardo {
namespace {

constexpr double kSecondsOfAnHour = 3600;
constexpr double kAllowedFraction = 1e-9;

}  // namespace

void World::Clear(const RandomRun& run) {
  run_ = run;
  now = 0;
  calendar.Clear();
  entities.Clear(program_);
  variables = program_.initialValues;
  courseValues.assign(program_.courses.size(), 0);
  capacities.assign(program_.resources.size(), 0);
  levels.assign(program_.levels, {});
  streams_.clear();
  for (const uint64_t source : program_.sources) streams_.emplace_back(run, source);
  warnings.clear();
  for (const VariableTable& variable : program_.variables)
    if (variable.level != kNone) levels[variable.level].value = variables[variable.first];
  RestartStatistics();
}

void World::RestartStatistics() {
  statisticsSince = now;
  tallies.assign(program_.bucketsOfTally.size(), {});
  buckets.resize(program_.buckets);
  for (Buckets& counts : buckets) counts.Clear();
  counters.assign(program_.counters, 0);
  for (Level& level : levels) level.Restart(now);
}

double World::CountOf(double x, uint32_t place, double least) {
  const double count = RoundHalfUp(x);
  if (count < least || count > UINT32_MAX) [[unlikely]]
    throw ModelError{place, NumberText(x) + (count < least ? " is less than " + NumberText(least) : " is too large")};
  const double fraction = x - count;
  if (fraction > kAllowedFraction || fraction < -kAllowedFraction) Warn(RunWarning::RoundedCount, place);
  return count;
}

double World::NegativeTime(uint32_t place, double seconds) {
  if (std::isnan(seconds)) throw ModelError{place, "the time is no number"};
  Warn(RunWarning::NegativeTime, place);
  return 0;
}

double World::Percent(uint32_t value, uint32_t row) {
  const double percent = Evaluate(value, row);
  if (percent >= 0 && percent <= 100) return percent;
  Warn(RunWarning::PercentOutOfRange, program_.values[value].place);
  return percent > 100 ? 100 : 0;
}

size_t World::ElementAt(const VariableTable& variable, double i, double j, uint32_t place) const {
  const double row = RoundHalfUp(i), column = RoundHalfUp(j);
  const auto isOutside = [](double index, uint32_t count) { return !(index >= 1 && index <= count); };
  if (isOutside(row, variable.rows) || isOutside(column, std::max(variable.columns, 1u))) {
    const std::string indexes = NumberText(i) + (variable.columns > 0 ? ", " + NumberText(j) : "");
    throw ModelError{place, "the variable \"" + variable.name + "\" has no element " + indexes};
  }
  return variable.first + (static_cast<size_t>(row) - 1) * std::max(variable.columns, 1u) + static_cast<size_t>(column) - 1;
}

uint32_t World::IndexInSet(const SetTable& set, double index, uint32_t place) const {
  const double i = RoundHalfUp(index);
  if (!(i >= 1 && i <= set.members.count))
    throw ModelError{place, "the set \"" + set.name + "\" has " + std::to_string(set.members.count) +
                                " members, and none is number " + NumberText(index)};
  return static_cast<uint32_t>(i) - 1;
}

void World::ScheduleIn(double seconds, uint32_t row, uint32_t place) {
  const double time = now + seconds;
  if (!std::isfinite(time)) throw ModelError{place, "the time is beyond all bounds"};
  Schedule(time, row);
}

void World::Account(uint32_t row, Allocation category, bool inDelay) {
  Entity& entity = entities[row];
  const double passed = now - entity.since;
  if (passed == 0) return;
  entity.since = now;
  entities.Columns(row)[program_.timeColumn(category)] += passed;
  if (program_.hasCosts) AddCost(row, category, passed / kSecondsOfAnHour * CostRateOf(row), inDelay);
}

void World::AddCost(uint32_t row, Allocation category, double cost, bool inDelay) {
  double* const columns = entities.Columns(row);
  columns[program_.costColumn(category)] += cost;
  columns[program_.processCosts + (inDelay ? 1 : 0)] += cost;
}

double World::CostRateOf(uint32_t row) {
  return entities.Get(row, program_.ColumnOf(EntityAttribute::HoldCostRate)) + UnitsCostRateOf(row);
}

// Of what it and its members hold.
double World::UnitsCostRateOf(uint32_t row) {
  double rate = 0;
  for (uint32_t held = entities[row].held; held != kNone; held = entities.HeldAt(held).next) {
    const Held& units = entities.HeldAt(held);
    rate += units.units * program_.resources[units.resource].busyCostRate;
  }
  for (uint32_t member = entities[row].members; member != kNone; member = entities[member].next) rate += UnitsCostRateOf(member);
  return rate;
}

void World::RecordEntity(uint32_t row) {
  const Entity& entity = entities[row];
  const EntityTypeTable& type = program_.types[entity.type];
  const double share = tallies[type.times].ShareOfNext();
  const auto record = [&](uint32_t tally, EntityAttribute first) {
    double total = 0;
    for (size_t i = 0; i < kCategories; ++i) {
      const double x = entities.Get(row, program_.builtIn[static_cast<size_t>(first) + i]);
      tallies[tally + i].Add(x, share);
      total += x;
    }
    return total;
  };
  record(type.times, EntityAttribute::VATime);
  Observe(type.times + kCategories, now - entity.created, share);
  if (type.costs == kNone) return;
  const double cost = record(type.costs, EntityAttribute::VACost);
  Observe(type.costs + kCategories, cost, share);
}

void World::Warn(RunWarning warning, uint32_t place, uint64_t of) {
  for (WarningCount& known : warnings) {
    if (known.warning != warning || known.place != place) continue;
    ++known.count;
    known.of = of;
    return;
  }
  warnings.push_back({warning, place, 1, of});
}

void World::Tell(TraceAct act, uint32_t row, uint32_t what, double number) {
  const bool isEntity = row != kNone && row >= program_.actors.size();
  trace->Take({now, isEntity ? entities[row].number : 0, isEntity ? entities[row].type : 0u,
               row == kNone ? kNone : entities[row].step, act, what, number});
}

}  // namespace vardo
