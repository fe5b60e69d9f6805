// The entities of a replication, and what they hold. An entity is a row; rows of those that have gone are used again.
#pragma once

#include "model/Program.h"

#include <cstdint>
#include <vector>

namespace vardo {

struct Entity {
  double created = 0;
  double since = 0;          // until when its time is accounted for
  double joined = 0;         // the queue it waits in; in a delay, when that ends; stopped in one, what is left of it
  double entered = 0;        // the Process it is in
  double waited = 0;         // in that Process, so far
  std::uint64_t order = 0;   // of its live event; 0: it has none
  std::uint64_t number = 0;  // 0: the row is free
  std::uint32_t step = 0;
  std::uint32_t next = kNone;     // in the list it is in: of a queue, of a batch's members, of free rows
  std::uint32_t held = kNone;     // the latest first
  std::uint32_t members = kNone;  // of a temporary batch
  std::uint32_t owner = kNone;    // the batch it is a member of
  std::uint16_t type = 0, picture = 0;
  bool lacksUnits = false;  // some it held were taken: no delay of its goes on before they are back
  bool isStopped = false;   // in a delay, or before one
};

// Units of one resource, granted at one moment.
struct Held {
  std::uint32_t resource = 0;
  std::uint32_t units = 0;
  std::uint32_t seize = 0;     // which Process's
  std::uint32_t owner = 0;     // the entity; kNone: it has left
  double priority = 0;         // of the seize
  std::uint64_t grant = 0;     // the later, the larger
  std::uint32_t next = kNone;  // of the same entity, or of those free
};

class Entities {
 public:
  // The first rows are of those who act without being an entity.
  void Clear(const Program& program);

  Entity& operator[](std::uint32_t row) { return rows_[row]; }
  const Entity& operator[](std::uint32_t row) const { return rows_[row]; }
  double* Columns(std::uint32_t row) { return columns_.data() + size_t{row} * width_; }
  double Get(std::uint32_t row, std::uint32_t column) { return column == kNone ? 0 : Columns(row)[column]; }

  // A row for a new entity, all its columns 0.
  std::uint32_t Make();
  void Free(std::uint32_t row);
  std::uint32_t alive() const { return alive_; }
  std::uint32_t rows() const { return static_cast<std::uint32_t>(rows_.size()); }
  size_t BytesEach() const { return sizeof(Entity) + width_ * sizeof(double); }

  // --- Units held.
  Held& HeldAt(std::uint32_t held) { return held_[held]; }
  std::uint32_t heldRows() const { return static_cast<std::uint32_t>(held_.size()); }
  std::uint32_t Hold(std::uint32_t row, const Held& what);
  // Takes an entry out of its entity's list.
  void Unhold(std::uint32_t held);
  void HandOver(std::uint32_t from, std::uint32_t to);
  // What an entity that goes still holds is nobody's from now on. False when it holds nothing.
  bool Abandon(std::uint32_t row);

  // Those in a batch, itself included when it is none.
  std::uint32_t CountOf(std::uint32_t row) const;

 private:
  std::vector<Entity> rows_;
  std::vector<double> columns_;
  std::vector<Held> held_;
  size_t width_ = 0;
  std::uint32_t free_ = kNone, freeHeld_ = kNone;
  std::uint32_t alive_ = 0;
};

}  // namespace vardo
