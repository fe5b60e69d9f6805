// Models made by chance, of all kinds of modules, in which whoever comes in gets out again. The same number gives the same model
// everywhere.
#pragma once

#include "QueueModels.h"
#include "base/Numbers.h"

#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace vardo::test {

struct RandomModelOptions {
  double scale = 1;  // of all times, and of costs that are not per hour
  bool hasOtherNames = false;
  bool hasStreamNumbers = false;  // all draws are of streams with numbers, wherever their modules stand
  bool isFlat = false;            // what would stand on pages of its own stands on the first one
  bool asksForTime = true;        // conditions ask for the time
};

class RandomModel {
 public:
  RandomModel(std::uint64_t number, const RandomModelOptions& options = {}) : options_(options), random_(number) {
    AddThings();
    AddCreates();
    const int blocks = Between(3, 9);
    for (int i = 0; i < blocks; ++i) AddBlock();
    Step("Record", "All times", Noted(kAllTimes, Name("Times")));
    Step("Dispose", "Go");
  }

  const DrawnModel& model() const { return model_; }
  const std::vector<std::string>& creates() const { return creates_; }

 private:
  static constexpr const char* kAllTimes =
      "Entity.VATime + Entity.NVATime + Entity.TranTime + Entity.WaitTime + Entity.OtherTime + Entity.CreateTime - Now()";

  // --- Chance

  int Between(int least, int most) { return least + static_cast<int>(random_() % static_cast<std::uint64_t>(most - least + 1)); }
  bool OneIn(int count) { return Between(1, count) == 1; }
  const std::string& OneOf(const std::vector<std::string>& list) {
    return list[static_cast<size_t>(Between(0, static_cast<int>(list.size()) - 1))];
  }

  // --- Names and texts

  std::string Name(const std::string& name) const {
    return options_.hasOtherNames ? "%q " + std::string(name.rbegin(), name.rend()) : name;
  }
  std::string NewName(const std::string& kind) { return kind + " " + std::to_string(++names_); }
  std::string Quarters(int least, int most) { return NumberText(Between(least, most) / 4.); }
  // Amounts that belong to no time.
  std::string Cost(int least, int most) { return NumberText(Between(least, most) * options_.scale); }
  std::string Stream() { return options_.hasStreamNumbers ? ", " + std::to_string(++streams_) : ""; }

  // A time with that mean, about, but not below the least.
  std::string Time(double mean, const std::string& least = "0") {
    const std::string m = NumberText(mean);
    std::string text;
    switch (Between(0, 8)) {
      case 0:
        text = m;
        break;
      case 1:
        text = "UNIF(0, 2 * " + m + Stream() + ")";
        break;
      case 2:
        text = "TRIA(0, " + m + ", 2 * " + m + Stream() + ")";
        break;
      case 3:
        text = "ERLA(" + m + " / 3, 3" + Stream() + ")";
        break;
      case 4:
        text = "GAMM(" + m + " / 1.5, 1.5" + Stream() + ")";
        break;
      case 5:
        text = m + " * DISC(.3, .5, .8, 1, 1, 2" + Stream() + ")";
        break;
      case 6:
        text = "NORM(" + m + ", " + m + " / 4" + Stream() + ")";
        break;
      default:
        text = "EXPO(" + m + Stream() + ")";
    }
    text = "MAX(" + text + ", " + least + ")";
    return options_.scale == 1 ? text : text + " * " + NumberText(options_.scale);
  }

  // --- The drawing

  void Step(const std::string& kind, const std::string& name, const Properties& properties = {}) {
    model_.Add(kind, Name(name), properties);
    Enter(name);
    open_ = {{name, false}};
  }
  // What is open leads to a module.
  void Enter(const std::string& name) {
    for (const auto& [from, isSecond] : open_)
      isSecond ? model_.ConnectSecond(Name(from), Name(name)) : model_.Connect(Name(from), Name(name));
  }

  void AddThings() {
    for (const char* type : {"Job", "Order"}) {
      types_.push_back(Name(type));
      model_.Add("Entity", types_.back(),
                 {{"EntityHoldingCost_Hour", Quarters(0, 8)},
                  {"EntityValueAdded", Cost(0, 3)},
                  {"EntityWaiting", Cost(0, 2)},
                  {"EntityOther", Cost(0, 1)}});
    }
    types_.push_back(Name("Paper"));
    model_.Add("Variable", Name("Count")).Add("Variable", Name("Table"), {{"VariableRows", "3"}, {"VariableColumns", "2"}});
    const int resources = Between(1, 4);
    for (int i = 1; i <= resources; ++i) AddResource(i);
    model_.Add("Set", Name("Counters"),
               {{"SetType", "Counter"},
                {"SetM_Count", "2"},
                {"SetMembers", Name("Odd") + ";" + Name("Even")},
                {"SetCounterMembers", Name("Odd") + ";" + Name("Even")}});
    if (resources < 2) return;
    std::string members;
    for (const std::string& resource : resources_) members += (members.empty() ? "" : ";") + resource;
    model_.Add("Set", Name("Team"),
               {{"SetM_Count", std::to_string(resources)}, {"SetMembers", members}, {"SetResourceMembers", members}});
  }

  void AddResource(int number) {
    const std::string name = Name("Worker " + std::to_string(number));
    Properties properties = {{"ResourceCapacity", std::to_string(Between(1, 3))},
                             {"ResourceBusy_Hour", std::to_string(Between(0, 20))},
                             {"ResourceIdle_Hour", std::to_string(Between(0, 2) * 3)},
                             {"ResourcePerUse", Cost(0, 2)}};
    if (OneIn(2)) {
      const std::string schedule = Name("Shift " + std::to_string(number));
      const std::string up = Time(6), less = Time(3), down = Time(2);
      model_.Add("Schedule", schedule,
                 {{"Schedule_DCount", "3"},
                  {"Schedule_DurationsValue", std::to_string(Between(1, 2)) + ";3;" + std::to_string(Between(0, 1))},
                  {"Schedule_DurationsDuration", up + ";" + less + ";" + down}});
      properties = With(properties, {{"ResourceType", "Schedule"},
                                     {"ResourceScheduleName", schedule},
                                     {"ResourceScheduleRule", OneOf({"Wait", "Ignore", "Preempt", "Preempt"})}});
    }
    model_.Add("Resource", name, properties);
    resources_.push_back(name);
  }

  void AddCreates() {
    const int creates = Between(1, 3);
    std::vector<std::pair<std::string, bool>> all;
    for (int i = 0; i < creates; ++i) {
      const std::string name = NewName("Come");
      Properties properties = {{"CreateEntityType", OneOf(types_)}, {"CreateBatchSize", std::to_string(OneIn(4) ? 2 : 1)}};
      const bool isOnSchedule = !options_.hasStreamNumbers && OneIn(4);
      const std::string apart = Time(Between(2, 5) / 4. * creates, ".001");
      if (isOnSchedule) {
        const std::string schedule = NewName("Rates");
        model_.Add("Schedule", Name(schedule),
                   {{"ScheduleType", "Arrival"},
                    {"Schedule_DCount", "3"},
                    {"Schedule_DurationsValue", "1;3;0"},
                    {"Schedule_DurationsDuration", apart + ";" + NumberText(2 * options_.scale) + ";" + Time(1)},
                    {"ScheduleScaleFactor", NumberText(.5 / options_.scale)}});
        properties = With(properties, {{"CreateType", "Schedule"}, {"CreateScheduleName", Name(schedule)}});
      } else {
        properties = With(properties, {{"CreateType", "Expression"}, {"CreateExpression", apart}});
      }
      model_.Add("Create", Name(name), properties);
      creates_.push_back(Name(name));
      all.emplace_back(name, false);
    }
    open_ = all;
    Assign({{"Attribute", "Size", "1 + MOD(Entity.Number, 3)"}, {"Variable", "Count", Name("Count") + " + 1"}});
  }

  void Assign(const std::vector<std::array<std::string, 3>>& rows) {
    std::string types, names, plain, values;
    for (const auto& [type, name, value] : rows) {
      const char* separator = types.empty() ? "" : ";";
      types += separator + type;
      names += separator + Name(name);
      plain += separator + name;
      values += separator + value;
    }
    Step("Assign", NewName("Put"),
         {{"AssignCount", std::to_string(rows.size())},
          {"AssignType", types},
          {"AssignVariableName", names},
          {"AssignAttributeName", names},
          {"AssignEntityType", names},
          {"AssignOther", plain},
          {"AssignNewValue", values}});
  }

  // --- Blocks

  void AddBlock() {
    switch (Between(0, 11)) {
      case 0:
        return AddDelay();
      case 1:
      case 2:
      case 3:
        return AddService();
      case 4:
        return AddDecide();
      case 5:
        return AddAssign();
      case 6:
        return AddRecord();
      case 7:
        return AddTemporaryBatch();
      case 8:
        return AddPermanentBatch();
      case 9:
        return AddCopies();
      case 10:
        return AddSeizeAndRelease();
      default:
        return AddPiece();
    }
  }

  Properties Delay(double mean) {
    const struct {
      const char* name;
      double each;
    } units[] = {{"Minutes", 60}, {"Hours", 1}, {"Seconds", 3600}};
    const auto& unit = units[Between(0, 2)];
    return {{"ProcessDelayType", "Expression"},
            {"ProcessExpression", Time(mean * unit.each)},
            {"ProcessUnits", unit.name},
            {"ProcessAllocation", OneOf({"VA", "NVA", "Tran", "Wait", "Other"})}};
  }
  void AddDelay() { Step("Process", NewName("Rest"), Delay(.5)); }

  Properties Rows() {
    Properties rows = {{"Process_RCount", "1"}, {"Process_RResourceName", OneOf(resources_)}};
    if (resources_.size() < 2) return rows;
    if (OneIn(3))
      return {{"Process_RCount", "2"},
              {"Process_RType", "Resource;Resource"},
              {"Process_RResourceName", resources_[0] + ";" + resources_[1]},
              {"Process_RQuantity", "1;1"}};
    if (OneIn(2)) {
      std::vector<std::string> rules = {"CYC", "POR", "LRC", "SNB", "SM"};
      if (!options_.hasStreamNumbers) rules.emplace_back("RAN");
      return {{"Process_RCount", "1"},
              {"Process_RType", "Set"},
              {"Process_RSetName", Name("Team")},
              {"Process_RSelectionRule", OneOf(rules)},
              {"Process_RSaveAttribute", Name("Who")},
              {"Process_RInputAttribute", "1 + MOD(Entity.Number, 2)"}};
    }
    return rows;
  }
  void AddService() {
    const std::string name = NewName("Serve");
    const std::string priority = OneIn(3) ? Name("Size") : OneOf({"1", "2", "3"});
    const Properties delay = Delay(.1);
    Step("Process", name, With(With(delay, {{"ProcessAction", "SDR"}, {"ProcessPriority", priority}}), Rows()));
    if (OneIn(3))
      model_.Add("Queue", Name(name) + ".Queue",
                 {{"QueueType", OneOf({"LIFO", "LVF", "HVF"})}, {"QueueAttributeName", Name("Size")}});
  }

  std::string Chance() {
    switch (Between(0, options_.asksForTime ? 3 : 2)) {
      case 0:
        return Name("Size") + " == 2";
      case 1:
        return "UNIF(0, 1" + Stream() + ") < .4";
      case 2:
        return "MOD(" + Name("Count") + ", 3) > 0";
      default:
        return "MOD(Now(), " + NumberText(24 * options_.scale) + ") < " + NumberText(10 * options_.scale);
    }
  }
  // Some pass by the next block, or come again.
  void AddDecide() {
    const std::string name = NewName("Ask");
    if (OneIn(3)) {
      const std::string again = NewName("Again");
      Step("Process", again, Delay(.1));
      Step("Decide", name, Condition("UNIF(0, 1" + Stream() + ") < .2"));
      model_.Connect(Name(name), Name(again));
      open_ = {{name, true}};
      return;
    }
    const bool isByChance = !options_.hasStreamNumbers && OneIn(2);
    Step("Decide", name, isByChance ? Properties{{"DecidePercentTrue", "35"}} : Condition(Chance()));
    AddService();
    open_.emplace_back(name, true);
  }

  void AddAssign() {
    switch (Between(0, 3)) {
      case 0:
        return Assign({{"Entity Type", OneIn(2) ? "Order" : "Paper", ""}, {"Attribute", "Size", "3 - " + Name("Size") + " / 2"}});
      case 1:
        return Assign(
            {{"Other", Name("Table") + "(1 + MOD(Entity.Number, 3), 2)", Name("Table") + "(2, 2) + 1"}, {"Other", "J", "J + 1"}});
      case 2:
        return Assign({{"Other", "Entity.HoldCostRate", "Entity.HoldCostRate + .5"},
                       {"Variable", "Count", Name("Count") + " + " + Name("Size")}});
      default:
        return Assign({{"Other", "Entity.Station", "Entity.Station + 1"}, {"Attribute", "Size", "ROUND(" + Name("Size") + ")"}});
    }
  }

  void AddRecord() {
    const std::string name = NewName("Note");
    switch (Between(0, 5)) {
      case 0:
        return Step("Record", name, With(SinceCreation(), {{"RecordTallyName", Name("Time " + name)}}));
      case 1:
        return Step("Record", name, {{"RecordType", "Between"}, {"RecordTallyName", Name("Time " + name)}});
      case 2:
        return Step("Record", name, {{"RecordType", "Entity"}});
      case 3:
        return Step("Record", name,
                    {{"RecordInSet", "Yes"},
                     {"RecordCounterSetName", Name("Counters")},
                     {"RecordSetIndex", "1 + MOD(Entity.SerialNumber, 2)"}});
      case 4:
        return Step("Record", name, Noted(Name("Size") + " + " + Name("Table") + "(1, 2)", Name(name)));
      default:
        return Step("Record", name, {{"RecordCounterName", Name("Passed")}, {"RecordValue", "2"}});
    }
  }

  Properties Grouping() {
    Properties grouping = {{"BatchSaveCriterion", OneOf({"First", "Last", "Sum", "Product"})},
                           {"BatchBatchSize", std::to_string(Between(2, 3))}};
    if (OneIn(3))
      return With(grouping, {{"BatchRule", "By Attribute"}, {"BatchAttributeName", OneIn(2) ? Name("Size") : "Entity.Type"}});
    return grouping;
  }
  void AddTemporaryBatch() {
    const std::string name = NewName("Bundle");
    Step("Batch", name, With(Grouping(), {{"BatchType", "Temporary"}}));
    if (OneIn(3)) model_.Add("Queue", Name(name) + ".Queue", {{"QueueType", "LIFO"}});
    AddService();
    if (OneIn(3)) AddAssign();
    Step("Separate", NewName("Unbundle"),
         {{"SeparateType", "Split"},
          {"SeparateMemberAttributes", OneOf({"Retain", "All", "Specific"})},
          {"Separate_ACount", "2"},
          {"AttributeName", Name("Size") + ";Entity.HoldCostRate"}});
  }
  void AddPermanentBatch() { Step("Batch", NewName("Join"), Grouping()); }

  // The copies take another way, and all go on.
  void AddCopies() {
    const std::string name = NewName("Copy");
    Step("Separate", name, {{"SeparateNumberofDuplicates", std::to_string(Between(1, 2))}, {"SeparateCostToDuplicates", "40"}});
    open_ = {{name, true}};
    AddService();
    Step("Batch", NewName("Merge"), {{"BatchBatchSize", "2"}});
    open_.emplace_back(name, false);
  }

  void AddSeizeAndRelease() {
    const std::string& resource = resources_.front();
    const Properties one = {{"Process_RCount", "1"}, {"Process_RResourceName", resource}};
    Step("Process", NewName("Take"), With(With(Delay(.1), {{"ProcessAction", "SD"}}), one));
    if (OneIn(2)) AddDelay();
    if (OneIn(2)) AddAssign();
    Step("Process", NewName("Give"), With(With(Delay(.1), {{"ProcessAction", "DR"}}), one));
  }

  void AddPiece() {
    const std::string name = NewName("Piece");
    if (!options_.isFlat) {
      model_.Add("Process", Name(name), {{"ProcessType", "Submodel"}, {"VardoSubPage", Name(name)}});
      Enter(name);
      open_.clear();
      model_.GoTo(model_.AddPage(Name(name), "Page-1"));
    }
    AddDelay();
    AddService();
    if (OneIn(2)) AddCopies();
    if (options_.isFlat) return;
    model_.GoTo(0);
    open_ = {{name, false}};
  }

  RandomModelOptions options_;
  std::mt19937_64 random_;
  DrawnModel model_;
  std::vector<std::string> types_, resources_, creates_;
  std::vector<std::pair<std::string, bool>> open_;  // exits that lead nowhere yet; true: the second one
  int names_ = 0, streams_ = 0;
};

}  // namespace vardo::test
