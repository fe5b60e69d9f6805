#include "catalog/NameCatalogues.h"

#include "FakeHost.h"
#include "TestPlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

struct Items : ItemList {
  void AddItem(std::string_view item) override { all.emplace_back(item); }
  StringList all;
};

using Fields = std::map<std::string, std::string>;

class NameCatalogues : public testing::Test {
 protected:
  // Puts a shape on the first page and into its register.
  void Drop(const std::string& kind, const Fields& fields) {
    auto& entries = registers_[kind];
    entries.push_back(std::to_string(drawing.page().Drop(kind, fields)->index));
    drawing.page().Register(kind, JoinList(entries));
  }

  TestPlatform platform;
  fake::Drawing drawing;

 private:
  std::map<std::string, StringList> registers_;
};

// The first test of this program: the catalogues last as long as the program does.
TEST_F(NameCatalogues, AreEmptyUntilTheyAreBuilt) {
  Drop("Create", {{"CreateName", "Create 1"}});
  EXPECT_THAT(GatherNames(NameList::AllModules, false), ElementsAre(""));
  Items items;
  FillAttributeCombo(items, true);
  AddNames(items, NameList::FlowModules);
  EXPECT_THAT(items.all, IsEmpty());
}

TEST_F(NameCatalogues, HoldTheirPairsInOrderHoweverOftenTheyAreBuilt) {
  const struct {
    NameList list;
    StringList pairs;
  } cases[] = {
      {NameList::FlowModules,
       {"Create:CreateName", "Dispose:DisposeName", "Process:ProcessName", "Decide:DecideName", "Batch:BatchName",
        "Separate:SeparateName", "Assign:AssignName", "Record:RecordName"}},
      {NameList::Attributes,
       {"Batch:BatchAttributeName", "Assign:AssignAttributeName", "Decide:DecideAttributeNamed", "Queue:QueueAttributeName",
        "Process:Process_RSaveAttribute", "Record:RecordAttributeName", "Separate:AttributeName"}},
      {NameList::EntityTypes,
       {"Create:CreateEntityType", "Entity:EntityName", "Decide:DecideEntityTypeNamed", "Assign:AssignEntityType",
        "Set:SetEntityMembers"}},
      {NameList::Resources, {"Set:SetResourceMembers", "Resource:ResourceName", "Process:Process_RResourceName"}},
      {NameList::Schedules, {"Create:CreateScheduleName", "Resource:ResourceScheduleName", "Schedule:ScheduleName"}},
      {NameList::Sets, {"Set:SetName", "Process:Process_RSetName", "Record:RecordCounterSetName", "Record:RecordTallySetName"}},
      {NameList::Variables, {"Assign:AssignVariableName", "Decide:DecideVariableNamed", "Variable:VariableName"}},
      {NameList::BatchAndProcess, {"Batch:BatchName", "Process:ProcessName"}},
      {NameList::Counters, {"Set:SetCounterMembers", "Record:RecordCounterName"}},
      {NameList::Tallies, {"Set:SetTallyMembers", "Record:RecordTallyName"}},
      {NameList::AllModules,
       {"Create:CreateName", "Dispose:DisposeName", "Process:ProcessName", "Decide:DecideName", "Batch:BatchName",
        "Separate:SeparateName", "Assign:AssignName", "Record:RecordName", "Entity:EntityName", "Resource:ResourceName",
        "Set:SetName", "Schedule:ScheduleName", "Variable:VariableName", "Queue:QueueName"}},
      {NameList::Pictures, {"Assign:AssignEntityPicture", "Entity:EntityInitialPicture", "Set:SetPictureMembers"}},
  };
  // Every shape holds in each of its fields the pair that names the field.
  std::map<std::string, Fields> shapes;
  for (const auto& c : cases) {
    for (const auto& pair : c.pairs) {
      const auto colon = pair.find(':');
      shapes[pair.substr(0, colon)][pair.substr(colon + 1)] = pair;
    }
  }
  for (const auto& [kind, fields] : shapes) Drop(kind, fields);

  for (int round = 0; round < 2; ++round) {
    BuildNameCatalogues();
    for (const auto& c : cases) EXPECT_THAT(GatherNames(c.list, false), ElementsAreArray(c.pairs));
  }
}

TEST_F(NameCatalogues, MembersOfASetAreNamesOfTheirKind) {
  BuildNameCatalogues();
  Drop("Create", {{"CreateEntityType", "Truck"}});
  Drop("Set", {{"SetEntityMembers", "Car;Bus;truck;Van"}});
  EXPECT_THAT(GatherNames(NameList::EntityTypes, true), ElementsAre("Truck", "Car", "Bus", "Van"));
  EXPECT_THAT(GatherNames(NameList::EntityTypes, false), ElementsAre("Truck", "Car", "Bus", "truck", "Van"));
}

TEST_F(NameCatalogues, AddNamesSkipsEmptyNames) {
  BuildNameCatalogues();
  Drop("Separate", {{"SeparateName", "One"}});
  Drop("Separate", {});
  Drop("Separate", {{"SeparateName", "Two"}});
  Items items;
  AddNames(items, "Separate", "SeparateName");
  EXPECT_THAT(items.all, ElementsAre("One", "Two"));
  Items none;
  AddNames(none, NameList::Tallies);
  EXPECT_THAT(none.all, IsEmpty());
}

TEST_F(NameCatalogues, FillAttributeComboOffersThePredefinedOnesBehindTheOthers) {
  BuildNameCatalogues();
  Drop("Assign", {{"AssignAttributeName", "Colour"}});
  Drop("Queue", {{"QueueAttributeName", "Weight"}});
  Items own;
  FillAttributeCombo(own, true);
  EXPECT_THAT(own.all, ElementsAre("Colour", "Weight"));
  Items all;
  FillAttributeCombo(all, false);
  EXPECT_THAT(all.all,
              ElementsAre("Colour", "Weight", "Entity.CreateTime", "Entity.Number", "Entity.NVACost", "Entity.NVATime",
                          "Entity.TransferCost", "Entity.TransferTime", "Entity.OtherCost", "Entity.OtherTime", "Entity.VACost",
                          "Entity.VATime", "Entity.WaitTime", "Entity.WaitCost", "Entity.Type", "Picture"));
}

TEST_F(NameCatalogues, FillQueueComboAddsTheQueuesOfBatchesAndProcesses) {
  BuildNameCatalogues();
  Drop("Process", {{"ProcessName", "Paint"}});
  Drop("Process", {});
  Drop("Process", {{"ProcessName", "crate"}});
  Drop("Process", {{"ProcessName", "Paint"}});
  Drop("Batch", {{"BatchName", "Crate"}});
  Drop("Queue", {{"QueueName", "Line"}});
  Drop("Set", {{"SetQueueMembers", "Desk;line;Door"}});
  Items items;
  FillQueueCombo(items);
  EXPECT_THAT(items.all, ElementsAre("Line", "Desk", "Door", "Crate.Queue", "Paint.Queue"));
}

}  // namespace
}  // namespace vardo
