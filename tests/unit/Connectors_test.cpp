// How the in-memory host glues connectors and keeps values in step with what they depend on.
#include "addin/host/HostConstants.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "memoryhost/DrawingHost.h"
#include "package/Package.h"

#include <gmock/gmock.h>
#include <pugixml.hpp>

namespace vardo {
namespace {

using testing::DoubleEq;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;

class Connectors : public testing::Test {
 protected:
  Connectors() { host_.New(); }

  int page() { return host_.ActivePage().id(); }
  SheetRef Drop(std::string_view master, double x, double y) { return Ref(host_.Drop(master, page(), x, y, std::nullopt)->ID()); }
  SheetRef Ref(int shape) { return {host_.serial(), page(), shape}; }
  SheetRef Connect(const DrawingHost::End& from, const DrawingHost::End& to) {
    return Ref(host_.Connect("Dynamic connector", page(), from, to)->ID());
  }
  std::string Formula(const SheetRef& ref, const char* cell) {
    return host_.FormulaOf(ref, host_.Resolve(ref).sheet->Find(cell).value());
  }
  double Number(const SheetRef& ref, const char* cell) {
    const CellValue value = host_.Resolve(ref).sheet->Value(host_.Resolve(ref).sheet->Find(cell).value());
    return std::get<double>(value);
  }
  std::string Attribute(const SheetRef& ref, const char* cell, const char* attribute) {
    return pugi::xml_node(host_.ResolveShape(ref).element())
        .find_child_by_attribute("Cell", "N", cell)
        .attribute(attribute)
        .value();
  }
  // Each Connect element as "3 BeginX 9 > 1 Connections.X1 100".
  std::vector<std::string> Connects() {
    std::vector<std::string> texts;
    for (const pugi::xml_node connect : host_.ActivePage().contents()->root().child("Connects").children()) {
      const auto text = [&](const char* name) { return std::string(connect.attribute(name).value()); };
      texts.push_back(text("FromSheet") + " " + text("FromCell") + " " + text("FromPart") + " > " + text("ToSheet") + " " +
                      text("ToCell") + " " + text("ToPart"));
    }
    return texts;
  }

  DrawingHost host_;
};

TEST_F(Connectors, EveryKindOfGlueIsWrittenAsFilesHaveIt) {
  const SheetRef a = Drop("Process", 2, 5), b = Drop("Process", 6, 5);
  const SheetRef c = Connect({a.shape, 1}, {b.shape, std::nullopt, true});
  EXPECT_EQ(Attribute(c, "BeginX", "F"), "PAR(PNT(Sheet.1!Connections.X1,Sheet.1!Connections.Y1))");
  EXPECT_EQ(Attribute(c, "EndY", "F"), "_WALKGLUE(EndTrigger,BegTrigger,WalkPreference)");
  EXPECT_EQ(Attribute(c, "BegTrigger", "F"), "_XFTRIGGER(Sheet.1!EventXFMod)");
  EXPECT_EQ(Attribute(c, "EndTrigger", "F"), "_XFTRIGGER(Sheet.2!EventXFMod)");
  EXPECT_EQ(Attribute(c, "EndTrigger", "V"), "2");
  EXPECT_THAT(Connects(), ElementsAre("3 BeginX 9 > 1 Connections.X1 100", "3 EndX 12 > 2 PinX 3"));
  EXPECT_EQ(Number(c, "BeginX"), 2.625);
  EXPECT_EQ(Number(c, "EndX"), 5.375) << "the nearest side";

  const SheetRef d = Connect({b.shape}, {});
  EXPECT_EQ(Formula(d, "BeginX"), "PAR(PNT(Process.2!Connections.X3,Process.2!Connections.Y3))");
  EXPECT_EQ(Formula(b, "Connections.AutoGen3"), "1") << "the host's mark";
  EXPECT_EQ(host_.Undo(), "Connector");
  EXPECT_EQ(Connects().size(), 2u);
}

TEST_F(Connectors, FormulasNameShapesByNameAndAreKeptByNumber) {
  const SheetRef a = Drop("Process", 2, 5), b = Drop("Process", 6, 5);
  host_.SetCell(b, "Prop.ProcessValue", "Process!PinX*2");
  EXPECT_EQ(Formula(b, "Prop.ProcessValue"), "Process!PinX*2");
  const CellAddress value = *host_.Resolve(b).sheet->Find("Prop.ProcessValue");
  EXPECT_EQ(host_.Resolve(b).sheet->Formula(value), "Sheet.1!PinX*2");
  host_.SetCell(b, "Prop.ProcessMin", "Sheet.1!PinX+Nobody!PinX+\"Process!PinX\"+ThePage!PageWidth");
  EXPECT_EQ(Formula(b, "Prop.ProcessMin"), "Process!PinX+Nobody!PinX+\"Process!PinX\"+ThePage!PageWidth");
  EXPECT_EQ(Number(b, "Prop.ProcessValue"), 4);
  host_.SetCell(a, "PinX", "3");
  EXPECT_EQ(Number(b, "Prop.ProcessValue"), 6);
}

TEST_F(Connectors, ValuesFollowWhatTheyDependOnInOrder) {
  const SheetRef a = Drop("Process", 2, 5);
  host_.SetCell(a, "User.c", "User.b+User.a");
  host_.SetCell(a, "User.b", "User.a*2");
  host_.SetCell(a, "User.a", "1");
  EXPECT_EQ(Number(a, "User.c"), 3);
  host_.SetCell(a, "User.a", "5");
  EXPECT_EQ(Number(a, "User.c"), 15);
  host_.Undo();
  EXPECT_EQ(Number(a, "User.c"), 3);
  // Inherited formulas too: the text block is as wide as the shape.
  host_.SetCell(a, "Width", "3");
  EXPECT_EQ(Attribute(a, "LocPinX", "F"), "Inh");
  EXPECT_EQ(Number(a, "LocPinX"), 1.5);
  EXPECT_EQ(Number(a, "TxtWidth"), 3);
}

TEST_F(Connectors, AFormulaThatComesBackFollowsAgain) {
  const SheetRef a = Drop("Process", 2, 5);
  host_.SetCell(a, "User.a", "1");
  host_.SetCell(a, "User.b", "User.a*2");
  const auto row = static_cast<short>(host_.Resolve(a).sheet->PositionOf(*host_.Resolve(a).sheet->Find("User.b")).value());
  host_.DeleteRow(a, kSectionUser, row);
  host_.SetCell(a, "User.a", "3");
  host_.Undo();
  host_.Undo();
  host_.SetCell(a, "User.a", "5");
  EXPECT_EQ(Number(a, "User.b"), 10);
}

TEST_F(Connectors, CirclesEndAndKeepAValue) {
  const SheetRef a = Drop("Process", 2, 5);
  host_.SetCell(a, "User.a", "1");
  host_.SetCell(a, "User.b", "User.a+1");
  host_.SetCell(a, "User.a", "User.b+1");
  host_.SetCell(a, "User.c", "User.b");
  EXPECT_EQ(Number(a, "User.a"), 3);
  host_.SetCell(a, "User.d", "User.d+1");
  EXPECT_EQ(Formula(a, "User.d"), "User.d+1");
}

TEST_F(Connectors, AnErrorKeepsTheLastValue) {
  const SheetRef a = Drop("Process", 2, 5), b = Drop("Process", 6, 5);
  const auto error = [&] {
    return pugi::xml_node(host_.ResolveShape(b).element()).select_node(".//Row[@N='x']/Cell/@E").attribute().value();
  };
  host_.SetCell(b, "User.x", "Process!PinX");
  EXPECT_STREQ(error(), "");
  host_.Select({a.shape});
  host_.DeleteSelection();
  EXPECT_EQ(Number(b, "User.x"), 2);
  EXPECT_STREQ(error(), "#REF!");
  host_.Undo();
  EXPECT_STREQ(error(), "");
  host_.SetCell(b, "User.x", "Prop.ProcessName*2");
  EXPECT_STREQ(error(), "#VALUE!");
  host_.SetCell(b, "User.x", "SOMETHINGNEW(1)");
  EXPECT_STREQ(error(), "") << "a formula beyond us may well be right";
}

TEST_F(Connectors, EndsFollowTurnsFlipsAndSizes) {
  const struct {
    const char *cell, *formula;
    double x, y;
  } steps[] = {
      {"PinY", "6", 4.625, 6},     {"Angle", "90 deg", 4, 6.625}, {"Angle", "0", 4.625, 6},
      {"FlipX", "TRUE", 3.375, 6}, {"Width", "2", 3, 6},          {"LocPinX", "0", 2, 6},
      {"FlipX", "FALSE", 6, 6},    {"Height", "2", 6, 6},         {"Connections.Y1", "2", 6, 7},
  };
  const SheetRef a = Drop("Process", 4, 5), c = Connect({a.shape, 1}, {});
  for (const auto& step : steps) {
    SCOPED_TRACE(std::string(step.cell) + " = " + step.formula);
    host_.SetCell(a, step.cell, step.formula);
    EXPECT_THAT(Number(c, "BeginX"), DoubleNear(step.x, 1e-9));
    EXPECT_THAT(Number(c, "BeginY"), DoubleNear(step.y, 1e-9));
    EXPECT_THAT(Number(c, "PinX"), DoubleNear((Number(c, "BeginX") + Number(c, "EndX")) / 2, 1e-9));
  }
}

TEST_F(Connectors, ConnectElementsSayWhatTheFormulasSay) {
  const SheetRef a = Drop("Decide", 2, 5), b = Drop("Process", 6, 5), c = Connect({a.shape, 3}, {b.shape, 2});
  host_.SetCell(c, "BeginX", "PAR(PNT(Decide!Connections.X1, Decide!Connections.Y1))");
  EXPECT_THAT(Connects(), ElementsAre("3 BeginX 9 > 1 Connections.X1 100", "3 EndX 12 > 2 Connections.X2 101"));
  host_.SetCell(c, "EndX", "5");
  EXPECT_THAT(Connects(), ElementsAre("3 BeginX 9 > 1 Connections.X1 100"));
  host_.Undo();
  EXPECT_EQ(Connects().size(), 2u);
  host_.Select({a.shape});
  host_.DeleteSelection();
  EXPECT_THAT(Connects(), ElementsAre("3 EndX 12 > 2 Connections.X2 101"));
  EXPECT_EQ(Attribute(c, "BeginX", "F"), "");
  host_.Select({c.shape});
  host_.DeleteSelection();
  EXPECT_THAT(Connects(), IsEmpty());
}

TEST_F(Connectors, GlueKeepsToItsPointWhenAnotherGoes) {
  const SheetRef a = Drop("Decide", 2, 5), first = Connect({a.shape, 1}, {}), third = Connect({a.shape, 3}, {});
  host_.DeleteRow(a, kSectionConnectionPts, 0);
  EXPECT_EQ(Formula(third, "BeginY"), "PAR(PNT(Decide!Connections.X2,Decide!Connections.Y2))");
  EXPECT_EQ(Formula(first, "BeginX"), "2.75") << "its point has gone: it stays where it was";
  EXPECT_THAT(Connects(), ElementsAre("3 BeginX 9 > 1 Connections.X2 101"));
}

TEST_F(Connectors, ConnectElementsGoWithEitherShapeWhateverTheEndsWereGluedToBefore) {
  const SheetRef a = Drop("Process", 2, 5), b = Drop("Process", 6, 5), c = Drop("Process", 10, 5);
  const SheetRef first = Connect({a.shape, 1}, {b.shape, 2}), second = Connect({b.shape, 1}, {c.shape, 2});
  const auto glueEnd = [&](const SheetRef& to) {
    const std::string shape = "Sheet." + std::to_string(to.shape) + "!Connections.";
    for (const char* axis : {"X", "Y"})
      host_.SetCell(first, std::string("End") + axis, "PAR(PNT(" + shape + "X2," + shape + "Y2))");
  };
  glueEnd(c);
  glueEnd(b);
  glueEnd(c);
  const std::vector<std::string> before = {"4 BeginX 9 > 1 Connections.X1 100", "4 EndX 12 > 3 Connections.X2 101",
                                           "5 BeginX 9 > 2 Connections.X1 100", "5 EndX 12 > 3 Connections.X2 101"};
  EXPECT_EQ(Connects(), before);

  const struct {
    std::vector<int> shapes;
    std::vector<std::string> left;
  } cases[] = {
      {{b.shape}, {before[0], before[1], before[3]}},
      {{c.shape}, {before[0], before[2]}},
      {{first.shape}, {before[2], before[3]}},
      {{c.shape, second.shape, b.shape}, {before[0]}},
      {{a.shape, first.shape, c.shape, b.shape, second.shape}, {}},
  };
  for (const auto& [shapes, left] : cases) {
    host_.Select(shapes);
    host_.DeleteSelection();
    EXPECT_EQ(Connects(), left);
    for (const int shape : shapes) EXPECT_FALSE(host_.ActivePage().FindShape(shape)) << shape;
    EXPECT_EQ(host_.ActivePage().ShapeCount(), 5 - static_cast<int>(shapes.size()));
    for (int at = 1; at <= host_.ActivePage().ShapeCount(); ++at)
      EXPECT_EQ(host_.ActivePage().IndexOf(host_.ActivePage().ShapeAt(at)), at);
    host_.Undo();
    EXPECT_EQ(Connects(), before) << "undone";
  }
  host_.Paste({first, c, second}, page());
  EXPECT_EQ(Connects().size(), 6u) << "the glue between originals is copied";
}

TEST_F(Connectors, RefusesWhatCannotBeConnected) {
  const SheetRef a = Drop("Process", 2, 5);
  const int before = host_.ActivePage().ShapeCount();
  EXPECT_THROW(host_.Connect("Create", page(), {a.shape}, {}), HostError);
  EXPECT_THROW(host_.Connect("Nothing", page(), {a.shape}, {}), HostError);
  EXPECT_THROW(host_.Connect("Dynamic connector", page(), {a.shape, 3}, {}), HostError);
  EXPECT_THROW(host_.Connect("Dynamic connector", page(), {99}, {}), HostError);
  EXPECT_EQ(host_.ActivePage().ShapeCount(), before);
}

}  // namespace
}  // namespace vardo
