#include "simulate/Replication.h"

#include "base/Numbers.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace vardo {
namespace {

constexpr std::uint64_t kEventsWithoutEnd = 1'000'000'000;
constexpr double kForever = std::numeric_limits<double>::infinity();
constexpr std::uint32_t kNoEntity = kNone;

}  // namespace

Replication::Replication(const Program& program)
    : program_(program), world_(program), resources_(world_), courses_(world_, resources_), groups_(world_, resources_) {}

// ------------------------------------------------------------------------------------------------------ from begin to end

EndReason Replication::Run(const RandomRun& run, const ReplicationLimits& limits,
                           const std::function<bool(std::uint64_t)>& goesOn) {
  goesOn_ = goesOn;
  Clear(run, limits);
  try {
    const EndReason reason = RunThrough(limits);
    world_.Trace(TraceAct::End, kNoEntity);
    CheckSound();
    CompleteWarnings();
    return reason;
  } catch (const TooManyEntities&) {
    throw RunError(program_, run.replication, world_.now, ComplaintOfEntities());
  } catch (const ModelError& error) {
    throw RunError(program_, run.replication, world_.now, error);
  }
}

void Replication::Clear(const RandomRun& run, const ReplicationLimits& limits) {
  world_.Clear(run);
  resources_.Clear();
  courses_.Clear();
  groups_.Clear();
  groups_.mostEntities = limits.mostEntities;
  arrivals_.assign(program_.creates.size(), {});
  lastPass_.assign(program_.records.size(), -1);
  delays_.assign(program_.delays.size(), 0);
  creating_ = 0;
  events_ = steps_ = 0;
  mostSteps_ = limits.mostSteps;
  hasLength_ = limits.length.has_value();
  mostEvents_ = hasLength_ || program_.until != kNone ? Calendar::kMostOrders / 64 : kEventsWithoutEnd;
}

EndReason Replication::RunThrough(const ReplicationLimits& limits) {
  const double end = limits.length.value_or(kForever);
  Begin();
  for (const Milestone& milestone : milestones) {
    if (milestone.time >= end) break;
    if (milestone.time > world_.now)
      if (const auto reason = RunUntil(milestone.time)) return *reason;
    world_.now = milestone.time;
    steps_ = 0;
    milestone.act();
  }
  if (const auto reason = RunUntil(end)) return *reason;
  world_.now = end;
  return EndReason::Length;
}

// At time 0 first the schedules take their first steps, then the Creates plan their first arrivals. Statistics begin behind that.
void Replication::Begin() {
  for (std::uint32_t resource = 0; resource < program_.resources.size(); ++resource)
    if (const ResourceTable& table = program_.resources[resource]; table.capacity != kNone)
      resources_.SetCapacity(resource, world_.Count(table.capacity, kNoEntity), table.rule);
  for (std::uint32_t row = 0; row < program_.actors.size(); ++row) {
    const Step& step = program_.steps[program_.actors[row]];
    if (step.op == Op::CourseStep)
      courses_.Step(step.table, row);
    else
      BeginCreate(step, row);
  }
  world_.RestartStatistics();
}

void Replication::BeginCreate(const Step& step, std::uint32_t row) {
  const CreateTable& create = program_.creates[step.table];
  Arrivals& arrivals = arrivals_[step.table];
  arrivals.most = create.maxArrivals == kNone ? kForever : world_.Count(create.maxArrivals, kNoEntity);
  if (arrivals.most == 0) return;
  ++creating_;
  if (create.course != kNone)
    courses_.NextArrival(step.table, row);
  else
    world_.ScheduleIn(world_.Duration(create.firstCreation, kNoEntity, program_.unit), row,
                      program_.values[create.firstCreation].place);
}

std::optional<EndReason> Replication::RunUntil(double horizon) {
  Event event;
  while (world_.calendar.Pop(horizon, event)) {
    Entity& entity = world_.entities[event.row];
    if (entity.order != event.order) continue;  // cancelled
    if (event.time != world_.now) {
      world_.now = event.time;
      steps_ = 0;
    }
    entity.order = 0;
    Walk(event.row);
    if (++events_ % kEventsBetweenTells == 0 && !goesOn_(kEventsBetweenTells)) return EndReason::Stopped;
    if (program_.until != kNone && world_.Evaluate(program_.until, kNoEntity) != 0) return EndReason::Condition;
    if (!hasLength_ && NothingCanCome()) return EndReason::NothingLeft;
    if (events_ == mostEvents_)
      throw ModelError{kNone, "the model has not ended by itself after " + NumberText(static_cast<double>(events_)) +
                                  " events; give it a length or a condition"};
  }
  return hasLength_ ? std::nullopt : horizon < kForever ? std::nullopt : std::optional(EndReason::NothingLeft);
}

// Nobody is there and nobody will come; only schedules would go on.
bool Replication::NothingCanCome() const { return creating_ == 0 && world_.entities.alive() == 0; }

void Replication::CheckSound() {
  if (!groups_.IsSound()) throw ModelError{kNone, "internal: entities that came in and went out are not those that are there"};
  if (!resources_.IsSound()) throw ModelError{kNone, "internal: units that are busy are not those that are held"};
}

// Of negative delays the share is of interest.
void Replication::CompleteWarnings() {
  for (size_t i = 0; i < program_.delays.size(); ++i)
    for (WarningCount& warning : world_.warnings)
      if (warning.warning == RunWarning::NegativeTime && warning.place == program_.values[program_.delays[i].duration].place)
        warning.of = delays_[i];
  std::sort(world_.warnings.begin(), world_.warnings.end(), [](const WarningCount& a, const WarningCount& b) {
    return std::tuple(a.place, a.warning) < std::tuple(b.place, b.warning);
  });
}

// ------------------------------------------------------------------------------------------------------ steps

// An entity goes as far as it gets in this instant.
void Replication::Walk(std::uint32_t row) {
  std::uint32_t at = world_.entities[row].step;
  for (;;) {
    if (++steps_ > mostSteps_) [[unlikely]]
      throw ComplaintOfLoop();
    trail_[steps_ % kTrail] = at;
    const Step& step = program_.steps[at];
    world_.entities[row].step = at;
    world_.CountUp(step.entered);
    switch (step.op) {
      case Op::CourseStep:
        courses_.Step(step.table, row);
        return;
      case Op::Create:
        Arrive(step, row);
        return;
      case Op::Enter:
        Enter(program_.processes[step.table], row);
        break;
      case Op::Seize:
        world_.entities[row].step = step.next;
        if (!resources_.Seize(step.table, row)) return;
        break;
      case Op::Delay:
        Delay(step, row);
        return;
      case Op::DelayEnd:
        world_.Account(row, program_.delays[step.table].category, true);
        break;
      case Op::Release:
        resources_.Release(program_.releases[step.table], row);
        break;
      case Op::Leave:
        Leave(program_.processes[step.table], row);
        break;
      case Op::Decide:
        if (!IsTrue(program_.decides[step.table], row)) {
          world_.CountUp(step.left);
          at = step.otherExit;
          continue;
        }
        break;
      case Op::Assign:
        Assign(program_.assigns[step.table], row);
        break;
      case Op::Batch:
        row = groups_.Gather(step.table, row);
        if (row == kNone) return;
        break;
      case Op::Duplicate:
        world_.CountUp(step.left, groups_.Duplicate(program_.duplicates[step.table], row, step.otherExit));
        break;
      case Op::Split:
        if (const double members = groups_.Split(program_.splits[step.table], row, step.next); members != 0) {
          world_.CountUp(step.left, members);
          return;
        }
        break;
      case Op::Record:
        Record(step.table, row);
        break;
      case Op::EnterSubmodel:
        groups_.EnterSubmodel(program_.submodels[step.table], row);
        break;
      case Op::LeaveSubmodel:
        groups_.LeaveSubmodel(program_.submodels[step.table], row);
        break;
      case Op::Dispose:
        world_.CountUp(step.left);
        world_.Trace(TraceAct::Dispose, row);
        groups_.Dispose(program_.disposes[step.table], row);
        return;
    }
    world_.CountUp(step.left);
    at = step.next;
  }
}

// Entities set out in order, each as far as it gets; only then is the next arrival planned.
void Replication::Arrive(const Step& step, std::uint32_t row) {
  const CreateTable& create = program_.creates[step.table];
  Arrivals& arrivals = arrivals_[step.table];
  if (++arrivals.made >= arrivals.most) --creating_;
  const double count = world_.Count(create.entities, kNoEntity);
  for (double made = 0; made < count; ++made) {
    const std::uint32_t entity = groups_.Make(create.type, create.submodels);
    world_.entities[entity].step = world_.entities[row].step;
    world_.Trace(TraceAct::Create, entity);
    world_.entities[entity].step = step.next;
    world_.CountUp(step.left);
    Walk(entity);
  }
  if (arrivals.made >= arrivals.most) return;
  if (create.course != kNone)
    courses_.NextArrival(step.table, row);
  else
    world_.ScheduleIn(world_.Duration(create.interval, kNoEntity, create.unit), row, program_.values[create.interval].place);
}

void Replication::Enter(const ProcessTable& process, std::uint32_t row) {
  Entity& entity = world_.entities[row];
  entity.entered = world_.now;
  entity.waited = 0;
  if (program_.hasCosts) {
    double* const costs = world_.entities.Columns(row) + program_.processCosts;
    costs[0] = costs[1] = 0;
  }
  world_.CountUp(process.in);
  world_.AddLevel(process.inside, 1);
  world_.Trace(TraceAct::Enter, row);
}

void Replication::Delay(const Step& step, std::uint32_t row) {
  Entity& entity = world_.entities[row];
  if (entity.lacksUnits) [[unlikely]] {
    resources_.StopBeforeDelay(row);
    return;
  }
  const DelayTable& delay = program_.delays[step.table];
  ++delays_[step.table];
  const double seconds = world_.Duration(delay.duration, row, delay.unit);
  if (const std::uint32_t start = program_.ColumnOf(EntityAttribute::StartTime); start != kNone)
    world_.entities.Columns(row)[start] = world_.now;
  world_.Trace(TraceAct::Delay, row, 0, seconds);
  entity.step = step.next;
  entity.joined = world_.now + seconds;
  world_.ScheduleIn(seconds, row, program_.values[delay.duration].place);
}

void Replication::Leave(const ProcessTable& process, std::uint32_t row) {
  const Entity& entity = world_.entities[row];
  const double total = world_.now - entity.entered;
  world_.CountUp(process.out);
  world_.AddLevel(process.inside, -1);
  const double share = world_.tallies[process.wait].ShareOfNext();
  world_.tallies[process.wait].Add(entity.waited, share);
  world_.tallies[process.delay].Add(total - entity.waited, share);
  world_.Observe(process.total, total, share);
  world_.Trace(TraceAct::Leave, row);
  if (!program_.hasCosts) return;
  const double* const costs = world_.entities.Columns(row) + program_.processCosts;
  world_.tallies[process.waitCost].Add(costs[0], share);
  world_.tallies[process.delayCost].Add(costs[1], share);
  world_.tallies[process.totalCost].Add(costs[0] + costs[1], share);
}

bool Replication::IsTrue(const DecideTable& decide, std::uint32_t row) {
  const bool isTrue = decide.condition != kNone ? world_.Evaluate(decide.condition, row) != 0
                                                : world_.Uniform(decide.source) * 100 < world_.Percent(decide.percent, row);
  world_.Trace(TraceAct::Decide, row, isTrue ? 0 : 1);
  return isTrue;
}

// Each row sees what those before it did.
void Replication::Assign(const AssignTable& table, std::uint32_t row) {
  for (std::uint32_t i = table.rows.first; i < table.rows.first + table.rows.count; ++i) {
    const AssignRow& assign = program_.assignRows[i];
    const double value = world_.Evaluate(assign.value, row);
    world_.Trace(TraceAct::Assign, row, i, value);
    AssignOne(assign, row, value);
  }
}

void Replication::AssignOne(const AssignRow& assign, std::uint32_t row, double value) {
  Entity& entity = world_.entities[row];
  const std::uint32_t place = program_.values[assign.value].place;
  // A type or picture from its number.
  const auto numbered = [&](size_t count) {
    const double number = world_.CountOf(value, place, 1);
    if (number > static_cast<double>(count)) throw ModelError{place, "there is no number " + NumberText(number)};
    return static_cast<std::uint32_t>(number) - 1;
  };
  switch (assign.target) {
    case AssignTarget::Column:
      world_.entities.Columns(row)[assign.index] = value;
      break;
    case AssignTarget::Variable:
      SetVariable(program_.variables[assign.index], program_.variables[assign.index].first, value);
      break;
    case AssignTarget::Element: {
      const VariableTable& variable = program_.variables[assign.index];
      const double i = world_.Evaluate(assign.indexes[0], row);
      const double j = assign.indexes[1] == kNone ? 1 : world_.Evaluate(assign.indexes[1], row);
      SetVariable(variable, world_.ElementAt(variable, i, j, assign.place), value);
      break;
    }
    case AssignTarget::Type:
      groups_.ChangeType(row, numbered(program_.types.size()));
      break;
    case AssignTarget::Picture:
      entity.picture = static_cast<std::uint16_t>(numbered(program_.pictures));
      break;
    case AssignTarget::Capacity:
      resources_.SetCapacity(assign.index, world_.CountOf(value, place), ScheduleRule::Wait);
      break;
  }
}

void Replication::SetVariable(const VariableTable& variable, size_t place, double value) {
  world_.variables[place] = value;
  if (variable.level != kNone) world_.SetLevel(variable.level, value);
}

void Replication::Record(std::uint32_t number, std::uint32_t row) {
  const RecordTable& record = program_.records[number];
  if (record.type == RecordType::EntityStatistics) {
    if (program_.types[world_.entities[row].type].isReported) world_.RecordEntity(row);
    return;
  }
  double value = 0;
  switch (record.type) {
    case RecordType::TimeInterval: {
      const Entity& entity = world_.entities[row];
      const double from = record.fromCreation ? entity.created : world_.entities.Get(row, record.column) * record.columnUnit;
      value = (world_.now - from) / program_.unit;
      break;
    }
    case RecordType::TimeBetween: {
      const double last = lastPass_[number];
      lastPass_[number] = world_.now;
      if (last < 0) return;
      value = (world_.now - last) / program_.unit;
      break;
    }
    default:
      value = world_.Evaluate(record.value, row);
  }
  std::uint32_t target = record.target;
  if (record.set != kNone)
    target =
        program_
            .recordTargets[record.targets.first + world_.IndexInSet(program_.sets[record.set], world_.Evaluate(record.index, row),
                                                                    program_.values[record.index].place)];
  world_.Trace(TraceAct::Record, row, target, value);
  if (record.type == RecordType::Count)
    world_.CountUp(target, value);
  else
    world_.Observe(target, value);
}

// ------------------------------------------------------------------------------------------------------ models that run away

// The modules of the latest round of steps, in order.
ModelError Replication::ComplaintOfLoop() const {
  std::vector<std::uint32_t> places;
  const std::uint32_t last = trail_[(steps_ - 1) % kTrail];
  for (size_t back = 1; back < kTrail; ++back) {
    const std::uint32_t step = trail_[(steps_ - back) % kTrail];
    if (back > 1 && step == last) break;
    const std::uint32_t place = program_.placeOfStep[step];
    if (places.empty() || places.back() != place) places.push_back(place);
  }
  std::string names;
  for (size_t i = places.size(); i-- > 0;) names += WordsFor(program_.places[places[i]]) + (i > 0 ? ", " : "");
  return {kNone, "more than " + NumberText(static_cast<double>(mostSteps_)) + " steps without any time passing: " + names};
}

ModelError Replication::ComplaintOfEntities() const {
  std::vector<std::pair<double, std::uint32_t>> fullest;
  for (std::uint32_t i = 0; i < program_.queues.size(); ++i)
    fullest.push_back({-world_.levels[program_.queues[i].length].value, i});
  std::sort(fullest.begin(), fullest.end());
  std::string names;
  for (size_t i = 0; i < fullest.size() && i < 3 && fullest[i].first < 0; ++i)
    names += std::string(i == 0 ? ": \"" : ", \"") + program_.queues[fullest[i].second].name + "\" holds " +
             NumberText(-fullest[i].first);
  return {kNone, "more than " + NumberText(groups_.mostEntities) + " entities are in the model at once" + names};
}

}  // namespace vardo
