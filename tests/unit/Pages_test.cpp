// Pages that stand behind others, which page is shown, and what is left of a page when it goes.
#include "TestDrawings.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "base/Errors.h"
#include "memoryhost/DrawingHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace vardo {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr std::string_view kList = "visio/pages/pages.xml", kRels = "visio/pages/_rels/pages.xml.rels";
constexpr std::string_view kFrontRels = "visio/pages/_rels/page2.xml.rels";

std::string Relationships(const std::string& inside) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n<Relationships "
         "xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">" +
         inside + "</Relationships>";
}
std::string Relationship(const std::string& id, const std::string& target) {
  return "<Relationship Id=\"" + id + "\" Type=\"http://schemas.microsoft.com/visio/2010/relationships/page\" Target=\"" +
         target + "\"/>";
}

// "Behind" (ID 4) stands behind "Front" (0) and "Other" (7), and "Wall" (9) behind it; it comes first in the file.
class Pages : public testing::Test {
 protected:
  Pages() {
    std::vector<test::ZipItem> items = test::PackageText({.shapes = ""}).items();
    const auto page = [](int id, const std::string& name, const std::string& more, const std::string& relationship) {
      return "<Page ID='" + std::to_string(id) + "' NameU='" + name + "' Name='" + name + "'" + more +
             "><PageSheet/><Rel r:id='" + relationship + "'/></Page>";
    };
    const auto contents = [](const std::string& shapes) {
      return test::VisioPart("PageContents", "<Shapes>" + shapes + "</Shapes>");
    };
    for (test::ZipItem& item : items) {
      if (item.name == kList)
        item.content = test::VisioPart(
            "Pages", page(4, "Behind", " Background='1' BackPage='9'", "rId1") + page(0, "Front", " BackPage='4'", "rId2") +
                         page(7, "Other", " BackPage='4'", "rId3") + page(9, "Wall", " Background='1'", "rId4"));
      if (item.name == kRels)
        item.content = Relationships(Relationship("rId1", "page1.xml") + Relationship("rId2", "page2.xml") +
                                     Relationship("rId3", "page3.xml") + Relationship("rId4", "page4.xml"));
    }
    for (const char* number : {"2", "3", "4"})
      items.push_back({"visio/pages/page" + std::string(number) + ".xml", contents("<Shape ID='1' Type='Shape'/>")});
    items.push_back({std::string(kFrontRels), Relationships(Relationship("rId1", "page1.xml"))});
    items.push_back({"visio/pages/_rels/page3.xml.rels",
                     Relationships(Relationship("rId5", "../pages/page1.xml") + Relationship("rId6", "page4.xml"))});
    items.push_back({"visio/pages/_rels/page1.xml.rels", Relationships(Relationship("rId1", "page4.xml"))});
    for (test::ZipItem& item : items)
      if (item.name == "[Content_Types].xml")
        for (const char* number : {"2", "3", "4"})
          item.content.insert(item.content.find("</Types>"), "<Override PartName=\"/visio/pages/page" + std::string(number) +
                                                                 ".xml\" ContentType=\"application/vnd.ms-visio.page+xml\"/>");
    test::WriteFile(file(), test::MakeZip(items));
    host_.Open(file());
  }
  std::filesystem::path file() const { return folder_ / "pages.vsdx"; }
  std::string Shown() { return host_.ActivePage().Name(); }
  int Id(std::string_view name) { return host_.drawing().FindPage(name)->id(); }
  std::string Part(std::string_view name) { return host_.drawing().package().Bytes(name); }
  std::map<std::string, std::string> Parts() {
    std::map<std::string, std::string> parts;
    for (const std::string& name : host_.drawing().package().PartNames()) parts[name] = Part(name);
    return parts;
  }

  DrawingHost host_;
  test::TempFolder folder_;
};

TEST_F(Pages, TheFirstThatStandsForItselfIsShownFirst) {
  EXPECT_EQ(Shown(), "Front");
  EXPECT_TRUE(host_.drawing().PageAt(1).IsBackground());
  host_.ShowPage(Id("Behind"));
  EXPECT_EQ(Shown(), "Behind") << "who wants to see it may";
}

TEST_F(Pages, WithTheirBackgroundGoesWhatNamesIt) {
  const auto before = Parts();
  host_.DeletePage(Id("Behind"), false);
  EXPECT_THAT(Part(kList), Not(HasSubstr("BackPage")));
  EXPECT_THAT(Part(kFrontRels), Not(HasSubstr("page1.xml")));
  EXPECT_THAT(Part("visio/pages/_rels/page3.xml.rels"), Not(HasSubstr("page1.xml")));
  EXPECT_THAT(Part("visio/pages/_rels/page3.xml.rels"), HasSubstr("page4.xml")) << "what it names besides";
  for (const auto& [name, bytes] : Parts()) EXPECT_THAT(name, Not(HasSubstr("page1.xml")));
  EXPECT_THAT(Part("[Content_Types].xml"), Not(HasSubstr("page1.xml")));
  host_.Save(folder_ / "saved.vsdx");
  DrawingHost again;
  again.Open(folder_ / "saved.vsdx");
  EXPECT_EQ(again.drawing().PageCount(), 3);
  EXPECT_EQ(again.ActivePage().Name(), "Front");

  host_.Undo();
  EXPECT_EQ(Parts(), before);
  EXPECT_TRUE(host_.drawing().FindPage("Behind")->IsBackground());
  host_.Redo();
  EXPECT_THAT(Part(kList), Not(HasSubstr("BackPage")));
}

TEST_F(Pages, ABackgroundOfABackgroundGoesLikewise) {
  const auto before = Parts();
  host_.DeletePage(Id("Wall"), false);
  EXPECT_THAT(Part(kList), Not(HasSubstr("BackPage='9'")));
  EXPECT_THAT(Part(kList), HasSubstr("BackPage='4'"));
  EXPECT_THAT(Part("visio/pages/_rels/page3.xml.rels"), Not(HasSubstr("page4.xml")));
  host_.Undo();
  EXPECT_EQ(Parts(), before);
  EXPECT_FALSE(host_.drawing().Changed());
}

TEST_F(Pages, APageThatStandsForItselfLeavesItsBackground) {
  host_.DeletePage(Id("Front"), false);
  EXPECT_THAT(Part(kList), HasSubstr("Name='Other' BackPage='4'"));
  EXPECT_TRUE(host_.drawing().FindPage("Behind"));
}

TEST_F(Pages, AfterTheOneShownHasGoneOneThatStandsForItselfIsShown) {
  host_.DeletePage(Id("Front"), false);
  EXPECT_EQ(Shown(), "Other") << "not the one behind";
  host_.DeletePage(Id("Other"), false);
  EXPECT_EQ(Shown(), "Behind") << "there is no other left";
}

TEST_F(Pages, UndoShowsThePageThatWasShown) {
  host_.ShowPage(Id("Other"));
  host_.TypeText(host_.RefTo(host_.ActivePage(), 1), "typed", false);
  host_.ShowPage(Id("Front"));
  host_.AddPage("New");
  EXPECT_EQ(Shown(), "New");
  host_.Undo();
  EXPECT_EQ(Shown(), "Front");
  host_.Undo();
  EXPECT_EQ(Shown(), "Other") << "where it was typed";
  host_.ShowPage(Id("Wall"));
  host_.Redo();
  host_.Redo();
  host_.Undo();
  EXPECT_EQ(Shown(), "Front");
  host_.Redo();
  host_.ShowPage(Id("New"));
  host_.DeletePage(Id("New"), false);
  host_.Undo();
  EXPECT_EQ(Shown(), "New") << "it is back";
  host_.Redo();
  EXPECT_FALSE(host_.ActivePage().IsBackground());
}

TEST_F(Pages, UndoLeavesNoPartBehind) {
  const auto before = Parts();
  host_.Drop("Process", Id("Other"), 1, 1, std::nullopt);
  host_.Drop("Process", Id("Wall"), 1, 1, std::nullopt);
  host_.AddPage(std::nullopt);
  host_.Drop("Decide", host_.ActivePage().id(), 1, 1, std::nullopt);
  EXPECT_TRUE(Parts().contains("visio/pages/_rels/page4.xml.rels"));
  EXPECT_TRUE(Parts().contains("visio/masters/_rels/masters.xml.rels"));
  const auto after = Parts();
  host_.Save(file());
  for (int step = 0; step < 4; ++step) host_.Undo();
  EXPECT_EQ(Parts(), before);
  host_.Save(file());
  {
    const auto package = Package::OpenFile(file());
    EXPECT_EQ(package->PartNames().size(), before.size());
    EXPECT_FALSE(package->Has("visio/pages/_rels/page4.xml.rels"));
  }
  for (int step = 0; step < 4; ++step) host_.Redo();
  EXPECT_EQ(Parts(), after);
}

}  // namespace
}  // namespace vardo
