// How levels and tallies go on within a replication: for plots, for the proposal of a warm-up, and for the half-widths of one
// replication alone.
#pragma once

#include "model/Program.h"
#include "simulate/Replication.h"
#include "simulate/World.h"

#include <cstdint>
#include <vector>

namespace vardo {

// Averages of all reported levels over equal parts of a replication, whatever is restarted meanwhile.
class LevelSeries {
 public:
  LevelSeries(World& world, const Program& program, double length, size_t parts);

  // The milestones refer to this.
  void AddMilestones(std::vector<Replication::Milestone>& milestones);
  // To be called when statistics are about to begin anew.
  void BeforeRestart();
  // The averages by output; of a replication that ended early, those of the parts that were reached.
  std::vector<std::vector<double>> Finish();

 private:
  void EndPart();

  World& world_;
  const Program& program_;
  double width_;
  size_t parts_;
  std::vector<double> areas_;                // by output: what belongs to this part and has been restarted since
  std::vector<double> before_;               // by output: the area at the part's beginning
  std::vector<std::vector<double>> series_;  // by output
};

// One replication cut into equal slices of time behind the warm-up.
class BatchSlices {
 public:
  static constexpr size_t kSlices = 400, kBatches = 40;

  explicit BatchSlices(const Program& program) : program_(program) {}

  void AddMilestones(World& world, const Program& program, double from, double to,
                     std::vector<Replication::Milestone>& milestones);
  void Finish(World& world, const Program& program);
  // By output; NaN where the slices hang together too much for it, or something did not happen in each batch.
  void HalfWidths(double confidence, std::vector<double>& halfWidths, std::vector<double>& correlations) const;

 private:
  struct Sums {
    double sum = 0, weight = 0;
  };
  void Cut(World& world);
  Sums SumsOf(const Output& output, World& world) const;

  const Program& program_;
  std::vector<std::vector<Sums>> cuts_;  // by output: what has come together at each cut
};

// The part of a series, from its beginning, to be cut off by the rule MSER-5; its whole first half when that is the best cut.
size_t MserCut(const std::vector<double>& series);

}  // namespace vardo
