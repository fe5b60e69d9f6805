#include "document/Drawing.h"

#include "TestDrawings.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "base/FileError.h"
#include "memoryhost/DrawingHost.h"
#include "package/Limits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>

namespace vardo {
namespace {

using test::DrawingText;
using test::kPagePart;
using test::OpenText;
using test::SetCell;
using test::TempFolder;
using test::Written;
using test::ZipOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

constexpr const char* kBox = "<Shape ID='5' Type='Shape'><Cell N='Width' V='1'/><Text>Box\n</Text></Shape>";
constexpr const char* kGroup =
    "<Shape ID='6' Type='Group'><Cell N='Width' V='4'/><Shapes><Shape ID='7' Type='Shape'><Cell N='Width' "
    "V='2'/><Text>inner\n</Text></Shape>"
    "<Shape ID='8' Type='Group'><Shapes><Shape ID='9' Type='Shape'><Cell N='Width' "
    "V='0.5'/></Shape></Shapes></Shape></Shapes></Shape>";
const std::vector<DrawingText::Master> kMasters = {{"Box", kBox}, {"Team", kGroup}};

// Two boxes and a connector glued to them, once to a point and once as a whole.
const DrawingText kGlued = {
    .shapes =
        "<Shape ID='1' Type='Shape' Master='2'/><Shape ID='2' Type='Shape' Master='2'/>"
        "<Shape ID='3' Type='Shape'><Cell N='BeginX' V='5' U='MM' F='PAR(PNT(Sheet.1!Connections.X1,Sheet.1!Connections.Y1))'/>"
        "<Cell N='BeginY' V='6' F='PAR(PNT(Sheet.1!Connections.X1,Sheet.1!Connections.Y1))'/>"
        "<Cell N='EndX' V='7' F='_WALKGLUE(EndTrigger,BegTrigger,WalkPreference)'/><Cell N='EndY' V='8' "
        "F='_WALKGLUE(EndTrigger,BegTrigger,WalkPreference)'/>"
        "<Cell N='BegTrigger' V='2' F='_XFTRIGGER(Sheet.1!EventXFMod)'/><Cell N='EndTrigger' V='2' "
        "F='_XFTRIGGER(Sheet.2!EventXFMod)'/></Shape>",
    .connects =
        "<Connect FromSheet='3' FromCell='BeginX' FromPart='9' ToSheet='1' ToCell='Connections.X1' ToPart='100'/>"
        "<Connect FromSheet='3' FromCell='EndX' FromPart='12' ToSheet='2' ToCell='PinX' ToPart='3'/>"
        "<Connect FromSheet='77' FromCell='EndX' FromPart='12' ToSheet='78' ToCell='PinX' ToPart='3'/>",
    .masters = kMasters};

DrawingPage& Page(Drawing& drawing) { return drawing.PageAt(1); }

std::map<std::string, std::string> Contents(Drawing& drawing) {
  std::map<std::string, std::string> contents;
  for (const std::string& name : drawing.package().PartNames()) contents[name] = drawing.package().Bytes(name);
  return contents;
}

// A drawing opened in a host, as a person works with it.
class Session {
 public:
  explicit Session(const DrawingText& text) {
    test::WriteFile(folder_ / "test.vsdx", ZipOf(text));
    host.Open(folder_ / "test.vsdx");
  }
  SheetRef Shape(int id) { return host.RefTo(host.ActivePage(), id); }
  SheetRef Sheet(SheetKind kind) { return host.RefTo(host.ActivePage(), kind); }
  std::string PageText() { return host.drawing().package().Bytes(kPagePart); }
  std::filesystem::path file() const { return folder_ / "test.vsdx"; }
  DrawingHost host;

 private:
  TempFolder folder_;
};

TEST(Drawing, ShapesHaveNamesThoughTheFileNamesNone) {
  const auto drawing = OpenText(
      {.shapes = "<Shape ID='4' Type='Shape' Master='2'/><Shape ID='2' Type='Shape' Master='2'/><Shape ID='7' Type='Shape'/>"
                 "<Shape ID='9' NameU='Box.3' Type='Shape' Master='2'/><Shape ID='10' NameU='Data' Name='Daten' Type='Shape'/>"
                 "<Shape ID='12' NameU='Daten' Type='Shape'/>",
       .masters = kMasters});
  DrawingPage& page = Page(*drawing);
  const struct {
    int id;
    std::string_view name, why;
  } cases[] = {{2, "Box", "the first instance of a master, by number, has the master's name"},
               {4, "Box.4", "further ones also their number"},
               {7, "Sheet.7", "a shape without master"},
               {9, "Box.3", "a copy keeps an old number"},
               {10, "Daten", "the local name comes first"},
               {12, "Sheet.12", "a name that is taken names nobody else"}};
  for (const auto& c : cases) {
    EXPECT_EQ(page.NameOf(*page.FindShape(c.id)), c.name) << c.why;
    ASSERT_TRUE(page.FindShape(c.name)) << c.name;
    EXPECT_EQ(page.FindShape(c.name)->id(), c.id) << c.why;
  }
  EXPECT_EQ(page.FindShape("Nobody"), nullptr);
  EXPECT_FALSE(drawing->Changed()) << "naming writes nothing";
}

TEST(Drawing, NamesOfNoTwoShapesAreTheSameWhateverComesAndGoes) {
  Session session({.shapes = "<Shape ID='2' Type='Shape' Master='2'/><Shape ID='4' Type='Shape' Master='2'/><Shape ID='10' "
                             "NameU='Box.4' Type='Shape'/><Shape ID='9' NameU='Sheet.22' Type='Shape'/><Shape ID='22' "
                             "Type='Shape'/>",
                   .masters = kMasters});
  const auto expectNames = [&](const char* when) {
    DrawingPage& page = session.host.ActivePage();
    for (const auto& [id, name] : {std::pair(2, "Box"), std::pair(4, "Box.4.4"), std::pair(22, "Sheet.22.22")}) {
      EXPECT_EQ(page.NameOf(*page.FindShape(id)), name) << when;
      EXPECT_EQ(page.FindShape(name), page.FindShape(id)) << when;
    }
    EXPECT_EQ(page.FindSheet("Sheet.22")->id(), 22) << "in a formula the number counts";
  };
  expectNames("opened");
  session.host.Select({9, 10});
  session.host.DeleteSelection();
  expectNames("deleted");
  session.host.Save(session.file());
  session.host.Open(session.file());
  expectNames("saved and opened");
}

TEST(Drawing, InnerShapesInheritFromTheMastersInnerShapes) {
  const auto drawing = OpenText(
      {.shapes =
           "<Shape ID='20' Type='Group' Master='3'><Shapes><Shape ID='21' Type='Shape' MasterShape='7'/>"
           "<Shape ID='22' Type='Group' MasterShape='8'><Shapes><Shape ID='23' Type='Shape' MasterShape='9'/></Shapes></Shape>"
           "</Shapes></Shape>",
       .masters = kMasters});
  DrawingPage& page = Page(*drawing);
  EXPECT_EQ(page.ShapeCount(), 1) << "only top-level shapes count";
  EXPECT_EQ(page.FindShape(21)->Formula(page.FindShape(21)->Find("Width").value()), "2");
  EXPECT_EQ(page.FindShape(21)->Text(), "inner");
  EXPECT_EQ(page.FindShape(23)->Formula(page.FindShape(23)->Find("Width").value()), "0.5");
  EXPECT_EQ(page.FindShape(23)->parent(), page.FindShape(22));
}

TEST(Drawing, DeletedInnerShapesAreKeptAndNotShown) {
  const std::string shapes =
      "<Shape ID='20' Type='Group' Master='3'><Shapes><Shape Del='1' MasterShape='7' ID='4294967295'/><Shape Del='1' "
      "MasterShape='8' ID='4294967295'/>"
      "</Shapes></Shape><Shape ID='5' Type='Shape'/>";
  const auto drawing = OpenText({.shapes = shapes, .masters = kMasters});
  DrawingPage& page = Page(*drawing);
  EXPECT_EQ(page.ShapeCount(), 2);
  page.FindShape(5)->SetText(drawing->editor(), "text");
  EXPECT_THAT(drawing->package().Bytes(kPagePart), HasSubstr("<Shape Del='1' MasterShape='8' ID='4294967295'/>"));
  EXPECT_EQ(page.AddInstance(*drawing->FindMaster("Box"), 1, 1).id(), 21) << "the markers' number is nobody's";
}

TEST(Drawing, AShapeThatSharesItsNumberIsAShapeOfItsOwn) {
  const auto drawing = OpenText({.shapes = "<Shape ID='5' Type='Shape'><Text>first\n</Text></Shape><Shape ID='5' "
                                           "Type='Shape'><Text>twin\n</Text></Shape><Shape ID='7' Type='Shape'/>"});
  DrawingPage& page = Page(*drawing);
  EXPECT_EQ(page.ShapeCount(), 3);
  EXPECT_EQ(page.FindShape(5)->Text(), "first");
  EXPECT_EQ(page.FindShape(8)->Text(), "twin");
  EXPECT_FALSE(drawing->Changed());
  page.FindShape(8)->SetText(drawing->editor(), "other");
  EXPECT_THAT(drawing->package().Bytes(kPagePart), HasSubstr("<Shape ID='8' Type='Shape'><Text>other\n</Text></Shape>"));
}

TEST(Drawing, WhatCannotBeToldApartIsRefused) {
  const std::string box = "<Shape ID='5' Type='Shape'/>";
  const struct {
    DrawingText text;
    std::string_view sentence;
  } cases[] = {
      {{.shapes = box + "<Shape ID='5' Type='Shape'><Cell N='Width' V='1' F='Sheet.5!Height'/></Shape>"},
       "part visio/pages/page1.xml has two shapes with the ID 5"},
      {{.shapes = box + box, .connects = "<Connect FromSheet='9' ToSheet='5'/>"},
       "part visio/pages/page1.xml has two shapes with the ID 5"},
      {{.shapes = "<Shape Type='Shape'/>"}, "part visio/pages/page1.xml has a shape without an ID"},
      {{.shapes = "<Shape ID='-1' Type='Shape'/>"}, "part visio/pages/page1.xml has a shape with the ID -1"},
      {{.shapes = "<Shape ID='1x' Type='Shape'/>"}, "part visio/pages/page1.xml has a shape with the ID 1x"},
      {{.shapes = "<Shape ID='1' Type='Group'><Shapes/><Shapes/></Shape>"},
       "part visio/pages/page1.xml has two lists of shapes in one place"},
      {{.shapes = box + "<v:Shape xmlns:v='http://schemas.microsoft.com/office/visio/2012/main' ID='6'/>"},
       "part visio/pages/page1.xml has a prefix for the elements of drawings"},
      {{.shapes = box + "</Shapes><v:Shapes xmlns:v='http://schemas.microsoft.com/office/visio/2012/main'/><Shapes>"},
       "part visio/pages/page1.xml has a prefix for the elements of drawings"},
      {{.shapes = "", .masters = {{"Box", "<Shape ID='1'/></Shapes><Shapes><Shape ID='2'/>"}}},
       "part visio/masters/master1.xml has two lists of shapes in one place"},
  };
  for (const auto& c : cases) {
    try {
      OpenText(c.text);
      ADD_FAILURE() << "opened; wanted: " << c.sentence;
    } catch (const FileError& error) {
      EXPECT_THAT(error.what(), HasSubstr(c.sentence));
    }
  }
}

TEST(Drawing, PagesAndMastersLeadToPartsOfTheirOwn) {
  constexpr std::string_view kPages = "visio/pages/pages.xml", kRels = "visio/pages/_rels/pages.xml.rels";
  constexpr std::string_view kMastersPart = "visio/masters/masters.xml";
  const struct {
    std::string_view part, replaced, by, sentence;
  } cases[] = {
      {kPages, "ID='0' ", "", "names a page without an ID"},
      {kPages, "ID='0'", "ID='-2'", "names a page with the ID -2"},
      {kPages, "</Pages>", "<Page ID='0' Name='x'/></Pages>", "names two entries with the ID 0"},
      {kPages, "</Pages>", "<Page ID='1' Name='x'><Rel r:id='rId1'/></Page></Pages>", "which another one has already"},
      {kPages, "</Pages>", "<Page ID='1' Name='x'/></Pages>", "names a page that leads to no part"},
      {kPages, "<Rel r:id='rId1'/>", "", "names a page that leads to no part"},
      {kPages, "rId1", "rId9", "names a page by the relationship rId9, which is missing"},
      {kRels, "page1.xml", "page7.xml", "names a page in part visio/pages/page7.xml, which is missing"},
      {kMastersPart, "ID='2'", "ID='3'", "names two entries with the ID 3"},
      {kMastersPart, "rId1", "rId9", "names a master by the relationship rId9, which is missing"},
  };
  for (const auto& c : cases) {
    std::vector<test::ZipItem> items = test::PackageText({.shapes = "", .masters = kMasters}).items();
    for (test::ZipItem& item : items) {
      const size_t at = item.name == c.part ? item.content.find(c.replaced) : std::string::npos;
      if (at != std::string::npos) item.content.replace(at, c.replaced.size(), c.by);
    }
    const TempFolder folder;
    test::WriteFile(folder / "test.vsdx", test::MakeZip(items));
    try {
      Drawing::Open(folder / "test.vsdx");
      ADD_FAILURE() << "opened; wanted: " << c.sentence;
    } catch (const FileError& error) {
      EXPECT_THAT(error.what(), HasSubstr(c.sentence));
    }
  }
}

TEST(Drawing, MoreThanADrawingMayHaveIsRefused) {
  const auto sentenceOf = [](const std::vector<test::ZipItem>& items) -> std::string {
    const TempFolder folder;
    test::WriteFile(folder / "test.vsdx", test::MakeZip(items));
    try {
      Drawing::Open(folder / "test.vsdx");
    } catch (const FileError& error) {
      return error.what();
    }
    return "opened";
  };
  const auto rows = [](size_t count) {
    std::string all = "<Shape ID='1' Type='Shape'><Section N='Property'>";
    for (size_t i = 0; i < count; ++i) all += "<Row N='R" + std::to_string(i) + "'/>";
    return test::PackageText({.shapes = all + "</Section></Shape>"}).items();
  };
  EXPECT_EQ(sentenceOf(rows(kMaxRows)), "opened");
  EXPECT_THAT(sentenceOf(rows(kMaxRows + 1)), HasSubstr("part visio/pages/page1.xml has a section of more than 32767 rows"));
  const auto pages = [](size_t count) {
    std::vector<test::ZipItem> items = test::PackageText({.shapes = ""}).items();
    std::string entries, relationships;
    for (size_t i = 1; i < count; ++i) {
      const std::string number = std::to_string(i + 1);
      entries += "<Page ID='" + std::to_string(i) + "'><Rel r:id='p" + number + "'/></Page>";
      relationships += "<Relationship Id='p" + number + "' Type='t/page' Target='page" + number + ".xml'/>";
      items.push_back({"visio/pages/page" + number + ".xml", test::VisioPart("PageContents", "")});
    }
    for (test::ZipItem& item : items) {
      if (item.name == "visio/pages/pages.xml") item.content.insert(item.content.find("</Pages>"), entries);
      if (item.name == "visio/pages/_rels/pages.xml.rels")
        item.content.insert(item.content.find("</Relationships>"), relationships);
    }
    return items;
  };
  EXPECT_EQ(sentenceOf(pages(kMaxPages)), "opened");
  EXPECT_THAT(sentenceOf(pages(kMaxPages + 1)), HasSubstr("names more than 5000 pages"));
}

TEST(Drawing, AMissingRelationshipsPartIsTold) {
  std::vector<test::ZipItem> items = test::PackageText({.shapes = ""}).items();
  std::erase_if(items, [](const test::ZipItem& item) { return item.name == "visio/pages/_rels/pages.xml.rels"; });
  const TempFolder folder;
  test::WriteFile(folder / "test.vsdx", test::MakeZip(items));
  EXPECT_THROW(Drawing::Open(folder / "test.vsdx"), FileError);
}

TEST(Drawing, NoNumberBeyondTheLastIsGivenOut) {
  const auto drawing = OpenText({.shapes = "<Shape ID='2147483647' Type='Shape'/>", .masters = kMasters});
  EXPECT_THROW(Page(*drawing).AddInstance(*drawing->FindMaster("Box"), 1, 1), HostError);
  EXPECT_EQ(Page(*drawing).ShapeCount(), 1);
}

TEST(Drawing, ReadsText) {
  const struct {
    std::string text, want, why;
  } cases[] = {
      {"<Text>plain\n</Text>", "plain", "the closing line end is the format's"},
      {"<Text>plain</Text>", "plain", "some have none"},
      {"<Text/>", "", "deliberately empty"},
      {"", "Box", "the master's"},
      {"<Text><cp IX='0'/>Hello<cp IX='1'/> world\n</Text>", "Hello world", "markers stand between runs"},
      {"<Text><cp IX='0'/><pp IX='0'/><fld IX='0'>4/1/2016</fld> due\n</Text>", "4/1/2016 due", "a field shows its cached text"},
      {"<Text>one\r\ntwo\r\n</Text>", "one\ntwo", "line ends are line feeds"},
      {"<Text>one\n\n</Text>", "one\n", "only one line end closes"},
      {"<Text>a &amp; b &lt;c&gt;\n</Text>", "a & b <c>", "escapes"},
  };
  for (const auto& c : cases) {
    const auto drawing =
        OpenText({.shapes = "<Shape ID='1' Type='Shape' Master='2'>" + c.text + "</Shape>", .masters = kMasters});
    EXPECT_EQ(Page(*drawing).ShapeAt(1).Text(), c.want) << c.why;
  }
}

TEST(Drawing, WritesText) {
  const struct {
    std::string before, text, want, why;
  } cases[] = {
      {"<Text>old\n</Text>", "new", "<Text>new\n</Text>", "with the closing line end"},
      {"<Text><cp IX='0'/><pp IX='1'/>Hello<cp IX='1'/> world\n</Text>", "new", "<Text><cp IX='0'/><pp IX='1'/>new\n</Text>",
       "in the first run's format"},
      {"<Text>old\n</Text>", "", "<Text/>", "empty on purpose, so that the master's does not come back"},
      {"", "new", "<Text>new\n</Text>", "instead of the master's"},
      {"<Cell N='PinX' V='1'/><Data1>x</Data1>", "a<b", "<Cell N='PinX' V='1'/><Text>a&lt;b\n</Text><Data1>x</Data1>",
       "before all that stands behind texts"},
  };
  for (const auto& c : cases) {
    const auto drawing =
        OpenText({.shapes = "<Shape ID='1' Type='Shape' Master='2'>" + c.before + "</Shape>", .masters = kMasters});
    DrawingShape& shape = Page(*drawing).ShapeAt(1);
    const std::string before = Written(shape);
    shape.SetText(drawing->editor(), c.text);
    EXPECT_EQ(Written(shape), "<Shape ID='1' Type='Shape' Master='2'>" + c.want + "</Shape>") << c.why;
    EXPECT_EQ(shape.Text(), c.text);
    while (drawing->log().CanUndo()) drawing->log().Undo();
    EXPECT_EQ(Written(Page(*drawing).ShapeAt(1)), before) << "undone: " << c.why;
  }
}

TEST(Drawing, AnInstanceOfAGroupListsItsInnerShapes) {
  const auto drawing = OpenText({.shapes = "", .masters = kMasters});
  const DrawingShape& shape = Page(*drawing).AddInstance(*drawing->FindMaster("Team"), 1, 2);
  EXPECT_EQ(Written(shape),
            "<Shape ID='1' NameU='Team' Name='Team' Type='Group' Master='3'><Cell N='PinX' V='1'/><Cell N='PinY' V='2'/><Shapes>"
            "<Shape ID='2' Type='Shape' MasterShape='7'/><Shape ID='3' Type='Group' MasterShape='8'><Shapes><Shape ID='4' "
            "Type='Shape' MasterShape='9'/>"
            "</Shapes></Shape></Shapes></Shape>");
  EXPECT_EQ(Page(*drawing).FindShape(2)->Text(), "inner");
  ASSERT_TRUE(Page(*drawing).FindShape(4));
  EXPECT_EQ(Page(*drawing).AddInstance(*drawing->FindMaster("Team"), 1, 2).id(), 5);
  EXPECT_THAT(drawing->package().Bytes("visio/pages/_rels/page1.xml.rels"), HasSubstr("Target=\"../masters/master2.xml\""));
}

TEST(Drawing, ANewPageIsAPartOfItsOwn) {
  const auto drawing = OpenText({.shapes = "<Shape ID='1' Type='Shape'/>", .masters = kMasters});
  const auto before = Contents(*drawing);
  DrawingPage& page = drawing->AddPage(Page(*drawing));
  EXPECT_EQ(page.Name(), "Page-2");
  EXPECT_EQ(page.partName(), "visio/pages/page2.xml");
  EXPECT_THAT(drawing->package().Bytes("[Content_Types].xml"),
              HasSubstr("<Override PartName=\"/visio/pages/page2.xml\" ContentType=\"application/vnd.ms-visio.page+xml\"/>"));
  EXPECT_THAT(drawing->package().Bytes("visio/pages/_rels/pages.xml.rels"), HasSubstr("Target=\"page2.xml\""));
  EXPECT_THAT(drawing->package().Bytes("visio/pages/pages.xml"),
              HasSubstr("<Page ID='1' NameU='Page-2' Name='Page-2'><PageSheet LineStyle='0' FillStyle='0' TextStyle='0'><Cell "
                        "N='PageWidth' V='11' U='IN'/></PageSheet>"
                        "<Rel r:id='rId2'/></Page>"));
  while (drawing->log().CanUndo()) drawing->log().Undo();
  EXPECT_FALSE(drawing->Changed());
  EXPECT_EQ(Contents(*drawing), before);
  while (drawing->log().CanRedo()) drawing->log().Redo();
  EXPECT_EQ(drawing->PageCount(), 2);
}

TEST(Drawing, RemovingAPageRenumbersThoseThatBearTheirNumber) {
  const auto drawing = OpenText({.shapes = ""});
  for (int i = 0; i < 3; ++i) drawing->AddPage(Page(*drawing));
  drawing->PageAt(3).SetName("Mine");
  drawing->RemovePage(drawing->PageAt(2), true);
  EXPECT_EQ(drawing->PageCount(), 3);
  EXPECT_EQ(drawing->PageAt(2).Name(), "Mine");
  EXPECT_EQ(drawing->PageAt(3).Name(), "Page-3");
  EXPECT_FALSE(drawing->package().Has("visio/pages/page2.xml"));
}

TEST(Drawing, AMasterComesFromTheStencilIntoAForeignDrawing) {
  const auto drawing = OpenText({.shapes = ""});
  const auto before = Contents(*drawing);
  for (int round = 0; round < 2; ++round) {
    const DrawingMaster* master = drawing->BringMaster("Create");
    ASSERT_TRUE(master);
    EXPECT_EQ(drawing->BringMaster("Create"), master) << "once";
    EXPECT_TRUE(drawing->package().Has("visio/masters/masters.xml"));
    EXPECT_THAT(drawing->package().Bytes("[Content_Types].xml"),
                HasSubstr("ContentType=\"application/vnd.ms-visio.master+xml\""));
    EXPECT_THAT(drawing->package().Bytes("visio/_rels/document.xml.rels"), HasSubstr("Target=\"masters/masters.xml\""));
    const DrawingShape& shape = Page(*drawing).AddInstance(*master, 1, 1);
    EXPECT_TRUE(shape.Find("Prop.CreateName"));
    while (drawing->log().CanUndo()) drawing->log().Undo();
    EXPECT_FALSE(drawing->Changed()) << "undo takes the list of masters away too";
    EXPECT_EQ(Contents(*drawing), before);
    EXPECT_EQ(drawing->MasterCount(), 0);
  }
  EXPECT_EQ(drawing->BringMaster("No such module"), nullptr);
}

TEST(Drawing, AMasterBroughtInSurvivesSavingAndOpening) {
  const TempFolder folder;
  const auto drawing = OpenText({.shapes = "", .masters = kMasters});
  Page(*drawing).AddInstance(*drawing->BringMaster("Process"), 1, 1);
  drawing->Save(folder / "saved.vsdx");
  const auto again = Drawing::Open(folder / "saved.vsdx");
  EXPECT_EQ(again->MasterCount(), 3);
  EXPECT_EQ(Page(*again).NameOf(Page(*again).ShapeAt(1)), "Process");
  EXPECT_TRUE(Page(*again).ShapeAt(1).Find("Prop.ProcessName"));
}

TEST(Drawing, UndoRestoresTheVeryBytes) {
  const struct {
    std::string_view what;
    std::function<void(Session&)> edit;
  } edits[] = {
      {"drop", [](Session& s) { s.host.Drop("Box", 0, 1, 2, "text"); }},
      {"drop from the stencil", [](Session& s) { s.host.Drop("Decide", 0, 1, 2, std::nullopt); }},
      {"type", [](Session& s) { s.host.TypeText(s.Shape(1), "typed", false); }},
      {"set a cell", [](Session& s) { s.host.SetCell(s.Shape(3), "BeginX", "4 mm"); }},
      {"make a row", [](Session& s) { s.host.SetCell(s.Shape(1), "Prop.New", "\"x\""); }},
      {"page sheet", [](Session& s) { s.host.SetCell(s.Sheet(SheetKind::Page), "User.Count", "3"); }},
      {"document sheet", [](Session& s) { s.host.SetCell(s.Sheet(SheetKind::Document), "User.Count", "3"); }},
      {"delete", [](Session& s) { s.host.Select({1}), s.host.DeleteSelection(); }},
      {"paste",
       [](Session& s) {
         s.host.Paste({s.Shape(1), s.Shape(2), s.Shape(3)}, 0);
       }},
      {"add a page", [](Session& s) { s.host.AddPage("Second"); }},
      {"rename a page", [](Session& s) { s.host.RenamePage(0, "Other"); }},
      {"delete a master", [](Session& s) { s.host.drawing().RemoveMaster(*s.host.drawing().FindMaster("Team")); }},
  };
  const TempFolder folder;
  for (const auto& edit : edits) {
    Session session(kGlued);
    const std::string bytes = test::ReadFile([&] {
      session.host.drawing().Save(folder / "before.vsdx");
      return folder / "before.vsdx";
    }());
    const auto before = Contents(session.host.drawing());
    edit.edit(session);
    EXPECT_TRUE(session.host.drawing().Changed()) << edit.what;
    const auto after = Contents(session.host.drawing());
    while (session.host.drawing().log().CanUndo()) session.host.Undo();
    EXPECT_FALSE(session.host.drawing().Changed()) << edit.what;
    EXPECT_EQ(Contents(session.host.drawing()), before) << edit.what;
    session.host.drawing().Save(folder / "undone.vsdx");
    EXPECT_EQ(test::ReadFile(folder / "undone.vsdx"), bytes) << edit.what;
    while (session.host.drawing().log().CanRedo()) session.host.Redo();
    EXPECT_EQ(Contents(session.host.drawing()), after) << "done again: " << edit.what;
  }
}

TEST(Drawing, UndoGoesBackAsFarAsItsLimit) {
  Session session(kGlued);
  session.host.SetUndoLimit({.steps = 2});
  for (const char* text : {"one", "two", "three"}) session.host.TypeText(session.Shape(1), text, false);
  session.host.Undo();
  session.host.Undo();
  EXPECT_THROW(session.host.Undo(), HostError);
  EXPECT_EQ(session.host.ResolveShape(session.Shape(1)).Text(), "one");
  session.host.New();
  for (int i = 0; i < 3; ++i) session.host.Drop("Create", session.host.ActivePage().id(), 1, 1, std::nullopt);
  session.host.Undo();
  session.host.Undo();
  EXPECT_THROW(session.host.Undo(), HostError) << "of a drawing opened later, too";
}

TEST(Drawing, OnlyEditedPartsChange) {
  Session session(kGlued);
  const auto before = Contents(session.host.drawing());
  session.host.TypeText(session.Shape(1), "typed", false);
  for (const auto& [part, bytes] : Contents(session.host.drawing()))
    EXPECT_EQ(bytes == before.at(part), part != kPagePart) << part;
}

TEST(Drawing, CopiesReferToCopies) {
  Session session(kGlued);
  session.host.Paste({session.Shape(1), session.Shape(3)}, 0);
  // 77 and 78 are named by a Connect that leads nowhere.
  const DrawingShape& connector = *session.host.ActivePage().FindShape(80);
  EXPECT_THAT(Written(connector),
              HasSubstr("<Cell N='BeginX' V='5' U='MM' F='PAR(PNT(Sheet.79!Connections.X1,Sheet.79!Connections.Y1))'/>"));
  EXPECT_THAT(Written(connector), HasSubstr("<Cell N='EndTrigger' V='2'/>"))
      << "the shape at the end was not copied: the end is loose and stays where it is";
  EXPECT_THAT(session.PageText(), HasSubstr("<Connect FromSheet='80' FromCell='BeginX' FromPart='9' ToSheet='79' "
                                            "ToCell='Connections.X1' ToPart='100'/></Connects>"));
  EXPECT_EQ(session.host.ActivePage().NameOf(*session.host.ActivePage().FindShape(79)), "Box.79");
}

TEST(Drawing, CopiesOfGroupsRenumberWhatIsInside) {
  Session session({.shapes = "<Shape ID='1' Type='Group' UniqueID='{1}'><Cell N='Width' V='2' F='Sheet.2!Width*2'/><Shapes>"
                             "<Shape ID='2' Type='Shape'><Cell N='Width' V='1'/><Cell N='Height' V='1' "
                             "F='Sheet.1!Height'/></Shape></Shapes></Shape>"});
  session.host.Paste({session.Shape(1)}, 0);
  EXPECT_THAT(session.PageText(), HasSubstr("<Shape ID='3' Type='Group'><Cell N='Width' V='2' F='Sheet.4!Width*2'/><Shapes>"
                                            "<Shape ID='4' Type='Shape'><Cell N='Width' V='1'/><Cell N='Height' V='1' "
                                            "F='Sheet.3!Height'/></Shape></Shapes></Shape>"));
}

TEST(Drawing, DeletingAShapeLoosensItsGlue) {
  Session session(kGlued);
  session.host.Select({1, 2});
  session.host.DeleteSelection();
  EXPECT_EQ(Written(*session.host.ActivePage().FindShape(3)),
            "<Shape ID='3' Type='Shape'><Cell N='BeginX' V='5' U='MM'/><Cell N='BeginY' V='6'/><Cell N='EndX' V='7'/><Cell "
            "N='EndY' V='8'/>"
            "<Cell N='BegTrigger' V='2'/><Cell N='EndTrigger' V='2'/></Shape>")
      << "the ends stay where they are";
  EXPECT_THAT(
      session.PageText(),
      HasSubstr(
          "<Connects><Connect FromSheet='77' FromCell='EndX' FromPart='12' ToSheet='78' ToCell='PinX' ToPart='3'/></Connects>"))
      << "what dangled before is not ours to mend";
}

TEST(Drawing, DeletingAGroupTakesWhatIsInsideAlong) {
  Session session(
      {.shapes = "<Shape ID='1' Type='Group' NameU='G'><Shapes><Shape ID='2' Type='Shape' NameU='In'/></Shapes></Shape>"
                 "<Shape ID='3' Type='Shape'><Cell N='BeginX' V='5' "
                 "F='PAR(PNT(Sheet.2!Connections.X1,Sheet.2!Connections.Y1))'/></Shape>",
       .connects = "<Connect FromSheet='3' FromCell='BeginX' FromPart='9' ToSheet='2' ToCell='Connections.X1' ToPart='100'/>"});
  session.host.Select({1});
  session.host.DeleteSelection();
  EXPECT_EQ(session.host.ActivePage().FindShape(2), nullptr);
  EXPECT_EQ(session.host.ActivePage().FindShape("In"), nullptr);
  EXPECT_THAT(session.PageText(), HasSubstr("<Cell N='BeginX' V='5'/>"));
  EXPECT_THAT(session.PageText(), Not(HasSubstr("<Connect ")));
  session.host.Undo();
  ASSERT_TRUE(session.host.ActivePage().FindShape("In"));
}

TEST(Drawing, NumbersAreNotUsedTwiceWhileTheDrawingIsOpen) {
  Session session(kGlued);
  session.host.Drop("Box", 0, 1, 1, std::nullopt);
  session.host.DeleteSelection();
  EXPECT_EQ(session.host.Drop("Box", 0, 1, 1, std::nullopt)->ID(), 80);
  session.host.Undo();
  EXPECT_EQ(session.host.Drop("Box", 0, 1, 1, std::nullopt)->ID(), 81);
}

TEST(Drawing, AStencilsPageHasNoPart) {
  Session session({.shapes = "", .masters = kMasters, .pageHasPart = false});
  EXPECT_EQ(session.host.ActivePage().ShapeCount(), 0);
  EXPECT_THROW(session.host.Drop("Box", 0, 1, 1, std::nullopt), HostError);
  session.host.RenamePage(0, "Named");
  EXPECT_THAT(session.host.drawing().package().Bytes("visio/pages/pages.xml"), HasSubstr("Name='Named'"));
  session.host.AddPage(std::nullopt);
  EXPECT_TRUE(session.host.Drop("Box", session.host.ActivePage().id(), 1, 1, std::nullopt));
}

TEST(Drawing, SavedThenUndoneThenRedoneIsAsSaved) {
  const TempFolder folder;
  Session session(kGlued);
  session.host.TypeText(session.Shape(1), "typed", false);
  session.host.Save(folder / "saved.vsdx");
  EXPECT_FALSE(session.host.drawing().Changed());
  session.host.Undo();
  EXPECT_TRUE(session.host.drawing().Changed());
  session.host.Redo();
  EXPECT_FALSE(session.host.drawing().Changed());
}

}  // namespace
}  // namespace vardo
