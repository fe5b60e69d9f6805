#include "simulate/Runner.h"

#include "simulate/Elementary.h"
#include "simulate/Series.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>
#include <utility>

namespace vardo {
namespace {

// Of the very first replications, so that it does not matter who runs them.
constexpr std::uint64_t kSeriesOfLast = 20;
constexpr size_t kPlotParts = 400;

// One replication from its number to its record.
class Worker {
 public:
  Worker(const Program& program, const RunSetup& setup, const RunOptions& options, Progress& progress)
      : program_(program), setup_(setup), options_(options), progress_(progress), replication_(program) {}

  ReplicationRecord Run(std::uint64_t number, BatchSlices* slices) {
    World& world = replication_.world();
    world.trace = options_.trace != nullptr && number == options_.traceReplication ? options_.trace : nullptr;
    std::optional<LevelSeries> series;
    if (setup_.length && number <= kSeriesOfLast) series.emplace(world, program_, *setup_.length, kPlotParts);
    bool isWarm = setup_.warmUp == 0;
    replication_.milestones.clear();
    if (series) series->AddMilestones(replication_.milestones);
    if (!isWarm)
      replication_.milestones.push_back({setup_.warmUp, [&] {
                                           isWarm = true;
                                           if (series) series->BeforeRestart();
                                           world.RestartStatistics();
                                           world.Trace(TraceAct::WarmUp, kNone);
                                         }});
    if (slices != nullptr) slices->AddMilestones(world, program_, setup_.warmUp, *setup_.length, replication_.milestones);
    std::stable_sort(replication_.milestones.begin(), replication_.milestones.end(),
                     [](const auto& a, const auto& b) { return a.time < b.time; });
    const EndReason because = replication_.Run(
        {setup_.seed, number, 0}, {setup_.length, options_.mostEntities, options_.mostSteps}, [&](std::uint64_t events) {
          progress_.events += events;
          if (setup_.length) TellWork(world.now / *setup_.length);
          return !progress_.stop;
        });
    TellWork(1);
    told_ = 0;
    progress_.events += replication_.events() % Replication::kEventsBetweenTells;
    if (!isWarm && because != EndReason::Stopped)
      throw RunError(program_, number, world.now, {kNone, "the replication ends before its warm-up"});
    ReplicationRecord record = RecordOf(program_, world, because, replication_.events());
    if (series) record.series = series->Finish();
    if (!options_.keepsBuckets)
      for (OutputValue& value : record.values) value.buckets.clear();
    if (slices != nullptr) slices->Finish(world, program_);
    return record;
  }

 private:
  // How much of this replication is done.
  void TellWork(double share) { progress_.work += share - std::exchange(told_, share); }

  const Program& program_;
  const RunSetup& setup_;
  const RunOptions& options_;
  Progress& progress_;
  Replication replication_;
  double told_ = 0;
};

// Hands out the numbers of replications and takes the records back in their order.
class Run {
 public:
  Run(const Program& program, const RunSetup& setup, const RunOptions& options, Progress& progress)
      : program_(program),
        setup_(setup),
        options_(options),
        progress_(progress),
        results_{Summary(program, setup.confidence), static_cast<std::uint64_t>(setup.firstReplication)},
        next_(results_.first),
        toFold_(results_.first),
        end_(static_cast<std::uint64_t>(setup.lastReplication) + 1) {
    if (setup.precision) end_ = results_.first + static_cast<std::uint64_t>(setup.maxReplications);
    if (results_.first + 1 == end_ && setup.length) slices_.emplace(program);
  }

  RunResults Go() {
    const std::uint64_t count = end_ - next_;
    const unsigned cores = options_.threads != 0 ? options_.threads : std::max(1u, std::thread::hardware_concurrency());
    std::vector<std::thread> threads;
    for (unsigned i = 1; i < std::min<std::uint64_t>(cores, count); ++i) threads.emplace_back([this] { Work(); });
    Work();
    for (std::thread& thread : threads) thread.join();
    if (failure_) std::rethrow_exception(failure_);
    results_.isStopped = progress_.stop && toFold_ != end_ && !isPreciseEnough_;
    if (results_.isStopped && results_.summary.replications() == 0) throw RunStopped();
    if (!isPreciseEnough_) results_.imprecise = ImpreciseOutputs(program_, setup_, results_.summary);
    if (slices_ && toFold_ == end_) slices_->HalfWidths(setup_.confidence, results_.batchHalfWidths, results_.batchCorrelations);
    return std::move(results_);
  }

 private:
  void Work() {
    Worker worker(program_, setup_, options_, progress_);
    for (;;) {
      std::uint64_t number;
      {
        const std::lock_guard lock(mutex_);
        if (isDone_ || progress_.stop || next_ == end_) return;
        number = next_++;
      }
      Take(number, worker);
    }
  }

  void Take(std::uint64_t number, Worker& worker) {
    std::optional<ReplicationRecord> record;
    std::exception_ptr failure;
    try {
      record = worker.Run(number, slices_ ? &*slices_ : nullptr);
    } catch (...) {
      failure = std::current_exception();
    }
    const std::lock_guard lock(mutex_);
    if (record && record->because == EndReason::Stopped) return;
    waiting_.emplace(number, std::pair(std::move(record), failure));
    ++progress_.replicationsDone;
    Fold();
  }

  // All that is finished without a gap, in order.
  void Fold() {
    while (!isDone_ && !waiting_.empty() && waiting_.begin()->first == toFold_) {
      auto [record, failure] = std::move(waiting_.begin()->second);
      waiting_.erase(waiting_.begin());
      ++toFold_;
      if (failure) {
        failure_ = failure;
        isDone_ = true;
        return;
      }
      results_.summary.Add(*record);
      if (options_.finished) options_.finished(*record);
      isPreciseEnough_ = setup_.precision && IsPrecise();
      if (isPreciseEnough_) isDone_ = true;
    }
  }

  bool IsPrecise() const {
    const auto enough =
        std::max<std::uint64_t>(10, static_cast<std::uint64_t>(setup_.lastReplication - setup_.firstReplication + 1));
    return results_.summary.replications() >= enough && ImpreciseOutputs(program_, setup_, results_.summary).empty();
  }

  const Program& program_;
  const RunSetup& setup_;
  const RunOptions& options_;
  Progress& progress_;
  RunResults results_;
  std::optional<BatchSlices> slices_;

  std::mutex mutex_;
  std::uint64_t next_, toFold_, end_;
  std::map<std::uint64_t, std::pair<std::optional<ReplicationRecord>, std::exception_ptr>> waiting_;
  std::exception_ptr failure_;
  bool isDone_ = false, isPreciseEnough_ = false;
};

}  // namespace

// The longest queues and the number in the system are looked at: what settles last.
double ProposeWarmUp(const Program& program, const RunSetup& setup, const RunOptions& options, Progress& progress) {
  constexpr size_t kParts = 1000, kPilots = 10, kQueues = 10;
  std::vector<std::vector<double>> sums(program.outputs.size());
  Replication replication(program);
  for (std::uint64_t pilot = 1; pilot <= kPilots; ++pilot) {
    LevelSeries series(replication.world(), program, *setup.length, kParts);
    replication.milestones.clear();
    series.AddMilestones(replication.milestones);
    replication.Run({setup.seed, pilot, 1}, {setup.length, options.mostEntities, options.mostSteps}, [&](std::uint64_t events) {
      progress.events += events;
      return !progress.stop;
    });
    if (progress.stop) throw RunStopped();
    const std::vector<std::vector<double>> own = series.Finish();
    for (size_t i = 0; i < sums.size(); ++i) {
      sums[i].resize(own[i].size());
      for (size_t part = 0; part < std::min(sums[i].size(), own[i].size()); ++part) sums[i][part] += own[i][part];
    }
  }
  std::vector<std::pair<double, size_t>> queues;
  std::vector<double> inSystem(kParts);
  for (size_t i = 0; i < sums.size(); ++i) {
    const Output& output = program.outputs[i];
    if (output.kind != OutputKind::Level || sums[i].size() != kParts) continue;
    double all = 0;
    for (const double part : sums[i]) all += part;
    if (output.category == "Queue") queues.push_back({-all, i});
    if (output.category == "Entity")
      for (size_t part = 0; part < kParts; ++part) inSystem[part] += sums[i][part];
  }
  std::sort(queues.begin(), queues.end());
  queues.resize(std::min(queues.size(), kQueues));
  size_t cut = MserCut(inSystem);
  for (const auto& [length, output] : queues) cut = std::max(cut, MserCut(sums[output]));
  if (cut >= kParts / 2)
    throw std::runtime_error(
        "The length is too short for a steady state: no part of the runs at its beginning can be told from the rest.");
  return *setup.length * static_cast<double>(cut) / kParts;
}

// Law's rule: a relative error of g is reached when the half-width is at most g / (1 + g) of the mean.
std::vector<size_t> ImpreciseOutputs(const Program& program, const RunSetup& setup, const Summary& summary) {
  std::vector<size_t> imprecise;
  if (!setup.precision) return imprecise;
  const double g = *setup.precision / 100;
  for (const std::string& name : setup.precisionOf) {
    const auto output = FindOutput(program, name);
    if (!output) continue;
    const OutputSummary of = summary.Of(*output);
    if (!(of.halfWidth <= g / (1 + g) * std::fabs(of.mean) && of.mean != 0)) imprecise.push_back(*output);
  }
  return imprecise;
}

RunResults Simulate(const Program& program, const RunSetup& setup, const RunOptions& options, Progress& progress) {
  return Run(program, setup, options, progress).Go();
}

}  // namespace vardo
