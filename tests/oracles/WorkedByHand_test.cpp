// A model without chance that has something of everything. What follows from it was worked out with pencil and paper.
#include "QueueModels.h"
#include "TestPlatform.h"
#include "base/Numbers.h"
#include "simulate/Runner.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vardo {
namespace {

using namespace test;

// Times are in hours.
Properties Lasting(const std::string& hours, const std::string& allocation, const Properties& rows) {
  return With({{"ProcessAction", "SDR"},
               {"ProcessDelayType", "Constant"},
               {"ProcessValue", hours},
               {"ProcessAllocation", allocation},
               {"Process_RCount", "1"}},
              rows);
}
Properties OneOf(const std::string& resource) { return {{"Process_RResourceName", resource}}; }
Properties OnShift(const std::string& schedule, const std::string& rule, const Properties& more = {}) {
  return With({{"ResourceType", "Schedule"}, {"ResourceScheduleName", schedule}, {"ResourceScheduleRule", rule}}, more);
}
Properties UpAndDown(const std::string& durations) {
  return {{"Schedule_DCount", "2"}, {"Schedule_DurationsValue", "1;0"}, {"Schedule_DurationsDuration", durations}};
}

// Two jobs, one at 0 and one at 1, are checked, pressed as a pair, carried and watched one by one, and leave with a copy each.
DrawnModel Workshop() {
  DrawnModel model;
  model.Add("Entity", "Job", {{"EntityHoldingCost_Hour", "1"}, {"EntityValueAdded", "5"}});
  model.Add("Resource", "Clerk", {{"ResourceBusy_Hour", "10"}, {"ResourceIdle_Hour", "2"}, {"ResourcePerUse", "3"}});
  model.Add("Resource", "Helper").Add("Resource", "Machine", OnShift("Two of three", "Preempt", {{"ResourceBusy_Hour", "4"}}));
  model.Add("Resource", "Porter", OnShift("Four of five", "Wait")).Add("Resource", "Guard", OnShift("Four of five", "Ignore"));
  model.Add("Schedule", "Two of three", UpAndDown("2;1")).Add("Schedule", "Four of five", UpAndDown("4;1"));
  model.Add("Set", "Team", {{"SetM_Count", "2"}, {"SetMembers", "Clerk;Helper"}, {"SetResourceMembers", "Clerk;Helper"}});
  model.Add("Variable", "Count").Add("Variable", "Table", {{"VariableRows", "2"}});
  model.Add("Create", "Come", {{"CreateType", "Constant"}, {"CreateMaxBatches", "2"}, {"CreateEntityType", "Job"}});
  model.Add("Assign", "Mark",
            {{"AssignCount", "3"},
             {"AssignType", "Variable;Attribute;Other"},
             {"AssignVariableName", "Count;;"},
             {"AssignAttributeName", ";Size;"},
             {"AssignOther", ";;Table(Count)"},
             {"AssignNewValue", "Count + 1;10 * Count;Size"}});
  model.Add("Process", "Check",
            Lasting("1.5", "VA",
                    {{"Process_RType", "Set"},
                     {"Process_RSetName", "Team"},
                     {"Process_RSelectionRule", "POR"},
                     {"Process_RSaveAttribute", "Who"}}));
  model.Add("Batch", "Pair", {{"BatchType", "Temporary"}, {"BatchSaveCriterion", "Sum"}});
  model.Add("Process", "Press", Lasting("2.5", "NVA", OneOf("Machine"))).Add("Record", "Pressed");
  model.Add("Separate", "Unpair", {{"SeparateType", "Split"}, {"SeparateMemberAttributes", "All"}});
  model.Add("Decide", "Big?",
            {{"DecideType", "If"},
             {"DecideIf", "Attribute"},
             {"DecideAttributeNamed", "Size"},
             {"DecideIs", ">"},
             {"DecideValue", "25"}});
  model.Add("Process", "Carry", Lasting("2", "Tran", OneOf("Porter")))
      .Add("Process", "Watch", Lasting("1", "Other", OneOf("Guard")));
  model.Add("Separate", "Copy").Add("Record", "Age", SinceCreation()).Add("Record", "Apart", {{"RecordType", "Between"}});
  model.Add("Record", "Serial", Noted("Entity.SerialNumber + Who", "Serial")).Add("Dispose", "Go");
  model.Add("Dispose", "Gone", {{"EntityStatistics", "No"}});
  model.Chain(
      {"Come", "Mark", "Check", "Pair", "Press", "Pressed", "Unpair", "Big?", "Carry", "Watch", "Copy", "Age", "Apart", "Go"});
  return model.ConnectSecond("Big?", "Gone").ConnectSecond("Copy", "Serial").Connect("Serial", "Gone");
}

// One line for each act: the time, the entity, what it does, and how much or which way.
class Lines : public TraceSink {
 public:
  explicit Lines(const Program& program) : program_(program) {}
  std::vector<std::string> lines;

  void Take(const TraceRecord& record) override {
    constexpr const char* kActs[] = {"create", "enter",   "queue",    "seize",   "delay", "release",   "preempt",
                                     "resume", "decide",  "assign",   "batch",   "split", "duplicate", "record",
                                     "leave",  "dispose", "capacity", "warm-up", "end"};
    std::string line = NumberText(record.time / 3600);
    if (record.entity != 0) line += " #" + std::to_string(record.entity);
    line += std::string(" ") + kActs[static_cast<size_t>(record.does)];
    switch (record.does) {
      case TraceAct::Seize:
      case TraceAct::Release:
      case TraceAct::Preempt:
      case TraceAct::Capacity:
        line += " " + program_.resources[record.what].name + " " + NumberText(record.number);
        break;
      case TraceAct::Delay:
      case TraceAct::Resume:
        line += " " + NumberText(record.number / 3600);
        break;
      case TraceAct::Decide:
        line += record.what == 0 ? " true" : " false";
        break;
      case TraceAct::Assign:
      case TraceAct::Batch:
      case TraceAct::Split:
      case TraceAct::Duplicate:
      case TraceAct::Record:
        line += " " + NumberText(record.number);
        break;
      default:
        break;
    }
    lines.push_back(line);
  }

 private:
  const Program& program_;
};

const std::vector<std::string> kWorkedOut = {
    "0 capacity Clerk 1", "0 capacity Helper 1", "0 capacity Machine 1", "0 capacity Porter 1", "0 capacity Guard 1",
    // The first comes, and is checked by the clerk.
    "0 #1 create", "0 #1 assign 1", "0 #1 assign 10", "0 #1 assign 10", "0 #1 enter", "0 #1 seize Clerk 1", "0 #1 delay 1.5",
    // The second finds him busy.
    "1 #2 create", "1 #2 assign 2", "1 #2 assign 20", "1 #2 assign 20", "1 #2 enter", "1 #2 seize Helper 1", "1 #2 delay 1.5",
    "1.5 #1 release Clerk 1", "1.5 #1 leave", "1.5 #1 queue", "2 capacity Machine 0",
    // The pair finds the machine down.
    "2.5 #2 release Helper 1", "2.5 #2 leave", "2.5 #3 batch 2", "2.5 #3 enter", "2.5 #3 queue", "3 capacity Machine 1",
    "3 #3 seize Machine 1", "3 #3 delay 2.5", "4 capacity Porter 0", "4 capacity Guard 0",
    // What is left of the pressing waits for the machine.
    "5 #3 preempt Machine 1", "5 capacity Machine 0", "5 capacity Porter 1", "5 capacity Guard 1", "6 capacity Machine 1",
    "6 #3 resume 0.5", "6.5 #3 release Machine 1", "6.5 #3 leave", "6.5 #3 record 1", "6.5 #3 split 2", "6.5 #1 decide true",
    "6.5 #1 enter", "6.5 #1 seize Porter 1", "6.5 #1 delay 2", "6.5 #2 decide true", "6.5 #2 enter", "6.5 #2 queue",
    "8 capacity Machine 0", "8.5 #1 release Porter 1", "8.5 #2 seize Porter 1", "8.5 #1 leave", "8.5 #1 enter",
    "8.5 #1 seize Guard 1", "8.5 #1 delay 1", "8.5 #2 delay 2",
    // The porter's break begins when he is done, the guard's has begun.
    "9 capacity Porter 0", "9 capacity Guard 0", "9 capacity Machine 1", "9.5 #1 release Guard 1", "9.5 #1 leave",
    "9.5 #1 duplicate 1", "9.5 #1 record 9.5", "9.5 #1 dispose", "9.5 #4 record 4", "9.5 #4 dispose", "10 capacity Guard 1",
    "10.5 #2 release Porter 1", "10.5 #2 leave", "10.5 #2 enter", "10.5 #2 seize Guard 1", "10.5 #2 delay 1",
    "11 capacity Machine 0", "11.5 capacity Porter 1", "11.5 #2 release Guard 1", "11.5 #2 leave", "11.5 #2 duplicate 1",
    "11.5 #2 record 10.5", "11.5 #2 record 2", "11.5 #2 dispose", "11.5 #5 record 5", "11.5 #5 dispose", "12 end"};

class WorkedByHand : public testing::Test {
 protected:
  WorkedByHand() {
    RunSetup setup;
    setup.lastReplication = 1;
    setup.length = 12 * 3600;
    program_ = Workshop().Compile(setup);
    Lines lines(*program_);
    Progress progress;
    Simulate(*program_, setup,
             {.threads = 1, .trace = &lines, .finished = [this](const ReplicationRecord& record) { record_ = record; }},
             progress);
    trace_ = lines.lines;
  }

  TestPlatform platform_;
  std::shared_ptr<const Program> program_;
  ReplicationRecord record_;
  std::vector<std::string> trace_;
};

TEST_F(WorkedByHand, EverythingHappensInItsOrder) { EXPECT_EQ(trace_, kWorkedOut); }

TEST_F(WorkedByHand, EveryNumberIsExact) {
  const struct {
    const char* output;
    double mean;
  } expected[] = {
      {"Entity/Job/In", 4},
      {"Entity/Job/Out", 4},
      {"Entity/Job/In system", 20. / 12},
      {"Entity/Job/VA time", 1.5},
      {"Entity/Job/NVA time", 2.5},
      {"Entity/Job/Transfer time", 2},
      {"Entity/Job/Wait time", 3},
      {"Entity/Job/Other time", 1},
      {"Entity/Job/Total time", 10},
      // Half of 24.5 and 6.5, of 7.5 each, and so on: the other half are the copies'.
      {"Entity/Job/VA cost", 7.75},
      {"Entity/Job/NVA cost", 3.75},
      {"Entity/Job/Transfer cost", 1},
      {"Entity/Job/Wait cost", 1.5},
      {"Entity/Job/Other cost", .5},
      {"Entity/Job/Total cost", 14.5},
      {"Queue/Check.Queue/Waiting time", 0},
      {"Queue/Check.Queue/Waited", 0},
      {"Queue/Pair.Queue/Waiting time", .5},
      {"Queue/Pair.Queue/Length", 1. / 12},
      {"Queue/Pair.Queue/Waited", 1},
      {"Queue/Press.Queue/Waiting time", .5},
      {"Queue/Press.Queue/Length", .5 / 12},
      {"Queue/Carry.Queue/Waiting time", 1},
      {"Queue/Carry.Queue/Length", 2. / 12},
      {"Queue/Carry.Queue/Waited", 1},
      {"Resource/Clerk/Utilisation", 1.5 / 12},
      {"Resource/Clerk/Times seized", 1},
      {"Resource/Clerk/Busy cost", 15},
      {"Resource/Clerk/Idle cost", 21},
      {"Resource/Clerk/Use cost", 3},
      {"Resource/Helper/Busy", 1.5 / 12},
      {"Resource/Machine/Scheduled", 8. / 12},
      {"Resource/Machine/Utilisation", 2.5 / 8},
      {"Resource/Machine/Busy cost", 10},
      {"Resource/Machine/Times seized", 1},
      {"Resource/Porter/Scheduled", 10. / 12},
      {"Resource/Porter/Utilisation", .4},
      {"Resource/Guard/Scheduled", 10. / 12},
      {"Resource/Guard/Utilisation", .15},
      {"Resource/Guard/Scheduled utilisation", .2},
      {"Process/Check/Total time", 1.5},
      {"Process/Check/Delay cost", 10.5},
      {"Process/Press/Wait time", 1.5},
      {"Process/Press/Delay time", 2.5},
      {"Process/Press/Total time", 4},
      {"Process/Press/Wait cost", 3},
      {"Process/Press/Delay cost", 15},
      {"Process/Press/Total cost", 18},
      {"Process/Carry/Inside", 6. / 12},
      {"Process/Carry/Wait cost", 1},
      {"Batch/Pair/Groups", 1},
      {"Batch/Pair/Members", 2},
      {"Separate/Copy/Duplicates", 2},
      {"Separate/Unpair/Splits", 1},
      {"Counter/Pressed/Count", 1},
      {"Tally/Age/Value", 10},
      {"Tally/Apart/Value", 2},
      {"Tally/Serial/Value", 4.5},
      {"Variable/Count/Value", 23. / 12},
  };
  for (const auto& [output, mean] : expected) {
    const auto found = FindOutput(*program_, output);
    ASSERT_TRUE(found) << output;
    EXPECT_DOUBLE_EQ(record_.values[*found].mean, mean) << output;
  }
  EXPECT_EQ(record_.end, 12);
  EXPECT_TRUE(record_.warnings.empty());
}

}  // namespace
}  // namespace vardo
