// Who holds what on the way, and what may become of it.
#pragma once

#include "check/CheckedModel.h"

#include <map>
#include <vector>

namespace vardo {

bool HasAction(const CheckedModel& checked, int process, ProcessAction action);
bool Seizes(const CheckedModel& checked, int process);

// What a row of a Process asks for or gives back: a resource, or any member of a set.
struct Claim {
  Reference of;
  std::vector<int> resources;
  FieldPlace at;
  bool IsSure() const { return of.thing == Thing::Resource; }
};
std::vector<Claim> ClaimsOf(const CheckedModel& checked, int process);

// Only what is held beyond the Process that seizes it is looked at. A set's member is held and given back perhaps, never surely.
class Holding {
 public:
  explicit Holding(const CheckedModel& checked);

  // By those who seize without giving back, and by those who give back.
  const std::vector<Claim>& seized() const { return seized_; }
  const std::vector<Claim>& released() const { return released_; }
  bool IsReleased(const Claim& claim) const { return IsSharedBy(claim, releasedBy_); }
  bool IsSeized(const Claim& claim) const { return IsSharedBy(claim, seizedBy_); }

  // Somebody can leave at a Dispose with what he has from a Process, though there is one that would take it back.
  struct Loss {
    int dispose, process;
    const Claim* claim;
  };
  const std::vector<Loss>& losses() const { return losses_; }
  // Somebody can come to give back what he does not hold.
  const std::vector<const Claim*>& unheld() const { return unheld_; }
  // Who surely holds one resource asks for another: where, by both.
  using Asking = std::map<int, std::map<int, int>>;
  const Asking& asking() const { return asking_; }

 private:
  using ByResource = std::map<int, std::vector<const Claim*>>;
  static ByResource Sorted(const std::vector<Claim>& claims);
  static bool IsSharedBy(const Claim& claim, const ByResource& others);

  bool Duplicates(int node, int exit) const;
  void Follow(const Claim& claim);
  std::vector<int> WhereUnheld(const std::vector<int>& takers, const std::vector<int>& givers,
                               const std::vector<int>& held) const;

  const CheckedModel& checked_;
  std::vector<Claim> seized_, released_;
  ByResource seizedBy_, releasedBy_;
  std::vector<int> seizers_;         // all Processes that ask for something
  std::vector<ExitOfNode> unladen_;  // by which entities come that hold nothing
  std::vector<Loss> losses_;
  std::vector<const Claim*> unheld_;
  Asking asking_;
};

}  // namespace vardo
