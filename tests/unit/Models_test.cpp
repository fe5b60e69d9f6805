// What each module does, in models without chance: every number is exact.
#include "DrawnModel.h"
#include "TestPlatform.h"
#include "simulate/Runner.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace vardo {
namespace {

using test::DrawnModel;
using test::Properties;

class Models : public testing::Test {
 protected:
  // Entities at the times 0, 1, 2, ... hours, so many of them.
  static Properties Every(const std::string& hours, const std::string& most, const Properties& more = {}) {
    Properties properties = {{"CreateType", "Constant"}, {"CreateValue", hours}, {"CreateMaxBatches", most}};
    properties.insert(properties.end(), more.begin(), more.end());
    return properties;
  }
  static Properties Work(const std::string& hours, const std::string& resource = "", const Properties& more = {}) {
    Properties properties = {{"ProcessDelayType", "Constant"}, {"ProcessValue", hours}};
    if (!resource.empty()) {
      properties.insert(properties.end(),
                        {{"ProcessAction", "SDR"}, {"Process_RCount", "1"}, {"Process_RResourceName", resource}});
    }
    properties.insert(properties.end(), more.begin(), more.end());
    return properties;
  }
  static Properties Tally(const std::string& value) { return {{"RecordType", "Expression"}, {"RecordValue", value}}; }
  static Properties Assign(const std::vector<std::array<std::string, 3>>& rows) {
    std::string types, names, values;
    for (const auto& [type, name, value] : rows) {
      const char* separator = types.empty() ? "" : ";";
      types += separator + type;
      names += separator + name;
      values += separator + value;
    }
    return {{"AssignCount", std::to_string(rows.size())},
            {"AssignType", types},
            {"AssignVariableName", names},
            {"AssignAttributeName", names},
            {"AssignEntityType", names},
            {"AssignOther", names},
            {"AssignEntityPicture", names},
            {"AssignNewValue", values}};
  }

  // Runs once and keeps what comes out.
  void Run(const DrawnModel& model, RunSetup setup = {}) {
    setup.lastReplication = 1;
    program_ = model.Compile(setup);
    Progress progress;
    Simulate(*program_, setup, {.threads = 1, .finished = [this](const ReplicationRecord& record) { record_ = record; }},
             progress);
  }
  static RunSetup Until(double hours) {
    RunSetup setup;
    setup.length = hours * 3600;
    return setup;
  }
  const OutputValue& Value(const std::string& name) {
    const auto output = FindOutput(*program_, name);
    if (!output) throw std::logic_error("no output " + name);
    return record_.values[*output];
  }
  double Mean(const std::string& name) { return Value(name).mean; }

  TestPlatform platform_;
  std::shared_ptr<const Program> program_;
  ReplicationRecord record_;
};

TEST_F(Models, AssignSeesWhatTheRowsBeforeItDid) {
  DrawnModel model;
  model.Add("Variable", "Sum")
      .Add("Variable", "Table",
           {{"VariableRows", "2"}, {"VariableColumns", "3"}, {"Variable_ICount", "6"}, {"VariableInitialValue", "1;2;3;4;5;6"}});
  model.Add("Create", "Come", Every("1", "2")).Add("Dispose", "Go");
  model.Add("Assign", "Set",
            Assign({{"Variable", "Sum", "Sum + 1"},
                    {"Attribute", "Size", "Sum * 10"},
                    {"Other", "Table(2, 1)", "Table(2, 3) + Size"},
                    {"Other", "J", "7"},
                    {"Entity Type", "Parcel", ""}}));
  model.Add("Record", "Size is", Tally("Size")).Add("Record", "Cell", Tally("Table(2, 1) + J"));
  model.Chain({"Come", "Set", "Size is", "Cell", "Go"});
  Run(model);
  EXPECT_EQ(Mean("Variable/Sum/Value"), 1);  // 1 from the first hour to the second, 2 at its end
  EXPECT_EQ(Value("Variable/Sum/Value").last, 2);
  EXPECT_EQ(Value("Tally/Size is/Value").max, 20);
  EXPECT_EQ(Value("Tally/Cell/Value").min, 6 + 10 + 7);
  EXPECT_EQ(Mean("Entity/Entity 1/Out"), 2);
  EXPECT_EQ(Mean("Entity/Parcel/In"), 2);
}

TEST_F(Models, BatchesSaveAttributesByTheirCriterion) {
  for (const auto& [criterion, want] : std::map<std::string, double>{{"First", 2}, {"Last", 5}, {"Sum", 10}, {"Product", 30}}) {
    DrawnModel model;
    model.Add("Variable", "Count").Add("Create", "Come", Every("1", "3")).Add("Dispose", "Go");
    model.Add("Assign", "Number",
              Assign({{"Variable", "Count", "Count + 1"}, {"Attribute", "A", "IF(Count < 3, Count + 1, 5)"}}));
    model.Add("Batch", "Three", {{"BatchBatchSize", "3"}, {"BatchSaveCriterion", criterion}}).Add("Record", "A is", Tally("A"));
    model.Chain({"Come", "Number", "Three", "A is", "Go"});
    Run(model);
    EXPECT_EQ(Mean("Tally/A is/Value"), want) << criterion;
    EXPECT_EQ(Mean("Batch/Three/Groups"), 1);
    EXPECT_EQ(Mean("Queue/Three.Queue/Waiting time"), 1);
    EXPECT_EQ(Mean("Entity/Entity 1/Out"), 4);  // three were combined, one has left
  }
}

TEST_F(Models, MembersOfATemporaryBatchGetItsTimesWhenTheyPart) {
  DrawnModel model;
  model.Add("Create", "Come", Every("1", "2"))
      .Add("Batch", "Pair", {{"BatchType", "Temporary"}})
      .Add("Process", "Move", Work("3"));
  model.Add("Separate", "Part", {{"SeparateType", "Split"}}).Add("Dispose", "Go");
  model.Chain({"Come", "Pair", "Move", "Part", "Go"});
  Run(model);
  EXPECT_EQ(Mean("Entity/Entity 1/In"), 2);
  EXPECT_EQ(Mean("Entity/Entity 1/Out"), 2);
  EXPECT_EQ(Mean("Entity/Entity 1/VA time"), 3);
  EXPECT_EQ(Mean("Entity/Entity 1/Wait time"), .5);
  EXPECT_EQ(Value("Entity/Entity 1/Total time").max, 4);
  EXPECT_EQ(Value("Entity/Entity 1/In system").last, 0);
}

TEST_F(Models, DuplicatesShareTheSerialNumberAndTheCosts) {
  DrawnModel model;
  model.Add("Entity", "Job", {{"EntityHoldingCost_Hour", "8"}});
  model.Add("Create", "Come", Every("1", "1", {{"CreateEntityType", "Job"}}))
      .Add("Process", "Work", Work("1"))
      .Add("Dispose", "Go");
  model.Add("Separate", "Copy", {{"SeparateNumberofDuplicates", "3"}, {"SeparateCostToDuplicates", "75"}});
  model.Add("Record", "Serial", Tally("Entity.SerialNumber")).Add("Record", "Number", Tally("Entity.Number"));
  model.Chain({"Come", "Work", "Copy", "Serial", "Number", "Go"}).ConnectSecond("Copy", "Serial");
  Run(model);
  EXPECT_EQ(Value("Tally/Serial/Value").n, 4u);
  EXPECT_EQ(Value("Tally/Serial/Value").max, 1);
  EXPECT_EQ(Value("Tally/Number/Value").max, 4);
  EXPECT_EQ(Value("Entity/Job/VA cost").min, 2);
  EXPECT_EQ(Value("Entity/Job/VA cost").max, 2);
}

TEST_F(Models, QueuesRankByTheirRule) {
  // The first is served at once; the others wait with the values 3, 1, 2.
  const std::map<std::string, double> thirdServed = {{"FIFO", 1}, {"LIFO", 1}, {"LVF", 2}, {"HVF", 2}};
  const std::map<std::string, double> secondServed = {{"FIFO", 3}, {"LIFO", 2}, {"LVF", 1}, {"HVF", 3}};
  for (const auto& [rule, second] : secondServed) {
    DrawnModel model;
    model.Add("Variable", "Count").Add("Variable", "Served").Add("Variable", "Seen", {{"VariableRows", "4"}});
    model.Add("Create", "Come", Every("1", "4"))
        .Add("Process", "Serve", Work("10", "R"))
        .Add("Resource", "R")
        .Add("Dispose", "Go");
    model.Add("Assign", "Value",
              Assign({{"Variable", "Count", "Count + 1"}, {"Attribute", "A", "IF(Count == 2, 3, IF(Count == 3, 1, 2))"}}));
    model.Add("Queue", "Serve.Queue", {{"QueueType", rule}, {"QueueAttributeName", "A"}});
    model.Add("Assign", "Note", Assign({{"Variable", "Served", "Served + 1"}, {"Other", "Seen(Served)", "A"}}));
    model.Add("Record", "Second", Tally("Seen(2)")).Add("Record", "Third", Tally("Seen(3)"));
    model.Chain({"Come", "Value", "Serve", "Note", "Second", "Third", "Go"});
    Run(model);
    EXPECT_EQ(Value("Tally/Second/Value").max, second) << rule;
    EXPECT_EQ(Value("Tally/Third/Value").max, thirdServed.at(rule)) << rule;
  }
}

DrawnModel OnSchedule(const std::string& rule, const std::string& work, const std::string& arrivals) {
  // Two hours of work, one hour off, again and again.
  DrawnModel model;
  model.Add("Schedule", "Shift",
            {{"Schedule_DCount", "2"}, {"Schedule_DurationsValue", "1;0"}, {"Schedule_DurationsDuration", "2;1"}});
  model.Add("Resource", "R", {{"ResourceType", "Schedule"}, {"ResourceScheduleName", "Shift"}, {"ResourceScheduleRule", rule}});
  model.Add("Create", "Come",
            {{"CreateType", "Constant"}, {"CreateValue", "100"}, {"CreateMaxBatches", "1"}, {"CreateBatchSize", arrivals}});
  model.Add("Process", "Serve",
            {{"ProcessAction", "SDR"},
             {"ProcessDelayType", "Constant"},
             {"ProcessValue", work},
             {"Process_RCount", "1"},
             {"Process_RResourceName", "R"}});
  model.Add("Dispose", "Go");
  return model.Chain({"Come", "Serve", "Go"});
}

TEST_F(Models, WaitFinishesTheWorkAndThenTakesTheWholeBreak) {
  Run(OnSchedule("Wait", "1.5", "3"), Until(20));
  // 0 - 1.5, 1.5 - 3, a break until 4, 4 - 5.5.
  EXPECT_EQ(Value("Entity/Entity 1/Total time").max, 5.5);
  EXPECT_EQ(Value("Queue/Serve.Queue/Waiting time").max, 4);
}

TEST_F(Models, IgnoreFinishesTheWorkAndShortensTheBreak) {
  Run(OnSchedule("Ignore", "2.5", "2"), Until(20));
  // 0 - 2.5 into the break, which ends at 3: 3 - 5.5.
  EXPECT_EQ(Value("Entity/Entity 1/Total time").max, 5.5);
  EXPECT_EQ(Value("Resource/R/Busy").max, 1);
}

TEST_F(Models, PreemptStopsTheWorkUntilTheBreakIsOver) {
  Run(OnSchedule("Preempt", "2.5", "1"), Until(20));
  // 0 - 2, a break until 3, 3 - 3.5.
  EXPECT_EQ(Value("Entity/Entity 1/Total time").max, 3.5);
  EXPECT_EQ(Mean("Entity/Entity 1/VA time"), 2.5);
  EXPECT_EQ(Mean("Entity/Entity 1/Wait time"), 1);
  EXPECT_EQ(Mean("Process/Serve/Wait time"), 1);
  EXPECT_EQ(Mean("Process/Serve/Delay time"), 2.5);
}

// The unit was taken in the very instant in which the work ended: given back, it is nobody's.
TEST_F(Models, WorkThatEndsAsTheBreakBeginsOwesNothing) {
  DrawnModel model = OnSchedule("Preempt", "2", "2");
  model.Add("Process", "Pack", Work(".5")).Reconnect("Serve", "Pack").Connect("Pack", "Go");
  Run(model, Until(20));
  // 0 - 2 and 3 - 5, with half an hour behind each.
  EXPECT_EQ(Value("Entity/Entity 1/Total time").min, 2.5);
  EXPECT_EQ(Value("Entity/Entity 1/Total time").max, 5.5);
  EXPECT_TRUE(record_.warnings.empty());
}

TEST_F(Models, ArrivalsFollowTheRateOfTheirSchedule) {
  DrawnModel model;
  model.Add("Schedule", "Rates",
            {{"ScheduleType", "Arrival"},
             {"Schedule_DCount", "2"},
             {"Schedule_DurationsValue", "50;0"},
             {"Schedule_DurationsDuration", "1;1"}});
  model.Add("Create", "Come", {{"CreateType", "Schedule"}, {"CreateScheduleName", "Rates"}}).Add("Dispose", "Go");
  model.Add("Record", "When", Tally("MOD(Now(), 2)")).Chain({"Come", "When", "Go"});
  Run(model, Until(200));
  EXPECT_NEAR(Mean("Entity/Entity 1/In"), 5000, 250);
  EXPECT_LT(Value("Tally/When/Value").max, 1);
}

TEST_F(Models, SetsAreChosenFromByTheirRule) {
  const std::map<std::string, std::vector<double>> chosen = {{"CYC", {1, 2, 3, 1}}, {"POR", {1, 1, 1, 1}}, {"LRC", {2, 2, 2, 2}}};
  for (const auto& [rule, want] : chosen) {
    DrawnModel model;
    model.Add("Set", "Team", {{"SetM_Count", "3"}, {"SetResourceMembers", "A;B;C"}, {"SetMembers", "A;B;C"}});
    model.Add("Resource", "A").Add("Resource", "B", {{"ResourceCapacity", "4"}}).Add("Resource", "C").Add("Variable", "Count");
    model.Add("Create", "Come", Every("2", "4")).Add("Dispose", "Go").Add("Variable", "Was", {{"VariableRows", "4"}});
    model.Add("Process", "Serve",
              Work("1", "",
                   {{"ProcessAction", "SDR"},
                    {"Process_RCount", "1"},
                    {"Process_RType", "Set"},
                    {"Process_RSetName", "Team"},
                    {"Process_RSelectionRule", rule},
                    {"Process_RSaveAttribute", "Who"}}));
    model.Add("Assign", "Note", Assign({{"Variable", "Count", "Count + 1"}, {"Other", "Was(Count)", "Who"}}));
    std::vector<std::string> chain = {"Come", "Serve", "Note"};
    for (int i = 1; i <= 4; ++i) {
      const std::string name = "Was " + std::to_string(i);
      model.Add("Record", name, Tally("Was(" + std::to_string(i) + ")"));
      chain.push_back(name);
    }
    chain.push_back("Go");
    Run(model.Chain(chain));
    for (int i = 1; i <= 4; ++i)
      EXPECT_EQ(Value("Tally/Was " + std::to_string(i) + "/Value").max, want[static_cast<size_t>(i) - 1]) << rule << " " << i;
  }
}

TEST_F(Models, RecordsIntoSetsAndBetweenPasses) {
  DrawnModel model;
  model.Add("Set", "Both",
            {{"SetType", "Counter"}, {"SetM_Count", "2"}, {"SetCounterMembers", "Odd;Even"}, {"SetMembers", "Odd;Even"}});
  model.Add("Create", "Come", Every("3", "5")).Add("Dispose", "Go");
  model.Add("Record", "Kind",
            {{"RecordInSet", "Yes"},
             {"RecordCounterSetName", "Both"},
             {"RecordSetIndex", "1 + MOD(Entity.Number, 2)"},
             {"RecordValue", "2"}});
  model.Add("Record", "Apart", {{"RecordType", "Between"}}).Chain({"Come", "Kind", "Apart", "Go"});
  Run(model);
  EXPECT_EQ(Mean("Counter/Odd/Count"), 4);
  EXPECT_EQ(Mean("Counter/Even/Count"), 6);
  EXPECT_EQ(Value("Tally/Apart/Value").n, 4u);
  EXPECT_EQ(Mean("Tally/Apart/Value"), 3);
}

TEST_F(Models, EndByTheirConditionOrWhenNothingIsLeft) {
  DrawnModel model;
  model.Add("Create", "Come", Every("1", "10")).Add("Dispose", "Go").Chain({"Come", "Go"});
  Run(model);
  EXPECT_EQ(record_.because, EndReason::NothingLeft);
  EXPECT_EQ(record_.end, 9);
  RunSetup setup;
  setup.until = "Left(Go) >= 4";
  Run(model, setup);
  EXPECT_EQ(record_.because, EndReason::Condition);
  EXPECT_EQ(record_.end, 3);
}

TEST_F(Models, StatisticsBeginAnewAtTheWarmUp) {
  DrawnModel model;
  model.Add("Create", "Come", Every("1", "4"))
      .Add("Process", "Serve", Work("2"))
      .Add("Dispose", "Go")
      .Chain({"Come", "Serve", "Go"});
  RunSetup setup = Until(10);
  setup.warmUp = 2 * 3600;
  Run(model, setup);
  // At 2 hours two are inside, one about to leave, and two come after; all four leave after it.
  EXPECT_EQ(Mean("Entity/Entity 1/In"), 2);
  EXPECT_EQ(Mean("Entity/Entity 1/Out"), 4);
  EXPECT_EQ(Mean("Entity/Entity 1/In system"), 5. / 8);
  EXPECT_EQ(Value("Entity/Entity 1/In system").max, 2);
  EXPECT_EQ(Mean("Process/Serve/Total time"), 2);
}

TEST_F(Models, TimesOfALoopWithoutDelayAreRefusedWithItsModules) {
  DrawnModel model;
  model.Add("Create", "Come", Every("1", "1"))
      .Add("Assign", "Set")
      .Add("Record", "Count")
      .Chain({"Come", "Set", "Count"})
      .Connect("Count", "Set");
  RunSetup setup;
  setup.lastReplication = 1;
  const auto program = model.Compile(setup);
  Progress progress;
  try {
    Simulate(*program, setup, {.mostSteps = 1000}, progress);
    FAIL();
  } catch (const RunError& error) {
    EXPECT_EQ(std::string(error.what()),
              "Replication 1 at 0 h: more than 1000 steps without any time passing: Record \"Count\", Assign \"Set\".");
  }
}

}  // namespace
}  // namespace vardo
