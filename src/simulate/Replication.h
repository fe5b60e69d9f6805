// One replication: entities walk the steps of a program while time passes.
#pragma once

#include "simulate/Courses.h"
#include "simulate/Groups.h"
#include "simulate/Resources.h"
#include "simulate/World.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace vardo {

enum class EndReason : std::uint8_t { Length, Condition, NothingLeft, Stopped };

struct ReplicationLimits {
  std::optional<double> length = std::nullopt;  // seconds
  std::uint32_t mostEntities = 1'000'000;
  std::uint64_t mostSteps = 100'000'000;  // within one instant
};

// Used again and again by one thread.
class Replication {
 public:
  // The program stays with its owner and must outlive this.
  explicit Replication(const Program& program);

  static constexpr std::uint64_t kEventsBetweenTells = 1 << 16;
  // Runs to the end. Throws RunError. Now and then tells how many events more have happened, and stops when the answer is false.
  EndReason Run(const RandomRun& run, const ReplicationLimits& limits, const std::function<bool(std::uint64_t)>& goesOn);
  // Called at times that part the replication, in rising order, before anything else happens then; set before Run.
  struct Milestone {
    double time = 0;
    std::function<void()> act;
  };
  std::vector<Milestone> milestones;

  World& world() { return world_; }
  std::uint64_t events() const { return events_; }

 private:
  // What a Create has done so far.
  struct Arrivals {
    double made = 0;
    double most = 0;
  };

  void Clear(const RandomRun& run, const ReplicationLimits& limits);
  EndReason RunThrough(const ReplicationLimits& limits);
  // Why it has ended before the horizon; nothing when it has not.
  std::optional<EndReason> RunUntil(double horizon);
  void Begin();
  void BeginCreate(const Step& step, std::uint32_t row);
  bool NothingCanCome() const;
  void CheckSound();
  void CompleteWarnings();

  void Walk(std::uint32_t row);
  void Arrive(const Step& step, std::uint32_t row);
  void Enter(const ProcessTable& process, std::uint32_t row);
  void Delay(const Step& step, std::uint32_t row);
  void Leave(const ProcessTable& process, std::uint32_t row);
  bool IsTrue(const DecideTable& decide, std::uint32_t row);
  void Assign(const AssignTable& table, std::uint32_t row);
  void AssignOne(const AssignRow& assign, std::uint32_t row, double value);
  void Record(std::uint32_t record, std::uint32_t row);
  void SetVariable(const VariableTable& variable, size_t place, double value);

  ModelError ComplaintOfLoop() const;
  ModelError ComplaintOfEntities() const;

  const Program& program_;
  World world_;
  Resources resources_;
  Courses courses_;
  Groups groups_;

  std::vector<Arrivals> arrivals_;     // by Create
  std::uint32_t creating_ = 0;         // Creates that have arrivals to come
  std::vector<double> lastPass_;       // by Record; negative before the first
  std::vector<std::uint64_t> delays_;  // by delay: how many have been drawn
  std::uint64_t events_ = 0, mostEvents_ = 0;
  std::uint64_t steps_ = 0, mostSteps_ = 0;  // within this instant
  bool hasLength_ = false;
  std::function<bool(std::uint64_t)> goesOn_;
  // The latest steps, to name those of an endless loop.
  static constexpr size_t kTrail = 64;
  std::array<std::uint32_t, kTrail> trail_ = {};
};

}  // namespace vardo
