// What is going to happen, in the order (time, order of scheduling).
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vardo {

__extension__ typedef unsigned __int128 EventKey;

struct Event {
  double time = 0;
  std::uint64_t order = 0;
  std::uint32_t row = 0;
};

// Rows below 2^24, orders below 2^40, times finite and not negative. A time's bits sort as the time does, so one comparison of a
// key decides time and tie.
class Calendar {
 public:
  static constexpr int kRowBits = 24;
  static constexpr std::uint64_t kMostOrders = std::uint64_t{1} << 40;

  Calendar() { Clear(); }

  // Empty, at time 0, orders from 1.
  void Clear();

  // What happens now goes into a ring that keeps the order of coming, everything else into a heap. Returns the event's order.
  std::uint64_t Push(double time, double now, std::uint32_t row) {
    const std::uint64_t order = ++orders_;
    const EventKey key = KeyOf(time, order, row);
    if (time == now)
      PushRing(key);
    else
      PushHeap(key);
    return order;
  }

  // Takes the next event before that time; false when there is none.
  bool Pop(double before, Event& event) {
    if (hole_) FillHole();
    const EventKey top = Top();
    if (ringSize_ != 0 && ring_[ringFirst_] < top) {
      event = EventOf(PopRing());
      return true;
    }
    if (top >= KeyOf(before, 0, 0)) return false;
    event = EventOf(top);
    hole_ = true;
    return true;
  }

  // An order that no event has.
  std::uint64_t TakeOrder() { return ++orders_; }
  std::uint64_t orders() const { return orders_; }
  size_t size() const { return size_ - (hole_ ? 1 : 0) + ringSize_; }

 private:
  // Four children share a cache line.
  struct alignas(64) Group {
    EventKey keys[4];
  };
  static constexpr EventKey kNever = ~EventKey{0};
  static constexpr size_t kRoot = 3;  // node i has its children at 4 (i - 2) and behind

  static EventKey KeyOf(double time, std::uint64_t order, std::uint32_t row) {
    // Negative zero would sort behind everything.
    return EventKey{std::bit_cast<std::uint64_t>(time + 0.0)} << 64 | (order << kRowBits | row);
  }
  static Event EventOf(EventKey key) {
    const auto low = static_cast<std::uint64_t>(key);
    return {std::bit_cast<double>(static_cast<std::uint64_t>(key >> 64)), low >> kRowBits,
            static_cast<std::uint32_t>(low & ((1U << kRowBits) - 1))};
  }

  EventKey* keys() { return groups_.data()->keys; }
  EventKey Top() { return keys()[kRoot]; }

  void PushHeap(EventKey key) {
    if (hole_) {
      hole_ = false;
      SiftDown(key);
    } else {
      Append(key);
    }
  }
  void SiftDown(EventKey key);
  void Append(EventKey key);
  void FillHole();
  void PushRing(EventKey key) {
    if (ringSize_ == ring_.size()) GrowRing();
    ring_[(ringFirst_ + ringSize_++) & (ring_.size() - 1)] = key;
  }
  EventKey PopRing() {
    const EventKey key = ring_[ringFirst_];
    ringFirst_ = (ringFirst_ + 1) & (ring_.size() - 1);
    --ringSize_;
    return key;
  }
  void GrowRing();

  std::vector<Group> groups_;   // behind the last key come such of never
  size_t size_ = 0;             // of the heap; a hole at its root counts
  bool hole_ = false;           // the root has gone; the next push takes its place
  std::vector<EventKey> ring_;  // a power of two
  size_t ringFirst_ = 0, ringSize_ = 0;
  std::uint64_t orders_ = 0;
};

}  // namespace vardo
