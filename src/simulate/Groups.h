// Entities that become one, several or none: they are made, gathered, copied, divided and leave.
#pragma once

#include "simulate/Resources.h"
#include "simulate/World.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace vardo {

// More entities than are allowed to be there at a time.
struct TooManyEntities {};

class Groups {
 public:
  Groups(World& world, Resources& resources) : world_(world), resources_(resources) {}
  void Clear();

  // A new entity of a type, inside of those submodels. Throws TooManyEntities.
  std::uint32_t Make(std::uint32_t type, const Rows& submodels);
  // It leaves the model, and its members with it.
  void Dispose(const DisposeTable& table, std::uint32_t row);
  void ChangeType(std::uint32_t row, std::uint32_t type);

  // The batch that is complete with this entity; kNone when it waits for others.
  std::uint32_t Gather(std::uint32_t batch, std::uint32_t row);
  // Puts copies on their way, at that step; how many.
  double Duplicate(const DuplicateTable& table, std::uint32_t row, std::uint32_t step);
  // Puts the members of a batch on their way, at that step; how many, 0 for what is no batch.
  double Split(const SplitTable& table, std::uint32_t row, std::uint32_t step);

  // --- Submodels.
  void EnterSubmodel(const SubmodelTable& submodel, std::uint32_t row);
  void LeaveSubmodel(const SubmodelTable& submodel, std::uint32_t row);

  std::uint32_t mostEntities = 1'000'000;
  // Whether what came in and has not gone out is what is there.
  bool IsSound() const;

 private:
  // Those who wait for a batch of theirs to be complete.
  struct Group {
    std::uint32_t first = kNone, last = kNone;
    std::uint32_t count = 0, size = 0;
  };

  std::uint32_t NewRow();
  void CountIn(std::uint32_t type, double count);
  void CountOut(std::uint32_t type, double count);
  void ChangeInside(const Rows& submodels, double count);
  void MarkMadeInside(const Rows& submodels, std::uint32_t row);
  template <class Visit>
  void ForEachPart(std::uint32_t row, const Visit& visit);

  void OrderMembers(const QueueTable& queue, Group& group);
  void SaveAttributes(SaveCriterion criterion, const Group& group, std::uint32_t batch);
  std::uint32_t MakeBatch(const BatchTable& table, const Group& group);
  void MakeTemporary(const Group& group, std::uint32_t batch);
  void MakePermanent(const BatchTable& table, const Group& group, std::uint32_t model, std::uint32_t batch);
  std::uint32_t Copy(std::uint32_t row, std::uint32_t owner);
  void TakeAttributes(const SplitTable& table, std::uint32_t batch, std::uint32_t member, double share);
  void TakeBuiltIn(EntityAttribute attribute, std::uint32_t batch, std::uint32_t member, double share);
  void FreeCombined(std::uint32_t row, std::uint32_t into);
  void Dissolve(std::uint32_t batch);
  void Leave(const DisposeTable& table, std::uint32_t row);

  World& world_;
  Resources& resources_;
  std::vector<std::unordered_map<std::uint64_t, Group>> groups_;  // by batch, by the attribute's bits; only looked up
  std::uint64_t numbers_ = 0;
};

}  // namespace vardo
