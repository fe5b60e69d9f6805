#include "simulate/Calendar.h"

#include <algorithm>

namespace vardo {
namespace {

// The least of four neighbours, without a branch.
size_t LeastOfFour(const EventKey* keys) {
  const size_t a = keys[1] < keys[0] ? 1 : 0;
  const size_t b = keys[3] < keys[2] ? 3 : 2;
  return keys[b] < keys[a] ? b : a;
}

}  // namespace

void Calendar::Clear() {
  groups_.resize(std::max<size_t>(groups_.size(), 2));
  for (Group& group : groups_) std::fill(group.keys, group.keys + 4, kNever);
  ring_.resize(std::max<size_t>(ring_.size(), 16));
  size_ = ringFirst_ = ringSize_ = 0;
  hole_ = false;
  orders_ = 0;
}

// Nodes are counted from kRoot; the children of node i are 4 (i - 2) to 4 (i - 2) + 3, its parent is i / 4 + 2.
void Calendar::SiftDown(EventKey key) {
  EventKey* const all = keys();
  const size_t end = kRoot + size_;
  size_t at = kRoot;
  for (;;) {
    const size_t first = 4 * (at - 2);
    if (first >= end) break;
    const size_t least = first + LeastOfFour(all + first);
    if (all[least] >= key) break;
    all[at] = all[least];
    at = least;
  }
  all[at] = key;
}

void Calendar::Append(EventKey key) {
  size_t at = kRoot + size_++;
  if (at / 4 >= groups_.size()) {
    Group never;
    std::fill(never.keys, never.keys + 4, kNever);
    groups_.push_back(never);
  }
  EventKey* const all = keys();
  while (at > kRoot) {
    const size_t parent = at / 4 + 2;
    if (all[parent] <= key) break;
    all[at] = all[parent];
    at = parent;
  }
  all[at] = key;
}

void Calendar::FillHole() {
  hole_ = false;
  const size_t last = kRoot + --size_;
  const EventKey key = keys()[last];
  keys()[last] = kNever;
  if (size_ != 0) SiftDown(key);
}

void Calendar::GrowRing() {
  std::rotate(ring_.begin(), ring_.begin() + static_cast<std::ptrdiff_t>(ringFirst_), ring_.end());
  ringFirst_ = 0;
  ring_.resize(2 * ring_.size());
}

}  // namespace vardo
