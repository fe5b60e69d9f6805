#include "simulate/Results.h"

#include "model/Names.h"
#include "simulate/Elementary.h"

#include <algorithm>
#include <cmath>

namespace vardo {
namespace {

OutputValue ValueOf(const Program& program, const Output& output, World& world, double begin) {
  OutputValue value;
  const auto scaled = [&](double x) { return x * output.factor / output.divisor; };
  const auto areaOf = [&](std::uint32_t level) { return world.levels[level].AreaUntil(world.now); };
  switch (output.kind) {
    case OutputKind::Tally: {
      const Tally& tally = world.tallies[output.index];
      value.n = tally.n;
      if (tally.n == 0) break;
      value.mean = scaled(tally.mean);
      value.deviation = scaled(tally.Deviation());
      value.min = scaled(tally.min);
      value.max = scaled(tally.max);
      const std::uint32_t buckets = program.bucketsOfTally[output.index];
      if (buckets != kNone) value.buckets = world.buckets[buckets].Counts();
      break;
    }
    case OutputKind::Level: {
      const Level& level = world.levels[output.index];
      if (world.now > begin) value.mean = scaled(areaOf(output.index) / (world.now - begin));
      value.min = scaled(level.min);
      value.max = scaled(level.max);
      value.last = scaled(level.value);
      break;
    }
    case OutputKind::Counter:
      value.mean = scaled(world.counters[output.index]);
      break;
    case OutputKind::Area:
      value.mean = scaled(areaOf(output.index));
      break;
    case OutputKind::Ratio:
      if (const double by = areaOf(output.other); by > 0) value.mean = areaOf(output.index) / by;
      break;
  }
  return value;
}

void Widen(double& least, double& most, double low, double high) {
  if (!(least <= low)) least = low;
  if (!(most >= high)) most = high;
}

}  // namespace

ReplicationRecord RecordOf(const Program& program, World& world, EndReason because, std::uint64_t events) {
  ReplicationRecord record;
  record.number = world.run().replication;
  record.end = world.now / program.unit;
  record.because = because;
  record.events = events;
  for (const Output& output : program.outputs) record.values.push_back(ValueOf(program, output, world, world.statisticsSince));
  record.warnings = world.warnings;
  return record;
}

void Moments::Add(double x) {
  const double deviation = x - mean;
  mean += deviation / static_cast<double>(++n);
  squares += deviation * (x - mean);
}

void Summary::Pairs::Add(double sum, double count) {
  const double byN = 1 / static_cast<double>(++n);
  const double fromSum = sum - meanSum, fromCount = count - meanCount;
  meanSum += fromSum * byN;
  meanCount += fromCount * byN;
  sumSum += fromSum * (sum - meanSum);
  sumCount += fromSum * (count - meanCount);
  countCount += fromCount * (count - meanCount);
}

Summary::Summary(const Program& program, double confidence)
    : program_(program), confidence_(confidence), sums_(program.outputs.size()) {}

void Summary::Add(const ReplicationRecord& record) {
  ++replications_;
  events_ += record.events;
  ++ends_[static_cast<size_t>(record.because)];
  for (const WarningCount& warning : record.warnings) {
    const auto known = std::find_if(warnings_.begin(), warnings_.end(), [&](const WarningCount& other) {
      return other.warning == warning.warning && other.place == warning.place;
    });
    if (known == warnings_.end()) {
      warnings_.push_back(warning);
    } else {
      known->count += warning.count;
      known->of += warning.of;
    }
  }
  for (size_t i = 0; i < sums_.size(); ++i) {
    const OutputValue& value = record.values[i];
    Sums& sums = sums_[i];
    if (sums.values.size() < kValuesKept) sums.values.push_back(value.mean);
    if (std::isnan(value.mean)) {
      if (program_.outputs[i].kind == OutputKind::Tally) sums.pairs.Add(0, 0);
      continue;
    }
    sums.means.Add(value.mean);
    Widen(sums.min, sums.max, value.mean, value.mean);
    if (!std::isnan(value.min)) Widen(sums.least, sums.most, value.min, value.max);
    if (program_.outputs[i].kind != OutputKind::Tally) continue;
    sums.observations += value.n;
    sums.pairs.Add(value.mean * static_cast<double>(value.n), static_cast<double>(value.n));
    if (value.buckets.empty()) continue;
    for (const Buckets::Count& count : value.buckets) sums.buckets.Add(count);
    sums.medians.Add(QuantileOf(value.buckets, 0.5));
    sums.p95s.Add(QuantileOf(value.buckets, 0.95));
  }
}

// Of the mean of numbers, when their deviations are taken from some other one.
double Summary::HalfWidth(const Moments& moments, double around) const {
  if (moments.n < 2) return kNothing;
  const double n = static_cast<double>(moments.n);
  const double away = moments.mean - around;
  const double squares = moments.squares + n * away * away;
  return InverseStudent(0.5 + confidence_ / 200, static_cast<long>(moments.n) - 1) * std::sqrt(squares / (n * (n - 1)));
}

OutputSummary Summary::Of(size_t output) const {
  const Sums& sums = sums_[output];
  OutputSummary summary;
  summary.n = sums.means.n;
  if (summary.n == 0) return summary;
  summary.mean = sums.means.mean;
  summary.halfWidth = HalfWidth(sums.means, sums.means.mean);
  summary.min = sums.min;
  summary.max = sums.max;
  OutputSummary::All& all = summary.all;
  all.min = sums.least;
  all.max = sums.most;
  if (program_.outputs[output].kind != OutputKind::Tally) return summary;
  all.n = sums.observations;
  const Pairs& pairs = sums.pairs;
  const double n = static_cast<double>(pairs.n);
  all.mean = pairs.meanSum / pairs.meanCount;
  if (pairs.n >= 2) {
    const double squares = pairs.sumSum - 2 * all.mean * pairs.sumCount + all.mean * all.mean * pairs.countCount;
    all.halfWidth = InverseStudent(0.5 + confidence_ / 200, static_cast<long>(pairs.n) - 1) *
                    std::sqrt(std::max(squares, 0.0) / (n * (n - 1))) / pairs.meanCount;
  }
  const std::vector<Buckets::Count> counts = sums.buckets.Counts();
  if (counts.empty()) return summary;
  const Output& of = program_.outputs[output];
  const auto quantile = [&](double share, const Moments& own, double& value, double& halfWidth) {
    const double measured = QuantileOf(counts, share);
    value = std::clamp(measured * of.factor / of.divisor, all.min, all.max);
    halfWidth = HalfWidth(own, measured) * of.factor / of.divisor;
  };
  quantile(0.5, sums.medians, all.median, all.medianHalfWidth);
  quantile(0.95, sums.p95s, all.p95, all.p95HalfWidth);
  return summary;
}

std::string NameOf(const Output& output) {
  return std::string(output.category) + "/" + output.of + "/" + std::string(output.statistic);
}

std::optional<size_t> FindOutput(const Program& program, std::string_view name) {
  const std::string key = NameKey(name);
  for (size_t i = 0; i < program.outputs.size(); ++i)
    if (NameKey(NameOf(program.outputs[i])) == key) return i;
  return std::nullopt;
}

}  // namespace vardo
