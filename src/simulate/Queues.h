// The queue of a Process: who is its head.
#pragma once

#include "simulate/Entities.h"

#include <cstdint>
#include <tuple>
#include <vector>

namespace vardo {

// Lower priority numbers come first, then lower ranks, then those who joined earlier.
struct Waiting {
  double priority = 0;
  double rank = 0;
  std::uint64_t joined = 0;  // the order of joining
  std::uint32_t row = kNone;

  friend bool operator<(const Waiting& a, const Waiting& b) {
    return std::tie(a.priority, a.rank, a.joined) < std::tie(b.priority, b.rank, b.joined);
  }
};

// Where all have one priority and the first in is the first out, the entities are linked; else they form a heap.
class WaitingLine {
 public:
  void Clear() {
    first_ = last_ = kNone;
    heap_.clear();
    size_ = 0;
  }
  bool IsEmpty() const { return size_ == 0; }
  std::uint32_t size() const { return size_; }

  void Append(Entities& entities, std::uint32_t row);
  void Insert(const Waiting& waiting);
  // Of a line that is not empty; the priority, and who would be the head, of a heap alone.
  std::uint32_t Head() const { return heap_.empty() ? first_ : heap_.front().row; }
  double PriorityOfHead() const { return heap_.front().priority; }
  bool WouldLead(const Waiting& waiting) const { return size_ == 0 || waiting < heap_.front(); }
  void RemoveHead(Entities& entities);

 private:
  std::uint32_t first_ = kNone, last_ = kNone;
  std::vector<Waiting> heap_;
  std::uint32_t size_ = 0;
};

}  // namespace vardo
