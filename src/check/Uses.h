// Who speaks of the things of a model, and how.
#pragma once

#include "model/Model.h"

#include <array>
#include <vector>

namespace vardo {

// One field of one module.
struct FieldPlace {
  int module = -1;
  size_t place = 0;
  int row = -1;  // from 0; -1 for a field of the module itself
  explicit operator bool() const { return module >= 0; }
};

// Of one thing: where it is first read, assigned or otherwise made, in drawing order. What defines it does not count.
struct Use {
  FieldPlace read, assigned;
  bool IsUsed() const { return static_cast<bool>(read) || static_cast<bool>(assigned); }
};

class Uses {
 public:
  explicit Uses(const Model& model);
  const Use& Of(Thing thing, int index) const { return uses_[static_cast<size_t>(thing)][static_cast<size_t>(index)]; }

  // Resources whose capacity some Assign sets.
  bool CapacityIsAssigned(int resource) const { return capacityAssigned_[static_cast<size_t>(resource)]; }

 private:
  void Note(const Reference& reference, const FieldPlace& at, bool isAssigned);
  void NoteReferences(const Model& model, int module);
  void NoteExpression(const Model& model, const FieldPlace& at, const Expression& expression);

  std::array<std::vector<Use>, kThingCount> uses_;
  std::vector<bool> capacityAssigned_;
};

// The resources that a row of a Process may take: one, or the members of a set. Empty where nothing is known.
std::vector<int> ResourcesOfRow(const Model& model, int process, int row);
// The places of a set's members among the things of its kind.
std::vector<int> MembersOf(const Model& model, int setModule);

}  // namespace vardo
