#include "document/Sheet.h"

#include "TestDrawings.h"
#include "addin/host/HostConstants.h"
#include "base/Errors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vardo {
namespace {

using test::DrawingText;
using test::OpenText;
using test::SetCell;
using test::Written;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kStepMaster =
    "<Shape ID='5' Type='Shape' LineStyle='0' FillStyle='0' TextStyle='0'><Cell N='Width' V='2' U='MM'/><Cell N='Height' V='1' "
    "F='Width*0.5'/>"
    "<Section N='Property'><Row N='Name'><Cell N='Value' V='Step 1' U='STR'/><Cell N='Prompt' V=''/><Cell N='Label' "
    "V='Name'/></Row>"
    "<Row N='Cost'><Cell N='Value' V='0' F='No Formula'/><Cell N='Label' V='Cost'/></Row></Section>"
    "<Section N='Connection'><Row T='Connection' IX='0'><Cell N='X' V='0'/><Cell N='Y' V='0.5'/></Row>"
    "<Row T='Connection' IX='1'><Cell N='X' V='2' F='Width*1'/><Cell N='Y' V='0.5'/></Row>"
    "<Row T='Connection' IX='2'><Cell N='X' V='1'/><Cell N='Y' V='0'/></Row></Section><Text>Step\n</Text></Shape>";

// One instance of that master with the content given.
std::unique_ptr<Drawing> OpenInstance(const std::string& content) {
  return OpenText(
      {.shapes = "<Shape ID='1' Type='Shape' Master='2'>" + content + "</Shape>", .masters = {{"Step", kStepMaster}}});
}
std::unique_ptr<Drawing> OpenOwn(const std::string& content) {
  return OpenText({.shapes = "<Shape ID='1' Type='Shape'>" + content + "</Shape>"});
}

DrawingShape& First(Drawing& drawing) { return drawing.PageAt(1).ShapeAt(1); }
std::string Formula(const Sheet& sheet, std::string_view cell) {
  const auto address = sheet.Find(cell);
  return address ? sheet.Formula(*address) : "(none)";
}
const SectionInfo& Section(short number) { return *FindSection(number); }
std::vector<std::string> Keys(const Sheet& sheet, short section) {
  std::vector<std::string> keys;
  for (const Sheet::Row& row : sheet.Rows(Section(section))) keys.push_back(sheet.RowText(Section(section), row.key));
  return keys;
}

TEST(Sheet, InheritsWhatItDoesNotSay) {
  const auto drawing = OpenInstance(
      "<Cell N='PinX' V='3'/><Cell N='Height' V='1.5' F='Inh'/><Section N='Property'><Row N='Name'><Cell N='Value' V='Mine' "
      "U='STR'/></Row></Section>");
  const Sheet& shape = First(*drawing);
  const struct {
    std::string_view cell, want, why;
  } cases[] = {
      {"PinX", "3", "its own"},
      {"Width", "50.8 mm", "the master's, in the master's unit"},
      {"Height", "Width*0.5", "the master's formula, though the value is its own"},
      {"Prop.Name", "\"Mine\"", "its own"},
      {"Prop.Name.Label", "\"Name\"", "the master's"},
      {"Prop.Cost", "", "a cell that has no value yet"},
      {"Prop.Cost.Prompt", "\"\"", "a column that nobody wrote"},
      {"Connections.X2", "Width*1", "points count from 1"},
      {"Prop.Nothing", "(none)", "no such row"},
      {"Connections.X4", "(none)", "no such point"},
      {"LineWeight", "(none)", "a cell that nobody wrote and we know nothing of"},
      {"BeginX", "(none)", "only connectors have ends"},
      {"Angle", "0", "a cell every shape has"},
  };
  for (const auto& c : cases) EXPECT_EQ(Formula(shape, c.cell), c.want) << c.cell << ": " << c.why;
  EXPECT_EQ(shape.Value(shape.Find("Height").value()), CellValue(1.5)) << "the value is the instance's";
}

TEST(Sheet, TellsLocalCells) {
  const auto drawing = OpenInstance(
      "<Cell N='PinX' V='3'/><Section N='Property'><Row N='Name'><Cell N='Value' V='Mine' U='STR'/></Row><Row N='New'><Cell "
      "N='Value' V='1'/></Row></Section>");
  const Sheet& shape = First(*drawing);
  for (const std::string_view local : {"PinX", "Prop.Name", "prop.name.value", "Prop.New", "Prop.New.Label"})
    EXPECT_TRUE(shape.Find(local, true)) << local;
  for (const std::string_view inherited : {"Width", "Prop.Name.Label", "Prop.Cost", "Connections.X1"}) {
    EXPECT_FALSE(shape.Find(inherited, true)) << inherited;
    EXPECT_TRUE(shape.Find(inherited)) << inherited;
  }
}

TEST(Sheet, AnEditOfAnInheritedRowWritesOnlyTheValueCell) {
  const auto drawing = OpenInstance(
      "<Cell N='PinX' V='3'/><Section N='Geometry' IX='0'><Row T='LineTo' IX='2' Del='1'/></Section><Text>t\n</Text>");
  SetCell(*drawing, First(*drawing), "prop.NAME", "\"Mine\"");
  EXPECT_EQ(Written(First(*drawing)),
            "<Shape ID='1' Type='Shape' Master='2'><Cell N='PinX' V='3'/><Section N='Property'><Row N='Name'><Cell N='Value' "
            "V='Mine' U='STR'/></Row></Section>"
            "<Section N='Geometry' IX='0'><Row T='LineTo' IX='2' Del='1'/></Section><Text>t\n</Text></Shape>")
      << "the row bears the master's spelling, and Geometry stays last of the sections";
}

TEST(Sheet, AFormulaThatIsNotUnderstoodKeepsTheInheritedValue) {
  const auto drawing = OpenInstance("");
  SetCell(*drawing, First(*drawing), "Width", "THEMEVAL()");
  EXPECT_EQ(Written(First(*drawing)),
            "<Shape ID='1' Type='Shape' Master='2'><Cell N='Width' V='2' U='MM' F='THEMEVAL()'/></Shape>");
}

TEST(Sheet, ANewRowHasAllItsCells) {
  const auto drawing = OpenInstance("");
  DrawingShape& shape = First(*drawing);
  EXPECT_EQ(shape.AddNamedRow(drawing->editor(), Section(kSectionProp), "Extra"), 2) << "behind the inherited ones";
  EXPECT_EQ(
      Written(shape),
      "<Shape ID='1' Type='Shape' Master='2'><Section N='Property'><Row N='Extra'><Cell N='Value' V='0' F='No Formula'/><Cell "
      "N='Prompt' V=''/>"
      "<Cell N='Label' V=''/><Cell N='Format' V=''/><Cell N='SortKey' V=''/><Cell N='Type' V='0'/><Cell N='Invisible' "
      "V='0'/><Cell N='Verify' V='0'/>"
      "<Cell N='DataLinked' V='0' F='No Formula'/><Cell N='LangID' V='0'/><Cell N='Calendar' V='0'/></Row></Section></Shape>");
  EXPECT_THAT(Keys(shape, kSectionProp), ElementsAre("Name", "Cost", "Extra"));
}

TEST(Sheet, RefusesRowNamesThatAreTakenOrIllegal) {
  const auto drawing = OpenInstance("");
  DrawingShape& shape = First(*drawing);
  for (const std::string_view name : {"Name", "nAME", "", "two words", "a.b"})
    EXPECT_THROW(shape.AddNamedRow(drawing->editor(), Section(kSectionProp), name), HostError) << name;
  EXPECT_FALSE(drawing->Changed());
  EXPECT_EQ(shape.AddRow(drawing->editor(), Section(kSectionProp), 0), 2) << "sections whose rows have names ignore the position";
  EXPECT_THAT(Keys(shape, kSectionProp), ElementsAre("Name", "Cost", "Row_3"));
}

TEST(Sheet, DeletingAnInheritedRowLeavesAMarker) {
  const auto drawing = OpenInstance("<Section N='Connection'><Row IX='1'><Cell N='X' V='2.5' F='Inh'/></Row></Section>");
  DrawingShape& shape = First(*drawing);
  shape.DeleteRow(drawing->editor(), Section(kSectionProp), 1);
  shape.DeleteRow(drawing->editor(), Section(kSectionConnectionPts), 1);
  EXPECT_EQ(Written(shape),
            "<Shape ID='1' Type='Shape' Master='2'><Section N='Connection'><Row IX='1' Del='1'/></Section>"
            "<Section N='Property'><Row N='Cost' Del='1'/></Section></Shape>");
  EXPECT_EQ(Formula(shape, "Prop.Cost"), "(none)");
  EXPECT_EQ(Formula(shape, "Connections.X2"), "1") << "the third point is the second now";
  EXPECT_THAT(Keys(shape, kSectionConnectionPts), ElementsAre("0", "2")) << "an inherited row's IX is its identity";

  EXPECT_EQ(shape.AddNamedRow(drawing->editor(), Section(kSectionProp), "Cost"), 1) << "it comes back in its place";
  EXPECT_THAT(Written(shape), Not(HasSubstr("Row N='Cost' Del")));
}

TEST(Sheet, ConnectionRows) {
  const auto drawing = OpenInstance("");
  DrawingShape& shape = First(*drawing);
  EXPECT_EQ(shape.AddRow(drawing->editor(), Section(kSectionConnectionPts), 0), 3) << "inherited rows cannot move";
  EXPECT_EQ(shape.AddRow(drawing->editor(), Section(kSectionConnectionPts), 3), 3) << "the shape's own can";
  EXPECT_THAT(Keys(shape, kSectionConnectionPts), ElementsAre("0", "1", "2", "3", "4"));
  shape.DeleteRow(drawing->editor(), Section(kSectionConnectionPts), 0);
  EXPECT_THAT(Keys(shape, kSectionConnectionPts), ElementsAre("1", "2", "3", "4"))
      << "never renumbered for a deleted inherited row";
  shape.DeleteRow(drawing->editor(), Section(kSectionConnectionPts), 2);
  EXPECT_THAT(Keys(shape, kSectionConnectionPts), ElementsAre("1", "2", "3")) << "own rows have no gaps";
  shape.DeleteRow(drawing->editor(), Section(kSectionConnectionPts), 99);
  EXPECT_THAT(Keys(shape, kSectionConnectionPts), ElementsAre("1", "2", "3")) << "a row that is not there is left alone";
  EXPECT_THAT(Written(shape),
              HasSubstr("<Row IX='0' Del='1'/><Row IX='3' T='Connection'><Cell N='X' V='0'/><Cell N='Y' V='0'/>"));
}

TEST(Sheet, DeletingAShapesOwnRowRenumbersTheRest) {
  const auto drawing = OpenOwn(
      "<Section N='Connection'><Row T='Connection' IX='0'><Cell N='X' V='10'/></Row><Row T='Connection' IX='1'><Cell N='X' "
      "V='11'/></Row>"
      "<Row T='Connection' IX='2'><Cell N='X' V='12'/></Row></Section>");
  DrawingShape& shape = First(*drawing);
  shape.DeleteRow(drawing->editor(), Section(kSectionConnectionPts), 0);
  EXPECT_EQ(Written(shape),
            "<Shape ID='1' Type='Shape'><Section N='Connection'><Row T='Connection' IX='0'><Cell N='X' V='11'/></Row>"
            "<Row T='Connection' IX='1'><Cell N='X' V='12'/></Row></Section></Shape>");
}

TEST(Sheet, ASectionGoesWithItsLastOwnRow) {
  const auto drawing =
      OpenOwn("<Section N='Connection'><Row T='Connection' IX='0'><Cell N='X' V='10'/></Row></Section><Text>t</Text>");
  DrawingShape& shape = First(*drawing);
  shape.DeleteRow(drawing->editor(), Section(kSectionConnectionPts), 0);
  EXPECT_EQ(Written(shape), "<Shape ID='1' Type='Shape'><Text>t</Text></Shape>");
}

TEST(Sheet, NamedConnectionPoints) {
  const auto drawing = OpenOwn("<Section N='Connection'><Row T='Connection' N='U04R'><Cell N='X' V='7'/></Row></Section>");
  EXPECT_EQ(Formula(First(*drawing), "Connections.U04R.X"), "7");
  EXPECT_EQ(Formula(First(*drawing), "Connections.X1"), "7") << "they have numbers too";
}

TEST(Sheet, SectionsAreMadeOnce) {
  const auto drawing = OpenInstance("");
  DrawingShape& shape = First(*drawing);
  EXPECT_THROW(shape.AddSection(drawing->editor(), Section(kSectionProp)), HostError) << "inherited is there";
  EXPECT_FALSE(shape.HasSection(Section(kSectionUser)));
  shape.AddSection(drawing->editor(), Section(kSectionUser));
  EXPECT_TRUE(shape.HasSection(Section(kSectionUser)));
  EXPECT_TRUE(shape.Rows(Section(kSectionUser)).empty());
}

TEST(Sheet, CellsAreFoundByTheHostsNumbers) {
  const auto drawing = OpenInstance("");
  const Sheet& shape = First(*drawing);
  const auto cell = shape.Find(kSectionConnectionPts, 1, 0);
  ASSERT_TRUE(cell);
  EXPECT_EQ(shape.Formula(*cell), "Width*1");
  EXPECT_FALSE(shape.Find(kSectionConnectionPts, 3, 0)) << "past the rows";
  EXPECT_FALSE(shape.Find(kSectionConnectionPts, 0, 77)) << "no such column";
  EXPECT_FALSE(shape.Find(kSectionObject, kRowXForm1D, 0)) << "only connectors have ends";
  EXPECT_TRUE(shape.Find(kSectionObject, kRowXFormOut, 2));
}

TEST(Sheet, APageSheetIsInTheListOfPages) {
  const auto drawing = OpenText(
      {.shapes = "",
       .pageSheet = "<PageSheet><Cell N='PageWidth' V='11' U='IN'><RefBy T='Page' ID='0'/></Cell><Trigger N='RecalcColor'/>"
                    "<Cell N='PageHeight' V='8'/></PageSheet>"});
  Sheet& sheet = drawing->PageAt(1).PageSheet();
  SetCell(*drawing, sheet, "PageWidth", "12 in");
  sheet.AddNamedRow(drawing->editor(), Section(kSectionUser), "ModuleCount");
  EXPECT_EQ(Written(sheet),
            "<PageSheet><Cell N='PageWidth' V='12' U='IN'><RefBy T='Page' ID='0'/></Cell><Trigger N='RecalcColor'/><Cell "
            "N='PageHeight' V='8'/>"
            "<Section N='User'><Row N='ModuleCount'><Cell N='Value' V='0' F='No Formula'/><Cell N='Prompt' "
            "V=''/></Row></Section></PageSheet>");
  EXPECT_THAT(drawing->package().Bytes("visio/pages/pages.xml"), HasSubstr("ModuleCount"));
}

}  // namespace
}  // namespace vardo
