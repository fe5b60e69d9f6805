// Texts that no drawing's file can hold are refused where they come in; all others are kept, character by character.
#include "TestDrawings.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "base/Text.h"
#include "memoryhost/DrawingHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vardo {
namespace {

using testing::HasSubstr;

// A page with one shape of a master, open in a host.
class UnkeepableTexts : public testing::Test {
 protected:
  UnkeepableTexts() {
    Open(
        "<Shape ID='1' Type='Shape' Master='2'><Section N='Property'><Row N='Mine'><Cell N='Value' V='1'/></Row></Section>"
        "</Shape>");
  }
  void Open(const std::string& shapes) {
    test::WriteFile(file(), test::ZipOf({.shapes = shapes, .masters = {{"Box", "<Shape ID='5' Type='Shape'/>"}}}));
    host_.Open(file());
  }
  void SaveAndReopen() {
    host_.Save(file());
    host_.Open(file());
  }
  std::filesystem::path file() const { return folder_ / "test.vsdx"; }
  SheetRef Shape() { return {host_.serial(), 0, 1}; }
  SheetRef PageSheet() { return {host_.serial(), 0, 0, SheetKind::Page}; }
  IVPagePtr Page() { return host_.application()->ActiveDocument()->Pages()->Item(1); }
  IVShapePtr Object() { return Page()->Shapes()->Item(1); }
  std::string PageText() { return host_.drawing().package().Bytes(test::kPagePart); }

  DrawingHost host_;
  test::TempFolder folder_;
};

TEST_F(UnkeepableTexts, AreRefusedAtEveryEntry) {
  using namespace std::string_literals;
  const struct {
    std::string text;
    const char* named;
  } texts[] = {
      {"\0"s, "U+0000"},
      {"\x01", "U+0001"},
      {"\x08", "U+0008"},
      {"\x0B", "U+000B"},
      {"\x0C", "U+000C"},
      {"\x1F", "U+001F"},
      {"\xEF\xBF\xBE", "U+FFFE"},
      {"\xEF\xBF\xBF", "U+FFFF"},
      {"\xED\xA0\x80", "U+D800"},                        // a lone surrogate
      {"\xED\xBF\xBF", "U+DFFF"},                        // the last of them
      {"\x80", "bytes that are not UTF-8"},              // the middle of a character
      {"\xE2\x82", "bytes that are not UTF-8"},          // half a character
      {"\xC0\x80", "bytes that are not UTF-8"},          // a character longer than it needs to be
      {"\xF4\x90\x80\x80", "bytes that are not UTF-8"},  // beyond the last character
      {"\xFF", "bytes that are not UTF-8"},
  };
  const struct {
    const char* what;
    std::function<void(const std::string&)> enter;
  } entries[] = {
      {"TypeText", [&](const std::string& text) { host_.TypeText(Shape(), text, false); }},
      {"SetText", [&](const std::string& text) { Object()->SetText(text); }},
      {"Drop's text", [&](const std::string& text) { host_.Drop("Box", 0, 1, 1, text); }},
      {"SetCell", [&](const std::string& text) { host_.SetCell(Shape(), "Prop.Mine", QuoteText(text)); }},
      {"SetCell of a new row", [&](const std::string& text) { host_.SetCell(Shape(), "Prop.New", QuoteText(text)); }},
      {"SetCell's name of a new row", [&](const std::string& text) { host_.SetCell(Shape(), "Prop.New" + text, "1"); }},
      {"SetCell of the page",
       [&](const std::string& text) { host_.SetCell(PageSheet(), "User.New", "Width&" + QuoteText(text)); }},
      {"SetFormula", [&](const std::string& text) { Object()->Cells("Prop.Mine")->SetFormula(QuoteText(text)); }},
      {"SetFormula of what is no formula", [&](const std::string& text) { Object()->Cells("Prop.Mine")->SetFormula(text); }},
      {"SetFormulas",
       [&](const std::string& text) {
         Object()->SetFormulas({kSectionProp, 0, kCellPropLabel}, {QuoteText(text)}, kSetBlastGuards);
       }},
      {"AddNamedRow", [&](const std::string& text) { Object()->AddNamedRow(kSectionUser, "New" + text, kTagDefault); }},
      {"AddPage", [&](const std::string& text) { host_.AddPage("New" + text); }},
      {"RenamePage", [&](const std::string& text) { host_.RenamePage(0, "New" + text); }},
      {"SetName", [&](const std::string& text) { Page()->SetName("New" + text); }},
  };
  for (const auto& entry : entries) {
    for (const auto& [text, named] : texts) {
      for (const std::string& whole : {text, "a" + text + "b"}) {
        SCOPED_TRACE(std::string(entry.what) + ": " + named);
        try {
          entry.enter(whole);
          ADD_FAILURE() << "taken";
        } catch (const HostError& refused) {
          EXPECT_EQ(refused.number(), kHostNotAllowed);
          EXPECT_THAT(refused.description(), HasSubstr(named));
          EXPECT_EQ(FindUnkeepable(refused.description()), std::nullopt) << "the sentence can be shown";
        }
        EXPECT_FALSE(host_.drawing().Changed());
        EXPECT_FALSE(host_.drawing().log().CanUndo());
      }
    }
  }
}

TEST_F(UnkeepableTexts, AllOthersAreKept) {
  const std::string texts[] = {
      "\xEF\xBF\xBD",                            // U+FFFD, which stands for what could not be read elsewhere
      "\xF0\x9F\x98\x80 \xF0\xA0\x80\x80",       // beyond the first 65 536
      "\xF0\x9F\xBF\xBF \xF4\x8F\xBF\xBF",       // the last of a plane, of all
      "\xEE\x80\x80 \xEF\xB7\x90 \xED\x9F\xBF",  // for private use, for none, before the surrogates
      "tab\there",
      "two\nlines",
      " blanks  kept ",
      "\x7F",                   // DEL is no control character of XML's
      "\xC2\x85 \xE2\x80\xA8",  // next line, line separator
      "<&>\"'\"\" ]]>",
      "a;b",
  };
  for (const std::string& text : texts) {
    SCOPED_TRACE(testing::PrintToString(text));
    host_.TypeText(Shape(), text, false);
    host_.SetCell(Shape(), "Prop.Mine", QuoteText(text));
    host_.SetCell(Shape(), "User.Joined", "Prop.Mine&" + QuoteText(text));
    host_.RenamePage(0, "p" + text);
    for (int opened = 0; opened < 2; ++opened) {
      EXPECT_EQ(Object()->Text(), text);
      EXPECT_EQ(Object()->Cells("Prop.Mine")->Formula(), QuoteText(text));
      EXPECT_EQ(Object()->Cells("User.Joined")->Formula(), "Prop.Mine&" + QuoteText(text));
      const Sheet& sheet = *host_.Resolve(Shape()).sheet;
      EXPECT_EQ(std::get<std::string>(sheet.Value(sheet.Find("User.Joined").value())), text + text);
      EXPECT_EQ(Page()->Name(), "p" + text);
      SaveAndReopen();
    }
  }
  const IVShapePtr dropped = host_.Drop("Box", 0, 1, 1, texts[0] + texts[1]);
  dropped->AddNamedRow(kSectionUser, "Zahl_\xC3\xA4\xF0\x9F\x98\x80", kTagDefault);
  SaveAndReopen();
  EXPECT_EQ(Page()->Shapes()->Item(2)->Text(), texts[0] + texts[1]);
  EXPECT_TRUE(Page()->Shapes()->Item(2)->CellExists("User.Zahl_\xC3\xA4\xF0\x9F\x98\x80", kExistsLocally));
}

TEST_F(UnkeepableTexts, ACarriageReturnEndsALine) {
  host_.TypeText(Shape(), "a\rb\r\nc", false);
  host_.SetCell(Shape(), "Prop.Mine", "\"a\rb\r\nc\"");
  for (int opened = 0; opened < 2; ++opened) {
    EXPECT_EQ(Object()->Text(), "a\nb\nc");
    const Sheet& sheet = *host_.Resolve(Shape()).sheet;
    EXPECT_EQ(std::get<std::string>(sheet.Value(sheet.Find("Prop.Mine").value())), "a\nb\nc");
    SaveAndReopen();
  }
}

TEST_F(UnkeepableTexts, WhatIsNoTextWithinATextStays) {
  const struct {
    std::string inside, shown, why;
  } texts[] = {
      {"<![CDATA[a <b>]]>\n", "a <b>", "plain text in another spelling"},
      {"one<!-- no text -->two\n", "onetwo", "a comment"},
      {"<?made by?>one\n", "one", "an instruction"},
      {"<cp IX='0'/>one<!-- c --><fld IX='0'>7<!-- d --></fld><?e f?>\n", "one7", "among runs and fields"},
  };
  for (const auto& [inside, shown, why] : texts) {
    SCOPED_TRACE(why);
    Open("<Shape ID='1' Type='Shape'><Text>" + inside + "</Text></Shape>");
    const std::string before = PageText();
    EXPECT_EQ(Object()->Text(), shown);
    EXPECT_EQ(PageText(), before) << "reading writes nothing";
    host_.TypeText(Shape(), "new", false);
    EXPECT_EQ(Object()->Text(), "new");
    SaveAndReopen();
    EXPECT_EQ(Object()->Text(), "new");
    for (const char* kept : {"<!-- no text -->", "<?made by?>", "<!-- c -->", "<?e f?>"})
      EXPECT_EQ(PageText().find(kept) != std::string::npos, inside.find(kept) != std::string::npos) << kept;
  }
}

TEST_F(UnkeepableTexts, WhatIsNoTextWithinACellStays) {
  const struct {
    std::string inside, shown, why;
  } texts[] = {
      {"<![CDATA[a\nb]]>", "a\nb", "plain text in another spelling"},
      {"a\n<!-- no text -->b", "a\nb", "a comment"},
      {"<?made by?>a\nb", "a\nb", "an instruction"},
      {"a\n<![CDATA[b]]>c<!-- c -->", "a\nbc", "in pieces"},
  };
  for (const auto& [inside, shown, why] : texts) {
    SCOPED_TRACE(why);
    Open("<Shape ID='1' Type='Shape'><Section N='Property'><Row N='Mine'><Cell N='Value' U='STR'>" + inside +
         "</Cell></Row></Section></Shape>");
    const std::string before = PageText();
    EXPECT_EQ(Object()->Cells("Prop.Mine")->Formula(), QuoteText(shown));
    host_.SetCell(Shape(), "Prop.Mine", QuoteText(shown));
    EXPECT_EQ(PageText(), before) << "the same again writes nothing";
    for (const std::string text : {"x\ny", "plain"}) {
      host_.SetCell(Shape(), "Prop.Mine", QuoteText(text));
      EXPECT_EQ(Object()->Cells("Prop.Mine")->Formula(), QuoteText(text));
      for (const char* kept : {"<!-- no text -->", "<?made by?>", "<!-- c -->"})
        EXPECT_EQ(PageText().find(kept) != std::string::npos, inside.find(kept) != std::string::npos) << kept;
    }
    SaveAndReopen();
    EXPECT_EQ(Object()->Cells("Prop.Mine")->Formula(), "\"plain\"");
  }
}

}  // namespace
}  // namespace vardo
