#include "simulate/Queues.h"

#include <algorithm>

namespace vardo {
namespace {

// The standard heaps have the largest in front.
bool IsBehind(const Waiting& a, const Waiting& b) { return b < a; }

}  // namespace

void WaitingLine::Append(Entities& entities, std::uint32_t row) {
  entities[row].next = kNone;
  (size_ == 0 ? first_ : entities[last_].next) = row;
  last_ = row;
  ++size_;
}

void WaitingLine::Insert(const Waiting& waiting) {
  heap_.push_back(waiting);
  std::push_heap(heap_.begin(), heap_.end(), IsBehind);
  ++size_;
}

void WaitingLine::RemoveHead(Entities& entities) {
  --size_;
  if (heap_.empty()) {
    first_ = entities[first_].next;
    return;
  }
  std::pop_heap(heap_.begin(), heap_.end(), IsBehind);
  heap_.pop_back();
}

}  // namespace vardo
