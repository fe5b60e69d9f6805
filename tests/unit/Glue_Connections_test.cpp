#include "connect/Glue_Connections.h"

#include "Forwarding.h"
#include "TestPlatform.h"
#include "addin/Global_Variables.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "memoryhost/DrawingHost.h"

#include <gmock/gmock.h>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

constexpr std::string_view kFor = " is an invalid connector for this ";
constexpr std::string_view kTryDecide = "exit point.  Try using the True Connector or False Connector instead.";
constexpr std::string_view kTrySeparate = "exit point.  Try using the Original Connector or Duplicate Connector instead.";
constexpr std::string_view kTryDynamic = "shape.  Try using the Dynamic Connector instead.";
constexpr std::string_view kNoDuplicates =
    "The Duplicate connector can only be used with the Separate shape if the 'Type' custom property is set to 'Duplicate "
    "Original'. ";

std::string Refusal(std::string_view connector, std::string_view why) {
  return "The " + std::string(connector) + std::string(kFor) + std::string(why);
}

// A drawing without a listener, so that connectors stay as the host has drawn them until they are checked.
class GlueConnections : public testing::Test {
 protected:
  GlueConnections() {
    host_.New();
    visApp = host_.application();
  }
  ~GlueConnections() override { visApp = nullptr; }

  IVShapePtr Drop(std::string_view master) { return host_.Drop(master, host_.ActivePage().id(), 1, 1, std::nullopt); }
  IVShapePtr Connect(std::string_view master, const IVShapePtr& from, const IVShapePtr& to, bool walks = false) {
    const auto end = [&](const IVShapePtr& shape) {
      return DrawingHost::End{shape ? std::optional(shape->ID()) : std::nullopt, std::nullopt, walks};
    };
    return host_.Connect(master, host_.ActivePage().id(), end(from), end(to));
  }
  static std::string Formula(const IVShapePtr& shape, const char* cell) { return shape->Cells(cell)->Formula(); }
  static int Points(const IVShapePtr& shape) { return shape->RowCount(kSectionConnectionPts); }
  static bool IsThere(const IVShapePtr& shape) {
    try {
      shape->Name();
      return true;
    } catch (const HostError&) {
      return false;
    }
  }
  static std::string Glued(const std::string& shape, char point) {
    return "PAR(PNT(" + shape + "!Connections.X" + point + ", " + shape + "!Connections.Y" + point + "))";
  }
  std::vector<std::string> Messages() {
    std::vector<std::string> texts;
    for (const RecordingPlatform::Message& message : platform_->messages) {
      EXPECT_EQ(message.title, "Quellis");
      EXPECT_EQ(message.style, 48);
      texts.push_back(message.text);
    }
    return texts;
  }

  TestPlatform platform_;
  DrawingHost host_;
};

TEST_F(GlueConnections, BuildGlueFormulaGluesExitsAndEntries) {
  const struct {
    const char *kind, *shape;
    int end;
    const char *want, *why;
  } cases[] = {
      {"Create", "Create", 1, "PAR(PNT(Create!Connections.X1, Create!Connections.Y1))", "an exit"},
      {"Create", "Create", 2, "PAR(PNT(Create!Connections.X2, Create!Connections.Y2))",
       "the entry is the second point, whether there or not"},
      {"Process", "Process.2", 2, "PAR(PNT(Process.2!Connections.X2, Process.2!Connections.Y2))", "a further instance"},
      {"Dispose", "Dispose", 1, "PAR(PNT(Dispose!Connections.X1, Dispose!Connections.Y1))", "a Dispose has one point"},
      {"Dispose", "Dispose", 2, "PAR(PNT(Dispose!Connections.X1, Dispose!Connections.Y1))", "a Dispose has one point"},
      {"Decide", "Decide", 1, "", "which exit is the connector's choice"},
      {"Separate", "Separate", 1, "", "which exit is the connector's choice"},
      {"Decide", "Decide", 2, "PAR(PNT(Decide!Connections.X2, Decide!Connections.Y2))", "an entry"},
      {"Rectangle", "Rectangle", 1, "", "no module"},
      {"Process", "Process.my own", 1, "PAR(PNT('Process.my own'!Connections.X1, 'Process.my own'!Connections.Y1))",
       "a name that needs quotes"},
      {"", "", 1, "", "a loose end"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    GlueFormula = "left over";
    BuildGlueFormula(c.shape, c.kind, c.end);
    EXPECT_EQ(GlueFormula, c.want);
  }
}

TEST_F(GlueConnections, AnExitIsLeftByTheConnectorMadeForIt) {
  const struct {
    const char *connector, *from, *to;
    char exit, entry;
    const char* why;
  } cases[] = {
      {"Dynamic connector", "Create", "Process", '1', '2', "exit to entry"},
      {"Dynamic connector", "Process", "Dispose", '1', '1', "a Dispose has one point"},
      {"Dynamic connector", "Batch", "Decide", '1', '2', "into a Decide"},
      {"True Connector", "Decide", "Process", '1', '2', "the True exit"},
      {"False Connector", "Decide", "Dispose", '3', '1', "the False exit"},
      {"Original Connector", "Separate", "Assign", '1', '2', "the original's exit"},
      {"Duplicate Connector", "Separate", "Record", '3', '2', "the duplicates' exit"},
  };
  for (const bool walks : {false, true})
    for (const auto& c : cases) {
      SCOPED_TRACE(std::string(c.why) + (walks ? ", glued to the whole shape" : ", glued to the outline"));
      const IVShapePtr from = Drop(c.from), to = Drop(c.to);
      const int fromPoints = Points(from), toPoints = Points(to);
      const IVShapePtr connector = Connect(c.connector, from, to, walks);
      EXPECT_EQ(Points(from), fromPoints + !walks) << "the host makes a point at the outline";
      CheckConnector();
      for (const char* cell : {"BeginX", "BeginY"}) EXPECT_EQ(Formula(connector, cell), Glued(from->Name(), c.exit));
      for (const char* cell : {"EndX", "EndY"}) EXPECT_EQ(Formula(connector, cell), Glued(to->Name(), c.entry));
      EXPECT_EQ(Points(from), fromPoints);
      EXPECT_EQ(Points(to), toPoints);
      EXPECT_THAT(Messages(), IsEmpty());
    }
}

TEST_F(GlueConnections, AnEndIsGluedByItsXFirst) {
  const IVShapePtr from = Drop("Create"), connector = Connect("Dynamic connector", from, Drop("Process"));
  // A host that takes one formula more.
  class : public HostCallObserver {
   public:
    void BeforeCall(std::string_view member) override {
      if (member == "Cell.SetFormula" && ++writes_ > 1) throw HostError(kHostNotAllowed, "no more");
    }

   private:
    int writes_ = 0;
  } host;
  visApp = ObserveHost(host_.application(), host);
  CheckConnector();
  EXPECT_EQ(Formula(connector, "BeginX"), Glued(from->Name(), '1'));
  EXPECT_NE(Formula(connector, "BeginY"), Glued(from->Name(), '1'));
}

TEST_F(GlueConnections, ShapesOfOtherKindsKeepAllTheirPoints) {
  const IVShapePtr from = Drop("Create"), to = Drop("Process");
  for (const IVShapePtr& shape : {from, to})
    while (Points(shape) < 6) shape->AddRow(kSectionConnectionPts, static_cast<short>(Points(shape)), kTagDefault);
  Connect("Dynamic connector", from, to, true);
  CheckConnectorShapes(from->Name(), to->Name(), "Rectangle", "Conveyor");
  EXPECT_EQ(Points(from), 6);
  EXPECT_EQ(Points(to), 6);
}

TEST_F(GlueConnections, OtherConnectorsAreRefusedAndDeleted) {
  const struct {
    const char *connector, *from;
    std::string message;
  } cases[] = {
      {"Dynamic connector", "Decide", Refusal("Dynamic connector", kTryDecide)},
      {"Original Connector", "Decide", Refusal("Original Connector", kTryDecide)},
      {"Dynamic connector", "Separate", Refusal("Dynamic connector", kTrySeparate)},
      {"False Connector", "Separate", Refusal("False Connector", kTrySeparate)},
      {"True Connector", "Create", Refusal("True Connector", kTryDynamic)},
      {"Duplicate Connector", "Process", Refusal("Duplicate Connector", kTryDynamic)},
      {"True Connector", nullptr, Refusal("True Connector", kTryDynamic)},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.connector) + " from " + (c.from ? c.from : "nowhere"));
    const IVShapePtr from = c.from ? Drop(c.from) : nullptr, to = Drop("Process");
    const IVShapePtr connector = Connect(c.connector, from, to);
    CheckConnector();
    EXPECT_THAT(Messages(), ElementsAre(c.message));
    EXPECT_FALSE(IsThere(connector));
    platform_->messages.clear();
  }
}

TEST_F(GlueConnections, DuplicatesLeaveASeparateOnlyByAThirdPointOfItsOwn) {
  // Hosts differ in how they write the mark of a point that they have made.
  for (const char* mark : {"1", "TRUE"}) {
    const IVShapePtr separate = Drop("Separate");
    separate->DeleteRow(kSectionConnectionPts, 2);
    const IVShapePtr connector = Connect("Duplicate Connector", separate, Drop("Process"));
    ASSERT_EQ(Points(separate), 3) << "the host's point stands in the third place";
    separate->CellsSRC(kSectionConnectionPts, 2, kCellConnectionAutoGen)->SetFormula(mark);
    CheckConnector();
    EXPECT_THAT(Messages(), ElementsAre(std::string(kNoDuplicates))) << mark;
    EXPECT_FALSE(IsThere(connector));
    EXPECT_EQ(Points(separate), 2) << mark;
    platform_->messages.clear();
  }
}

TEST_F(GlueConnections, AFurtherInstanceIsTheSameConnector) {
  const IVShapePtr decide = Drop("Decide"), process = Drop("Process");
  Connect("True Connector", decide, process);
  const IVShapePtr second = Connect("True Connector", decide, process);
  ASSERT_NE(second->Name(), "True Connector");
  CheckConnector();
  EXPECT_EQ(Formula(second, "BeginX"), Glued("Decide", '1'));
  EXPECT_EQ(FirstEndToGlue, 2);
}

TEST_F(GlueConnections, ShapesThatAreNoModulesAreLeftAlone) {
  const IVShapePtr process = Drop("Process"), connector = Connect("Dynamic connector", nullptr, process);
  CheckConnector();
  EXPECT_EQ(Formula(connector, "EndX"), Glued("Process", '2'));
  EXPECT_EQ(Formula(connector, "BeginX").find("PAR("), std::string::npos);
  EXPECT_EQ(FirstEndToGlue, 1);
}

TEST_F(GlueConnections, ANumberBehindAConnectorsNameMakesNoOtherConnectorOfIt) {
  const struct {
    const char *connector, *kind;
    char exit;
  } cases[] = {{"True Connector.12", "Decide", '1'},
               {"False Connector.3", "Decide", '3'},
               {"Original Connector.44", "Separate", '1'},
               {"Duplicate Connector.5", "Separate", '3'}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.connector);
    const IVShapePtr from = Drop(c.kind), connector = Connect("Dynamic connector", from, Drop("Process"));
    FirstEndToGlue = 1;
    CheckExitPoint(c.kind, c.connector, from->Name());
    EXPECT_EQ(Formula(connector, "BeginX"), Glued(from->Name(), c.exit));
    EXPECT_EQ(Formula(connector, "BeginY"), Glued(from->Name(), c.exit));
    EXPECT_EQ(FirstEndToGlue, 2) << "only the entry is left to be glued";
  }
  EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(GlueConnections, AMessageNamesTheConnectorWithoutItsNumber) {
  const IVShapePtr decide = Drop("Decide");
  Connect("Dynamic connector", decide, Drop("Process"));
  CheckExitPoint("Decide", "Original Connector.7", "Decide");
  EXPECT_THAT(Messages(), ElementsAre(Refusal("Original Connector", kTryDecide)));
}

}  // namespace
}  // namespace vardo
