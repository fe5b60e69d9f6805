// The add-in in drawings that others have made: shapes that are called as modules are, and every drawing of the folder that
// VARDO_SAMPLES names.
#include "TestDrawings.h"
#include "TestPlatform.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "script/AddinSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace vardo {
namespace {

using testing::IsEmpty;

// A shape with a point in the middle of each side.
std::string FlowchartMaster(const std::string& more = "") {
  std::string points;
  int number = 0;
  for (const auto& [x, y] : {std::pair("0", "0.5"), {"1", "0.5"}, {"0.5", "0"}, {"0.5", "1"}})
    points += "<Row T='Connection' IX='" + std::to_string(number++) + "'><Cell N='X' V='" + x + "' F='Width*" + x +
              "'/><Cell N='Y' V='" + y + "' F='Height*" + y + "'/></Row>";
  return "<Shape ID='5' Type='Shape'><Cell N='Width' V='1'/><Cell N='Height' V='1'/>" + more + "<Section N='Connection'>" +
         points + "</Section></Shape>";
}
constexpr const char* kDecideClass = "<Section N='User'><Row N='ClassName'><Cell N='Value' V='Decide' U='STR'/></Row></Section>";

std::string Instance(const std::string& id, const std::string& master) {
  return "<Shape ID='" + id + "' Type='Shape' Master='" + master + "'/>";
}
std::string Glue(const std::string& shape, const std::string& point) {
  return "PAR(PNT(Sheet." + shape + "!Connections.X" + point + ",Sheet." + shape + "!Connections.Y" + point + "))";
}
// A line from one point to another, made from no master.
std::string Line(const std::string& id, const std::string& begin, const std::string& end) {
  const auto cell = [](const char* name, const std::string& formula) {
    return "<Cell N='" + std::string(name) + "' V='0' F='" + formula + "'/>";
  };
  return "<Shape ID='" + id + "' Type='Shape'>" + cell("BeginX", begin) + cell("BeginY", begin) + cell("EndX", end) +
         cell("EndY", end) + "</Shape>";
}

class ForeignDrawings : public testing::Test {
 protected:
  void Open(const test::DrawingText& text) {
    const test::TempFolder folder;
    test::WriteFile(folder / "foreign.vsdx", test::ZipOf(text));
    session_.Open(folder / "foreign.vsdx");
  }
  DrawingHost& host() { return session_.host(); }
  DrawingPage& Page() { return host().ActivePage(); }
  int Points(int id) { return host().application()->ActivePage()->Shapes()->ItemFromID(id)->RowCount(kSectionConnectionPts); }
  // What the ends of the page's lines follow.
  std::map<std::string, std::string> Ends() {
    std::map<std::string, std::string> ends;
    const IVShapesPtr shapes = host().application()->ActivePage()->Shapes();
    for (int i = 1; i <= shapes->Count(); ++i) {
      const IVShapePtr shape = shapes->Item(i);
      if (!shape->RowExists(kSectionObject, kRowXForm1D, kExistsAnywhere)) continue;
      for (const char* cell : {"BeginX", "BeginY", "EndX", "EndY"})
        ends[std::to_string(shape->ID()) + "!" + cell] = shape->Cells(cell)->Formula();
    }
    return ends;
  }

  TestPlatform platform_;
  AddinSession session_{true};
};

TEST_F(ForeignDrawings, AConnectorLeavesPointsAndGlueOfAFlowchartAlone) {
  Open({.shapes = Instance("1", "2") + Instance("2", "3") + Line("3", Glue("1", "3"), Glue("2", "4")),
        .masters = {{"Process", FlowchartMaster()}, {"Decide", FlowchartMaster()}}});
  const auto before = Ends();
  ASSERT_EQ(before.size(), 4u);
  for (const auto& [from, to] : {std::pair(1, 2), {2, 1}}) {
    const IVShapePtr connector =
        host().Connect("Dynamic connector", Page().id(), {.shape = from, .point = 3}, {.shape = to, .point = 1});
    ASSERT_TRUE(connector) << "it was refused";
    EXPECT_NE(connector->Cells("BeginX")->Formula().find("Connections.X3"), std::string::npos);
    EXPECT_NE(connector->Cells("EndX")->Formula().find("Connections.X1"), std::string::npos);
  }
  for (const auto& [cell, formula] : before) EXPECT_EQ(Ends()[cell], formula) << cell;
  for (const int shape : {1, 2}) EXPECT_EQ(Points(shape), 4);
  EXPECT_THAT(platform_->messages, IsEmpty());
}

TEST_F(ForeignDrawings, ALineThatWasMadeFromNoMasterIsNeitherRefusedNorGluedElsewhere) {
  Open({.shapes = Instance("1", "2") + Line("2", Glue("1", "2"), "3"), .masters = {{"Decide", FlowchartMaster(kDecideClass)}}});
  const std::vector<IVShapePtr> copies = host().Paste({host().RefTo(Page(), 1), host().RefTo(Page(), 2)}, Page().id());
  ASSERT_EQ(copies.size(), 2u) << "it was refused";
  EXPECT_NE(copies[1]->Cells("BeginX")->Formula().find("Connections.X2"), std::string::npos);
  EXPECT_THAT(platform_->messages, IsEmpty());
}

// Every shape of each page is connected to the next.
TEST_F(ForeignDrawings, KeepTheirGlueWhenMoreIsConnected) {
  const char* folder = std::getenv("VARDO_SAMPLES");
  if (!folder) GTEST_SKIP() << "VARDO_SAMPLES names no folder of drawings";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (!entry.path().extension().string().starts_with(".vs")) continue;
    SCOPED_TRACE(entry.path().filename().string());
    session_.Open(entry.path());
    for (int number = 1; number <= host().drawing().PageCount(); ++number) {
      host().ShowPage(host().drawing().PageAt(number).id());
      const auto before = Ends();
      std::vector<int> boxes;
      for (int i = 1; i <= Page().ShapeCount(); ++i)
        if (!Page().ShapeAt(i).IsOneDimensional()) boxes.push_back(Page().ShapeAt(i).id());
      for (size_t i = 1; i < boxes.size() && i < 20; ++i)
        host().Connect("Dynamic connector", Page().id(), {.shape = boxes[i - 1]}, {.shape = boxes[i]});
      const auto after = Ends();
      for (const auto& [cell, formula] : before) EXPECT_EQ(after.at(cell), formula) << cell;
    }
  }
}

}  // namespace
}  // namespace vardo
