#include "model/Outputs.h"

namespace vardo {
namespace {

constexpr std::string_view kTimes[] = {"VA time", "NVA time", "Transfer time", "Wait time", "Other time", "Total time"};
constexpr std::string_view kCosts[] = {"VA cost", "NVA cost", "Transfer cost", "Wait cost", "Other cost", "Total cost"};

class OutputMaker {
 public:
  explicit OutputMaker(Program& program) : program_(program) {}

  void Of(std::string_view category, const std::string& name) {
    category_ = category;
    name_ = name;
  }
  // Numbers that nobody keeps make no line.
  Output* Add(std::string_view statistic, OutputKind kind, std::uint32_t index) {
    if (index == kNone) return nullptr;
    Output output;
    output.category = category_;
    output.statistic = statistic;
    output.of = name_;
    output.kind = kind;
    output.index = index;
    program_.outputs.push_back(std::move(output));
    return &program_.outputs.back();
  }
  void Counter(std::string_view statistic, std::uint32_t index) { Add(statistic, OutputKind::Counter, index); }
  void Level(std::string_view statistic, std::uint32_t index) { Add(statistic, OutputKind::Level, index); }
  void Tally(std::string_view statistic, std::uint32_t index) { Add(statistic, OutputKind::Tally, index); }
  void Time(std::string_view statistic, std::uint32_t index) {
    if (Output* output = Add(statistic, OutputKind::Tally, index)) {
      output->divisor = program_.unit;
      output->unit = program_.timeUnit;
    }
  }
  void Ratio(std::string_view statistic, std::uint32_t level, std::uint32_t by) {
    if (Output* output = Add(statistic, OutputKind::Ratio, level)) output->other = by;
  }
  void Cost(std::string_view statistic, std::uint32_t level, double perHour) {
    if (Output* output = Add(statistic, OutputKind::Area, level)) {
      output->factor = perHour;
      output->divisor = 3600;
    }
  }

 private:
  Program& program_;
  std::string_view category_;
  std::string name_;
};

void AddType(const EntityTypeTable& type, OutputMaker& make) {
  make.Of("Entity", type.name);
  make.Counter("In", type.in);
  make.Counter("Out", type.out);
  make.Level("In system", type.inSystem);
  for (std::uint32_t i = 0; i <= kCategories; ++i) make.Time(kTimes[i], type.times + i);
  if (type.costs != kNone)
    for (std::uint32_t i = 0; i <= kCategories; ++i) make.Tally(kCosts[i], type.costs + i);
}

void AddQueue(const QueueTable& queue, OutputMaker& make) {
  make.Of("Queue", queue.name);
  make.Time("Waiting time", queue.wait);
  make.Level("Length", queue.length);
  make.Counter("Waited", queue.waited);
}

void AddResource(const ResourceTable& resource, bool hasCosts, OutputMaker& make) {
  make.Of("Resource", resource.name);
  make.Ratio("Utilisation", resource.utilisation, resource.available);
  make.Ratio("Scheduled utilisation", resource.busy, resource.scheduled);
  make.Level("Busy", resource.busy);
  make.Level("Scheduled", resource.scheduled);
  make.Counter("Times seized", resource.seized);
  if (!hasCosts) return;
  make.Cost("Busy cost", resource.busy, resource.busyCostRate);
  if (resource.idle != kNone) make.Cost("Idle cost", resource.idle, resource.idleCostRate);
  make.Counter("Use cost", resource.useCost);
}

void AddProcess(const ProcessTable& process, OutputMaker& make) {
  make.Of("Process", process.name);
  make.Counter("In", process.in);
  make.Counter("Out", process.out);
  make.Level("Inside", process.inside);
  make.Time("Wait time", process.wait);
  make.Time("Delay time", process.delay);
  make.Time("Total time", process.total);
  make.Tally("Wait cost", process.waitCost);
  make.Tally("Delay cost", process.delayCost);
  make.Tally("Total cost", process.totalCost);
}

}  // namespace

void AddOutputs(const ReportedThings& things, Program& program) {
  OutputMaker make(program);
  for (const std::uint32_t type : things.types) AddType(program.types[type], make);
  for (const std::uint32_t queue : things.queues) AddQueue(program.queues[queue], make);
  for (const std::uint32_t resource : things.resources) AddResource(program.resources[resource], program.hasCosts, make);
  for (const std::uint32_t process : things.processes) AddProcess(program.processes[process], make);
  for (size_t i = 0; i < things.batches.size(); ++i) {
    make.Of("Batch", things.batchNames[i]);
    make.Counter("Groups", program.batches[things.batches[i]].groups);
    make.Counter("Members", program.batches[things.batches[i]].members);
  }
  for (size_t i = 0; i < things.duplicates.size(); ++i) {
    make.Of("Separate", things.duplicateNames[i]);
    make.Counter("Duplicates", program.duplicates[things.duplicates[i]].duplicates);
  }
  for (size_t i = 0; i < things.splits.size(); ++i) {
    make.Of("Separate", things.splitNames[i]);
    make.Counter("Splits", program.splits[things.splits[i]].splits);
  }
  for (const auto& [name, index] : things.counters) {
    make.Of("Counter", name);
    make.Counter("Count", index);
  }
  for (const auto& [name, index] : things.tallies) {
    make.Of("Tally", name);
    make.Tally("Value", index);
  }
  for (const std::uint32_t variable : things.variables) {
    make.Of("Variable", program.variables[variable].name);
    make.Level("Value", program.variables[variable].level);
  }
}

}  // namespace vardo
