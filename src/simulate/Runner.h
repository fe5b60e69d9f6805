// Runs replications over the machine's cores, warms up, and decides when there are enough of them.
#pragma once

#include "model/Program.h"
#include "model/RunSetup.h"
#include "simulate/Replication.h"
#include "simulate/Results.h"
#include "simulate/Trace.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace vardo {

// What a run tells while it goes on, and how it is stopped. Workers count here; anybody may look.
struct Progress {
  std::atomic<std::uint64_t> events{0};
  std::atomic<std::uint64_t> replicationsDone{0};
  std::atomic<bool> stop{false};
};

// What changes no result.
struct RunOptions {
  unsigned threads = 0;  // 0: as many as the machine has cores
  std::uint32_t mostEntities = 1'000'000;
  std::uint64_t mostSteps = 100'000'000;
  TraceSink* trace = nullptr;  // follows one replication
  std::uint64_t traceReplication = 1;
  // Hears of each finished replication, in order, on the thread that runs them.
  std::function<void(const ReplicationRecord&)> finished = {};
};

struct RunResults {
  Summary summary;
  std::uint64_t first = 1;              // replication
  bool isStopped = false;               // before all was done
  bool isPrecise = true;                // as asked for
  std::vector<std::string> notes = {};  // sentences
  // Half-widths by batch means, of one replication alone; by output, NaN where they would mislead, with the correlation.
  std::vector<double> batchHalfWidths = {}, batchCorrelations = {};
};

// Throws RunError; of several replications that fail, the one with the lowest number.
RunResults Simulate(const Program& program, const RunSetup& setup, const RunOptions& options, Progress& progress);

// The warm-up that pilot runs propose, in seconds. Throws std::runtime_error with a sentence when there is none.
double ProposeWarmUp(const Program& program, const RunSetup& setup, const RunOptions& options, Progress& progress);

}  // namespace vardo
