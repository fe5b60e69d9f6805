// What replications have given, one by one and together.
#pragma once

#include "model/Program.h"
#include "simulate/Replication.h"
#include "simulate/Statistics.h"

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace vardo {

inline constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

// One output of one replication, in the units of the results. What does not exist is NaN.
struct OutputValue {
  std::uint64_t n = 0;     // observations, of a tally
  double mean = kNothing;  // of a tally or level; the value of all others
  double deviation = kNothing;
  double min = kNothing, max = kNothing;
  double last = kNothing;               // of a level
  std::vector<Buckets::Count> buckets;  // of what is counted in seconds, those of seconds
};

struct ReplicationRecord {
  std::uint64_t number = 0;
  double end = 0;  // in base units
  EndReason because = EndReason::Length;
  std::uint64_t events = 0;
  std::vector<OutputValue> values;  // one of each output of the program
  std::vector<WarningCount> warnings;
  // Averages of the levels over equal parts of the replication, by output; empty for others, and without a length.
  std::vector<std::vector<double>> series;
};

// What a finished replication leaves.
ReplicationRecord RecordOf(const Program& program, World& world, EndReason because, std::uint64_t events);

// Mean and sum of squared deviations of numbers that come one by one.
struct Moments {
  std::uint64_t n = 0;
  double mean = 0, squares = 0;
  void Add(double x);
};

// An output over all replications.
struct OutputSummary {
  std::uint64_t n = 0;  // replications that have a value
  double mean = kNothing, halfWidth = kNothing, min = kNothing, max = kNothing;
  // Of all observations together; of levels the extremes alone.
  struct All {
    std::uint64_t n = 0;
    double mean = kNothing, halfWidth = kNothing, min = kNothing, max = kNothing;
    double median = kNothing, medianHalfWidth = kNothing, p95 = kNothing, p95HalfWidth = kNothing;
  } all;
};

// Takes replications in the order of their numbers, and gives the same for the same ones, wherever they come from.
class Summary {
 public:
  Summary(const Program& program, double confidence);

  void Add(const ReplicationRecord& record);

  std::uint64_t replications() const { return replications_; }
  std::uint64_t events() const { return events_; }
  // How many have ended for that reason.
  std::uint64_t EndedBecause(EndReason reason) const { return ends_[static_cast<size_t>(reason)]; }
  OutputSummary Of(size_t output) const;
  // The values of the first replications, one by one.
  const std::vector<double>& ValuesOf(size_t output) const { return sums_[output].values; }
  // All observations of a tally by size, those of times in seconds; empty where nobody asks for quantiles.
  std::vector<Buckets::Count> CountsOf(size_t output) const { return sums_[output].buckets.Counts(); }
  const std::vector<WarningCount>& warnings() const { return warnings_; }

  static constexpr size_t kValuesKept = 1000;

 private:
  // Of pairs (sum of a replication's observations, their number).
  struct Pairs {
    std::uint64_t n = 0;
    double meanSum = 0, meanCount = 0, sumSum = 0, sumCount = 0, countCount = 0;
    void Add(double sum, double count);
  };
  struct Sums {
    Moments means;
    double min = kNothing, max = kNothing;
    double least = kNothing, most = kNothing;
    std::uint64_t observations = 0;
    Pairs pairs;
    Buckets buckets;
    Moments medians, p95s;
    std::vector<double> values;
  };

  double HalfWidth(const Moments& moments, double around) const;

  const Program& program_;
  double confidence_;
  std::uint64_t replications_ = 0, events_ = 0;
  std::array<std::uint64_t, 4> ends_ = {};  // by reason
  std::vector<Sums> sums_;
  std::vector<WarningCount> warnings_;
};

// An output by its name, "Queue/Teller serves.Queue/Waiting time"; letter case does not count.
std::string NameOf(const Output& output);
std::optional<size_t> FindOutput(const Program& program, std::string_view name);

}  // namespace vardo
