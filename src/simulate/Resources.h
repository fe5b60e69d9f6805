// Who gets a resource, who has to wait for it, and from whom it is taken.
#pragma once

#include "simulate/Queues.h"
#include "simulate/World.h"

#include <cstdint>
#include <vector>

namespace vardo {

class Resources {
 public:
  explicit Resources(World& world) : world_(world) {}
  void Clear();

  // True: granted at once. False: the entity waits, and goes on at its own step when it is granted.
  bool Seize(std::uint32_t table, std::uint32_t row);
  void Release(const ReleaseTable& table, std::uint32_t row);

  // The capacity that is planned from now on.
  void SetCapacity(std::uint32_t resource, double units, ScheduleRule rule);
  // Lets an actor act so many seconds from now, or from the moment when no more units are busy than are planned.
  void ActWhenPlanIsMet(std::uint32_t resource, std::uint32_t actor, double seconds);

  // An entity that lacks units which were taken from it waits before its delay, and goes on at its own step when they are back.
  void StopBeforeDelay(std::uint32_t row) { world_.entities[row].isStopped = true; }
  // One that has left lacks nothing any more.
  void Forget(std::uint32_t row);
  // Another entity takes the place of one, with what it holds and lacks.
  void HandOver(std::uint32_t from, std::uint32_t to);
  // Says anew whether an entity or one of its members lacks units.
  void Recheck(std::uint32_t row);

  // Whether the busy units are those that are held, and the lengths of the queues those of the lines.
  bool IsSound();

 private:
  // What is planned for a resource.
  struct Plan {
    ScheduleRule rule = ScheduleRule::Wait;
    bool isMissed = false;        // more are busy
    std::uint32_t actor = kNone;  // waits for it
    double seconds = 0;           // after which it acts
  };
  // What a row of a seize gets.
  struct Choice {
    std::uint32_t resource = 0;
    std::uint32_t units = 0;
    std::uint32_t member = kNone;  // of the set, from 0
  };
  // Units that were taken from somebody, who has them back before anybody else gets any.
  struct Claim {
    std::uint32_t resource = 0;
    std::uint32_t units = 0;
    std::uint32_t seize = 0;
    std::uint32_t row = 0;
    double priority = 0;
    std::uint64_t since = 0;  // the order in which they were taken
  };

  const Program& program() const { return world_.program(); }
  const ResourceTable& TableOf(std::uint32_t resource) const { return program().resources[resource]; }
  double Busy(std::uint32_t resource) const { return world_.levels[TableOf(resource).busy].value; }
  double FreeUnits(std::uint32_t resource) const { return world_.capacities[resource] - Busy(resource); }

  void KeepWants(const SeizeTable& table, std::uint32_t row);
  bool Choose(const SeizeTable& table, std::uint32_t row);
  bool ChooseFor(const SeizeRow& wanted, std::uint32_t place, std::uint32_t units, double index);
  std::uint32_t ChooseMember(const SeizeRow& wanted, std::uint32_t place, std::uint32_t units, double index);
  std::uint32_t ChosenUnits(std::uint32_t resource) const;
  double FreeBesides(std::uint32_t resource) const { return FreeUnits(resource) - ChosenUnits(resource); }
  void Grant(std::uint32_t table, std::uint32_t row, double priority);
  bool GrantHead(std::uint32_t table);
  Waiting WaitingOf(const SeizeTable& table, std::uint32_t row);

  void SetBusy(std::uint32_t resource, double busy);
  void SetScheduled(std::uint32_t resource);
  void SetUtilisation(const ResourceTable& table);

  void GiveBackGranted(std::uint32_t seize, std::uint32_t row);
  void GiveBack(const SeizeRow& asked, std::uint32_t row);
  template <class Matches>
  std::uint32_t GiveBackSome(std::uint32_t row, std::uint32_t units, const Matches& matches);
  void TakeBack(std::uint32_t held, std::uint32_t units);
  void Freed(std::uint32_t resource);
  void ServeFreed();
  void ServeClaims(std::uint32_t resource);
  void ServeLines();

  std::uint32_t TopOf(std::uint32_t row) const;
  bool CanBeStopped(std::uint32_t top) const;
  void Settle(std::uint32_t top);
  void Preempt(std::uint32_t resource, std::uint32_t units);
  void Take(std::uint32_t held, std::uint32_t units);
  void Resume(std::uint32_t top);

  World& world_;
  std::vector<WaitingLine> lines_;         // by seize
  std::uint32_t waiting_ = 0;              // in all of them
  std::vector<std::uint32_t> lastMember_;  // by row of a seize, from 0; kNone before the first
  std::vector<Plan> plans_;                // by resource
  std::vector<Claim> claims_;
  std::uint64_t order_ = 0;                // of grants and claims
  std::vector<std::uint32_t> freed_;       // resources to be served
  std::vector<Choice> choices_;            // of the seize that is being looked at
  std::vector<std::uint32_t> candidates_;  // seizes
};

}  // namespace vardo
