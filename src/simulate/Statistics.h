// Statistics that a replication keeps while it runs.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace vardo {

// Of observations, by Welford's sums.
struct Tally {
  std::uint64_t n = 0;
  double mean = 0;
  double squares = 0;  // sum of the squared deviations from the mean
  double min = std::numeric_limits<double>::infinity();
  double max = -std::numeric_limits<double>::infinity();

  void Add(double x) { Add(x, ShareOfNext()); }
  // Tallies that always take an observation each share the one division.
  double ShareOfNext() const { return 1 / static_cast<double>(n + 1); }
  void Add(double x, double share) {
    const double deviation = x - mean;
    ++n;
    mean += deviation * share;
    squares += deviation * (x - mean);
    min = x < min ? x : min;
    max = x > max ? x : max;
  }
  double Sum() const { return mean * static_cast<double>(n); }
  // The standard deviation; none (NaN) below two observations.
  double Deviation() const;
};

// Of a value over time.
struct Level {
  double value = 0;
  double since = 0;
  double area = 0;
  double min = 0, max = 0;

  // Begins anew from its present value.
  void Restart(double now) {
    since = now;
    area = 0;
    min = max = value;
  }
  void Set(double now, double x) {
    area += value * (now - since);
    since = now;
    value = x;
    min = x < min ? x : min;
    max = x > max ? x : max;
  }
  void Add(double now, double x) { Set(now, value + x); }
  double AreaUntil(double now) const { return area + value * (now - since); }
};

// Counts by size: a bucket is as wide as 1/64 of the power of two below it, so what is found from it is at most .8 % off. There
// is one for 0, and negative values mirror the positive ones.
class Buckets {
 public:
  using Count = std::pair<std::int32_t, std::uint64_t>;

  void Clear();
  void Add(double x) { ++Place(NumberOf(x)); }
  void Add(const Count& count) { Place(count.first) += count.second; }
  // Those that are not empty, in rising order.
  std::vector<Count> Counts() const;

  static std::int32_t NumberOf(double x);
  // The middle of a bucket.
  static double ValueOf(std::int32_t number);

 private:
  static constexpr int kPage = 64;  // buckets of one power of two
  static constexpr int kExponents = 128;
  using Page = std::array<std::uint64_t, kPage>;

  std::uint64_t& Place(std::int32_t number) {
    if (number == 0) return zeros_;
    const int place = number > 0 ? number - 1 : -number - 1;
    std::uint16_t& page = pageOf_.empty() ? MakeTable()[TableAt(number, place)] : pageOf_[TableAt(number, place)];
    if (page == 0) page = MakePage();
    return pages_[page - 1U][static_cast<size_t>(place % kPage)];
  }
  static size_t TableAt(std::int32_t number, int place) {
    return static_cast<size_t>(place / kPage + (number < 0 ? kExponents : 0));
  }
  std::vector<std::uint16_t>& MakeTable();
  std::uint16_t MakePage();

  std::uint64_t zeros_ = 0;
  std::vector<std::uint16_t> pageOf_;  // from 1; by exponent, first those of positive numbers
  std::vector<Page> pages_;
};

// The value that a share of all counted ones does not exceed; NaN when there are none.
double QuantileOf(std::span<const Buckets::Count> counts, double share);

}  // namespace vardo
