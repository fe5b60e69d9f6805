// A drawing read as a model: its modules and connectors, its fields, its names and its roads.
#include "model/Model.h"

#include "ModelDrawing.h"
#include "TestPlatform.h"
#include "model/RunSetup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Models : public testing::Test {
 protected:
  ModelSource Read(std::string_view text) { return ReadDrawing(ModelDrawing(text).document()); }
  Model Make(std::string_view text) { return MakeModel(Read(text)); }

  // The places of modules by their names.
  static int ModuleNamed(const Model& model, std::string_view name) {
    for (size_t i = 0; i < model.source.modules.size(); ++i)
      if (model.source.modules[i].name == name) return static_cast<int>(i);
    return -1;
  }
  static const ModuleFields& FieldsOf(const Model& model, std::string_view name) {
    return model.fields[static_cast<size_t>(ModuleNamed(model, name))];
  }
  // Where entities go from a module, by name; a "<" before one whose page is left.
  static std::vector<std::string> WayFrom(const Model& model, std::string_view name) {
    std::vector<std::string> way;
    for (int node = ModuleNamed(model, name); node >= 0 && way.size() < 20;
         node = model.graph.nodes[static_cast<size_t>(node)].next[0]) {
      const FlowNode& at = model.graph.nodes[static_cast<size_t>(node)];
      const bool leaves = at.kind == FlowNode::Kind::LeaveSubmodel;
      way.push_back((leaves ? "<" : "") + model.source.modules[static_cast<size_t>(at.module)].name);
    }
    return way;
  }
  static std::vector<std::string_view> NamesOf(const Model& model, Thing thing) {
    std::vector<std::string_view> names;
    for (const Named& named : model.names.Of(thing))
      if (named.mentionedBy >= 0) names.push_back(named.name);
    return names;
  }

 private:
  TestPlatform platform_;
};

// --- Reading

TEST_F(Models, ModulesAndConnectorsAreReadInDrawingOrder) {
  const ModelSource source = Read(R"(
    Create Come
    Decide Ask
    Dispose Go
    Come -> Ask -true-> Go
    Ask:0 -false-> Go:1
    Ask -> 
    page Second of Page-1
    Process Work)");
  ASSERT_EQ(source.pages.size(), 2u);
  EXPECT_EQ(source.pages[0].name, "Page-1");
  EXPECT_EQ(source.pages[0].registers[0], "1") << "the Create";
  EXPECT_EQ(source.pages[0].count, "3");
  EXPECT_EQ(source.pages[0].shapes, 7);
  EXPECT_EQ(source.pages[1].parent, "Page-1");
  EXPECT_NE(source.pages[0].id, source.pages[1].id);
  ASSERT_EQ(source.modules.size(), 4u);
  EXPECT_EQ(source.modules[1].schema->kind, "Decide");
  EXPECT_EQ(source.modules[1].name, "Ask");
  EXPECT_EQ(source.modules[1].text, "Ask");
  EXPECT_EQ(source.modules[1].position, 2);
  EXPECT_TRUE(source.modules[1].hasClass);
  EXPECT_EQ(source.modules[1].values[2], "50") << "as it is stored";
  EXPECT_EQ(source.modules[3].page, 1);
  ASSERT_EQ(source.connectors.size(), 4u);
  const SourceConnector& whole = source.connectors[2];
  EXPECT_EQ(whole.kind, ConnectorKind::False);
  EXPECT_EQ(whole.begin.module, 1);
  EXPECT_EQ(whole.begin.point, 0) << "glued to the shape as a whole";
  EXPECT_EQ(whole.end.module, 2);
  EXPECT_EQ(whole.end.point, 1);
  EXPECT_EQ(source.connectors[3].end.at, ConnectorEnd::At::Nothing);
}

TEST_F(Models, TheTextIsTheNameOfAModuleWithoutOne) {
  const ModelSource source = Read("Process Work\ncell Work Prop.ProcessName=\"  \"");
  EXPECT_EQ(source.modules[0].name, "Work");
}

TEST_F(Models, ShapesOfOtherKindsAndTheirConnectorsAreNoPartOfIt) {
  const ModelSource source = Read(R"(
    Process Box
    Process Circle
    Box -> Circle
    Create Come
    Come -> Box
    cell Box User.ClassName="Rectangle"
    cell Circle User.ClassName="create")");
  ASSERT_EQ(source.modules.size(), 1u) << "letter case counts in a class";
  ASSERT_EQ(source.connectors.size(), 2u);
  EXPECT_EQ(source.connectors[1].end.at, ConnectorEnd::At::OtherShape);
  EXPECT_EQ(source.connectors[1].end.text, "Box");
  EXPECT_THAT(Read("Process Box\nBox -> Box\ncell Box User.ClassName=\"Rectangle\"").connectors, IsEmpty())
      << "a page without modules is just a picture";
}

TEST_F(Models, SetUpCellsOfTheDrawingAreRead) {
  const ModelSource source = Read("cell TheDoc User.VardoRunLength=\"8h\"\ncell TheDoc User.VardoCheckIgnore=\"names/empty\"");
  EXPECT_EQ(source.setup[static_cast<size_t>(SetupItem::Length)], "8h");
  EXPECT_EQ(source.setup[static_cast<size_t>(SetupItem::Ignore)], "names/empty");
  EXPECT_FALSE(source.setup[static_cast<size_t>(SetupItem::Seed)]);
}

// --- Fields

TEST_F(Models, ChoicesAreFoundByCodeCaptionAndFirstWord) {
  using Reading = FieldValue::Reading;
  const struct {
    const char* text;
    ProcessAction action;
    Reading reading;
  } cases[] = {
      {"SDR", ProcessAction::SeizeDelayRelease, Reading::Plain},
      {" sd ", ProcessAction::SeizeDelay, Reading::Plain},
      {"delay release", ProcessAction::DelayRelease, Reading::Plain},
      {"Delay", ProcessAction::Delay, Reading::Plain},
  };
  for (const auto& [text, action, reading] : cases) {
    const Model model = Make("Process Work | ProcessAction=" + std::string(text));
    const FieldValue& value = FieldsOf(model, "Work")[kProcessAction];
    EXPECT_TRUE(value.Is(action)) << text;
    EXPECT_EQ(value.reading, reading) << text;
  }
  const Model model = Make(R"(
    Process Work | ProcessAction=Seize | ProcessAllocation=Nobody | ProcessDelayType=
    Batch Box | BatchRule=By
    Decide Ask | DecideType=Perhaps)");
  EXPECT_EQ(FieldsOf(model, "Work")[kProcessAction].reading, Reading::Unreadable) << "two begin so";
  EXPECT_EQ(FieldsOf(model, "Work")[kProcessAction].choice, -1);
  EXPECT_TRUE(FieldsOf(model, "Work")[kProcessAllocation].Is(Allocation::Other));
  EXPECT_EQ(FieldsOf(model, "Work")[kProcessAllocation].reading, Reading::AsUnknown);
  EXPECT_TRUE(FieldsOf(model, "Work")[kProcessDelayType].Is(DelayType::Triangular)) << "the default";
  EXPECT_EQ(FieldsOf(model, "Work")[kProcessDelayType].origin, FieldValue::Origin::Empty);
  EXPECT_TRUE(FieldsOf(model, "Box")[kBatchRule].Is(BatchRule::ByAttribute));
  EXPECT_EQ(FieldsOf(model, "Box")[kBatchRule].reading, Reading::Shortened);
  EXPECT_TRUE(FieldsOf(model, "Ask")[kDecideType].Is(DecideType::Condition));
}

TEST_F(Models, OnlyFieldsThatTheChoicesShowCount) {
  const Model model = Make(R"(
    Process Work | ProcessDelayType=Normal | ProcessAction=SDR | Process_RCount=2 | Process_RType=Set;Resource | Process_RSelectionRule=SM;SM
    Process Part | ProcessType=Submodel)");
  const ModuleFields& work = FieldsOf(model, "Work");
  EXPECT_TRUE(work[kProcessValue].counts);
  EXPECT_TRUE(work[kProcessStdDev].counts);
  EXPECT_FALSE(work[kProcessMin].counts);
  EXPECT_FALSE(work[kProcessExpression].counts);
  EXPECT_TRUE(work[kProcessPriority].counts);
  EXPECT_TRUE(work(kProcessRowSet, 0).counts);
  EXPECT_TRUE(work(kProcessRowIndex, 0).counts);
  EXPECT_FALSE(work(kProcessRowSaveAttribute, 0).counts);
  EXPECT_FALSE(work(kProcessRowResource, 0).counts);
  EXPECT_TRUE(work(kProcessRowResource, 1).counts);
  EXPECT_FALSE(work(kProcessRowIndex, 1).counts);
  EXPECT_FALSE(FieldsOf(model, "Part")[kProcessDelayType].counts);
}

TEST_F(Models, RowsAreAsManyAsTheCountSaysAndShortColumnsAreFilled) {
  const Model model = Make(R"(
    Schedule Shift | Schedule_DCount=3 | Schedule_DurationsValue=4; 5 | Schedule_DurationsDuration=8;;
    Schedule None | Schedule_DCount=two
    Schedule Less | Schedule_DCount=-1
    Schedule Much | Schedule_DCount=32768)");
  const ModuleFields& shift = FieldsOf(model, "Shift");
  ASSERT_EQ(shift.rows(), 3);
  EXPECT_EQ(shift(kScheduleValue, 1).text, "5");
  EXPECT_EQ(shift(kScheduleValue, 2).text, "1") << "the default";
  EXPECT_EQ(shift(kScheduleValue, 2).origin, FieldValue::Origin::ShortList);
  EXPECT_EQ(shift(kScheduleDuration, 1).text, "") << "for ever";
  for (const char* name : {"None", "Less", "Much"}) EXPECT_EQ(FieldsOf(model, name).rows(), 0) << name;
}

TEST_F(Models, NumbersHaveAPointOrASingleComma) {
  const Model model = Make("Resource Anna | ResourceBusy_Hour= 1.50 | ResourceIdle_Hour=2,5 | ResourcePerUse=1,000.5");
  const ModuleFields& anna = FieldsOf(model, "Anna");
  EXPECT_EQ(anna[kResourceBusyCost].number, 1.5);
  EXPECT_EQ(anna[kResourceIdleCost].number, 2.5);
  EXPECT_EQ(anna[kResourceIdleCost].reading, FieldValue::Reading::DecimalComma);
  EXPECT_EQ(anna[kResourcePerUse].reading, FieldValue::Reading::Unreadable);
}

TEST_F(Models, InfiniteArrivalsAndPrioritiesByTheirCaptionsAreUnderstood) {
  const Model model = Make(R"(
    Create Come | CreateMaxBatches=infinite | CreateValue=2
    Create Stop | CreateMaxBatches=5
    Process Work | ProcessAction=SDR | ProcessPriority=High(1))");
  EXPECT_LT(FieldsOf(model, "Come")[kCreateMaxBatches].expression, 0);
  EXPECT_EQ(ConstantOf(model.ExpressionOf(FieldsOf(model, "Stop")[kCreateMaxBatches])), 5);
  EXPECT_EQ(ConstantOf(model.ExpressionOf(FieldsOf(model, "Work")[kProcessPriority])), 1);
}

// --- Names

TEST_F(Models, NamesStandForWhatDefinesOrMentionsThem) {
  const Model model = Make(R"(
    Create Come | CreateEntityType=Guest
    Entity Order
    Entity guest
    Process Work | ProcessAction=SDR | Process_RCount=1 | Process_RResourceName=Anna
    Batch Box | BatchRule=By Attribute | BatchAttributeName=Colour
    Decide Ask | DecideType=If | DecideIf=Variable | DecideVariableNamed=Nowhere
    Record Note | RecordValue=2
    Assign Mark | AssignCount=2 | AssignType=Variable;Attribute | AssignVariableName=Total | AssignAttributeName=x;Entity.Type
    Assign Assign 9 | AssignCount=1 | AssignVariableName=Late)");
  EXPECT_THAT(NamesOf(model, Thing::EntityType), ElementsAre("Order", "guest")) << "with a module they come first";
  EXPECT_THAT(NamesOf(model, Thing::Resource), ElementsAre("Anna"));
  EXPECT_THAT(NamesOf(model, Thing::Queue), ElementsAre("Work.Queue", "Box.Queue"));
  EXPECT_THAT(NamesOf(model, Thing::Attribute), ElementsAre("Colour")) << "Entity.Type is everybody's";
  EXPECT_THAT(NamesOf(model, Thing::Counter), ElementsAre("Note")) << "named by its module";
  EXPECT_THAT(NamesOf(model, Thing::Variable), ElementsAre("Total", "Late")) << "a Decide makes none";
  const FieldValue& type = FieldsOf(model, "Come")[kCreateEntityType];
  EXPECT_EQ(type.reference, (Reference{Thing::EntityType, 1}));
  EXPECT_FALSE(FieldsOf(model, "Ask")[kDecideVariable].reference);
  EXPECT_EQ(FieldsOf(model, "Mark")(kAssignAttribute, 1).reference,
            (Reference{Thing::EntityAttribute, static_cast<int>(EntityAttribute::Type)}));
}

TEST_F(Models, WhatTakesNoPartNamesNothing) {
  const Model model = Make("Create Create 1\nRecord Record 2");
  EXPECT_FALSE(model.graph.nodes[0].takesPart);
  EXPECT_THAT(NamesOf(model, Thing::EntityType), IsEmpty());
  EXPECT_THAT(NamesOf(model, Thing::Counter), IsEmpty());
}

// --- Roads

TEST_F(Models, RoadsLeadThroughTheirExits) {
  const Model model = Make(R"(
    Create Come
    Decide Ask
    Process Yes
    Process No
    Come -> Ask -true-> Yes
    Ask -false-> No
    Yes -> No)");
  const FlowNode& ask = model.graph.nodes[static_cast<size_t>(ModuleNamed(model, "Ask"))];
  EXPECT_EQ(ask.exits, 2);
  EXPECT_EQ(ask.next[0], ModuleNamed(model, "Yes"));
  EXPECT_EQ(ask.next[1], ModuleNamed(model, "No"));
  EXPECT_THAT(WayFrom(model, "Come"), ElementsAre("Come", "Ask", "Yes", "No"));
}

TEST_F(Models, SubmodelsStandInThePlaceOfTheirProcesses) {
  const Model model = Make(R"(
    Create Come
    Process Outer | ProcessType=Submodel | VardoSubPage=A
    Dispose Go
    Come -> Outer -> Go
    page A of Page-1
    Process First
    Process Inner | ProcessType=Submodel | VardoSubPage=B
    First -> Inner
    page B of A
    Process Loop
    Process Core
    Loop -> Loop
    -> Core ->)");
  EXPECT_THAT(WayFrom(model, "Come"), ElementsAre("Come", "Outer", "First", "Inner", "Core", "<Inner", "<Outer", "Go"));
  EXPECT_FALSE(model.graph.nodes[static_cast<size_t>(ModuleNamed(model, "Loop"))].isReachable);
  EXPECT_THAT(model.graph.submodels[1].entries, ElementsAre(ModuleNamed(model, "Core")));
}

TEST_F(Models, APageThatContainsItselfIsStillReadToItsEnd) {
  const Model model = Make(R"(
    Create Come
    Process Outer | ProcessType=Submodel | VardoSubPage=A
    Come -> Outer
    page A of Page-1
    Process Again | ProcessType=Submodel | VardoSubPage=A
    -> Again ->)");
  EXPECT_THAT(WayFrom(model, "Come"), ElementsAre("Come", "Outer", "Again", "<Outer"));
}

// --- The set-up of a run

TEST(RunSetups, TimesHaveUnits) {
  const struct {
    const char* text;
    std::optional<double> seconds;
  } cases[] = {
      {"8h", 28800},        {"30 d", 2592000}, {"90 min", 5400}, {"1.5 Hours", 5400}, {"2 quarterhours", 1800},
      {"1 halfhour", 1800}, {"10", 600},       {"0", 0},         {" 5 s ", 5},        {"1e3 s", 1000},
      {"-1h", {}},          {"two days", {}},  {"", {}},         {"h", {}},           {"1 week", {}},
      {"1,5h", {}},         {"1e308 d", {}},   {"8 h h", {}},
  };
  for (const auto& [text, seconds] : cases) EXPECT_EQ(ParseTime(text, TimeUnit::Minutes), seconds) << text;
}

SetupTexts Texts(std::initializer_list<std::pair<SetupItem, const char*>> items) {
  SetupTexts texts;
  for (const auto& [item, text] : items) texts[static_cast<size_t>(item)] = text;
  return texts;
}

TEST(RunSetups, OptionsBeatCellsAndCellsBeatWhatIsUsual) {
  std::vector<Finding> findings;
  const RunSetup usual = ReadSetup({}, {}, findings);
  EXPECT_EQ(usual.firstReplication, 1);
  EXPECT_EQ(usual.lastReplication, 20);
  EXPECT_FALSE(usual.length);
  EXPECT_EQ(usual.seed, 1u);
  const RunSetup setup = ReadSetup(Texts({{SetupItem::Length, "10"}, {SetupItem::Replications, "101..200"}}),
                                   Texts({{SetupItem::Length, "8h"},
                                          {SetupItem::TimeUnit, "minutes"},
                                          {SetupItem::WarmUp, "auto"},
                                          {SetupItem::Seed, ""},
                                          {SetupItem::Precision, "5 %"},
                                          {SetupItem::Ignore, "a/b; c/d;"},
                                          {SetupItem::Until, "J > 3"}}),
                                   findings);
  EXPECT_THAT(findings, IsEmpty());
  EXPECT_EQ(setup.length, 600) << "in the drawing's unit";
  EXPECT_EQ(setup.firstReplication, 101);
  EXPECT_EQ(setup.lastReplication, 200);
  EXPECT_TRUE(setup.warmUpIsProposed);
  EXPECT_EQ(setup.seed, 1u) << "an empty cell says nothing";
  EXPECT_EQ(setup.precision, 5);
  EXPECT_THAT(setup.ignore, ElementsAre("a/b", "c/d"));
  EXPECT_EQ(setup.until, "J > 3");
}

TEST(RunSetups, WhatCannotBeReadIsFoundAndLeftAsIsUsual) {
  const struct {
    SetupItem item;
    const char *text, *message;
  } cases[] = {
      {SetupItem::Replications, "0", "--replications: \"0\" is not a number of replications, nor a range such as 101..200."},
      {SetupItem::Replications, "5..3",
       "--replications: \"5..3\" is not a number of replications, nor a range such as 101..200."},
      {SetupItem::Length, "0", "--length: \"0\" is not a time above 0, such as 8h, 30 d or 90 min."},
      {SetupItem::WarmUp, "soon", "--warm-up: \"soon\" is not a time such as 8h, 30 d or 90 min, nor auto."},
      {SetupItem::TimeUnit, "weeks", "--time-unit: \"weeks\" is not a unit of time (seconds, minutes, hours, days)."},
      {SetupItem::Seed, "-1", "--seed: \"-1\" is not a whole number below 18446744073709551616."},
      {SetupItem::Confidence, "100", "--confidence: \"100\" is not a percentage between 0 and 100."},
      {SetupItem::MaxReplications, "1.5", "--max-replications: \"1.5\" is not a number of replications."},
  };
  for (const auto& [item, text, message] : cases) {
    std::vector<Finding> findings;
    const RunSetup setup = ReadSetup(Texts({{item, text}}), {}, findings);
    ASSERT_EQ(findings.size(), 1u) << text;
    EXPECT_EQ(findings[0].message, message);
    EXPECT_EQ(findings[0].rule, "run/setup");
    EXPECT_EQ(setup.lastReplication, 20);
  }
}

TEST_F(Models, SettingsPutOtherValuesIntoADrawing) {
  ModelSource source = Read("Resource Teller\nVariable Total | Variable_ICount=2 | VariableInitialValue=1;2");
  std::vector<Finding> findings;
  const auto set = [&](const char* text) { ApplySettings({ParseSetting(text).value()}, source, findings); };
  set("teller, Capacity=3");
  set("Teller, ResourceIdle_Hour = 7");
  set("TOTAL=5");
  EXPECT_THAT(findings, IsEmpty());
  set("Nobody=1");
  set("Teller, Colour=1");
  ASSERT_EQ(findings.size(), 2u);
  EXPECT_EQ(findings[0].message, "--set: no Variable module is called \"Nobody\".");
  EXPECT_EQ(findings[1].message, "--set: no module \"Teller\" has a field \"Colour\".");
  const Model model = MakeModel(std::move(source));
  EXPECT_EQ(FieldsOf(model, "Teller")[kResourceCapacity].number, 3);
  EXPECT_EQ(FieldsOf(model, "Teller")[kResourceIdleCost].number, 7);
  ASSERT_EQ(FieldsOf(model, "Total").rows(), 1);
  EXPECT_EQ(FieldsOf(model, "Total")(kVariableInitialValue, 0).number, 5);
  for (const char* text : {"Teller", "=3", ", Capacity=3", "Teller, =3"}) EXPECT_FALSE(ParseSetting(text)) << text;
}

}  // namespace
}  // namespace vardo
