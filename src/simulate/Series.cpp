#include "simulate/Series.h"

#include "simulate/Elementary.h"
#include "simulate/Results.h"

#include <algorithm>
#include <cmath>

namespace vardo {
namespace {

bool IsLevel(const Output& output) { return output.kind == OutputKind::Level; }

double AreaOf(const Output& output, World& world) {
  return world.levels[output.index].AreaUntil(world.now) * output.factor / output.divisor;
}

}  // namespace

// ------------------------------------------------------------------------------------------------------ series of levels

LevelSeries::LevelSeries(World& world, const Program& program, double length, size_t parts)
    : world_(world),
      program_(program),
      width_(length / static_cast<double>(parts)),
      parts_(parts),
      areas_(program.outputs.size()),
      before_(program.outputs.size()),
      series_(program.outputs.size()) {}

void LevelSeries::AddMilestones(std::vector<Replication::Milestone>& milestones) {
  for (size_t i = 1; i < parts_; ++i) milestones.push_back({width_ * static_cast<double>(i), [this] { EndPart(); }});
}

void LevelSeries::BeforeRestart() {
  for (size_t i = 0; i < series_.size(); ++i) {
    if (!IsLevel(program_.outputs[i])) continue;
    areas_[i] += AreaOf(program_.outputs[i], world_) - before_[i];
    before_[i] = 0;
  }
}

void LevelSeries::EndPart() {
  for (size_t i = 0; i < series_.size(); ++i) {
    if (!IsLevel(program_.outputs[i])) continue;
    const double area = AreaOf(program_.outputs[i], world_);
    series_[i].push_back((areas_[i] + area - before_[i]) / width_);
    areas_[i] = 0;
    before_[i] = area;
  }
}

std::vector<std::vector<double>> LevelSeries::Finish() {
  EndPart();
  return std::move(series_);
}

// ------------------------------------------------------------------------------------------------------ batch means

void BatchSlices::AddMilestones(World& world, const Program& program, double from, double to,
                                std::vector<Replication::Milestone>& milestones) {
  cuts_.assign(program.outputs.size(), {});
  for (size_t i = 0; i < kSlices; ++i)
    milestones.push_back({from + (to - from) * static_cast<double>(i) / kSlices, [this, &world] { Cut(world); }});
}

void BatchSlices::Finish(World& world, const Program&) { Cut(world); }

void BatchSlices::Cut(World& world) {
  for (size_t i = 0; i < cuts_.size(); ++i) cuts_[i].push_back(SumsOf(program_.outputs[i], world));
}

BatchSlices::Sums BatchSlices::SumsOf(const Output& output, World& world) const {
  const double scale = output.factor / output.divisor;
  switch (output.kind) {
    case OutputKind::Tally: {
      const Tally& tally = world.tallies[output.index];
      return {tally.Sum() * scale, static_cast<double>(tally.n)};
    }
    case OutputKind::Level:
      return {AreaOf(output, world), world.now - world.statisticsSince};
    case OutputKind::Ratio:
      return {world.levels[output.index].AreaUntil(world.now), world.levels[output.other].AreaUntil(world.now)};
    default:
      return {};
  }
}

namespace {

// The correlation of neighbours.
double LagOne(const std::vector<double>& x) {
  Moments moments;
  for (const double value : x) moments.Add(value);
  double products = 0;
  for (size_t i = 1; i < x.size(); ++i) products += (x[i] - moments.mean) * (x[i - 1] - moments.mean);
  return moments.squares > 0 ? products / moments.squares : 0;
}

}  // namespace

void BatchSlices::HalfWidths(double confidence, std::vector<double>& halfWidths, std::vector<double>& correlations) const {
  constexpr double kMostCorrelation = 0.2;
  halfWidths.assign(cuts_.size(), kNothing);
  correlations.assign(cuts_.size(), kNothing);
  for (size_t i = 0; i < cuts_.size(); ++i) {
    const std::vector<Sums>& cuts = cuts_[i];
    if (cuts.size() != kSlices + 1) continue;
    const auto averages = [&](size_t slicesEach) {
      std::vector<double> means;
      for (size_t at = 0; at + slicesEach < cuts.size(); at += slicesEach) {
        const double weight = cuts[at + slicesEach].weight - cuts[at].weight;
        if (weight > 0) means.push_back((cuts[at + slicesEach].sum - cuts[at].sum) / weight);
      }
      return means;
    };
    const std::vector<double> slices = averages(1), batches = averages(kSlices / kBatches);
    if (slices.size() != kSlices || batches.size() != kBatches) continue;
    correlations[i] = LagOne(slices);
    if (correlations[i] > kMostCorrelation) continue;
    Moments moments;
    for (const double mean : batches) moments.Add(mean);
    halfWidths[i] =
        InverseStudent(0.5 + confidence / 200, kBatches - 1) * std::sqrt(moments.squares / (kBatches * (kBatches - 1.)));
  }
}

// ------------------------------------------------------------------------------------------------------ warm-up

size_t MserCut(const std::vector<double>& series) {
  constexpr size_t kEach = 5;
  std::vector<double> means;
  for (size_t i = 0; i + kEach <= series.size(); i += kEach) {
    double sum = 0;
    for (size_t j = 0; j < kEach; ++j) sum += series[i + j];
    means.push_back(sum / kEach);
  }
  // From the end on, so that each cut costs one step.
  size_t best = 0;
  double least = std::numeric_limits<double>::infinity();
  Moments moments;
  for (size_t cut = means.size(); cut-- > 0;) {
    moments.Add(means[cut]);
    if (cut > means.size() / 2) continue;
    const double n = static_cast<double>(moments.n);
    const double error = moments.squares / (n * n);
    if (error <= least) {
      least = error;
      best = cut;
    }
  }
  return best * kEach;
}

}  // namespace vardo
