#include "simulate/Entities.h"

#include <algorithm>

namespace vardo {

void Entities::Clear(const Program& program) {
  width_ = program.columns;
  rows_.assign(program.actors.size(), {});
  columns_.assign(rows_.size() * width_, 0);
  held_.clear();
  free_ = freeHeld_ = kNone;
  alive_ = 0;
  for (size_t i = 0; i < program.actors.size(); ++i) rows_[i].step = program.actors[i];
}

std::uint32_t Entities::Make() {
  ++alive_;
  if (free_ == kNone) {
    rows_.emplace_back();
    columns_.resize(columns_.size() + width_);
    return rows() - 1;
  }
  const std::uint32_t row = free_;
  free_ = rows_[row].next;
  rows_[row] = {};
  std::fill_n(Columns(row), width_, 0.0);
  return row;
}

void Entities::Free(std::uint32_t row) {
  --alive_;
  rows_[row].order = rows_[row].number = 0;
  rows_[row].held = kNone;
  rows_[row].next = free_;
  free_ = row;
}

std::uint32_t Entities::Hold(std::uint32_t row, const Held& what) {
  std::uint32_t held = freeHeld_;
  if (held == kNone) {
    held = heldRows();
    held_.emplace_back();
  } else {
    freeHeld_ = held_[held].next;
  }
  held_[held] = what;
  held_[held].owner = row;
  held_[held].next = rows_[row].held;
  rows_[row].held = held;
  return held;
}

void Entities::Unhold(std::uint32_t held) {
  std::uint32_t* link = &rows_[held_[held].owner].held;
  while (*link != held) link = &held_[*link].next;
  *link = held_[held].next;
  held_[held].units = 0;
  held_[held].next = freeHeld_;
  freeHeld_ = held;
}

void Entities::HandOver(std::uint32_t from, std::uint32_t to) {
  std::uint32_t* end = &rows_[from].held;
  while (*end != kNone) {
    held_[*end].owner = to;
    end = &held_[*end].next;
  }
  *end = rows_[to].held;
  rows_[to].held = rows_[from].held;
  rows_[from].held = kNone;
}

bool Entities::Abandon(std::uint32_t row) {
  if (rows_[row].held == kNone) return false;
  for (std::uint32_t held = rows_[row].held; held != kNone; held = held_[held].next) held_[held].owner = kNone;
  rows_[row].held = kNone;
  return true;
}

std::uint32_t Entities::CountOf(std::uint32_t row) const {
  std::uint32_t member = rows_[row].members;
  if (member == kNone) return 1;
  std::uint32_t count = 0;
  for (; member != kNone; member = rows_[member].next) count += CountOf(member);
  return count;
}

}  // namespace vardo
