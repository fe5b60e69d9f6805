#include "simulate/Resources.h"

#include "base/Numbers.h"

#include <algorithm>
#include <tuple>

namespace vardo {

void Resources::Clear() {
  lines_.resize(program().seizes.size());
  for (WaitingLine& line : lines_) line.Clear();
  waiting_ = 0;
  lastMember_.assign(program().seizeRows.size(), kNone);
  plans_.assign(program().resources.size(), {});
  claims_.clear();
  order_ = 0;
  freed_.clear();
}

// ------------------------------------------------------------------------------------------------------ seizing

bool Resources::Seize(std::uint32_t table, std::uint32_t row) {
  const SeizeTable& seize = program().seizes[table];
  const QueueTable& queue = program().queues[seize.queue];
  WaitingLine& line = lines_[table];
  Entity& entity = world_.entities[row];
  entity.joined = world_.now;
  if (seize.wants != kNone) KeepWants(seize, row);
  if (queue.isPlain) {
    if (line.IsEmpty() && Choose(seize, row)) {
      Grant(table, row, world_.Evaluate(seize.priority, row));
      return true;
    }
    entity.order = world_.calendar.TakeOrder();
    line.Append(world_.entities, row);
  } else {
    const Waiting waiting = WaitingOf(seize, row);
    if (line.WouldLead(waiting) && Choose(seize, row)) {
      Grant(table, row, waiting.priority);
      return true;
    }
    entity.order = waiting.joined;
    line.Insert(waiting);
  }
  ++waiting_;
  world_.AddLevel(queue.length, 1);
  world_.Trace(TraceAct::Queue, row);
  return false;
}

Waiting Resources::WaitingOf(const SeizeTable& table, std::uint32_t row) {
  const QueueTable& queue = program().queues[table.queue];
  const std::uint64_t order = world_.calendar.TakeOrder();
  double rank = 0;
  switch (queue.ranking) {
    case QueueType::FirstIn:
      break;
    case QueueType::LastIn:
      rank = -static_cast<double>(order);
      break;
    case QueueType::LowestValue:
      rank = world_.Evaluate(queue.rank, row);
      break;
    case QueueType::HighestValue:
      rank = -world_.Evaluate(queue.rank, row);
      break;
  }
  return {world_.Evaluate(table.priority, row), rank, order, row};
}

// What is wanted is evaluated on arrival; what is not always the same is kept in the entity's columns.
void Resources::KeepWants(const SeizeTable& table, std::uint32_t row) {
  for (std::uint32_t i = 0; i < table.rows.count; ++i) {
    const SeizeRow& wanted = program().seizeRows[table.rows.first + i];
    const double units = world_.Count(wanted.quantity, row);
    const double index = wanted.index == kNone ? 0 : world_.Evaluate(wanted.index, row);
    double* const kept = world_.entities.Columns(row) + table.wants + size_t{2} * i;
    kept[0] = units;
    kept[1] = index;
  }
}

// Fills choices_; false when not all that is wanted is free.
bool Resources::Choose(const SeizeTable& table, std::uint32_t row) {
  choices_.clear();
  const double* kept = table.wants == kNone ? nullptr : world_.entities.Columns(row) + table.wants;
  for (std::uint32_t i = 0; i < table.rows.count; ++i) {
    const std::uint32_t place = table.rows.first + i;
    const SeizeRow& wanted = program().seizeRows[place];
    const double units = kept == nullptr ? world_.Count(wanted.quantity, row) : kept[size_t{2} * i];
    const double index = kept == nullptr ? 0 : kept[size_t{2} * i + 1];
    if (!ChooseFor(wanted, place, static_cast<std::uint32_t>(units), index)) return false;
  }
  return true;
}

bool Resources::ChooseFor(const SeizeRow& wanted, std::uint32_t place, std::uint32_t units, double index) {
  if (wanted.set == kNone) {
    if (units > FreeBesides(wanted.resource)) return false;
    choices_.push_back({wanted.resource, units, kNone});
    return true;
  }
  const std::uint32_t member = ChooseMember(wanted, place, units, index);
  if (member == kNone) return false;
  choices_.push_back({program().setMembers[program().sets[wanted.set].members.first + member], units, member});
  return true;
}

// Of the set, from 0; kNone when none has enough free.
std::uint32_t Resources::ChooseMember(const SeizeRow& wanted, std::uint32_t place, std::uint32_t units, double index) {
  const SetTable& set = program().sets[wanted.set];
  const std::uint32_t count = set.members.count;
  const auto resourceAt = [&](std::uint32_t member) { return program().setMembers[set.members.first + member]; };
  const auto isEnough = [&](std::uint32_t member) { return units <= FreeBesides(resourceAt(member)); };
  const auto firstFrom = [&](std::uint32_t start) {
    for (std::uint32_t i = 0; i < count; ++i)
      if (isEnough((start + i) % count)) return (start + i) % count;
    return kNone;
  };
  // The first of those with the least measure.
  const auto least = [&](const auto& measure) {
    std::uint32_t best = kNone;
    for (std::uint32_t member = 0; member < count; ++member)
      if (isEnough(member) && (best == kNone || measure(resourceAt(member)) < measure(resourceAt(best)))) best = member;
    return best;
  };
  switch (wanted.rule) {
    case SelectionRule::Cyclical:
      return firstFrom(lastMember_[place] + 1);  // kNone + 1 is 0
    case SelectionRule::PreferredOrder:
      return firstFrom(0);
    case SelectionRule::LargestRemaining:
      return least([&](std::uint32_t resource) { return -FreeBesides(resource); });
    case SelectionRule::SmallestBusy:
      return least([&](std::uint32_t resource) { return Busy(resource) + ChosenUnits(resource); });
    case SelectionRule::SpecificMember: {
      const std::uint32_t member = world_.IndexInSet(set, index, wanted.place);
      return isEnough(member) ? member : kNone;
    }
    case SelectionRule::Random:
      break;
  }
  std::uint32_t enough = 0;
  for (std::uint32_t member = 0; member < count; ++member) enough += isEnough(member) ? 1 : 0;
  if (enough == 0) return kNone;
  // The number counts as drawn when all is granted.
  Stream stream = world_.StreamOf(wanted.source);
  auto skipped = static_cast<std::uint32_t>(stream.Uniform() * enough);
  for (std::uint32_t member = 0;; ++member)
    if (isEnough(member) && skipped-- == 0) return member;
}

std::uint32_t Resources::ChosenUnits(std::uint32_t resource) const {
  std::uint32_t units = 0;
  for (const Choice& choice : choices_)
    if (choice.resource == resource) units += choice.units;
  return units;
}

// What has been chosen becomes the entity's, which has waited until now.
void Resources::Grant(std::uint32_t table, std::uint32_t row, double priority) {
  const SeizeTable& seize = program().seizes[table];
  const double waited = world_.now - world_.entities[row].joined;
  world_.Account(row, Allocation::Wait, false);
  world_.entities[row].waited += waited;
  world_.Observe(program().queues[seize.queue].wait, waited);
  for (std::uint32_t i = 0; i < choices_.size(); ++i) {
    const Choice& choice = choices_[i];
    const SeizeRow& wanted = program().seizeRows[seize.rows.first + i];
    const ResourceTable& resource = TableOf(choice.resource);
    if (choice.member != kNone) {
      lastMember_[seize.rows.first + i] = choice.member;
      if (wanted.rule == SelectionRule::Random) world_.StreamOf(wanted.source).Uniform();
      if (wanted.save != kNone) world_.entities.Columns(row)[wanted.save] = choice.member + 1;
    }
    if (choice.units == 0) continue;
    SetBusy(choice.resource, Busy(choice.resource) + choice.units);
    world_.entities.Hold(row, {choice.resource, choice.units, table, row, priority, ++order_});
    world_.CountUp(resource.seized);
    if (resource.useCost != kNone) {
      world_.CountUp(resource.useCost, choice.units * resource.perUse);
      world_.AddCost(row, seize.category, choice.units * resource.perUse, true);
    }
    world_.Trace(TraceAct::Seize, row, choice.resource, choice.units);
  }
}

bool Resources::GrantHead(std::uint32_t table) {
  const SeizeTable& seize = program().seizes[table];
  const QueueTable& queue = program().queues[seize.queue];
  WaitingLine& line = lines_[table];
  const std::uint32_t row = line.Head();
  if (!Choose(seize, row)) return false;
  const double priority = queue.isPlain ? world_.Evaluate(seize.priority, row) : line.PriorityOfHead();
  line.RemoveHead(world_.entities);
  --waiting_;
  world_.AddLevel(queue.length, -1);
  world_.CountUp(queue.waited);
  Grant(table, row, priority);
  world_.Schedule(world_.now, row);
  return true;
}

// ------------------------------------------------------------------------------------------------------ capacity

void Resources::SetBusy(std::uint32_t resource, double busy) {
  const ResourceTable& table = TableOf(resource);
  world_.SetLevel(table.busy, busy);
  if (plans_[resource].isMissed) [[unlikely]]
    SetScheduled(resource);
  else
    SetUtilisation(table);
}

void Resources::SetUtilisation(const ResourceTable& table) {
  const double busy = world_.levels[table.busy].value;
  const double scheduled = world_.levels[table.scheduled].value;
  world_.SetLevel(table.utilisation, scheduled > 0 ? busy / scheduled : 0);
  if (table.idle != kNone) world_.SetLevel(table.idle, std::max(scheduled - busy, 0.0));
}

// Under rule Wait what is busy counts as scheduled until the plan is met.
void Resources::SetScheduled(std::uint32_t resource) {
  const ResourceTable& table = TableOf(resource);
  Plan& plan = plans_[resource];
  const double planned = world_.capacities[resource];
  const double busy = Busy(resource);
  plan.isMissed = plan.rule == ScheduleRule::Wait && busy > planned;
  const double scheduled = plan.isMissed ? busy : planned;
  world_.SetLevel(table.scheduled, scheduled);
  world_.SetLevel(table.available, scheduled > 0 ? 1 : 0);
  SetUtilisation(table);
  if (plan.isMissed || plan.actor == kNone) return;
  world_.ScheduleIn(plan.seconds, plan.actor, table.place);
  plan.actor = kNone;
}

void Resources::SetCapacity(std::uint32_t resource, double units, ScheduleRule rule) {
  world_.capacities[resource] = units;
  plans_[resource].rule = rule;
  const double busy = Busy(resource);
  if (rule == ScheduleRule::Preempt && busy > units) Preempt(resource, static_cast<std::uint32_t>(busy - units));
  SetScheduled(resource);
  world_.Trace(TraceAct::Capacity, kNone, resource, units);
  Freed(resource);
  ServeFreed();
}

void Resources::ActWhenPlanIsMet(std::uint32_t resource, std::uint32_t actor, double seconds) {
  Plan& plan = plans_[resource];
  if (plan.isMissed) {
    plan.actor = actor;
    plan.seconds = seconds;
  } else {
    world_.ScheduleIn(seconds, actor, TableOf(resource).place);
  }
}

// ------------------------------------------------------------------------------------------------------ releasing

void Resources::Release(const ReleaseTable& table, std::uint32_t row) {
  if (table.seize != kNone)
    GiveBackGranted(table.seize, row);
  else
    for (std::uint32_t i = 0; i < table.rows.count; ++i) GiveBack(program().seizeRows[table.rows.first + i], row);
  ServeFreed();
}

// What has been taken meanwhile is given back, too: nobody owes it any more.
void Resources::GiveBackGranted(std::uint32_t seize, std::uint32_t row) {
  for (std::uint32_t held = world_.entities[row].held; held != kNone;) {
    const Held units = world_.entities.HeldAt(held);
    if (units.seize == seize) TakeBack(held, units.units);
    held = units.next;
  }
  if (claims_.empty()) return;
  if (std::erase_if(claims_, [&](const Claim& claim) { return claim.row == row && claim.seize == seize; }) != 0) Recheck(row);
}

void Resources::GiveBack(const SeizeRow& asked, std::uint32_t row) {
  const auto wanted = static_cast<std::uint32_t>(world_.Count(asked.quantity, row));
  std::uint32_t resource = asked.resource;
  if (asked.set != kNone && asked.rule == SelectionRule::SpecificMember)
    resource = world_.MemberOf(program().sets[asked.set], world_.Evaluate(asked.index, row), asked.place);
  const auto members = [&](std::uint32_t held) {
    const Rows rows = program().sets[asked.set].members;
    const auto first = program().setMembers.begin() + rows.first;
    return std::find(first, first + rows.count, held) != first + rows.count;
  };
  const std::uint32_t missing = resource != kNone
                                    ? GiveBackSome(row, wanted, [&](std::uint32_t held) { return held == resource; })
                                    : GiveBackSome(row, wanted, members);
  if (missing == 0) return;
  const std::string& name = resource != kNone ? TableOf(resource).name : program().sets[asked.set].name;
  throw ModelError{asked.place,
                   "gives back " + NumberText(wanted) + " of \"" + name + "\", holding " + NumberText(wanted - missing)};
}

// The latest first; of a batch its own first, then its members'. Giving back what has been taken ends the claim to it. Returns
// how many units were missing.
template <class Matches>
std::uint32_t Resources::GiveBackSome(std::uint32_t row, std::uint32_t units, const Matches& matches) {
  for (std::uint32_t held = world_.entities[row].held; held != kNone && units != 0;) {
    const Held entry = world_.entities.HeldAt(held);
    if (matches(entry.resource)) {
      const std::uint32_t some = std::min(units, entry.units);
      TakeBack(held, some);
      units -= some;
    }
    held = entry.next;
  }
  for (size_t i = claims_.size(); i-- > 0 && units != 0;) {
    if (claims_[i].row != row || !matches(claims_[i].resource)) continue;
    const std::uint32_t some = std::min(units, claims_[i].units);
    units -= some;
    claims_[i].units -= some;
    if (claims_[i].units == 0) claims_.erase(claims_.begin() + static_cast<std::ptrdiff_t>(i));
    Recheck(TopOf(row));
  }
  for (std::uint32_t member = world_.entities[row].members; member != kNone && units != 0; member = world_.entities[member].next)
    units = GiveBackSome(member, units, matches);
  return units;
}

void Resources::TakeBack(std::uint32_t held, std::uint32_t units) {
  Held& entry = world_.entities.HeldAt(held);
  const std::uint32_t resource = entry.resource;
  world_.Trace(TraceAct::Release, TopOf(entry.owner), resource, units);
  entry.units -= units;
  if (entry.units == 0) world_.entities.Unhold(held);
  SetBusy(resource, Busy(resource) - units);
  Freed(resource);
}

void Resources::Freed(std::uint32_t resource) {
  if (std::find(freed_.begin(), freed_.end(), resource) == freed_.end()) freed_.push_back(resource);
}

void Resources::ServeFreed() {
  if (!claims_.empty())
    for (const std::uint32_t resource : freed_) ServeClaims(resource);
  if (waiting_ != 0) ServeLines();
  freed_.clear();
}

// The heads of all lines that want what is free, in the order of (priority, time of joining, order of joining), until none can be
// granted. A head that cannot be granted now cannot be later in the same round, for units only become fewer.
void Resources::ServeLines() {
  candidates_.clear();
  for (const std::uint32_t resource : freed_) {
    const Rows seizes = TableOf(resource).seizes;
    for (std::uint32_t i = seizes.first; i < seizes.first + seizes.count; ++i) {
      const std::uint32_t seize = program().resourceSeizes[i];
      if (!lines_[seize].IsEmpty() && std::find(candidates_.begin(), candidates_.end(), seize) == candidates_.end())
        candidates_.push_back(seize);
    }
  }
  const auto keyOf = [&](std::uint32_t seize) {
    const Entity& head = world_.entities[lines_[seize].Head()];
    const bool isPlain = program().queues[program().seizes[seize].queue].isPlain;
    const double priority =
        isPlain ? program().values[program().seizes[seize].priority].constant : lines_[seize].PriorityOfHead();
    return std::tuple(priority, head.joined, head.order);
  };
  while (!candidates_.empty()) {
    size_t best = 0;
    for (size_t i = 1; i < candidates_.size(); ++i)
      if (keyOf(candidates_[i]) < keyOf(candidates_[best])) best = i;
    const std::uint32_t seize = candidates_[best];
    if (GrantHead(seize) && !lines_[seize].IsEmpty()) continue;
    candidates_.erase(candidates_.begin() + static_cast<std::ptrdiff_t>(best));
  }
}

// ------------------------------------------------------------------------------------------------------ taking units away

std::uint32_t Resources::TopOf(std::uint32_t row) const {
  while (world_.entities[row].owner != kNone) row = world_.entities[row].owner;
  return row;
}

// One that is in a delay which does not end in this very instant.
bool Resources::CanBeStopped(std::uint32_t top) const {
  const Entity& entity = world_.entities[top];
  return program().steps[entity.step].op == Op::DelayEnd && entity.order != 0 && entity.joined > world_.now;
}

// Accounts for the time until now, before what the entity costs changes.
void Resources::Settle(std::uint32_t top) {
  Entity& entity = world_.entities[top];
  const Step& step = program().steps[entity.step];
  const bool isDelayed = step.op == Op::DelayEnd && entity.order != 0;
  if (entity.isStopped) entity.waited += world_.now - entity.since;
  world_.Account(top, isDelayed ? program().delays[step.table].category : Allocation::Wait, isDelayed);
}

void Resources::Preempt(std::uint32_t resource, std::uint32_t units) {
  struct Victim {
    bool isKept;
    double priority;
    std::uint64_t grant;
    std::uint32_t held;
    bool operator<(const Victim& other) const {
      return std::tuple(isKept, -priority, other.grant) < std::tuple(other.isKept, -other.priority, grant);
    }
  };
  std::vector<Victim> victims;
  for (std::uint32_t held = 0; held < world_.entities.heldRows(); ++held) {
    const Held& entry = world_.entities.HeldAt(held);
    if (entry.units != 0 && entry.resource == resource && entry.owner != kNone)
      victims.push_back({!CanBeStopped(TopOf(entry.owner)), entry.priority, entry.grant, held});
  }
  std::sort(victims.begin(), victims.end());
  for (size_t i = 0; i < victims.size() && units != 0; ++i) {
    const std::uint32_t some = std::min(units, world_.entities.HeldAt(victims[i].held).units);
    Take(victims[i].held, some);
    units -= some;
  }
}

void Resources::Take(std::uint32_t held, std::uint32_t units) {
  Held& entry = world_.entities.HeldAt(held);
  const Held taken = entry;
  const std::uint32_t top = TopOf(taken.owner);
  world_.Trace(TraceAct::Preempt, top, taken.resource, units);
  Settle(top);
  Entity& entity = world_.entities[top];
  if (CanBeStopped(top)) {
    entity.joined -= world_.now;  // what is left
    entity.order = 0;
    entity.isStopped = true;
  }
  entity.lacksUnits = true;
  claims_.push_back({taken.resource, units, taken.seize, taken.owner, taken.priority, ++order_});
  entry.units -= units;
  if (entry.units == 0) world_.entities.Unhold(held);
  SetBusy(taken.resource, Busy(taken.resource) - units);
}

void Resources::ServeClaims(std::uint32_t resource) {
  while (FreeUnits(resource) > 0) {
    auto first = claims_.end();
    for (auto claim = claims_.begin(); claim != claims_.end(); ++claim)
      if (claim->resource == resource &&
          (first == claims_.end() || std::tie(claim->priority, claim->since) < std::tie(first->priority, first->since)))
        first = claim;
    if (first == claims_.end()) return;
    const Claim claim = *first;
    const auto units = static_cast<std::uint32_t>(std::min<double>(claim.units, FreeUnits(resource)));
    first->units -= units;
    if (first->units == 0) claims_.erase(first);
    const std::uint32_t top = TopOf(claim.row);
    Settle(top);
    world_.entities.Hold(claim.row, {resource, units, claim.seize, claim.row, claim.priority, ++order_});
    SetBusy(resource, Busy(resource) + units);
    Recheck(top);
  }
}

void Resources::Recheck(std::uint32_t row) {
  Entity& entity = world_.entities[row];
  entity.lacksUnits = std::any_of(claims_.begin(), claims_.end(), [&](const Claim& claim) { return TopOf(claim.row) == row; });
  if (!entity.lacksUnits && entity.isStopped) Resume(row);
}

void Resources::Resume(std::uint32_t top) {
  Settle(top);
  Entity& entity = world_.entities[top];
  entity.isStopped = false;
  if (program().steps[entity.step].op != Op::DelayEnd) {
    world_.Schedule(world_.now, top);
    return;
  }
  world_.Trace(TraceAct::Resume, top, 0, entity.joined);
  entity.joined += world_.now;
  world_.Schedule(entity.joined, top);
}

void Resources::Forget(std::uint32_t row) {
  if (claims_.empty()) return;
  std::erase_if(claims_, [&](const Claim& claim) { return claim.row == row; });
}

void Resources::HandOver(std::uint32_t from, std::uint32_t to) {
  world_.entities.HandOver(from, to);
  for (Claim& claim : claims_)
    if (claim.row == from) claim.row = to;
}

bool Resources::IsSound() {
  std::vector<double> held(program().resources.size(), 0);
  for (std::uint32_t i = 0; i < world_.entities.heldRows(); ++i)
    held[world_.entities.HeldAt(i).resource] += world_.entities.HeldAt(i).units;
  for (std::uint32_t resource = 0; resource < held.size(); ++resource)
    if (held[resource] != Busy(resource)) return false;
  for (size_t i = 0; i < lines_.size(); ++i)
    if (world_.levels[program().queues[program().seizes[i].queue].length].value != lines_[i].size()) return false;
  return true;
}

}  // namespace vardo
