#include "simulate/Statistics.h"

#include <algorithm>
#include <cmath>

namespace vardo {
namespace {

constexpr int kMantissaBits = 6;
constexpr int kLeastExponent = -64, kMostExponent = 63;
constexpr std::int32_t kMostPlace = (kMostExponent - kLeastExponent + 1) * (1 << kMantissaBits) - 1;

}  // namespace

double Tally::Deviation() const {
  return n < 2 ? std::numeric_limits<double>::quiet_NaN() : std::sqrt(squares / static_cast<double>(n - 1));
}

std::int32_t Buckets::NumberOf(double x) {
  if (x == 0) return 0;
  // The exponent and the first bits behind it, as one number.
  const auto bits = static_cast<std::int64_t>(std::bit_cast<std::uint64_t>(x) & 0x7fffffffffffffffu);
  const std::int64_t place = (bits >> (52 - kMantissaBits)) - (std::int64_t{1023 + kLeastExponent} << kMantissaBits);
  const auto held = static_cast<std::int32_t>(std::clamp<std::int64_t>(place, 0, kMostPlace));
  return x > 0 ? held + 1 : -held - 1;
}

double Buckets::ValueOf(std::int32_t number) {
  if (number == 0) return 0;
  const std::int64_t place = (number > 0 ? number : -number) - 1;
  const std::int64_t bits = ((place + (std::int64_t{1023 + kLeastExponent} << kMantissaBits)) << (52 - kMantissaBits)) |
                            std::int64_t{1} << (51 - kMantissaBits);
  const double middle = std::bit_cast<double>(bits);
  return number > 0 ? middle : -middle;
}

void Buckets::Clear() {
  zeros_ = 0;
  std::fill(pageOf_.begin(), pageOf_.end(), std::uint16_t{0});
  pages_.clear();
}

std::vector<std::uint16_t>& Buckets::MakeTable() {
  pageOf_.assign(2 * kExponents, 0);
  return pageOf_;
}

std::uint16_t Buckets::MakePage() {
  pages_.emplace_back();
  pages_.back().fill(0);
  return static_cast<std::uint16_t>(pages_.size());
}

std::vector<Buckets::Count> Buckets::Counts() const {
  std::vector<Count> counts;
  if (zeros_ != 0) counts.push_back({0, zeros_});
  for (size_t table = 0; table < pageOf_.size(); ++table) {
    if (pageOf_[table] == 0) continue;
    const Page& page = pages_[pageOf_[table] - 1U];
    const bool isNegative = table >= kExponents;
    const auto first = static_cast<std::int32_t>((table % kExponents) * kPage) + 1;
    for (std::int32_t i = 0; i < kPage; ++i)
      if (page[static_cast<size_t>(i)] != 0)
        counts.push_back({isNegative ? -(first + i) : first + i, page[static_cast<size_t>(i)]});
  }
  std::sort(counts.begin(), counts.end());
  return counts;
}

double QuantileOf(std::span<const Buckets::Count> counts, double share) {
  std::uint64_t all = 0;
  for (const auto& [number, count] : counts) all += count;
  const double wanted = share * static_cast<double>(all);
  std::uint64_t sum = 0;
  for (const auto& [number, count] : counts) {
    sum += count;
    if (static_cast<double>(sum) >= wanted) return Buckets::ValueOf(number);
  }
  return std::numeric_limits<double>::quiet_NaN();
}

}  // namespace vardo
