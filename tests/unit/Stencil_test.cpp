#include "modules/ModuleKinds.h"
#include "stencil/StencilPackage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <algorithm>
#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {
namespace {

using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::StartsWith;

struct Field {
  std::string_view kind, field, value;
  bool hidden = false;
};
constexpr bool kHidden = true;

// What the dialogs read and write, what lists gather, and what a shape without these cells would show.
constexpr Field kFields[] = {
    {"Create", "CreateName", "Create 1"},
    {"Create", "CreateEntityType", "Entity 1"},
    {"Create", "CreateType", "Random"},
    {"Create", "CreateValue", "1"},
    {"Create", "CreateUnits", "Hours"},
    {"Create", "CreateBatchSize", "1"},
    {"Create", "CreateMaxBatches", "Infinite"},
    {"Create", "CreateFirstCreation", "0.0"},
    {"Create", "CreateExpression", "1"},
    {"Create", "CreateScheduleName", "Schedule 1"},

    {"Process", "ProcessName", "Process 1"},
    {"Process", "ProcessType", "Standard"},
    {"Process", "ProcessAction", "D"},
    {"Process", "ProcessPriority", "2"},
    {"Process", "ProcessDelayType", "Triangular"},
    {"Process", "ProcessUnits", "hours"},
    {"Process", "ProcessAllocation", "VA"},
    {"Process", "ProcessMin", ".5"},
    {"Process", "ProcessValue", "1"},
    {"Process", "ProcessMax", "1.5"},
    {"Process", "ProcessStdDev", ".2"},
    {"Process", "ProcessExpression", "1"},
    {"Process", "ReportStatistics", "Yes"},
    {"Process", "Process_RCount", "0", kHidden},
    {"Process", "Process_RType", "Resource", kHidden},
    {"Process", "Process_RResourceName", "Resource 1", kHidden},
    {"Process", "Process_RSetName", "Set 1", kHidden},
    {"Process", "Process_RQuantity", "1", kHidden},
    {"Process", "Process_RSelectionRule", "CYC", kHidden},
    {"Process", "Process_RSaveAttribute", "", kHidden},
    {"Process", "Process_RInputAttribute", "1", kHidden},
    {"Process", "VardoSubPage", "", kHidden},

    {"Decide", "DecideName", "Decide 1"},
    {"Decide", "DecideType", "With"},
    {"Decide", "DecidePercentTrue", "50"},
    {"Decide", "DecideIf", "Entity Type"},
    {"Decide", "DecideVariableNamed", "Variable 1"},
    {"Decide", "DecideEntityTypeNamed", "Entity 1"},
    {"Decide", "DecideAttributeNamed", "Attribute 1"},
    {"Decide", "DecideIs", ">="},
    {"Decide", "DecideValue", "1"},

    {"Assign", "AssignName", "Assign 1"},
    {"Assign", "AssignCount", "0", kHidden},
    {"Assign", "AssignType", "Variable", kHidden},
    {"Assign", "AssignVariableName", "Variable 1", kHidden},
    {"Assign", "AssignAttributeName", "Attribute 1", kHidden},
    {"Assign", "AssignEntityType", "Entity 1", kHidden},
    {"Assign", "AssignEntityPicture", "Picture.Report", kHidden},
    {"Assign", "AssignOther", "J", kHidden},
    {"Assign", "AssignNewValue", "1", kHidden},

    {"Batch", "BatchName", "Batch 1"},
    {"Batch", "BatchType", "Permanent"},
    {"Batch", "BatchBatchSize", "2"},
    {"Batch", "BatchSaveCriterion", "Last"},
    {"Batch", "BatchRule", "Any Entity"},
    {"Batch", "BatchAttributeName", "Attribute 1"},

    {"Separate", "SeparateName", "Separate 1"},
    {"Separate", "SeparateType", "Duplicate"},
    {"Separate", "SeparateCostToDuplicates", "50"},
    {"Separate", "SeparateNumberofDuplicates", "1"},
    {"Separate", "SeparateMemberAttributes", "Retain"},
    {"Separate", "AttributeName", "Attribute 1", kHidden},
    {"Separate", "Separate_ACount", "0", kHidden},

    {"Record", "RecordName", "Record 1"},
    {"Record", "RecordType", "Count"},
    {"Record", "RecordAttributeName", "Attribute 1"},
    {"Record", "RecordSetIndex", "1"},
    {"Record", "RecordValue", "1"},
    {"Record", "RecordInSet", "No"},
    {"Record", "RecordCounterSetName", "Counter Set 1"},
    {"Record", "RecordTallySetName", "Tally Set 1"},
    {"Record", "RecordCounterName", ""},
    {"Record", "RecordTallyName", ""},

    {"Dispose", "DisposeName", "Dispose 1"},
    {"Dispose", "EntityStatistics", "Yes"},

    {"Entity", "EntityName", "Entity 1"},
    {"Entity", "EntityInitialPicture", "Picture.Report"},
    {"Entity", "EntityHoldingCost_Hour", "0.0"},
    {"Entity", "EntityValueAdded", "0.0"},
    {"Entity", "EntityNonValueAdded", "0.0"},
    {"Entity", "EntityWaiting", "0.0"},
    {"Entity", "EntityTransfer", "0.0"},
    {"Entity", "EntityOther", "0.0"},
    {"Entity", "ReportStatistics", "Yes"},

    {"Queue", "QueueName", "Queue 1"},
    {"Queue", "QueueAttributeName", "Attribute 1"},
    {"Queue", "QueueType", "FIFO"},
    {"Queue", "ReportStatistics", "Yes"},

    {"Resource", "ResourceName", "Resource 1"},
    {"Resource", "ResourceType", "Capacity"},
    {"Resource", "ResourceCapacity", "1"},
    {"Resource", "ResourceScheduleName", "Schedule 1"},
    {"Resource", "ResourceScheduleRule", "Wait"},
    {"Resource", "ResourceBusy_Hour", "0.0"},
    {"Resource", "ResourceIdle_Hour", "0.0"},
    {"Resource", "ResourcePerUse", "0.0"},
    {"Resource", "ReportStatistics", "Yes"},
    {"Resource", "ResourceCapacityOrSchedule", "1", kHidden},
    {"Resource", "ResourceCapacityOrSchedule2", "1", kHidden},

    {"Schedule", "ScheduleName", "Schedule 1"},
    {"Schedule", "ScheduleType", "Capacity"},
    {"Schedule", "ScheduleTimeUnits", "hours"},
    {"Schedule", "ScheduleScaleFactor", "1.0"},
    {"Schedule", "Schedule_DCount", "0", kHidden},
    {"Schedule", "Schedule_DurationsValue", "1", kHidden},
    {"Schedule", "Schedule_DurationsDuration", "", kHidden},

    {"Set", "SetName", "Set 1"},
    {"Set", "SetType", "Resource"},
    {"Set", "SetM_Count", "0", kHidden},
    {"Set", "SetMembers", "Resource 1", kHidden},
    {"Set", "SetMembers2", "Resource 1", kHidden},
    {"Set", "SetMembers3", "Resource 1", kHidden},
    {"Set", "SetMembers4", "Resource 1", kHidden},
    {"Set", "SetMembers5", "Resource 1", kHidden},
    {"Set", "SetResourceMembers", "Resource 1", kHidden},
    {"Set", "SetCounterMembers", "Counter 1", kHidden},
    {"Set", "SetTallyMembers", "Tally 1", kHidden},
    {"Set", "SetEntityMembers", "Entity 1", kHidden},
    {"Set", "SetPictureMembers", "Picture.Report", kHidden},
    {"Set", "SetQueueMembers", "", kHidden},

    {"Variable", "VariableName", "Variable 1"},
    {"Variable", "VariableRows", ""},
    {"Variable", "VariableColumns", ""},
    {"Variable", "VariableStatistics", "Yes"},
    {"Variable", "Variable_ICount", "0", kHidden},
    {"Variable", "VariableInitialValue", "0.0", kHidden},
};

constexpr std::string_view kModules[] = {"Create",  "Process", "Decide", "Assign",   "Batch",    "Separate", "Record",
                                         "Dispose", "Entity",  "Queue",  "Resource", "Schedule", "Set",      "Variable"};

constexpr std::string_view kEdit =
    R"~(RUNADDON("Set t=CreateObject(""VardoBasic.Application""):t.ShowEditor Application,ActiveWindow.Selection.Item(1)"))~";
constexpr std::string_view kSubmodel =
    R"~(RUNADDON("Set t=CreateObject(""VardoBasic.Application""):t.Submodel Application,ActiveWindow.Selection.Item(1)"))~";

class Stencil : public testing::Test {
 protected:
  pugi::xml_node Root(std::string_view part) { return package_->Xml(part).root(); }

  // A master's entry in the list of masters.
  pugi::xml_node Entry(std::string_view master) {
    return Root("visio/masters/masters.xml").find_child_by_attribute("Master", "NameU", std::string(master).c_str());
  }

  // A master's top shape, found as a reader finds it: by the relationship that its entry names.
  pugi::xml_node Shape(std::string_view master) {
    const std::string id = Entry(master).child("Rel").attribute("r:id").value();
    for (const Relationship& relationship : package_->RelationshipsOf("visio/masters/masters.xml"))
      if (relationship.id == id) return Root(relationship.target).child("Shapes").child("Shape");
    return {};
  }

  static pugi::xml_node Section(pugi::xml_node sheet, const char* name) {
    return sheet.find_child_by_attribute("Section", "N", name);
  }
  static pugi::xml_node Row(pugi::xml_node sheet, const char* section, std::string_view name) {
    return Section(sheet, section).find_child_by_attribute("Row", "N", std::string(name).c_str());
  }
  static pugi::xml_node Cell(pugi::xml_node row, const char* name) { return row.find_child_by_attribute("Cell", "N", name); }
  static std::string Value(pugi::xml_node row, const char* name) { return Cell(row, name).attribute("V").value(); }
  static std::string Formula(pugi::xml_node row, const char* name) { return Cell(row, name).attribute("F").value(); }

  std::unique_ptr<Package> package_ = MakeNewDrawing();
};

TEST_F(Stencil, HasTheModulesThenTheConnectors) {
  std::vector<std::string> names(std::begin(kModules), std::end(kModules));
  for (const char* connector :
       {"Dynamic connector", "True Connector", "False Connector", "Original Connector", "Duplicate Connector"})
    names.emplace_back(connector);
  EXPECT_THAT(StencilMasterNames(), ElementsAreArray(names));

  std::vector<std::string> listed, numbers, guids;
  for (const pugi::xml_node master : Root("visio/masters/masters.xml").children("Master")) {
    listed.emplace_back(master.attribute("Name").value());
    numbers.emplace_back(master.attribute("ID").value());
    guids.emplace_back(master.attribute("UniqueID").value());
    guids.emplace_back(master.attribute("BaseID").value());
    EXPECT_STREQ(master.attribute("MatchByName").value(), "1") << "a second copy of a master would bear another name";
  }
  EXPECT_THAT(listed, ElementsAreArray(names));
  for (auto* unique : {&numbers, &guids}) {
    std::sort(unique->begin(), unique->end());
    EXPECT_EQ(std::adjacent_find(unique->begin(), unique->end()), unique->end());
  }
  for (const std::string& guid : guids) EXPECT_EQ(guid.size(), 38u) << guid;
}

TEST_F(Stencil, EveryFieldHoldsItsWholeDefault) {
  for (const Field& field : kFields) {
    SCOPED_TRACE(std::string(field.kind) + ": " + std::string(field.field));
    const pugi::xml_node row = Row(Shape(field.kind), "Property", field.field);
    ASSERT_TRUE(row);
    EXPECT_EQ(Value(row, "Value"), field.value);
    EXPECT_STREQ(Cell(row, "Value").attribute("U").value(), "STR");
    EXPECT_FALSE(Cell(row, "Value").attribute("F"));
    EXPECT_EQ(Value(row, "Type"), "0");
    EXPECT_EQ(Value(row, "Invisible"), field.hidden ? "1" : "0");
  }
}

TEST_F(Stencil, NoModuleHasOtherFields) {
  for (const std::string_view kind : kModules) {
    std::vector<std::string> expected, tabled, written;
    for (const Field& field : kFields)
      if (field.kind == kind) expected.emplace_back(field.field);
    for (const ModuleProperty& property : FindModule(kind)->properties) tabled.emplace_back(property.field);
    for (const pugi::xml_node row : Section(Shape(kind), "Property").children("Row"))
      written.emplace_back(row.attribute("N").value());
    EXPECT_THAT(tabled, testing::UnorderedElementsAreArray(expected)) << kind;
    EXPECT_THAT(written, ElementsAreArray(tabled)) << kind;
  }
  for (const char* noKind : {"create", "", "Dynamic connector"}) EXPECT_EQ(FindModule(noKind), nullptr) << noKind;
}

// What the shape data window lists; rows in brackets are hidden from it.
TEST_F(Stencil, ShapeDataStandsInItsOrder) {
  const struct {
    std::string_view kind;
    std::vector<std::string> rows;
  } cases[] = {
      {"Create",
       {"Name: Create 1", "Entity Type: Entity 1", "Type: Random", "Value: 1", "Units: Hours", "Entities per Arrival: 1",
        "Max Arrivals: Infinite", "First Creation: 0.0", "Expression: 1", "Schedule Name: Schedule 1"}},
      {"Process",
       {"Name: Process 1",
        "Type: Standard",
        "Action: D",
        "Priority: 2",
        "Delay Type: Triangular",
        "Units: hours",
        "Allocation: VA",
        "Minimum: .5",
        "Value: 1",
        "Maximum: 1.5",
        "Std Dev: .2",
        "Expression: 1",
        "Report Statistics: Yes",
        "[Resource Rows: 0]",
        "[Resource Row Types: Resource]",
        "[Resource Names: Resource 1]",
        "[Resource Set Names: Set 1]",
        "[Resource Quantities: 1]",
        "[Selection Rules: CYC]",
        "[Save Attributes: ]",
        "[Set Indexes: 1]",
        "[Submodel Page: ]"}},
      {"Decide",
       {"Name: Decide 1", "Type: With", "Percent True: 50", "If: Entity Type", "Variable Named: Variable 1",
        "Entity Type Named: Entity 1", "Attribute Named: Attribute 1", "Is: >=", "Value: 1"}},
      {"Assign",
       {"Name: Assign 1", "[Assignments: 0]", "[Assignment Types: Variable]", "[Variable Names: Variable 1]",
        "[Attribute Names: Attribute 1]", "[Entity Types: Entity 1]", "[Entity Pictures: Picture.Report]", "[Others: J]",
        "[New Values: 1]"}},
      {"Batch",
       {"Name: Batch 1", "Type: Permanent", "Batch Size: 2", "Save Criterion: Last", "Rule: Any Entity",
        "Attribute Name: Attribute 1"}},
      {"Separate",
       {"Name: Separate 1", "Type: Duplicate", "Percent Cost to Duplicates: 50", "# of Duplicates: 1",
        "Member Attributes: Retain", "[Attribute Rows: 0]", "[Attribute Names: Attribute 1]"}},
      {"Record",
       {"Name: Record 1", "Type: Count", "Value: 1", "Attribute Name: Attribute 1", "Record into Set: No",
        "Counter Name: ", "Tally Name: ", "Counter Set Name: Counter Set 1", "Tally Set Name: Tally Set 1", "Set Index: 1"}},
      {"Dispose", {"Name: Dispose 1", "Record Entity Statistics: Yes"}},
      {"Entity",
       {"Entity Type: Entity 1", "Initial Picture: Picture.Report", "Holding Cost / Hour: 0.0", "Value Added: 0.0",
        "Non-Value Added: 0.0", "Waiting: 0.0", "Transfer: 0.0", "Other: 0.0", "Report Statistics: Yes"}},
      {"Queue", {"Name: Queue 1", "Type: FIFO", "Attribute Name: Attribute 1", "Report Statistics: Yes"}},
      {"Resource",
       {"Name: Resource 1", "Type: Capacity", "Capacity: 1", "Schedule Name: Schedule 1", "Schedule Rule: Wait",
        "Busy / Hour: 0.0", "Idle / Hour: 0.0", "Per Use: 0.0", "Report Statistics: Yes", "[Capacity or Schedule: 1]",
        "[Capacity or Schedule (2): 1]"}},
      {"Schedule",
       {"Name: Schedule 1", "Type: Capacity", "Time Units: hours", "Scale Factor: 1.0", "[Duration Rows: 0]", "[Values: 1]",
        "[Durations: ]"}},
      {"Set",
       {"Name: Set 1", "Type: Resource", "[Member Rows: 0]", "[Members: Resource 1]", "[Members (2): Resource 1]",
        "[Members (3): Resource 1]", "[Members (4): Resource 1]", "[Members (5): Resource 1]", "[Resource Members: Resource 1]",
        "[Counter Members: Counter 1]", "[Tally Members: Tally 1]", "[Entity Type Members: Entity 1]",
        "[Entity Picture Members: Picture.Report]", "[Queue Members: ]"}},
      {"Variable",
       {"Name: Variable 1", "Rows: ", "Columns: ", "Report Statistics: Yes", "[Initial Value Rows: 0]", "[Initial Values: 0.0]"}},
  };
  ASSERT_EQ(std::size(cases), std::size(kModules));
  for (const auto& c : cases) {
    std::vector<std::string> rows;
    for (const pugi::xml_node row : Section(Shape(c.kind), "Property").children("Row")) {
      const std::string text = Value(row, "Label") + ": " + Value(row, "Value");
      rows.push_back(Value(row, "Invisible") == "1" ? "[" + text + "]" : text);
    }
    EXPECT_THAT(rows, ElementsAreArray(c.rows)) << c.kind;
  }
}

TEST_F(Stencil, EveryRowOfShapeDataIsTheSchemas) {
  for (const std::string_view kind : kModules) {
    const std::span<const ModuleProperty> properties = FindModule(kind)->properties;
    size_t i = 0;
    for (const pugi::xml_node row : Section(Shape(kind), "Property").children("Row")) {
      SCOPED_TRACE(row.attribute("N").value());
      ASSERT_LT(i, properties.size());
      const ModuleProperty& property = properties[i++];
      EXPECT_EQ(row.attribute("N").value(), property.field);
      EXPECT_EQ(Value(row, "Label"), property.label);
      EXPECT_EQ(Value(row, "Value"), property.defaultValue);
      EXPECT_EQ(Value(row, "Prompt"), property.prompt);
      EXPECT_EQ(Value(row, "Prompt").empty(), Value(row, "Invisible") == "1") << "a tip is for those who see the row";
    }
    EXPECT_EQ(i, properties.size());
  }
}

TEST_F(Stencil, LabelsAreForPeople) {
  const struct {
    std::string_view kind, field, label;
  } cases[] = {
      {"Create", "CreateEntityType", "Entity Type"},
      {"Create", "CreateMaxBatches", "Max Arrivals"},
      {"Entity", "EntityHoldingCost_Hour", "Holding Cost / Hour"},
      {"Dispose", "EntityStatistics", "Record Entity Statistics"},
  };
  for (const auto& c : cases) EXPECT_EQ(Value(Row(Shape(c.kind), "Property", c.field), "Label"), c.label);

  for (const std::string_view kind : kModules) {
    std::map<std::string, std::string> fieldByLabel;
    for (const ModuleProperty& property : FindModule(kind)->properties) {
      SCOPED_TRACE(property.field);
      EXPECT_FALSE(property.label.empty());
      EXPECT_EQ(property.label.find_first_of("_&:"), std::string_view::npos) << property.label;
      EXPECT_NE(property.label, property.field);
      EXPECT_TRUE(fieldByLabel.emplace(property.label, property.field).second) << "two rows read " << property.label;
    }
  }
}

TEST_F(Stencil, ModulesSayWhatTheyAre) {
  for (const std::string_view kind : kModules) {
    SCOPED_TRACE(kind);
    const pugi::xml_node shape = Shape(kind), className = Cell(Row(shape, "User", "ClassName"), "Value");
    EXPECT_STREQ(shape.attribute("Type").value(), "Shape");
    EXPECT_EQ(className.attribute("V").value(), kind);
    EXPECT_STREQ(className.attribute("U").value(), "STR");
    EXPECT_EQ(shape.child("Text").text().get(), std::string(kind) + " 1\n");
    EXPECT_EQ(Value(shape, "ObjType"), "1");
    EXPECT_FALSE(shape.next_sibling()) << "one top shape a master";
  }
}

TEST_F(Stencil, ConnectionPointsStandInTheOrderThatGlueGoesBy) {
  using Points = std::vector<std::pair<std::string, std::string>>;
  const std::pair<std::string, std::string> exit{"Width*1", "Height*0.5"}, entry{"Width*0", "Height*0.5"};
  const struct {
    std::string_view kind;
    Points points;
    const char* why;
  } cases[] = {
      {"Create", {exit}, "nothing enters a Create"},
      {"Dispose", {entry}, "nothing leaves a Dispose"},
      {"Process", {exit, entry}, "exit, then entry"},
      {"Assign", {{"Width*0.94", "Height*0.5"}, {"Width*0.06", "Height*0.5"}}, "on the slanted sides"},
      {"Batch", {exit, entry}, "exit, then entry"},
      {"Record", {exit, entry}, "exit, then entry"},
      {"Decide", {exit, entry, {"Width*0.5", "Height*0"}}, "True, entry, False"},
      {"Separate", {exit, entry, {"Width*0.8912", "Height*0"}}, "original, entry, duplicate"},
      {"Entity", {}, "defines only"},
      {"Queue", {}, "defines only"},
      {"Resource", {}, "defines only"},
      {"Schedule", {}, "defines only"},
      {"Set", {}, "defines only"},
      {"Variable", {}, "defines only"},
  };
  for (const auto& c : cases) {
    Points points;
    for (const pugi::xml_node row : Section(Shape(c.kind), "Connection").children("Row")) {
      EXPECT_EQ(row.attribute("IX").as_uint(), points.size());
      EXPECT_STREQ(row.attribute("T").value(), "Connection");
      points.emplace_back(Formula(row, "X"), Formula(row, "Y"));
    }
    EXPECT_EQ(points, c.points) << c.kind << ": " << c.why;
  }
}

TEST_F(Stencil, CachedPlacesAgreeWithTheirFormulas) {
  const pugi::xml_node separate = Shape("Separate");
  const pugi::xml_node duplicates = Section(separate, "Connection").last_child();
  EXPECT_DOUBLE_EQ(Cell(duplicates, "X").attribute("V").as_double(), 0.8912 * Cell(separate, "Width").attribute("V").as_double());
  EXPECT_EQ(Value(duplicates, "Y"), "0");
}

TEST_F(Stencil, DoubleClickAndMenuOpenTheDialog) {
  for (const std::string_view kind : kModules) {
    SCOPED_TRACE(kind);
    const pugi::xml_node shape = Shape(kind), edit = Row(shape, "Actions", "Edit");
    EXPECT_EQ(Formula(shape, "EventDblClick"), kEdit);
    EXPECT_EQ(Formula(edit, "Action"), kEdit);
    EXPECT_EQ(Value(edit, "Menu"), "&Properties...");
    EXPECT_EQ(Value(edit, "Invisible"), "0");
  }
}

TEST_F(Stencil, OnlyAProcessLeadsToASubmodel) {
  const pugi::xml_node process = Shape("Process"), action = Row(process, "Actions", "Submodel");
  EXPECT_EQ(Formula(action, "Action"), kSubmodel);
  EXPECT_EQ(Value(action, "Menu"), "Edit &Submodel");
  EXPECT_EQ(Formula(action, "Invisible"), "User.menuid");
  EXPECT_EQ(Value(action, "Invisible"), "1") << "hidden while the process is standard";
  EXPECT_EQ(Value(Row(process, "User", "menuid"), "Value"), "1");
  EXPECT_FALSE(Cell(Row(process, "User", "menuid"), "Value").attribute("U")) << "a number";

  for (const std::string_view kind : kModules) {
    if (kind == "Process") continue;
    EXPECT_FALSE(Row(Shape(kind), "Actions", "Submodel")) << kind;
    EXPECT_FALSE(Row(Shape(kind), "User", "menuid")) << kind;
  }
}

TEST_F(Stencil, ConnectorsHaveEndsThatGlue) {
  const struct {
    std::string_view name, text;
  } cases[] = {{"Dynamic connector", ""},
               {"True Connector", "True\n"},
               {"False Connector", "False\n"},
               {"Original Connector", "Original\n"},
               {"Duplicate Connector", "Duplicate\n"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const pugi::xml_node shape = Shape(c.name);
    for (const char* end : {"BeginX", "BeginY", "EndX", "EndY"}) {
      EXPECT_TRUE(Cell(shape, end)) << end;
      EXPECT_FALSE(Cell(shape, end).attribute("F")) << end;
    }
    EXPECT_EQ(Formula(shape, "Width"), "GUARD(EndX-BeginX)");
    EXPECT_EQ(Formula(shape, "Height"), "GUARD(EndY-BeginY)");
    EXPECT_EQ(Value(shape, "ObjType"), "2");
    EXPECT_EQ(Value(shape, "GlueType"), "2");
    for (const char* trigger : {"BegTrigger", "EndTrigger"}) {
      EXPECT_EQ(Formula(shape, trigger), "_XFTRIGGER(EventXFMod)");
      EXPECT_EQ(Value(shape, trigger), "1");
    }
    EXPECT_NE(Value(shape, "EndArrow"), "0");
    EXPECT_EQ(shape.child("Text").text().get(), c.text);
    EXPECT_FALSE(Section(shape, "User")) << "no module";
    EXPECT_FALSE(Section(shape, "Property"));
  }
}

TEST_F(Stencil, ModulesHaveALookThatOtherReadersUnderstand) {
  for (const std::string_view kind : kModules) {
    SCOPED_TRACE(kind);
    const pugi::xml_node shape = Shape(kind);
    EXPECT_THAT(Value(shape, "FillForegnd"), StartsWith("#"));
    EXPECT_THAT(Value(shape, "LineColor"), StartsWith("#"));
    for (const char* size : {"Width", "Height", "TxtWidth", "TxtHeight"})
      EXPECT_GT(Cell(shape, size).attribute("V").as_double(), 0) << size;
    const pugi::xml_node outline = Section(shape, "Geometry");
    EXPECT_EQ(Value(outline, "NoFill"), "0");
    EXPECT_STREQ(outline.child("Row").attribute("T").value(), "RelMoveTo");
    const pugi::xml_node first = outline.child("Row"), last = outline.last_child();
    EXPECT_EQ(Value(first, "X") + " " + Value(first, "Y"), Value(last, "X") + " " + Value(last, "Y")) << "the outline is closed";
    for (const pugi::xml_node row : outline.children("Row"))
      for (const char* axis : {"X", "Y"}) {
        EXPECT_GE(Cell(row, axis).attribute("V").as_double(), 0);
        EXPECT_LE(Cell(row, axis).attribute("V").as_double(), 1);
      }
  }
}

TEST_F(Stencil, ThePageCarriesItsBookkeeping) {
  const pugi::xml_node page = Root("visio/pages/pages.xml").child("Page"), sheet = page.child("PageSheet");
  EXPECT_STREQ(page.attribute("NameU").value(), "Page-1");
  EXPECT_FALSE(page.next_sibling());
  EXPECT_EQ(Value(sheet, "PageWidth"), "11");
  EXPECT_EQ(Value(sheet, "PageHeight"), "8.5");

  std::vector<std::string> rows;
  for (const pugi::xml_node row : Section(sheet, "Property").children("Row")) {
    rows.emplace_back(row.attribute("N").value());
    SCOPED_TRACE(rows.back());
    EXPECT_EQ(Value(row, "Invisible"), "1");
    const bool isNumber = rows.back() == "Count" || rows.back() == "SelectionCount";
    EXPECT_EQ(Value(row, "Value"), isNumber ? "0" : "");
    EXPECT_STREQ(Cell(row, "Value").attribute("U").value(), isNumber ? "" : "STR");
    EXPECT_FALSE(Cell(row, "Value").attribute("F"));
  }
  std::vector<std::string> expected(std::begin(kModules), std::end(kModules));
  for (const char* more : {"Count", "SelectionCount", "VardoParentPage"}) expected.emplace_back(more);
  EXPECT_THAT(rows, ElementsAreArray(expected));
  EXPECT_FALSE(Root("visio/pages/page1.xml").first_child()) << "no shapes yet";
}

TEST_F(Stencil, StylesGiveLinesFillAndText) {
  const pugi::xml_node styles = Root("visio/document.xml").child("StyleSheets"), none = styles.child("StyleSheet");
  EXPECT_STREQ(none.attribute("ID").value(), "0");
  EXPECT_STREQ(none.attribute("NameU").value(), "No Style");
  for (const char* cell : {"LineWeight", "LinePattern", "FillPattern", "VerticalAlign"}) EXPECT_NE(Value(none, cell), "") << cell;
  for (const std::string& name : StencilMasterNames())
    for (const char* style : {"LineStyle", "FillStyle", "TextStyle"})
      EXPECT_TRUE(styles.find_child_by_attribute("StyleSheet", "ID", Shape(name).attribute(style).value()))
          << name << " " << style;
  for (const pugi::xml_node sheet : styles.children())
    EXPECT_EQ(Value(Section(sheet, "Character").child("Row"), "Font"),
              Root("visio/document.xml").child("FaceNames").child("FaceName").attribute("NameU").value());
}

TEST_F(Stencil, OpeningOrCreatingADocumentStartsTheAddin) {
  std::vector<std::string> started;
  for (const pugi::xml_node item : Root("visio/document.xml").child("EventList").children("EventItem"))
    started.push_back(item.attribute("EventCode").value() + std::string(" ") + item.attribute("Target").value());
  EXPECT_THAT(started, testing::ElementsAre(R"(1 Set t=CreateObject("VardoBasic.Application"):t.SetupEventSink Application)",
                                            R"(1 Set t=CreateObject("VardoBasic.Application"):t.AddVardoMenu)",
                                            R"(2 Set t=CreateObject("VardoBasic.Application"):t.SetupEventSink Application)",
                                            R"(2 Set t=CreateObject("VardoBasic.Application"):t.AddVardoMenu)"));
}

// A line for a row of pixels that shows something: "." where it is transparent, "o" white, "#" of another colour.
std::string PixelsOf(std::string_view icon) {
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  constexpr size_t kColours = 126, kMask = 638;
  std::string bits;
  for (const char digit : icon)
    if (const size_t value = kDigits.find(digit); value != std::string_view::npos)
      for (int bit = 5; bit >= 0; --bit) bits += (value >> bit & 1) != 0 ? '1' : '0';
  constexpr size_t kSide = 32;
  std::vector<std::string> rows(kSide);
  for (size_t i = 0; i < kSide * kSide; ++i) {
    const std::string colour = bits.substr(8 * kColours + 4 * i, 4);
    rows[kSide - 1 - i / kSide] += bits.at(8 * kMask + i) == '1' ? '.' : colour == "1111" ? 'o' : '#';
  }
  std::string text = "\n";
  for (const std::string& row : rows)
    if (row.find_first_not_of('.') != std::string::npos) text += row + "\n";
  return text;
}

constexpr std::string_view kCreateIcon = R"(
.########################.......
.#ooooooooooooooooooooooo#......
.#ooooooooooooooooooooooo##.....
.#oooooooooooooooooooooooo#.....
.#ooooooooooooooooooooooooo#....
.#ooooooooooooooooooooooooo##...
.#oooooooooooooooooooooooooo#...
.#ooooooooooooooooooooooooooo#..
.#oooooooooooooooooooooooooooo#.
.#oooooooooooooooooooooooooooo#.
.#ooooooooooooooooooooooooooo#..
.#oooooooooooooooooooooooooo#...
.#ooooooooooooooooooooooooo##...
.#ooooooooooooooooooooooooo#....
.#oooooooooooooooooooooooo#.....
.#ooooooooooooooooooooooo##.....
.#ooooooooooooooooooooooo#......
.########################.......
)";
constexpr std::string_view kConnectorIcon = R"(
.################...............
................#...............
................#...............
................#...............
................#...............
................#...............
................#...............
................#...............
................#...............
................#...............
................#...............
................#.....#.........
................#.....###.......
................#.....#####.....
................#.....#######...
................##############..
......................#######...
......................#####.....
......................###.......
......................#.........
)";

TEST_F(Stencil, IconsShowTheShapes) {
  const auto pixels = [&](std::string_view master) { return PixelsOf(Entry(master).child("Icon").text().get()); };
  EXPECT_EQ(pixels("Create"), kCreateIcon);
  EXPECT_EQ(pixels("Dynamic connector"), kConnectorIcon);
  for (const std::string& name : StencilMasterNames())
    EXPECT_STREQ(Entry(name).attribute("IconUpdate").value(), "0") << "the host would draw its own icon of " << name;
}

TEST_F(Stencil, PeopleFindMastersByTheirKeywords) {
  for (const std::string& name : StencilMasterNames()) {
    EXPECT_STRNE(Entry(name).attribute("Prompt").value(), "") << name;
    EXPECT_THAT(Value(Entry(name).child("PageSheet"), "ShapeKeywords"), HasSubstr(",")) << name;
  }
}

TEST_F(Stencil, TheTemplateIsANewDrawingThatOpensTheStencil) {
  const std::unique_ptr<Package> made = MakeTemplate();
  ASSERT_EQ(made->PartNames(), package_->PartNames());
  std::vector<std::string> differing;
  for (const std::string& name : made->PartNames())
    if (made->Bytes(name) != package_->Bytes(name)) differing.push_back(name);
  EXPECT_THAT(differing, testing::UnorderedElementsAre("[Content_Types].xml", "visio/windows.xml", "docProps/core.xml"));
  EXPECT_EQ(made->ContentTypeOf("visio/document.xml"), "application/vnd.ms-visio.template.main+xml");
  const pugi::xml_node window = made->Xml("visio/windows.xml").root().last_child();
  EXPECT_STREQ(window.attribute("WindowType").value(), "Stencil");
  EXPECT_EQ(window.attribute("Document").value(), kStencilFile) << "by its name alone, wherever it is";
}

TEST_F(Stencil, TheStencilIsTheMastersWithoutAPageToDrawOn) {
  const std::unique_ptr<Package> made = MakeStencil();
  EXPECT_EQ(made->ContentTypeOf("visio/document.xml"), "application/vnd.ms-visio.stencil.main+xml");
  for (const std::string& name : package_->PartNames()) {
    const bool isForDrawing =
        name == "visio/windows.xml" || name == "visio/pages/page1.xml" || name == "visio/pages/_rels/pages.xml.rels";
    EXPECT_EQ(made->Has(name), !isForDrawing) << name;
    if (name.starts_with("visio/masters/") || name == "visio/document.xml") {
      EXPECT_EQ(made->Bytes(name), package_->Bytes(name)) << name;
    }
  }
  const pugi::xml_node page = made->Xml("visio/pages/pages.xml").root().child("Page");
  EXPECT_TRUE(page.child("PageSheet"));
  EXPECT_FALSE(page.child("Rel"));
}

// Every part is declared, reached and well-formed, and every relationship leads somewhere.
void ExpectWhole(const std::unique_ptr<Package>& package) {
  std::vector<std::string> sources{""};
  size_t reached = 0;
  for (size_t i = 0; i < sources.size(); ++i)
    for (const Relationship& relationship : package->RelationshipsOf(sources[i])) {
      EXPECT_TRUE(package->Has(relationship.target)) << relationship.target;
      sources.push_back(relationship.target);
      ++reached;
    }
  size_t parts = 0;
  for (const std::string& name : package->PartNames()) {
    pugi::xml_document document;
    EXPECT_TRUE(document.load_string(package->Bytes(name).c_str())) << name;
    if (name.ends_with(".rels") || name.starts_with("[")) continue;
    ++parts;
    EXPECT_THAT(package->Bytes("[Content_Types].xml"), HasSubstr("\"/" + name + "\""));
    if (name.starts_with("visio/")) {
      EXPECT_THAT(package->Bytes(name), StartsWith("<?xml version='1.0' encoding='utf-8' ?>\r\n<")) << name;
    }
  }
  EXPECT_EQ(parts, reached);
}

TEST_F(Stencil, EveryPartIsWellFormedAndReached) {
  for (const auto& make : {MakeNewDrawing, MakeTemplate, MakeStencil}) ExpectWhole(make());
}

TEST_F(Stencil, EveryPartIsAlwaysTheSame) {
  for (const auto& make : {MakeNewDrawing, MakeTemplate, MakeStencil}) {
    const std::unique_ptr<Package> first = make(), second = make();
    ASSERT_EQ(first->PartNames(), second->PartNames());
    for (const std::string& name : first->PartNames()) EXPECT_EQ(first->Bytes(name), second->Bytes(name)) << name;
  }
}

TEST_F(Stencil, ASavedDrawingOpensAgain) {
  const std::filesystem::path file = std::filesystem::path(testing::TempDir()) / "Stencil_test.vsdx";
  package_->Save(file);
  const std::unique_ptr<Package> opened = Package::OpenFile(file);
  std::filesystem::remove(file);
  EXPECT_EQ(opened->MainPart(), "visio/document.xml");
  for (const std::string& name : package_->PartNames()) EXPECT_EQ(opened->Bytes(name), package_->Bytes(name)) << name;
}

}  // namespace
}  // namespace vardo
