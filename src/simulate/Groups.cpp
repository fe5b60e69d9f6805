#include "simulate/Groups.h"

#include <algorithm>
#include <array>
#include <bit>

namespace vardo {
namespace {

// Those that a batch hands on to its members, and that copies and batches take over.
// The type comes before the rate, which it changes.
constexpr EntityAttribute kAssignableAttributes[] = {EntityAttribute::Type,         EntityAttribute::Picture,
                                                     EntityAttribute::HoldCostRate, EntityAttribute::Sequence,
                                                     EntityAttribute::JobStep,      EntityAttribute::Station};
constexpr EntityAttribute kPlainAttributes[] = {EntityAttribute::Sequence, EntityAttribute::JobStep, EntityAttribute::Station};

}  // namespace

void Groups::Clear() {
  groups_.resize(world_.program().batches.size());
  for (auto& groups : groups_) groups.clear();
  numbers_ = 0;
}

// ------------------------------------------------------------------------------------------------------ one entity

std::uint32_t Groups::NewRow() {
  if (world_.entities.alive() >= mostEntities) throw TooManyEntities{};
  const std::uint32_t row = world_.entities.Make();
  Entity& entity = world_.entities[row];
  entity.number = ++numbers_;
  entity.created = entity.since = world_.now;
  const std::uint32_t serial = world_.program().ColumnOf(EntityAttribute::SerialNumber);
  if (serial != kNone) world_.entities.Columns(row)[serial] = static_cast<double>(entity.number);
  return row;
}

std::uint32_t Groups::Make(std::uint32_t type, const Rows& submodels) {
  const std::uint32_t row = NewRow();
  const Program& program = world_.program();
  const EntityTypeTable& of = program.types[type];
  Entity& entity = world_.entities[row];
  entity.type = static_cast<std::uint16_t>(type);
  entity.picture = static_cast<std::uint16_t>(of.picture);
  double* const columns = world_.entities.Columns(row);
  const std::uint32_t holdCostRate = program.ColumnOf(EntityAttribute::HoldCostRate);
  if (holdCostRate != kNone) columns[holdCostRate] = of.holdCostRate;
  for (size_t i = 0; i < kCategories; ++i)
    if (of.initialCosts[i] != 0) columns[program.costColumn(static_cast<Allocation>(i))] = of.initialCosts[i];
  CountIn(type, 1);
  MarkMadeInside(submodels, row);
  ChangeInside(submodels, 1);
  return row;
}

void Groups::CountIn(std::uint32_t type, double count) {
  world_.CountUp(world_.program().types[type].in, count);
  world_.AddLevel(world_.program().types[type].inSystem, count);
}

void Groups::CountOut(std::uint32_t type, double count) {
  world_.CountUp(world_.program().types[type].out, count);
  world_.AddLevel(world_.program().types[type].inSystem, -count);
}

// A batch alone is not counted in the system, so its type is its own affair.
void Groups::ChangeType(std::uint32_t row, std::uint32_t type) {
  Entity& entity = world_.entities[row];
  if (entity.members == kNone && entity.type != type) {
    CountOut(entity.type, 1);
    CountIn(type, 1);
  }
  entity.type = static_cast<std::uint16_t>(type);
  const std::uint32_t holdCostRate = world_.program().ColumnOf(EntityAttribute::HoldCostRate);
  if (holdCostRate != kNone) world_.entities.Columns(row)[holdCostRate] = world_.program().types[type].holdCostRate;
}

void Groups::Dispose(const DisposeTable& table, std::uint32_t row) {
  ChangeInside(table.submodels, -static_cast<double>(world_.entities.CountOf(row)));
  Leave(table, row);
}

// Members leave as if they had been split off here.
void Groups::Leave(const DisposeTable& table, std::uint32_t row) {
  if (world_.entities[row].members != kNone) {
    std::uint32_t member = world_.entities[row].members;
    Dissolve(row);
    while (member != kNone) {
      const std::uint32_t next = world_.entities[member].next;
      Leave(table, member);
      member = next;
    }
    return;
  }
  const Entity& entity = world_.entities[row];
  if (table.isRecorded && world_.program().types[entity.type].isReported) world_.RecordEntity(row);
  CountOut(entity.type, 1);
  for (std::uint32_t held = entity.held; held != kNone; held = world_.entities.HeldAt(held).next)
    world_.Warn(RunWarning::LeftHolding, world_.program().resources[world_.entities.HeldAt(held).resource].place);
  world_.entities.Abandon(row);
  resources_.Forget(row);
  world_.entities.Free(row);
}

bool Groups::IsSound() const {
  const Program& program = world_.program();
  std::vector<double> there(program.types.size(), 0);
  double all = 0;
  for (std::uint32_t row = static_cast<std::uint32_t>(program.actors.size()); row < world_.entities.rows(); ++row) {
    const Entity& entity = world_.entities[row];
    if (entity.number == 0 || entity.members != kNone) continue;
    ++there[entity.type];
    ++all;
  }
  for (size_t i = 0; i < there.size(); ++i)
    if (there[i] != world_.levels[program.types[i].inSystem].value) return false;
  return true;
}

// ------------------------------------------------------------------------------------------------------ submodels

// Those who are counted: the entity itself, or the members of a batch, of batches in it, and so on.
template <class Visit>
void Groups::ForEachPart(std::uint32_t row, const Visit& visit) {
  std::uint32_t member = world_.entities[row].members;
  if (member == kNone) visit(row);
  for (; member != kNone; member = world_.entities[member].next) ForEachPart(member, visit);
}

void Groups::ChangeInside(const Rows& submodels, double count) {
  for (std::uint32_t i = 0; i < submodels.count; ++i) {
    const SubmodelTable& submodel = world_.program().submodels[world_.program().insideOf[submodels.first + i]];
    world_.AddLevel(world_.program().processes[submodel.process].inside, count);
  }
}

// Who is made inside has no time of entering.
void Groups::MarkMadeInside(const Rows& submodels, std::uint32_t row) {
  for (std::uint32_t i = 0; i < submodels.count; ++i) {
    const SubmodelTable& submodel = world_.program().submodels[world_.program().insideOf[submodels.first + i]];
    world_.entities.Columns(row)[submodel.enteredColumn] = -1;
  }
}

void Groups::EnterSubmodel(const SubmodelTable& submodel, std::uint32_t row) {
  const ProcessTable& process = world_.program().processes[submodel.process];
  const double count = world_.entities.CountOf(row);
  world_.CountUp(process.in, count);
  world_.AddLevel(process.inside, count);
  ForEachPart(row, [&](std::uint32_t part) { world_.entities.Columns(part)[submodel.enteredColumn] = world_.now; });
}

void Groups::LeaveSubmodel(const SubmodelTable& submodel, std::uint32_t row) {
  const ProcessTable& process = world_.program().processes[submodel.process];
  const double count = world_.entities.CountOf(row);
  world_.CountUp(process.out, count);
  world_.AddLevel(process.inside, -count);
  ForEachPart(row, [&](std::uint32_t part) {
    const double entered = world_.entities.Columns(part)[submodel.enteredColumn];
    if (entered >= 0) world_.Observe(process.total, world_.now - entered);
  });
}

// ------------------------------------------------------------------------------------------------------ batches

std::uint32_t Groups::Gather(std::uint32_t number, std::uint32_t row) {
  const BatchTable& table = world_.program().batches[number];
  const QueueTable& queue = world_.program().queues[table.queue];
  const double by = table.groupBy == kNone ? 0 : world_.Evaluate(table.groupBy, row);
  const auto found = groups_[number].try_emplace(std::bit_cast<std::uint64_t>(by + 0.0)).first;
  Group& group = found->second;
  if (group.count == 0) group.size = static_cast<std::uint32_t>(world_.Count(table.size, row, 1));
  Entity& entity = world_.entities[row];
  entity.joined = world_.now;
  entity.next = kNone;
  (group.count == 0 ? group.first : world_.entities[group.last].next) = row;
  group.last = row;
  if (++group.count < group.size) {
    world_.AddLevel(queue.length, 1);
    world_.Trace(TraceAct::Queue, row);
    return kNone;
  }
  Group complete = group;
  groups_[number].erase(found);
  world_.AddLevel(queue.length, -static_cast<double>(complete.count - 1));
  for (std::uint32_t member = complete.first; member != kNone; member = world_.entities[member].next) {
    if (member != row) world_.CountUp(queue.waited);
    world_.Observe(queue.wait, world_.now - world_.entities[member].joined);
    world_.Account(member, Allocation::Wait, false);
  }
  OrderMembers(queue, complete);
  return MakeBatch(table, complete);
}

void Groups::OrderMembers(const QueueTable& queue, Group& group) {
  if (queue.ranking == QueueType::FirstIn) return;
  struct Ranked {
    double rank;
    std::uint32_t row;
  };
  std::vector<Ranked> members;
  for (std::uint32_t member = group.first; member != kNone; member = world_.entities[member].next) {
    const double value = queue.rank == kNone ? static_cast<double>(members.size()) : world_.Evaluate(queue.rank, member);
    members.push_back({queue.ranking == QueueType::LowestValue ? value : -value, member});
  }
  std::stable_sort(members.begin(), members.end(), [](const Ranked& a, const Ranked& b) { return a.rank < b.rank; });
  for (size_t i = 0; i < members.size(); ++i)
    world_.entities[members[i].row].next = i + 1 < members.size() ? members[i + 1].row : kNone;
  group.first = members.front().row;
  group.last = members.back().row;
}

std::uint32_t Groups::MakeBatch(const BatchTable& table, const Group& group) {
  const std::uint32_t batch = NewRow();
  const Program& program = world_.program();
  const std::uint32_t model = table.criterion == SaveCriterion::First ? group.first : group.last;
  Entity& entity = world_.entities[batch];
  entity.type = world_.entities[model].type;
  entity.picture = world_.entities[model].picture;
  for (const EntityAttribute attribute : kPlainAttributes)
    if (const std::uint32_t column = program.ColumnOf(attribute); column != kNone)
      world_.entities.Columns(batch)[column] = world_.entities.Columns(model)[column];
  if (const std::uint32_t rate = program.ColumnOf(EntityAttribute::HoldCostRate); rate != kNone)
    for (std::uint32_t member = group.first; member != kNone; member = world_.entities[member].next)
      world_.entities.Columns(batch)[rate] += world_.entities.Columns(member)[rate];
  SaveAttributes(table.criterion, group, batch);
  world_.CountUp(table.groups);
  world_.CountUp(table.members, group.count);
  if (table.isTemporary)
    MakeTemporary(group, batch);
  else
    MakePermanent(table, group, model, batch);
  world_.Trace(TraceAct::Batch, batch, 0, group.count);
  return batch;
}

void Groups::SaveAttributes(SaveCriterion criterion, const Group& group, std::uint32_t batch) {
  const Program& program = world_.program();
  double* const columns = world_.entities.Columns(batch);
  for (std::uint32_t column = program.firstUserColumn; column < program.firstUserColumn + program.userColumns; ++column) {
    double value = criterion == SaveCriterion::Product ? 1 : 0;
    for (std::uint32_t member = group.first; member != kNone; member = world_.entities[member].next) {
      const double x = world_.entities.Columns(member)[column];
      switch (criterion) {
        case SaveCriterion::First:
          if (member == group.first) value = x;
          break;
        case SaveCriterion::Last:
          value = x;
          break;
        case SaveCriterion::Sum:
          value += x;
          break;
        case SaveCriterion::Product:
          value *= x;
          break;
      }
    }
    columns[column] = value;
  }
}

void Groups::MakeTemporary(const Group& group, std::uint32_t batch) {
  world_.entities[batch].members = group.first;
  for (std::uint32_t member = group.first; member != kNone; member = world_.entities[member].next)
    world_.entities[member].owner = batch;
  resources_.Recheck(batch);
}

void Groups::MakePermanent(const BatchTable& table, const Group& group, std::uint32_t model, std::uint32_t batch) {
  const Program& program = world_.program();
  Entity& entity = world_.entities[batch];
  double* const columns = world_.entities.Columns(batch);
  entity.created = world_.entities[model].created;
  for (size_t i = 0; i < kCategories; ++i)
    if (const std::uint32_t time = program.timeColumn(static_cast<Allocation>(i)); time != kNone)
      columns[time] = world_.entities.Columns(model)[time];
  if (const std::uint32_t start = program.ColumnOf(EntityAttribute::StartTime); start != kNone)
    columns[start] = world_.entities.Columns(model)[start];
  for (std::uint32_t member = group.first; member != kNone;) {
    const std::uint32_t next = world_.entities[member].next;
    for (size_t i = 0; i < kCategories; ++i)
      if (const std::uint32_t cost = program.costColumn(static_cast<Allocation>(i)); cost != kNone)
        columns[cost] += world_.entities.Columns(member)[cost];
    const double parts = world_.entities.CountOf(member);
    ForEachPart(member, [&](std::uint32_t part) { CountOut(world_.entities[part].type, 1); });
    ChangeInside(table.submodels, -parts);
    FreeCombined(member, batch);
    member = next;
  }
  CountIn(entity.type, 1);
  MarkMadeInside(table.submodels, batch);
  ChangeInside(table.submodels, 1);
  resources_.Recheck(batch);
}

// It has become part of another for good, with all its members.
void Groups::FreeCombined(std::uint32_t row, std::uint32_t into) {
  resources_.HandOver(row, into);
  for (std::uint32_t member = world_.entities[row].members; member != kNone;) {
    const std::uint32_t next = world_.entities[member].next;
    FreeCombined(member, into);
    member = next;
  }
  world_.entities.Free(row);
}

// ------------------------------------------------------------------------------------------------------ copies and members

double Groups::Duplicate(const DuplicateTable& table, std::uint32_t row, std::uint32_t step) {
  const Program& program = world_.program();
  const double count = world_.Count(table.count, row);
  const double share = world_.Percent(table.percentCost, row) / 100;
  world_.CountUp(table.duplicates, count);
  world_.Trace(TraceAct::Duplicate, row, 0, count);
  if (count == 0) return 0;
  std::array<double, kCategories> costs = {};
  for (size_t i = 0; i < kCategories; ++i) {
    const std::uint32_t column = program.costColumn(static_cast<Allocation>(i));
    if (column == kNone) continue;
    double& cost = world_.entities.Columns(row)[column];
    costs[i] = cost * share / count;
    cost -= cost * share;
  }
  for (double made = 0; made < count; ++made) {
    const std::uint32_t copy = Copy(row, kNone);
    for (size_t i = 0; i < kCategories; ++i)
      if (const std::uint32_t column = program.costColumn(static_cast<Allocation>(i)); column != kNone)
        world_.entities.Columns(copy)[column] = costs[i];
    ForEachPart(copy, [&](std::uint32_t part) {
      CountIn(world_.entities[part].type, 1);
      MarkMadeInside(table.submodels, part);
    });
    ChangeInside(table.submodels, world_.entities.CountOf(copy));
    world_.entities[copy].step = step;
    world_.Schedule(world_.now, copy);
  }
  return count;
}

// Everything but the number and what it holds.
std::uint32_t Groups::Copy(std::uint32_t row, std::uint32_t owner) {
  const std::uint32_t copy = NewRow();
  Entity& to = world_.entities[copy];
  const std::uint64_t number = to.number;
  to = world_.entities[row];
  to.number = number;
  to.held = to.members = to.next = kNone;
  to.owner = owner;
  to.lacksUnits = to.isStopped = false;
  to.order = 0;
  std::copy_n(world_.entities.Columns(row), world_.program().columns, world_.entities.Columns(copy));
  std::uint32_t last = kNone;
  for (std::uint32_t member = world_.entities[row].members; member != kNone; member = world_.entities[member].next) {
    const std::uint32_t copied = Copy(member, copy);
    (last == kNone ? world_.entities[copy].members : world_.entities[last].next) = copied;
    last = copied;
  }
  return copy;
}

double Groups::Split(const SplitTable& table, std::uint32_t row, std::uint32_t step) {
  std::uint32_t member = world_.entities[row].members;
  if (member == kNone) {
    world_.Warn(RunWarning::NothingToSplit, table.place);
    return 0;
  }
  world_.CountUp(table.splits);
  double count = 0;
  for (std::uint32_t at = member; at != kNone; at = world_.entities[at].next) ++count;
  world_.Trace(TraceAct::Split, row, 0, count);
  for (std::uint32_t at = member; at != kNone; at = world_.entities[at].next) TakeAttributes(table, row, at, 1 / count);
  Dissolve(row);
  while (member != kNone) {
    const std::uint32_t next = world_.entities[member].next;
    world_.entities[member].step = step;
    world_.entities[member].next = kNone;
    world_.Schedule(world_.now, member);
    member = next;
  }
  return count;
}

void Groups::TakeAttributes(const SplitTable& table, std::uint32_t batch, std::uint32_t member, double share) {
  const Program& program = world_.program();
  const auto take = [&](std::uint32_t column) {
    world_.entities.Columns(member)[column] = world_.entities.Columns(batch)[column];
  };
  if (table.attributes == MemberAttributes::All) {
    for (std::uint32_t i = 0; i < program.userColumns; ++i) take(program.firstUserColumn + i);
    for (const EntityAttribute attribute : kAssignableAttributes) TakeBuiltIn(attribute, batch, member, share);
  }
  if (table.attributes != MemberAttributes::Specific) return;
  for (std::uint32_t i = table.specific.first; i < table.specific.first + table.specific.count; ++i) {
    const Reference& what = program.splitAttributes[i];
    if (what.thing == Thing::EntityAttribute)
      TakeBuiltIn(static_cast<EntityAttribute>(what.index), batch, member, share);
    else
      take(static_cast<std::uint32_t>(what.index));
  }
}

void Groups::TakeBuiltIn(EntityAttribute attribute, std::uint32_t batch, std::uint32_t member, double share) {
  const std::uint32_t column = world_.program().ColumnOf(attribute);
  switch (attribute) {
    case EntityAttribute::Type:
      ChangeType(member, world_.entities[batch].type);
      return;
    case EntityAttribute::Picture:
      world_.entities[member].picture = world_.entities[batch].picture;
      return;
    default:
      break;
  }
  if (column == kNone) return;
  const double part = attribute == EntityAttribute::HoldCostRate ? share : 1;
  world_.entities.Columns(member)[column] = world_.entities.Columns(batch)[column] * part;
}

// Ends a batch: its members get its times, an equal share of its costs, and the first of them what it has seized itself.
void Groups::Dissolve(std::uint32_t batch) {
  const Program& program = world_.program();
  double count = 0;
  for (std::uint32_t member = world_.entities[batch].members; member != kNone; member = world_.entities[member].next) ++count;
  resources_.HandOver(batch, world_.entities[batch].members);
  for (std::uint32_t member = world_.entities[batch].members; member != kNone; member = world_.entities[member].next) {
    double* const to = world_.entities.Columns(member);
    const double* const from = world_.entities.Columns(batch);
    for (size_t i = 0; i < kCategories; ++i) {
      const auto category = static_cast<Allocation>(i);
      if (program.timeColumn(category) != kNone) to[program.timeColumn(category)] += from[program.timeColumn(category)];
      if (program.costColumn(category) != kNone) to[program.costColumn(category)] += from[program.costColumn(category)] / count;
    }
    world_.entities[member].since = world_.now;
    world_.entities[member].owner = kNone;
    resources_.Recheck(member);
  }
  world_.entities.Free(batch);
}

}  // namespace vardo
