// Runs replications over the machine's cores, warms up, and decides when there are enough of them.
#pragma once

#include "model/Program.h"
#include "model/RunSetup.h"
#include "simulate/Replication.h"
#include "simulate/Results.h"
#include "simulate/Trace.h"

#include <atomic>
#include <cstdint>
#include <exception>
#include <functional>
#include <string>
#include <vector>

namespace vardo {

// What a run tells while it goes on, and how it is stopped. Workers count here; anybody may look.
struct Progress {
  std::atomic<std::uint64_t> events{0};
  std::atomic<std::uint64_t> replicationsDone{0};
  std::atomic<double> work{0};  // in replications, with the parts of those that are under way
  std::atomic<bool> stop{false};
};

// Thrown where a run is stopped before there is anything to tell.
struct RunStopped : std::exception {
  const char* what() const noexcept override { return "The run was stopped before its first replication was complete."; }
};

// What changes no result.
struct RunOptions {
  unsigned threads = 0;  // 0: as many as the machine has cores
  std::uint32_t mostEntities = 1'000'000;
  std::uint64_t mostSteps = 100'000'000;
  bool keepsBuckets = true;    // without them there are no quantiles
  TraceSink* trace = nullptr;  // follows one replication
  std::uint64_t traceReplication = 1;
  // Hears of each finished replication, in order, on the thread that runs them.
  std::function<void(const ReplicationRecord&)> finished = {};
};

struct RunResults {
  Summary summary;
  std::uint64_t first = 1;              // replication
  bool isStopped = false;               // before all was done
  std::vector<size_t> imprecise = {};   // outputs whose precision is not what was asked for
  std::vector<std::string> notes = {};  // sentences
  // Half-widths by batch means, of one replication alone; by output, NaN where they would mislead, with the correlation.
  std::vector<double> batchHalfWidths = {}, batchCorrelations = {};
};

// Throws RunError; of several replications that fail, the one with the lowest number. Throws RunStopped when none is complete.
RunResults Simulate(const Program& program, const RunSetup& setup, const RunOptions& options, Progress& progress);

// The outputs, of those whose precision the set-up asks for, that are less precise. A mean of 0 is never precise.
std::vector<size_t> ImpreciseOutputs(const Program& program, const RunSetup& setup, const Summary& summary);

// The warm-up that pilot runs propose, in seconds. Throws RunError, RunStopped, and std::runtime_error with a sentence when there
// is none.
double ProposeWarmUp(const Program& program, const RunSetup& setup, const RunOptions& options, Progress& progress);

}  // namespace vardo
