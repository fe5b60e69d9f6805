// Connectors in drawings that other programs have made: shapes in groups, masters that spell no triggers, points that are not
// there, names and numbers that mislead; and every drawing of the folder that VARDO_SAMPLES names.
#include "TestDrawings.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "base/Numbers.h"
#include "memoryhost/DrawingHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace vardo {
namespace {

using testing::DoubleNear;
using testing::HasSubstr;
using testing::Not;
using testing::UnorderedElementsAre;

constexpr double kNear = 1e-9;

// A box of 2 by 1 inches, its pin at (1, 0.5), with a point in the middle of each of its short sides.
std::string Box(int id, double x, double y, const std::string& more = "") {
  const auto cell = [](const char* name, double value, const char* formula = "") {
    return std::string("<Cell N='") + name + "' V='" + NumberText(value) + "'" +
           (*formula ? std::string(" F='") + formula + "'" : "") + "/>";
  };
  const auto point = [&](int ix, const char* formula, double value) {
    return "<Row T='Connection' IX='" + std::to_string(ix) + "'>" + cell("X", value, formula) + cell("Y", 0.5, "Height*0.5") +
           "</Row>";
  };
  return "<Shape ID='" + std::to_string(id) + "' Type='Shape'>" + cell("PinX", x) + cell("PinY", y) + cell("Width", 2) +
         cell("Height", 1) + cell("LocPinX", 1, "Width*0.5") + cell("LocPinY", 0.5, "Height*0.5") + more +
         "<Section N='Connection'>" + point(0, "Width*0", 0) + point(1, "Width*1", 2) + "</Section></Shape>";
}

// A group of 4 by 4 inches with its pin in its middle.
std::string Group(int id, double x, double y, const std::string& shapes, const std::string& more = "") {
  return "<Shape ID='" + std::to_string(id) + "' Type='Group'><Cell N='PinX' V='" + NumberText(x) + "'/><Cell N='PinY' V='" +
         NumberText(y) +
         "'/><Cell N='Width' V='4'/><Cell N='Height' V='4'/><Cell N='LocPinX' V='2' F='Width*0.5'/><Cell N='LocPinY' V='2' "
         "F='Height*0.5'/>" +
         more + "<Shapes>" + shapes + "</Shapes></Shape>";
}

class ForeignConnectors : public testing::Test {
 protected:
  void Open(const test::DrawingText& text) {
    test::WriteFile(file(), test::ZipOf(text));
    host_.Open(file());
  }
  void SaveAndReopen() {
    host_.Save(file());
    host_.Open(file());
  }
  std::filesystem::path file() const { return folder_ / "test.vsdx"; }
  DrawingPage& Page() { return host_.ActivePage(); }
  SheetRef Ref(int shape) { return host_.RefTo(Page(), shape); }
  DrawingShape& Shape(int id) { return *Page().FindShape(id); }
  int Connect(const DrawingHost::End& from, const DrawingHost::End& to) {
    return host_.Connect("Dynamic connector", Page().id(), from, to)->ID();
  }
  void Set(int shape, const char* cell, const std::string& formula) { host_.SetCell(Ref(shape), cell, formula); }
  double Number(int shape, const char* cell) {
    const Sheet& sheet = Shape(shape);
    return std::get<double>(sheet.Value(sheet.Find(std::string_view(cell)).value()));
  }
  std::string Formula(int shape, const char* cell) {
    return host_.FormulaOf(Ref(shape), host_.Resolve(Ref(shape)).sheet->Find(std::string_view(cell)).value());
  }
  std::string Stored(int shape, const char* cell) {
    return Shape(shape).Formula(Shape(shape).Find(std::string_view(cell)).value());
  }
  std::vector<std::string> Glued() {
    std::vector<std::string> glued;
    for (const auto& end : Page().GluedEnds())
      glued.push_back(std::to_string(end.connector) + (end.isBegin ? " begins at " : " ends at ") + std::to_string(end.target));
    return glued;
  }
  void ExpectBegin(int connector, double x, double y) {
    EXPECT_THAT(Number(connector, "BeginX"), DoubleNear(x, kNear));
    EXPECT_THAT(Number(connector, "BeginY"), DoubleNear(y, kNear));
    EXPECT_THAT(Number(connector, "PinX"), DoubleNear((Number(connector, "BeginX") + Number(connector, "EndX")) / 2, kNear));
  }

  DrawingHost host_;
  test::TempFolder folder_;
};

// ------------------------------------------------------------------------------------------------------- triggers and points

TEST_F(ForeignConnectors, EveryOneDimensionalShapeHasTriggers) {
  Open({.shapes = Box(1, 3, 3) + Box(2, 7, 3),
        .masters = {{"Line",
                     "<Shape ID='5' Type='Shape'><Cell N='PinX' V='0.5' F='(BeginX+EndX)/2'/><Cell N='PinY' V='0'/><Cell "
                     "N='BeginX' V='0'/><Cell N='BeginY' V='0'/><Cell N='EndX' V='1'/><Cell N='EndY' V='0'/></Shape>"}}});
  const int line = host_.Connect("Line", 0, {1, 2}, {2, {}, true})->ID();
  for (const char* trigger : {"BegTrigger", "EndTrigger"}) EXPECT_TRUE(Shape(line).Find(std::string_view(trigger))) << trigger;
  EXPECT_EQ(Formula(line, "BegTrigger"), "_XFTRIGGER(Sheet.1!EventXFMod)");
  EXPECT_EQ(Formula(line, "EndTrigger"), "_XFTRIGGER(Sheet.2!EventXFMod)");
  for (int opened = 0; opened < 2; ++opened) {
    EXPECT_THAT(Glued(), UnorderedElementsAre("3 begins at 1", "3 ends at 2"));
    Set(1, "PinY", opened ? "4" : "5");
    ExpectBegin(line, 4, opened ? 4 : 5);
    Set(2, "PinX", opened ? "9" : "8");
    EXPECT_THAT(Number(line, "EndX"), DoubleNear(opened ? 8 : 7, kNear));
    SaveAndReopen();
  }
  EXPECT_FALSE(Shape(1).Find(std::string_view("BegTrigger"))) << "other shapes have none";
}

TEST_F(ForeignConnectors, GlueToAPointThatIsNotThereIsRefused) {
  Open({.shapes = Box(1, 3, 3) + Box(2, 7, 3)});
  const int connector = Connect({1, 2}, {2, 1});
  const auto glue = [](const std::string& x, const std::string& y) { return "PAR(PNT(Sheet.2!" + x + ",Sheet.2!" + y + "))"; };
  const struct {
    std::string formula;
    const char* why;
  } lost[] = {{glue("Connections.X3", "Connections.Y3"), "one behind the last"},
              {glue("Connections.X0", "Connections.Y0"), "the first is 1"},
              {glue("Connections.X1", "Connections.Y3"), "half of it is there"},
              {glue("Connections.Nobody.X", "Connections.Nobody.Y"), "no row of that name"}};
  const std::string before = host_.drawing().package().Bytes(test::kPagePart);
  for (const auto& [formula, why] : lost) {
    for (const char* cell : {"BeginX", "BeginY", "EndX", "EndY"}) {
      try {
        Set(connector, cell, formula);
        ADD_FAILURE() << "taken: " << why;
      } catch (const HostError& refused) {
        EXPECT_EQ(refused.number(), kHostNoSuchCell);
        EXPECT_THAT(refused.description(), HasSubstr("Sheet.2"));
        EXPECT_THAT(refused.description(), HasSubstr("Connections."));
      }
    }
  }
  for (const int point : {-1, 0, 3}) EXPECT_THROW(Connect({1, point}, {}), HostError) << point;
  EXPECT_EQ(host_.drawing().package().Bytes(test::kPagePart), before);
  EXPECT_THAT(Glued(), UnorderedElementsAre("3 begins at 1", "3 ends at 2"));
}

// ----------------------------------------------------------------------------------------------------------- inside of groups

// A box (12) in the middle of a group (11) at (5, 5), and a connector glued to the box's right side: (1, 0) from the middle.
TEST_F(ForeignConnectors, AnEndFollowsTheGroupThatItsShapeIsIn) {
  Open({.shapes = Group(11, 5, 5, Box(12, 2, 2))});
  const int connector = Connect({12, 2}, {});
  ExpectBegin(connector, 6, 5);
  const struct {
    int shape;
    const char *cell, *formula;
    double x, y;
  } steps[] = {
      {11, "PinX", "6", 7, 5},           {11, "PinY", "4", 7, 4}, {11, "Angle", "90 deg", 6, 5},  // right is up
      {11, "FlipX", "TRUE", 6, 3},                                                                // mirrored, then turned
      {11, "Angle", "0", 5, 4},                                                                   // right is left
      {11, "FlipY", "TRUE", 5, 4},                                                                // the point is on the axis
      {12, "PinY", "3", 5, 3},                                                                    // one up is one down
      {11, "FlipX", "FALSE", 7, 3},                                                               //
      {11, "FlipY", "FALSE", 7, 5},                                                               //
      {11, "Width", "6", 6, 5},       // its pin moves to (3, 2), the box stays at (2, 3)
      {11, "LocPinX", "0", 9, 5},     // its left side is at 6
      {12, "Width", "4", 10, 5},      // from the box's middle on
      {12, "Angle", "90 deg", 8, 7},  // the right end is above its middle now
      {12, "Connections.X2", "0", 8, 3},
  };
  for (const auto& step : steps) {
    SCOPED_TRACE(std::to_string(step.shape) + " " + step.cell + " = " + step.formula);
    Set(step.shape, step.cell, step.formula);
    ExpectBegin(connector, step.x, step.y);
  }
  for (auto step = std::rbegin(steps) + 1; step != std::rend(steps); ++step) {
    host_.Undo();
    ExpectBegin(connector, step->x, step->y);
  }
}

// The box (13) is in a group (12) at (1, 1) of a group (11) at (5, 5): its right side is at (5-2+1-2+2+1, 5-2+1-2+2).
TEST_F(ForeignConnectors, AnEndFollowsGroupsInGroups) {
  Open({.shapes = Group(11, 5, 5, Group(12, 1, 1, Box(13, 2, 2)))});
  const int connector = Connect({13, 2}, {}), whole = Connect({13, {}, true}, {});
  ExpectBegin(connector, 5, 4);
  const struct {
    int shape;
    const char *cell, *formula;
    double x, y;
  } steps[] = {
      {11, "PinX", "6", 6, 4},       {12, "PinX", "2", 7, 4},     {12, "Angle", "90 deg", 6, 5},
      {11, "Angle", "90 deg", 6, 5},  // it is at the pin
      {12, "Angle", "0", 7, 6},      {11, "FlipX", "TRUE", 7, 4}, {11, "Angle", "0", 5, 4},
      {11, "FlipX", "FALSE", 7, 4},  {11, "Height", "2", 7, 5},   {12, "LocPinY", "0", 7, 7},
      {13, "Height", "3", 7, 7},
  };
  for (const auto& step : steps) {
    SCOPED_TRACE(std::to_string(step.shape) + " " + step.cell + " = " + step.formula);
    Set(step.shape, step.cell, step.formula);
    ExpectBegin(connector, step.x, step.y);
  }
  // Its other end is far to the right, so it is at the box's right side, too.
  Set(whole, "EndX", "50");
  Set(11, "PinY", "8");
  ExpectBegin(connector, 7, 10);
  ExpectBegin(whole, 7, 10);
}

TEST_F(ForeignConnectors, AConnectorInsideAGroupMayFollowAShapeBesideIt) {
  Open({.shapes = Group(11, 5, 5, Box(12, 1, 1) + Box(13, 3, 3))});
  const int connector = Connect({12, 2}, {13, 1});
  ExpectBegin(connector, 5, 4);
  Set(13, "PinX", "4");
  EXPECT_THAT(Number(connector, "EndX"), DoubleNear(6, kNear));
  ExpectBegin(connector, 5, 4);
}

TEST_F(ForeignConnectors, CopiesOfAGroupAndItsConnectorsKeepTheirGlue) {
  Open({.shapes = Group(11, 5, 5, Box(12, 2, 2) + Group(13, 3, 3, Box(14, 1, 1))) + Box(20, 9, 5)});
  const int a = Connect({20, 1}, {12, 2}), b = Connect({14, 1}, {20, 2}), within = Connect({12, 1}, {14, 2});
  host_.Select({});
  const auto copies = host_.Paste({Ref(11), Ref(20), Ref(a), Ref(b), Ref(within)}, Page().id());
  ASSERT_EQ(copies.size(), 5u);
  const int group = copies[0]->ID();
  const auto inner = Page().InnerShapes(Shape(group));
  const int box = inner[0]->id(), nested = inner[2]->id(), beside = copies[1]->ID();
  const int copyOfA = copies[2]->ID(), copyOfB = copies[3]->ID(), copyOfWithin = copies[4]->ID();
  const auto glued = [](int connector, int from, int to) {
    return std::vector<std::string>{std::to_string(connector) + " begins at " + std::to_string(from),
                                    std::to_string(connector) + " ends at " + std::to_string(to)};
  };
  for (const auto& [connector, from, to] :
       {std::tuple(a, 20, 12), std::tuple(b, 14, 20), std::tuple(within, 12, 14), std::tuple(copyOfA, beside, box),
        std::tuple(copyOfB, nested, beside), std::tuple(copyOfWithin, box, nested)})
    EXPECT_THAT(Glued(), testing::IsSupersetOf(glued(connector, from, to)));
  EXPECT_EQ(Glued().size(), 12u);
  for (int opened = 0; opened < 2; ++opened) {
    const double x = Number(copyOfWithin, "BeginX"), right = Number(copyOfB, "BeginX"), original = Number(within, "BeginX");
    Set(group, "PinX", opened ? "7" : "8");
    const double moved = opened ? -1 : 3;
    EXPECT_THAT(Number(copyOfWithin, "BeginX"), DoubleNear(x + moved, kNear));
    EXPECT_THAT(Number(copyOfB, "BeginX"), DoubleNear(right + moved, kNear));
    EXPECT_THAT(Number(within, "BeginX"), DoubleNear(original, kNear)) << "the originals stay";
    SaveAndReopen();
    EXPECT_EQ(Glued().size(), 12u);
  }
}

TEST_F(ForeignConnectors, ACopyOfAGroupKeepsTheGlueAmongWhatIsInside) {
  const std::string line =
      "<Shape ID='14' Type='Shape'><Cell N='BeginX' V='2' F='PAR(PNT(Sheet.12!Connections.X2,Sheet.12!Connections.Y2))'/><Cell "
      "N='BeginY' V='1' F='PAR(PNT(Sheet.12!Connections.X2,Sheet.12!Connections.Y2))'/><Cell N='EndX' V='2' "
      "F='_WALKGLUE(EndTrigger,BegTrigger,WalkPreference)'/><Cell N='EndY' V='3' "
      "F='_WALKGLUE(EndTrigger,BegTrigger,WalkPreference)'/><Cell N='BegTrigger' V='2' F='_XFTRIGGER(Sheet.12!EventXFMod)'/>"
      "<Cell N='EndTrigger' V='2' F='_XFTRIGGER(Sheet.13!EventXFMod)'/></Shape>";
  Open({.shapes = Group(11, 5, 5, Box(12, 1, 1) + Box(13, 3, 3) + line),
        .connects = "<Connect FromSheet='14' FromCell='BeginX' FromPart='9' ToSheet='12' ToCell='Connections.X2' ToPart='101'/>"
                    "<Connect FromSheet='14' FromCell='EndX' FromPart='12' ToSheet='13' ToCell='PinX' ToPart='3'/>"});
  host_.Paste({Ref(11)}, Page().id());
  SaveAndReopen();
  EXPECT_THAT(Glued(), UnorderedElementsAre("14 begins at 12", "14 ends at 13", "18 begins at 16", "18 ends at 17"));
  EXPECT_EQ(Formula(18, "BeginX"), "PAR(PNT(Sheet.16!Connections.X2,Sheet.16!Connections.Y2))");
  EXPECT_EQ(Formula(18, "EndTrigger"), "_XFTRIGGER(Sheet.17!EventXFMod)");
}

// --------------------------------------------------------------------------------------------------------- names and numbers

TEST_F(ForeignConnectors, AShapeNamedLikeANumberIsNotTheShapeOfThatNumber) {
  Open({.shapes = Box(22, 3, 3) + "<Shape ID='5' NameU='Sheet.22' Type='Shape'><Cell N='Width' V='7'/></Shape>" +
                  "<Shape ID='6' Type='Shape'><Cell N='Width' V='2' F='Sheet.22!Width'/></Shape>"});
  for (int opened = 0; opened < 2; ++opened) {
    Set(22, "Width", opened ? "3" : "4");
    EXPECT_EQ(Number(6, "Width"), opened ? 3 : 4);
    Set(5, "Width", opened ? "8" : "9");
    EXPECT_EQ(Number(6, "Width"), opened ? 3 : 4) << "it reads the other one";
    EXPECT_EQ(Stored(6, "Width"), "Sheet.22!Width");
    Set(6, "Width", Formula(6, "Width"));
    EXPECT_EQ(Stored(6, "Width"), "Sheet.22!Width") << "as it is shown it may be written back";
    Set(6, "Height", "Sheet.5!Width");
    EXPECT_EQ(Formula(6, "Height"), "Sheet.5!Width") << "the name would mean the other one";
    EXPECT_EQ(Number(6, "Height"), opened ? 8 : 9);
    const std::string pasted = Formula(host_.Paste({Ref(6), Ref(5)}, Page().id()).front()->ID(), "Height");
    EXPECT_THAT(pasted, Not(HasSubstr("Sheet.22")));
    host_.Undo();
    const int connector = Connect({22, 2}, {5, {}, true});
    EXPECT_THAT(Glued(),
                UnorderedElementsAre(std::to_string(connector) + " begins at 22", std::to_string(connector) + " ends at 5"));
    host_.Select({5});
    host_.DeleteSelection();
    EXPECT_THAT(Glued(), UnorderedElementsAre(std::to_string(connector) + " begins at 22"));
    EXPECT_EQ(Stored(6, "Width"), "Sheet.22!Width") << "nothing of it has gone";
    host_.Undo();
    host_.Undo();
    SaveAndReopen();
  }
}

TEST_F(ForeignConnectors, NewShapesTakeNoNumberThatALeftOverConnectNames) {
  Open({.shapes = Box(1, 3, 3),
        .connects = "<Connect FromSheet='2' FromCell='BeginX' FromPart='9' ToSheet='7' ToCell='PinX' ToPart='3'/>"});
  EXPECT_EQ(host_.Drop("Process", 0, 1, 1, std::nullopt)->ID(), 8);
  EXPECT_EQ(host_.Paste({Ref(1)}, 0).front()->ID(), 9);
  EXPECT_EQ(Connect({1, 1}, {}), 10);
  EXPECT_THAT(Glued(), UnorderedElementsAre("10 begins at 1"));
  SaveAndReopen();
  EXPECT_THAT(Glued(), UnorderedElementsAre("10 begins at 1"));
  EXPECT_EQ(host_.Drop("Process", 0, 1, 1, std::nullopt)->ID(), 11);
}

// ------------------------------------------------------------------------------------------------------ drawings of others

void ExpectConnectable(const std::filesystem::path& file) {
  SCOPED_TRACE(file.filename().string());
  const test::TempFolder folder;
  DrawingHost host;
  host.Open(file);
  for (int at = 1; at <= host.drawing().PageCount(); ++at) {
    DrawingPage& page = host.drawing().PageAt(at);
    if (page.ShapeCount() < 2) continue;
    const int from = page.ShapeAt(1).id(), to = page.ShapeAt(2).id();
    const auto glued = [&](DrawingHost& in, int connector) {
      std::vector<int> targets;
      for (const auto& end : in.drawing().FindPage(page.id())->GluedEnds())
        if (end.connector == connector) targets.push_back(end.target);
      return targets;
    };
    for (const bool walks : {false, true}) {
      const IVShapePtr connector = host.Connect("Dynamic connector", page.id(), {from, {}, walks}, {to, {}, walks});
      ASSERT_TRUE(connector);
      const int id = connector->ID();
      for (const char* trigger : {"BegTrigger", "EndTrigger"})
        EXPECT_THAT(connector->Cells(trigger)->Formula(), HasSubstr("!EventXFMod"));
      EXPECT_THAT(glued(host, id), UnorderedElementsAre(from, to));
      host.Save(folder / "saved.vsdx");
      DrawingHost again;
      again.Open(folder / "saved.vsdx");
      EXPECT_THAT(glued(again, id), UnorderedElementsAre(from, to));
      const SheetRef reopened{again.serial(), page.id(), id};
      const Sheet& kept = *host.Resolve(host.RefTo(page, id)).sheet;
      for (const char* cell : {"BegTrigger", "EndTrigger", "BeginX", "EndY"}) {
        const auto address = kept.Find(std::string_view(cell)).value();
        EXPECT_EQ(again.FormulaOf(reopened, address), host.FormulaOf(host.RefTo(page, id), address));
      }
      // It follows.
      const auto begin = [&] { return again.Resolve(reopened).sheet->Value(ObjectCellAddress("BeginY")); };
      const CellValue before = begin();
      again.SetCell({again.serial(), page.id(), from}, "PinY", "123 in");
      EXPECT_NE(begin(), before);
      host.Undo();
    }
  }
}

TEST(ForeignDrawings, TakeConnectorsThatKeepTheirGlue) {
  const char* folder = std::getenv("VARDO_SAMPLES");
  if (!folder) GTEST_SKIP() << "VARDO_SAMPLES names no folder of drawings";
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    if (entry.path().extension().string().starts_with(".vs")) ExpectConnectable(entry.path());
}

}  // namespace
}  // namespace vardo
