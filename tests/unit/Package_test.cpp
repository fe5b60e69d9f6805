#include "package/Package.h"

#include "TestFiles.h"
#include "TestPackages.h"
#include "base/Text.h"
#include "package/Limits.h"
#include "package/PartNames.h"
#include "package/XmlText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>

namespace vardo {
namespace {

namespace fs = std::filesystem;
using test::DrawingAnd;
using test::DrawingItems;
using test::DrawingWith;
using test::kPagePart;
using test::MakeZip;
using test::ReadFile;
using test::TempFolder;
using test::WriteFile;
using test::ZipItem;
using testing::ElementsAre;

constexpr std::string_view kPageType = "application/vnd.ms-visio.page+xml";
constexpr std::string_view kPageRelationship = "http://schemas.microsoft.com/visio/2010/relationships/page";

std::unique_ptr<Package> Open(std::string zip) { return Package::OpenBytes(std::move(zip), "test.vsdx"); }
std::unique_ptr<Package> OpenDrawing() { return Open(MakeZip(DrawingItems())); }

// The sentence of the refusal, or "opened".
std::string Refusal(std::string zip) {
  try {
    Open(std::move(zip));
    return "opened";
  } catch (const FileError& error) {
    return error.what();
  }
}

std::map<std::string, std::string> Contents(const Package& package) {
  std::map<std::string, std::string> contents;
  for (const std::string& name : package.PartNames()) contents[name] = package.Bytes(name);
  return contents;
}

std::string SavedBytes(Package& package) {
  const TempFolder folder;
  package.Save(folder / "saved.vsdx");
  return ReadFile(folder / "saved.vsdx");
}

void EditPage(Package& package, const char* id = "99") {
  XmlPart& page = package.Xml(kPagePart);
  page.root().first_child().first_child().attribute("ID").set_value(id);
  static std::uint64_t state = 0;
  page.SetState(++state);
}

// ------------------------------------------------------------------------------------------------------------ refusals

TEST(Package, SaysWhatAFileIsThatIsNoDrawing) {
  const std::string compound = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
  const auto wide = [](std::string_view text) {
    std::string bytes;
    for (char c : text) bytes += {c, '\0'};
    return bytes;
  };
  const std::string other = "; choose a Visio drawing, stencil or template.";
  std::vector<ZipItem> document = DrawingItems();
  document[1].content = "<Relationships/>";
  std::vector<ZipItem> spreadsheet = DrawingItems();
  spreadsheet[0].content = "<Types><Default Extension='xml' ContentType='application/vnd.ms-excel'/></Types>";
  std::vector<ZipItem> headless = DrawingItems();
  headless.erase(headless.begin() + 4);
  const struct {
    std::string bytes, want;
  } cases[] = {
      {"", "test.vsdx is empty; restore it from a backup."},
      {compound + wide("EncryptedPackage"), "test.vsdx is protected by a password; save it without one in Visio."},
      {compound + wide("VisioDocument"), "test.vsdx is a drawing in the old binary format; save it as .vsdx in Visio."},
      {compound, "test.vsdx is an OLE compound file (an old binary or encrypted document) and no ZIP file" + other},
      {"\xEF\xBB\xBF<?xml version='1.0'?>\n<VisioDocument/>",
       "test.vsdx is a drawing in the XML format of 2003; save it as .vsdx in Visio."},
      {"<svg/>", "test.vsdx is an SVG picture and no ZIP file" + other},
      {"<html/>", "test.vsdx is an XML or HTML text and no ZIP file" + other},
      {"GIF89a", "test.vsdx is no ZIP file" + other},
      {MakeZip({}), "test.vsdx is a ZIP file but no Visio drawing" + other},
      {MakeZip(document), "test.vsdx is a ZIP file but no Visio drawing" + other},
      {MakeZip(spreadsheet), "test.vsdx is a ZIP file but no Visio drawing" + other},
      {MakeZip(headless), "test.vsdx is damaged: part visio/document.xml, its document, is missing; restore it from a backup."},
  };
  for (const auto& c : cases) EXPECT_EQ(Refusal(c.bytes), c.want);
}

TEST(Package, RefusesAHostileDirectory) {
  const std::string unsafe = "test.vsdx is not safe to open: ", copy = "; ask its maker for a clean copy.";
  const std::string damaged = "test.vsdx is damaged: ", backup = "; restore it from a backup.";
  const struct {
    ZipItem item;
    std::string want;
  } cases[] = {
      {{"../x", ""}, unsafe + "part ../x climbs out of the package" + copy},
      {{"visio/../../x", ""}, unsafe + "part visio/../../x climbs out of the package" + copy},
      {{"/etc/x", ""}, unsafe + "part /etc/x has an absolute name" + copy},
      {{"visio\\x", ""}, unsafe + "part visio\\x has a backslash in its name" + copy},
      {{std::string("a\0b", 3), ""}, unsafe + "part a?b has a NUL character in its name" + copy},
      {{"c:x", ""}, unsafe + "part c:x has a drive in its name" + copy},
      {{"visio/CON", ""}, unsafe + "part visio/CON has the name of a device" + copy},
      {{"lpt1.xml", ""}, unsafe + "part lpt1.xml has the name of a device" + copy},
      {{"visio//x", ""}, unsafe + "part visio//x has an empty step in its name" + copy},
      {{"./x", ""}, unsafe + "part ./x has an empty step in its name" + copy},
      {{"", ""}, unsafe + "part  has no name" + copy},
      {{"visio/document.xml", ""}, unsafe + "part visio/document.xml is there twice" + copy},
      {{"VISIO/Document.XML", ""}, unsafe + "part VISIO/Document.XML is there twice" + copy},
      {{"x", "", 0, 0x0001}, "test.vsdx is encrypted (part x); save it without a password."},
      {{"x", "", 12}, unsafe + "part x is packed by the unknown method 12" + copy},
      {{"x", "ab", 0, 0, 3}, damaged + "part x is not as long as the ZIP directory says" + backup},
      {{"x", "\x07", 8, 0, 2}, damaged + "part x cannot be unpacked" + backup},
      {{"x", "ab", 0, 0, -1, -1, -1, 0x12345678}, damaged + "part x fails its checksum" + backup},
      {{"x", std::string("\x03\0", 2), 8, 0, 5, -1, -1, 0}, damaged + "part x is not as long as the ZIP directory says" + backup},
      {{"x", "ab", 0, 0, 1 << 30, 1 << 30}, unsafe + "part x brings the package to more than 1024 MiB" + copy},
      {{"x", "ab", 8, 0, 0x7FFFFFFF}, unsafe + "part x brings the package to more than 1024 MiB" + copy},
      {{"x", "ab", 8, 0, (1 << 20) + 1}, unsafe + "part x is packed more than 200 to one" + copy},
      {{"x", "ab", 0, 0, 0x100000, 0x100000}, damaged + "part x is not what the ZIP directory says" + backup},
      {{"x", "", 0, 0, -1, -1, -1, -1, "y"}, damaged + "part x is not what the ZIP directory says" + backup},
      {{"[Content_Types].xm_", "", 0, 0, -1, -1, 0},
       damaged + "part [Content_Types].xm_ is not what the ZIP directory says" + backup},
  };
  for (const auto& c : cases) EXPECT_EQ(Refusal(MakeZip(DrawingAnd(c.item))), c.want);
}

TEST(Package, RefusesEntriesThatOverlap) {
  const ZipItem inner{"inner", "x"};
  std::string local = MakeZip({inner});
  local.resize(local.find("PK\1\2"));
  std::vector<ZipItem> items = DrawingAnd({"outer", "_" + local});
  const std::string zip = MakeZip(items);
  items.push_back({"inner", "x", 0, 0, -1, -1, static_cast<std::int64_t>(zip.find("_PK\3\4") + 1)});
  EXPECT_EQ(Refusal(MakeZip(items)),
            "test.vsdx is not safe to open: part inner overlaps another part; ask its maker for a clean copy.");
}

TEST(Package, RefusesASecondEndRecord) {
  const std::string comment = test::EndRecord(0, 0, 0, "");
  EXPECT_EQ(Refusal(MakeZip(DrawingItems(), comment)),
            "test.vsdx is not safe to open: it has two ZIP directories; ask its maker for a clean copy.");
  EXPECT_EQ(Refusal(MakeZip(DrawingItems(), "a comment")), "opened");
}

TEST(Package, AcceptsUpToTheLimitsAndNoMore) {
  const auto withEntries = [](size_t count) {
    std::vector<ZipItem> items = DrawingItems();
    while (items.size() < count) items.push_back({"x" + std::to_string(items.size()), ""});
    return MakeZip(items);
  };
  EXPECT_EQ(Refusal(withEntries(kMaxEntries)), "opened");
  EXPECT_EQ(Refusal(withEntries(kMaxEntries + 1)),
            "test.vsdx is not safe to open: it has 10001 parts, more than the 10000 allowed; ask its maker for a clean copy.");

  const auto nested = [](size_t depth) {
    std::string xml;
    for (size_t i = 0; i < depth; ++i) xml += "<a>";
    xml += "text";
    for (size_t i = 0; i < depth; ++i) xml += "</a>";
    return MakeZip(DrawingWith(kPagePart, xml));
  };
  const std::string tooDeep =
      "test.vsdx is not safe to open: part visio/pages/page1.xml is nested deeper than 256 elements; ask its maker for a clean "
      "copy.";
  EXPECT_EQ(Refusal(nested(kMaxXmlDepth)), "opened");
  EXPECT_EQ(Refusal(nested(kMaxXmlDepth + 1)), tooDeep);
  EXPECT_EQ(Refusal(nested(1'000'000)), tooDeep) << "no recursion that a deep file could run away with";
}

// A drawing with that many pages, each with a part or all with one.
std::string ManyPages(size_t count, bool withParts) {
  std::vector<ZipItem> items = DrawingItems();
  const std::string content = items.back().content;
  if (withParts) items.pop_back();
  std::string& list = items[items.size() - (withParts ? 1 : 2)].content;
  std::string relationships = "<Relationships>";
  for (size_t i = 1; i <= count; ++i) {
    const std::string number = std::to_string(i), part = withParts ? number : "1";
    relationships += "<Relationship Id='rId" + number + "' Type='t/page' Target='page" + part + ".xml'/>";
  }
  list = relationships + "</Relationships>";
  for (size_t i = 1; withParts && i <= count; ++i) items.push_back({"visio/pages/page" + std::to_string(i) + ".xml", content});
  return MakeZip(items);
}

TEST(Package, ManyPagesTakeTheirTimeAndMemoryOnce) {
  const std::unique_ptr<Package> onOnePart = Open(ManyPages(50'000, false));
  const Relationships relationships = onOnePart->RelationshipsOf("visio/pages/pages.xml");
  EXPECT_EQ(relationships.Find("rId50000"), &relationships[49'999]);
  EXPECT_EQ(Open(ManyPages(kMaxEntries - 100, true))->PartNames().size(), DrawingItems().size() - 1 + kMaxEntries - 100);
}

TEST(Package, WhatAPartMakesOfTheMemoryIsLimited) {
  const std::string element = "<a/>", xml = "<b>" + element + "<a c='1'/>text</b>";
  const auto open = [&](std::uint64_t memoryOfOthers) { XmlPart("test.vsdx", "p", ByteArray::CopyOf(xml), memoryOfOthers); };
  const std::uint64_t memory = XmlPart("f", "p", ByteArray::CopyOf(xml)).memory();
  EXPECT_NO_THROW(open(kMaxMemoryBytes - memory));
  EXPECT_THROW(open(kMaxMemoryBytes - memory + 1), FileError);

  // What its tree would make sixteen times as large.
  std::string elements = "<a>";
  while (elements.size() < kMaxMemoryBytes / 64 * element.size()) elements += element;
  try {
    XmlPart("test.vsdx", "part", ByteArray::CopyOf(elements + "</a>"));
    FAIL();
  } catch (const FileError& error) {
    EXPECT_STREQ(error.what(),
                 "test.vsdx is not safe to open: part part brings it to more than 1000 MiB in memory; ask its maker for a clean "
                 "copy.");
  }
}

TEST(Package, RefusesBadXml) {
  const std::string part = "part visio/pages/page1.xml ", damaged = "test.vsdx is damaged: " + part,
                    backup = "; restore it from a backup.";
  const std::string doctype = "test.vsdx is not safe to open: " + part + "has a DOCTYPE; ask its maker for a clean copy.";
  const auto illFormed = [&](int at, const std::string& why) {
    return damaged + "is not well-formed XML at byte " + std::to_string(at) + " (" + why + ")" + backup;
  };
  const std::string beside = "something stands beside the root element", noEnd = "a tag does not end",
                    noName = "no name where one must stand", prolog = "<?xml version='1.0'?>";
  const struct {
    std::string xml, want;
  } cases[] = {
      // What is no element of XML at all.
      {"", damaged + "has no XML element" + backup},
      {"<?xml version='1.0'?> ", damaged + "has no XML element" + backup},
      {"text", illFormed(0, "text before the first element")},
      {"<a/><b/>", illFormed(4, beside)},
      {"<a/>text", illFormed(4, beside)},
      {"<a/><![CDATA[x]]>", illFormed(4, beside)},
      {"<a/>" + prolog, illFormed(6, "an XML declaration that is not at the beginning")},
      {"<a>" + prolog + "</a>", illFormed(5, "an XML declaration that is not at the beginning")},
      {" " + prolog + "<a/>", illFormed(3, "an XML declaration that is not at the beginning")},
      {"<?XML x?><a/>", illFormed(2, "an XML declaration that is not at the beginning")},
      {"<?xml version='1.0' <a/>", illFormed(20, noName)},
      {"<?xml version='1.0'?<a/>", illFormed(20, "the XML declaration does not end")},
      {"<a/><!DOCTYPE a>", doctype},
      {"<!DOCTYPE a [<!ENTITY x 'xx'>]><a>&x;</a>", doctype},
      {"<?xml version='1.0'?>\n<!-- --><!DOCTYPE a><a/>", doctype},
      {"<a><!DOCTYPE a></a>", doctype},
      // Elements.
      {"<a><b></a>", illFormed(8, "the end of an element other than b")},
      {"<a></ab>", illFormed(5, "the end of an element other than a")},
      {"<ab></a>", illFormed(6, "the end of an element other than ab")},
      {"<a></a", illFormed(5, "the end of an element other than a")},
      {"<a></a b='1'>", illFormed(7, noEnd)},
      {"<a>", illFormed(3, "it does not end")},
      {"<a", illFormed(2, noEnd)},
      {"<a ", illFormed(3, noName)},
      {"<a/", illFormed(3, noEnd)},
      {"<a / >", illFormed(4, noEnd)},
      {"<", illFormed(1, noName)},
      {"< a/>", illFormed(1, noName)},
      {"<a><></a>", illFormed(4, noName)},
      {"<a><!x></a>", illFormed(4, "a tag that is none")},
      // Names.
      {"<1a/>", illFormed(1, noName)},
      {"<-a/>", illFormed(1, noName)},
      {"<a\xC2\xA0/>", illFormed(2, noEnd)},
      {"<\xC3\x97/>", illFormed(1, noName)},
      {"<a 1='x'/>", illFormed(3, noName)},
      {"<:a/>", illFormed(1, noName)},
      {"<a:/>", illFormed(3, noName)},
      {"<a:b:c xmlns:a='u'/>", illFormed(4, noName)},
      {"<?1x?><a/>", illFormed(2, noName)},
      {"<?x<?><a/>", illFormed(3, noName)},
      // Prefixes.
      {"<x:a/>", illFormed(1, "the prefix x is not declared")},
      {"<a x:b='1'/>", illFormed(3, "the prefix x is not declared")},
      {"<a><b xmlns:x='u'><x:c/></b><x:d/></a>", illFormed(29, "the prefix x is not declared")},
      {"<a><b xmlns:x='u'/><c x:d='1'/></a>", illFormed(22, "the prefix x is not declared")},
      // Attributes.
      {"<a b='1' b='2'/>", illFormed(9, "the attribute b twice")},
      {"<a><b a='1' b='2' c='3' d='4' e='5' f='6' g='7' h='8' i='9' c='0'/></a>", illFormed(60, "the attribute c twice")},
      {"<a b='<'/>", illFormed(6, "\"<\" in an attribute")},
      {"<a b='1'c='2'/>", illFormed(8, noEnd)},
      {"<a b/>", illFormed(4, "an attribute without a value")},
      {"<a b=1/>", illFormed(5, "an attribute's value without quotes")},
      {"<a b='1/>", illFormed(9, "it does not end")},
      {"<a b='1\"/>", illFormed(10, "it does not end")},
      {"<a b='1' & c='2'/>", illFormed(9, noName)},
      // Texts.
      {"<a>]]></a>", illFormed(5, "\"]]>\" in a text")},
      {"<a><![CDATA[x</a>", illFormed(17, "it does not end")},
      {"<a><!-- -- --></a>", illFormed(10, "\"--\" in a comment")},
      {"<a><!-- ---></a>", illFormed(10, "\"--\" in a comment")},
      {"<a/><!-- ", illFormed(9, "it does not end")},
      {"<a/><?x ", illFormed(8, "it does not end")},
      {"<a>\xFF</a>", damaged + "has text that is not UTF-8 at byte 3" + backup},
      {"<a>\xED\xA0\x80</a>", damaged + "has text that is not UTF-8 at byte 3" + backup},
      {"<a>\xC0\x80</a>", damaged + "has text that is not UTF-8 at byte 3" + backup},
      {"<a>\xE2\x82", damaged + "has text that is not UTF-8 at byte 3" + backup},
      {"<a><!--\xFF--></a>", damaged + "has text that is not UTF-8 at byte 7" + backup},
      {"<a\xFF/>", damaged + "has text that is not UTF-8 at byte 2" + backup},
      {std::string("<a>\0</a>", 8), damaged + "has a control character at byte 3" + backup},
      {"<a>\x0B</a>", damaged + "has a control character at byte 3" + backup},
      {"<a b='\x0B'/>", damaged + "has a control character at byte 6" + backup},
      {"<a>\xEF\xBF\xBF</a>", damaged + "has text that is not UTF-8 at byte 3" + backup},
      {"<a>&#0;</a>", damaged + "has an unknown reference (&) at byte 3" + backup},
      {"<a>&lol;</a>", damaged + "has an unknown reference (&) at byte 3" + backup},
      {"<a b='&'/>", damaged + "has an unknown reference (&) at byte 6" + backup},
      {"<a><!-- & -->&</a>", damaged + "has an unknown reference (&) at byte 13" + backup},
      // Encodings.
      {std::string("\xFF\xFE<\0a\0/\0>\0", 10), damaged + "is in UTF-16 or UTF-32, not in UTF-8" + backup},
      {std::string("\0<\0a\0/\0>", 8), damaged + "is in UTF-16 or UTF-32, not in UTF-8" + backup},
      {"<?xml version='1.0' encoding='ISO-8859-1'?><a/>", damaged + "says it is in iso-8859-1, not in UTF-8" + backup},
  };
  for (const auto& c : cases) EXPECT_EQ(Refusal(MakeZip(DrawingWith(kPagePart, c.xml))), c.want) << c.xml;
}

TEST(XmlText, TakesWhatIsWellFormed) {
  const std::string_view cases[] = {
      "<a/>",
      "<a ></a >",
      "<a b = '1'\r\n\tc=\"'\"/>",
      "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF8\" standalone=\"yes\" ?>\r\n<!-- - --><?p?><a/> <?p --?>\n<!---->",
      "<a>]] ]> > ' \" <![CDATA[<a b=' & ]] > ]]></a>",
      "<a b='>' c='--' d=']]>'><b/></a>",
      "<a-1._b x.y-z='1'/>",
      "<\xC3\x84pfel \xE5\x90\x8D='1'/>",
      "<a xmlns='u' xml:space='preserve'/>",
      "<x:a x:b='1' xmlns:x='u'><x:c/><y:d xmlns:y='v' y:e='1' e='1'/></x:a>",
      "<a><x:b xmlns:x='u'><x:b xmlns:x='u'/><x:b/></x:b></a>",
      "<a b='&amp;&lt;&gt;&quot;&apos;&#9;&#x10FFFF;'>&#xE4;</a>",
  };
  for (const std::string_view xml : cases) EXPECT_NO_THROW(CheckXml(xml)) << xml;
}

TEST(XmlText, CountsWhatATreeConsistsOf) {
  const XmlOutline outline = CheckXml("<!-- --><a b='1' c='2'>text<b d='3'/> <!-- --><![CDATA[]]><?p?></a>\n");
  EXPECT_EQ(outline.begin, 8u);
  EXPECT_EQ(outline.end, 67u);
  EXPECT_EQ(outline.nodes, 7u);
  EXPECT_EQ(outline.attributes, 3u);
}

TEST(XmlText, AFaultIsFoundWhereverItStands) {
  const struct {
    std::string_view fault;
    size_t at;
  } cases[] = {{"\x01", 0}, {"&", 0}, {"\xFF", 0}, {"]]>", 2}};
  for (size_t before = 0; before < 100; ++before)
    for (const auto& c : cases) {
      try {
        CheckXml("<a>" + std::string(before, 'x') + std::string(c.fault) + std::string(100, 'y') + "</a>");
        FAIL() << c.fault;
      } catch (const XmlFault& fault) {
        EXPECT_THAT(fault.what, testing::HasSubstr(" at byte " + std::to_string(3 + before + c.at)));
      }
    }
}

// An element with so many attributes, each a prefix that an element in it uses.
std::string ManyPrefixes(size_t count) {
  std::string root = "<a", uses;
  for (size_t i = 0; i < count; ++i) {
    const std::string prefix = "p" + std::to_string(i);
    root += " xmlns:" + prefix + "='u'";
    uses += "<" + prefix + ":b/>";
  }
  return root + ">" + uses + "</a>";
}

TEST(XmlText, AttributesAreLimited) {
  EXPECT_EQ(CheckXml(ManyPrefixes(kMaxXmlAttributes)).attributes, kMaxXmlAttributes);
  try {
    CheckXml(ManyPrefixes(kMaxXmlAttributes + 1));
    FAIL();
  } catch (const XmlFault& fault) {
    EXPECT_TRUE(fault.isUnsafe);
    EXPECT_EQ(fault.what, "has an element of more than 10000 attributes at byte 1");
  }
}

TEST(Package, ACutFileIsNeverOpened) {
  std::unique_ptr<Package> drawing = OpenDrawing();
  EditPage(*drawing);
  for (const std::string& zip : {MakeZip(DrawingItems()), SavedBytes(*drawing)})
    for (size_t length = 0; length < zip.size(); ++length)
      ASSERT_NE(Refusal(zip.substr(0, length)), "opened") << "cut to " << length << " of " << zip.size() << " bytes";
}

TEST(Package, AFlippedByteIsFoundOrHarmless) {
  std::unique_ptr<Package> drawing = OpenDrawing();
  EditPage(*drawing);
  for (const std::string& zip : {MakeZip(DrawingItems()), SavedBytes(*drawing)}) {
    const auto contents = Contents(*Open(zip));
    for (size_t at = 0; at < zip.size(); ++at)
      for (const char mask : {'\x01', '\x20', '\xFF'}) {
        std::string flipped = zip;
        flipped[at] ^= mask;
        try {
          ASSERT_EQ(Contents(*Open(flipped)), contents) << "byte " << at;
        } catch (const FileError& error) {
          ASSERT_TRUE(std::string_view(error.what()).starts_with("test.vsdx ")) << error.what();
        }
      }
  }
}

// ------------------------------------------------------------------------------------------------------- reading parts

TEST(Package, KnowsItsParts) {
  const std::unique_ptr<Package> package = OpenDrawing();
  std::vector<std::string> names;
  for (const ZipItem& item : DrawingItems()) {
    names.push_back(item.name);
    EXPECT_EQ(package->Bytes(item.name), item.content);
  }
  EXPECT_EQ(package->PartNames(), names);
  EXPECT_EQ(package->MainPart(), "visio/document.xml");
  EXPECT_TRUE(package->Has("Visio/DOCUMENT.xml")) << "names are equal without regard to case";
  EXPECT_FALSE(package->Has("visio/none.xml"));
  EXPECT_EQ(&package->Xml(kPagePart), &package->Xml(kPagePart));
  EXPECT_FALSE(package->changed());
  EXPECT_THROW(package->Bytes("visio/none.xml"), FileError);
  EXPECT_THROW(package->Xml("visio/solutions/solution1.xml"), FileError) << "payload is checked only when it is asked for";
}

TEST(Package, OpensWithoutContentTypes) {
  std::vector<ZipItem> items = DrawingItems();
  items.erase(items.begin());
  items.push_back({"visio/folder/", ""});
  const std::unique_ptr<Package> package = Open(MakeZip(items));
  EXPECT_EQ(package->PartNames().size(), items.size() - 1) << "a folder is no part";
  package->SetPresent(package->Add("visio/pages/page2.xml", "<PageContents/>"), true);
  EXPECT_FALSE(package->Has("[Content_Types].xml"));
  EXPECT_TRUE(Open(SavedBytes(*package))->Has("visio/pages/page2.xml"));
}

TEST(Package, ResolvesAndWritesTargets) {
  const struct {
    std::string_view from, to, target;
  } cases[] = {
      {"", "visio/document.xml", "visio/document.xml"},
      {"visio/document.xml", "visio/pages/pages.xml", "pages/pages.xml"},
      {"visio/pages/page1.xml", "visio/masters/master1.xml", "../masters/master1.xml"},
      {"visio/pages/page1.xml", "visio/pages/page4.xml", "page4.xml"},
      {"visio/pages/page1.xml", "docProps/core.xml", "../../docProps/core.xml"},
      {"visio/pages/page1.xml", "visio/pages2/x.xml", "../pages2/x.xml"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(RelativeTarget(c.from, c.to), c.target);
    EXPECT_EQ(ResolveTarget(c.from, c.target), c.to);
    EXPECT_EQ(ResolveTarget(c.from, "/" + std::string(c.to)), c.to);
  }
  EXPECT_EQ(ResolveTarget("visio/document.xml", "../../x"), "../../x") << "out of the package";
}

TEST(Package, ListsRelationships) {
  const std::unique_ptr<Package> package = Open(MakeZip(
      DrawingWith("visio/pages/_rels/pages.xml.rels",
                  "<x:Relationships xmlns:x='u'><x:Relationship Id='b' Type='t/page' Target='page1.xml'/><!-- -->"
                  "<x:Relationship Id='a' Type='t/link' Target='http://there/' TargetMode='External'/></x:Relationships>")));
  const Relationships relationships = package->RelationshipsOf("visio/pages/pages.xml");
  ASSERT_EQ(relationships.size(), 2u);
  EXPECT_EQ(relationships[0].id, "b");
  EXPECT_EQ(relationships[0].target, kPagePart);
  EXPECT_FALSE(relationships[0].external);
  EXPECT_EQ(relationships[1].target, "http://there/");
  EXPECT_TRUE(relationships[1].external);
  EXPECT_EQ(relationships.Find("a"), &relationships[1]);
  EXPECT_EQ(relationships.Find("A"), nullptr);
  EXPECT_TRUE(package->RelationshipsOf("visio/media/image1.bin").empty());
}

// ------------------------------------------------------------------------------------------------------------ XML text

std::string Rewritten(std::string_view xml) { return XmlPart("f", "p", ByteArray::CopyOf(xml)).Serialise(); }

TEST(XmlPart, GivesBackWhatItRead) {
  const std::string_view cases[] = {
      "<?xml version='1.0' encoding='utf-8' ?>\r\n<a b='c'/>",
      "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n<a b=\"c\"/>\r\n",
      "<!-- before --><?pi x?>\n<a/><!-- after -->\n<?pi y?>\n",
      "<a F='THEMEGUARD(THEMEVAL(\"Dark\"))' G='&apos;&amp;&lt;&gt;'/>",
      "<a F=\"'&quot;\"/>",
      "<a>first line\r\nsecond\nthird\rfourth</a>",
      "<a> <b>  </b>\t\r\n</a>",
      "<a>&amp;&lt;&gt;\"'</a>",
      "<a b='&#10;&#13;&#9;'/>",
      "<a>&#13;</a>",
      "<a><![CDATA[<&>]]><!-- <&> --><?p <&>?><?q?></a>",
      "<x:a xmlns:x='u' x:b=''/>",
      "<a>\xD0\x96\xE2\x82\xAC\xF0\x9F\x98\x80</a>",
  };
  for (const std::string_view xml : cases) EXPECT_EQ(Rewritten(xml), xml);
}

TEST(XmlPart, ChangesOnlyWhatMeansNothing) {
  const struct {
    std::string_view xml, want, why;
  } cases[] = {
      {"<a  b = '1' />", "<a b='1'/>", "white space within tags"},
      {"<a></a >", "<a/>", "an empty element"},
      {"<a b='1' c=\"'\"/>", "<a b='1' c='&apos;'/>", "mixed quotes"},
      {"<a b='\n'/>", "<a b=' '/>", "a raw line break in an attribute is a space"},
      {"<a>&#x41;&quot;</a>", "<a>A\"</a>", "references to plain characters"},
      {"<a>x\r\ny&#13;</a>", "<a>x\ny&#13;</a>", "a carriage return that is text is told from those of line breaks"},
  };
  for (const auto& c : cases) EXPECT_EQ(Rewritten(c.xml), c.want) << c.why;
}

TEST(XmlPart, LeavesOutWhatXmlCannotHold) {
  XmlPart part("f", "p", ByteArray::CopyOf("<a b=''/>"));
  part.root().attribute("b").set_value("x\x01y\x1Fz");
  part.root().text().set("\x0B!");
  EXPECT_EQ(part.Serialise(), "<a b='xyz'>!</a>");
}

TEST(XmlPart, KnowsWhetherItIsAsSaved) {
  XmlPart part("f", "p", ByteArray::CopyOf("<a/>"));
  EXPECT_FALSE(part.changed());
  part.SetState(1);
  EXPECT_TRUE(part.changed());
  part.MarkSaved();
  EXPECT_FALSE(part.changed());
  part.SetState(0);
  EXPECT_TRUE(part.changed()) << "what was saved is undone";
  part.SetState(1);
  EXPECT_FALSE(part.changed()) << "and redone";
  part.SetState(2);
  EXPECT_TRUE(part.changed()) << "another edit in place of the saved one";
}

// ------------------------------------------------------------------------------------------------------------- editing

TEST(Package, PartsComeAndGo) {
  const std::unique_ptr<Package> package = OpenDrawing();
  const auto before = Contents(*package);
  const std::string page = package->FreshName("visio/pages/page", ".xml");
  EXPECT_EQ(page, "visio/pages/page2.xml");
  XmlPart& added = package->Add(page, "<PageContents/>");
  EXPECT_FALSE(package->Has(page));
  EXPECT_FALSE(package->changed());
  package->SetPresent(added, true);
  EXPECT_TRUE(package->Has(page));
  EXPECT_TRUE(package->changed());
  EXPECT_THROW(package->Add(page, "<PageContents/>"), FileError) << "two parts of one name";
  package->SetPresent(added, false);
  EXPECT_EQ(Contents(*package), before);
  EXPECT_FALSE(package->changed());
  EXPECT_EQ(package->FreshName("visio/pages/page", ".xml"), "visio/pages/page3.xml") << "it may come back";
  package->Forget(added);
  EXPECT_EQ(package->FreshName("visio/pages/page", ".xml"), "visio/pages/page2.xml");
}

TEST(Package, APartTakenOutComesBackToItsPlace) {
  const std::unique_ptr<Package> package = OpenDrawing();
  const auto before = Contents(*package);
  XmlPart& pages = package->Xml("visio/pages/pages.xml");
  package->SetPresent(pages, false);
  EXPECT_FALSE(package->Has("visio/pages/pages.xml"));
  EXPECT_FALSE(Open(SavedBytes(*package))->Has("visio/pages/pages.xml"));
  EXPECT_FALSE(package->changed());
  package->SetPresent(pages, true);
  EXPECT_EQ(Contents(*package), before) << "after a save too";
  EXPECT_TRUE(package->changed());
  EXPECT_EQ(Contents(*Open(SavedBytes(*package))), before);
}

TEST(Package, BuildsADrawingFromNothing) {
  const std::vector<ZipItem> items = DrawingItems();
  std::vector<Package::NewPart> parts;
  for (const ZipItem& item : items) parts.push_back({item.name, item.content});
  const std::unique_ptr<Package> package = Package::Create("new.vsdx", parts);
  EXPECT_TRUE(package->changed());
  EXPECT_EQ(package->MainPart(), "visio/document.xml");
  const auto contents = Contents(*package);
  const std::unique_ptr<Package> opened = Open(SavedBytes(*package));
  EXPECT_FALSE(package->changed());
  EXPECT_EQ(Contents(*opened), contents);
  EXPECT_THROW(Package::Create("new.vsdx", {})->MainPart(), FileError);
}

// -------------------------------------------------------------------------------------------------------------- saving

TEST(Package, UnchangedSavesAreTheSameBytes) {
  const std::string zip = MakeZip(DrawingItems(), "a comment");
  EXPECT_EQ(SavedBytes(*Open(zip)), zip);
}

TEST(Package, AnEditLeavesAllElseAsItWas) {
  const std::string zip = MakeZip(DrawingItems());
  const std::unique_ptr<Package> package = Open(zip);
  EditPage(*package);
  const std::string saved = SavedBytes(*package);
  const std::vector<ZipEntry> before = ReadZipDirectory(zip, "").entries, after = ReadZipDirectory(saved, "").entries;
  ASSERT_EQ(before.size(), after.size());
  for (size_t i = 0; i < before.size(); ++i) {
    EXPECT_EQ(before[i].name, after[i].name) << "in their order";
    EXPECT_EQ(after[i].method, after[i].name == kPagePart ? 8 : 0) << "others are not even packed anew";
  }
  auto contents = Contents(*Open(zip));
  std::string& page = contents[std::string(kPagePart)];
  page.replace(page.find("ID='1'"), 6, "ID='99'");
  EXPECT_EQ(Contents(*Open(saved)), contents);
}

TEST(Package, SavingIsDeterministicAndRepeatable) {
  const std::unique_ptr<Package> first = OpenDrawing(), second = OpenDrawing();
  EditPage(*first);
  EditPage(*second);
  const std::string saved = SavedBytes(*first);
  EXPECT_EQ(saved, SavedBytes(*second));
  EXPECT_FALSE(first->changed());
  EXPECT_EQ(SavedBytes(*first), saved);
  EditPage(*first, "5");
  EXPECT_TRUE(first->changed());
  EXPECT_THAT(Open(SavedBytes(*first))->Bytes(kPagePart), testing::HasSubstr("ID='5'"));
}

TEST(Package, RefusesToSaveTextThatCouldNotBeRead) {
  const std::unique_ptr<Package> package = OpenDrawing();
  EditPage(*package, "\xFF");
  const TempFolder folder;
  try {
    package->Save(folder / "x.vsdx");
    FAIL();
  } catch (const FileError& error) {
    EXPECT_STREQ(error.what(),
                 "test.vsdx could not be saved: part visio/pages/page1.xml has text that is not UTF-8 at byte 233; undo the last "
                 "edit.");
  }
  EXPECT_TRUE(folder.Names().empty());
}

TEST(Package, OpensAndSavesTheSameFile) {
  const TempFolder folder;
  const fs::path path = folder / "drawing.vsdx";
  WriteFile(path, MakeZip(DrawingItems()));
  const std::unique_ptr<Package> package = Package::OpenFile(path);
  EditPage(*package);
  package->Save(path);
  EXPECT_THAT(Package::OpenFile(path)->Bytes(kPagePart), testing::HasSubstr("ID='99'"));
  EXPECT_THAT(folder.Names(), ElementsAre("drawing.vsdx"));
}

TEST(Package, DoesNotSaveOverTheNewerWorkOfOthers) {
  const TempFolder folder;
  const fs::path path = folder / "drawing.vsdx", other = folder / "other.vsdx";
  WriteFile(path, MakeZip(DrawingItems()));
  const std::unique_ptr<Package> package = Package::OpenFile(path);
  EditPage(*package);

  const std::string newer = MakeZip(DrawingAnd({"docProps/newer.bin", "x"}));
  WriteFile(path, newer);
  try {
    package->Save(path);
    FAIL();
  } catch (const FileError& error) {
    EXPECT_EQ(error.what(), path.string() +
                                " has been changed by another program since it was opened; save the drawing in another place, or "
                                "with --force (in a script \"overwrite\": true) over those changes.");
  }
  EXPECT_EQ(ReadFile(path), newer);
  EXPECT_TRUE(package->changed());

  package->Save(path, Overwrite::Allow);
  EXPECT_THAT(Open(ReadFile(path))->Bytes(kPagePart), testing::HasSubstr("ID='99'"));
  WriteFile(path, newer);
  EXPECT_THROW(package->Save(path), FileError) << "with nothing changed here, and after a save, too";
  package->Save(other);
  EXPECT_THAT(folder.Names(), ElementsAre("drawing.vsdx", "other.vsdx"));
  EXPECT_EQ(ReadFile(path), newer);
  WriteFile(other, newer);
  EXPECT_THROW(package->Save(other), FileError) << "it is the file the drawing comes from now";
  package->Save(path);
}

TEST(Package, TellsNewerWorkByTheBytesAlone) {
  const TempFolder folder;
  const fs::path path = folder / "drawing.vsdx", moved = folder / "moved.vsdx";
  const std::string zip = MakeZip(DrawingItems(), "first"), sameLength = MakeZip(DrawingItems(), "other");
  WriteFile(path, zip);
  const auto time = fs::last_write_time(path);
  const std::unique_ptr<Package> package = Package::OpenFile(path);
  WriteFile(moved, zip);
  fs::rename(moved, path);
  fs::last_write_time(path, time + std::chrono::hours(1));
  package->Save(path);
  WriteFile(path, sameLength);
  fs::last_write_time(path, time);
  EXPECT_THROW(package->Save(folder / "." / "drawing.vsdx"), FileError) << "by whatever name the file is called";
  fs::remove(path);
  package->Save(path);
  EXPECT_EQ(ReadFile(path), zip) << "a file that has gone is made again";
}

TEST(Package, SaysWhyAFileCannotBeRead) {
  const TempFolder folder;
  EXPECT_THROW(Package::OpenFile(folder / "none.vsdx"), FileError);
  try {
    Package::OpenFile(folder / ".");
    FAIL();
  } catch (const FileError& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr("cannot be read (it is a folder); check its name and your rights to it."));
  }
}

// The machine's files, with the k-th operation failing, and all after it too when `sticky`. A failing write writes half.
class FaultyFileSystem : public FileSystem {
 public:
  FaultyFileSystem(int failing, bool sticky) : left_(failing), sticky_(sticky) {}
  bool Failed() const { return left_ <= 0; }

  fs::path Resolve(const fs::path& target) override {
    Step();
    return MachineFileSystem().Resolve(target);
  }
  std::unique_ptr<Temporary> CreateTemporary(const fs::path& name, const fs::path& target) override {
    Step();
    return std::make_unique<FaultyTemporary>(*this, MachineFileSystem().CreateTemporary(name, target));
  }
  void SyncDirectory(const fs::path& directory) override {
    Step();
    MachineFileSystem().SyncDirectory(directory);
  }

 private:
  class FaultyTemporary : public Temporary {
   public:
    FaultyTemporary(FaultyFileSystem& files, std::unique_ptr<Temporary> file) : files_(files), file_(std::move(file)) {}
    void Write(std::string_view bytes) override {
      file_->Write(bytes.substr(0, bytes.size() / 2));
      files_.Step();
      file_->Write(bytes.substr(bytes.size() / 2));
    }
    void Sync() override {
      files_.Step();
      file_->Sync();
    }
    void RenameOver(const fs::path& target) override {
      files_.Step();
      file_->RenameOver(target);
    }

   private:
    FaultyFileSystem& files_;
    std::unique_ptr<Temporary> file_;
  };

  void Step() {
    --left_;
    if (left_ == 0 || (sticky_ && left_ < 0)) throw std::system_error(std::make_error_code(std::errc::no_space_on_device));
  }

  int left_;
  bool sticky_;
};

TEST(Package, AnyFailingFileOperationLeavesTheOldFileOrTheNew) {
  const std::string old = MakeZip(DrawingItems());
  const std::unique_ptr<Package> reference = Open(old);
  EditPage(*reference);
  const std::string edited = SavedBytes(*reference);
  for (const bool sticky : {false, true}) {
    int failures = 0;
    for (int k = 1;; ++k) {
      const TempFolder folder;
      const fs::path path = folder / "drawing.vsdx";
      WriteFile(path, old);
      const std::unique_ptr<Package> package = Package::OpenFile(path);
      EditPage(*package);
      FaultyFileSystem files(k, sticky);
      std::string sentence;
      try {
        package->Save(path, Overwrite::Refuse, files);
      } catch (const FileError& error) {
        sentence = error.what();
      }
      if (!files.Failed()) {
        EXPECT_EQ(sentence, "");
        EXPECT_EQ(ReadFile(path), edited);
        break;
      }
      ++failures;
      const std::string reason = "(" + std::make_error_code(std::errc::no_space_on_device).message() + ")";
      const bool saved =
          sentence == path.string() + " was saved, but its folder could not be synced " + reason + "; save it again.";
      if (!saved) {
        EXPECT_EQ(sentence,
                  path.string() + " could not be saved " + reason + " and is as it was; save the drawing in another place.");
      }
      EXPECT_EQ(ReadFile(path), saved ? edited : old) << "operation " << k;
      EXPECT_EQ(package->changed(), !saved);
      EXPECT_THAT(folder.Names(), ElementsAre("drawing.vsdx")) << "nothing is left behind";
      package->Save(path);
      EXPECT_EQ(ReadFile(path), edited) << "the next save works";
    }
    EXPECT_GE(failures, 7) << "look up, create, write, sync, rename, look up and sync the folder";
  }
}

// ------------------------------------------------------------------------------------------------------------- samples

std::vector<fs::path> SampleFiles(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(folder))
    if (LowerAscii(entry.path().extension().string()).starts_with(".vs")) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

// Whether a part was written by Visio: its own declaration, single quotes.
bool LooksWrittenByVisio(std::string_view text) { return text.starts_with("<?xml version='1.0' encoding='utf-8' ?>\r\n<"); }

TEST(Package, LosesNothingOfTheSamples) {
  const char* samples = std::getenv("VARDO_SAMPLES");
  if (!samples) GTEST_SKIP() << "VARDO_SAMPLES names no folder of drawings";
  for (const fs::path& path : SampleFiles(samples)) {
    SCOPED_TRACE(path.filename());
    const std::unique_ptr<Package> package = Package::OpenFile(path);
    const auto before = Contents(*package);
    const std::string original = ReadFile(path);
    EXPECT_EQ(SavedBytes(*package), original);
    // Written anew from its tree, the document differs at most in what means nothing; every other part is byte for byte the same.
    const std::string main = package->MainPart();
    package->Xml(main).SetState(1);
    auto after = Contents(*Open(SavedBytes(*package)));
    if (LooksWrittenByVisio(before.at(main))) {
      EXPECT_EQ(after.at(main), before.at(main));
    }
    after[main] = before.at(main);
    EXPECT_EQ(after, before);
  }
}

TEST(Package, WritesEveryPartOfVisioAsVisioDid) {
  const char* samples = std::getenv("VARDO_SAMPLES");
  if (!samples) GTEST_SKIP() << "VARDO_SAMPLES names no folder of drawings";
  int written = 0;
  for (const fs::path& path : SampleFiles(samples)) {
    const std::unique_ptr<Package> package = Package::OpenFile(path);
    for (const auto& [name, bytes] : Contents(*package)) {
      if (!LooksWrittenByVisio(bytes) || name.starts_with("visio/solutions/")) continue;
      EXPECT_TRUE(package->Xml(name).Serialise() == bytes) << path.filename() << ": " << name;
      ++written;
    }
  }
  EXPECT_GT(written, 0);
}

TEST(Package, RefusesMalformedSamplesOrLosesNothing) {
  const char* samples = std::getenv("VARDO_SAMPLES");
  if (!samples) GTEST_SKIP() << "VARDO_SAMPLES names no folder of drawings";
  for (const fs::path& path : SampleFiles(fs::path(samples) / "malformed")) {
    SCOPED_TRACE(path.filename());
    try {
      EXPECT_EQ(SavedBytes(*Package::OpenFile(path)), ReadFile(path));
    } catch (const FileError& error) {
      EXPECT_TRUE(std::string_view(error.what()).starts_with(path.string() + " is ")) << error.what();
    }
  }
}

}  // namespace
}  // namespace vardo
