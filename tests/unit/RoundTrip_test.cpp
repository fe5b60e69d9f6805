// Foreign drawings keep all they hold: small ones of our own, and every file in the folder that VARDO_SAMPLES names.
#include "TestDrawings.h"
#include "base/FileError.h"
#include "memoryhost/DrawingHost.h"
#include "stencil/StencilPackage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

namespace vardo {
namespace {

namespace fs = std::filesystem;
using test::TempFolder;
using testing::EndsWith;
using testing::HasSubstr;

using Parts = std::map<std::string, std::string>;

Parts PartsOf(Package& package) {
  Parts parts;
  for (const std::string& name : package.PartNames()) parts[name] = package.Bytes(name);
  return parts;
}
Parts PartsOf(const fs::path& file) { return PartsOf(*Package::OpenFile(file)); }

std::set<std::string> Differing(const Parts& a, const Parts& b) {
  std::set<std::string> names;
  for (const auto& [name, bytes] : a)
    if (!b.contains(name) || b.at(name) != bytes) names.insert(name);
  for (const auto& [name, bytes] : b)
    if (!a.contains(name)) names.insert(name);
  return names;
}

// What an XML part says, however its writer spells it: other writers' spelling is lost once a part was saved anew.
Parts Meanings(Parts parts) {
  for (auto& [name, bytes] : parts)
    if (name.ends_with(".xml") && name.starts_with("visio/pages/")) {
      XmlPart part("", name, ByteArray::CopyOf(bytes));
      bytes = part.Serialise(part.root());
    }
  return parts;
}

// Of two shapes with one number the second has got one of its own by being opened.
Parts MeaningsAsOpened(const Parts& original, Drawing& drawing) {
  Parts parts = Meanings(original);
  for (int i = 1; i <= drawing.PageCount(); ++i)
    if (XmlPart* contents = drawing.PageAt(i).contents()) parts[contents->name()] = contents->Serialise(contents->root());
  return parts;
}

// A shape to edit, found the same way before and after.
struct Place {
  int page = -1, shape = -1;
};
Place FirstShape(Drawing& drawing) {
  for (int i = 1; i <= drawing.PageCount(); ++i)
    if (drawing.PageAt(i).ShapeCount() > 0) return {drawing.PageAt(i).id(), drawing.PageAt(i).ShapeAt(1).id()};
  return {};
}

constexpr std::string_view kTyped = "typed & \"quoted\" <text>";

void ExpectLosslessRoundTrip(const fs::path& file) {
  SCOPED_TRACE(file.filename().string());
  const TempFolder folder;
  const fs::path saved = folder / "saved.vsdx";
  const Parts original = PartsOf(file);

  DrawingHost host;
  host.Open(file);
  host.Save(saved);
  EXPECT_EQ(test::ReadFile(saved), test::ReadFile(file)) << "nothing was edited";
  const Parts opened = MeaningsAsOpened(original, host.drawing());

  const Place place = FirstShape(host.drawing());
  if (place.shape < 0) return;
  const std::string part = host.drawing().FindPage(place.page)->partName();
  const SheetRef shape = host.RefTo(*host.drawing().FindPage(place.page), place.shape);
  host.TypeText(shape, kTyped, false);
  host.Save(saved);
  EXPECT_EQ(Differing(original, PartsOf(saved)), std::set<std::string>{part}) << "only the page that was edited is written anew";
  {
    const auto again = Drawing::Open(saved);
    EXPECT_EQ(again->FindPage(place.page)->FindShape(place.shape)->Text(), kTyped);
  }
  host.Undo();
  host.Save(saved);
  EXPECT_EQ(Differing(opened, Meanings(PartsOf(saved))), std::set<std::string>{}) << "undone after saving, all is as it was";

  host.SetCell(shape, "Prop.VardoTest", "\"a;b\"");
  host.Save(saved);
  EXPECT_EQ(Differing(original, PartsOf(saved)), std::set<std::string>{part});
  const auto again = Drawing::Open(saved);
  const DrawingShape& edited = *again->FindPage(place.page)->FindShape(place.shape);
  EXPECT_EQ(edited.Formula(edited.Find("Prop.VardoTest").value()), "\"a;b\"");
}

// The whole text of every shape and every cell that has a name, for "nothing is lost".
TEST(RoundTrip, DrawingsOfOurOwn) {
  const struct {
    std::string_view name;
    test::DrawingText text;
  } drawings[] = {
      {"plain", {.shapes = "<Shape ID='1' Type='Shape'><Cell N='PinX' V='5.940000000000001'/><Text>x\n</Text></Shape>"}},
      {"oddities",
       {.shapes =
            "<Shape ID='7' Type='Group' NameU='com.example.Block 1'><Cell N='Width' V='Themed' F='THEMEVAL()' E='#N/A'/><Section "
            "N='Property'>"
            "<Row N='Row_1'><Cell N='Value' U='STR'>a\nb</Cell></Row></Section><Section N='Odd'><Row IX='3' Del='1'/></Section>"
            "<Section N='Geometry' IX='0'><Row T='NURBSTo' IX='2'><Cell N='E' V='1' U='NURBS'/></Row></Section>"
            "<Text><cp IX='0'/>a &amp; b\n</Text><Data1>d</Data1><Shapes><Shape Del='1' MasterShape='8' "
            "ID='4294967295'/></Shapes><unknown x='&apos;'/></Shape>",
        .connects = "<Connect FromSheet='70' ToSheet='71'/>",
        .masters = {{"Process.15", "<Shape ID='5' Type='Shape'/>"}, {"Empty", ""}}}},
      {"stencil", {.shapes = "", .masters = {{"Box", "<Shape ID='5' Type='Shape'/>"}}, .pageHasPart = false}},
  };
  for (const auto& drawing : drawings) {
    const TempFolder folder;
    const fs::path file = folder / (std::string(drawing.name) + ".vsdx");
    test::WriteFile(file, test::ZipOf(drawing.text));
    ExpectLosslessRoundTrip(file);
  }
}

TEST(RoundTrip, NewDrawings) {
  const TempFolder folder;
  DrawingHost host;
  host.New();
  for (const std::string& master : host.MasterNames()) host.Drop(master, host.ActivePage().id(), 1, 1, std::nullopt);
  host.Save(folder / "new.vsdx");
  ExpectLosslessRoundTrip(folder / "new.vsdx");
}

TEST(RoundTrip, TheStencilAndTheTemplate) {
  const TempFolder folder;
  MakeStencil()->Save(folder / "Vardo.vssx");
  MakeTemplate()->Save(folder / "Vardo.vstx");
  ExpectLosslessRoundTrip(folder / "Vardo.vssx");
  ExpectLosslessRoundTrip(folder / "Vardo.vstx");
}

TEST(RoundTrip, BothHeadersOfAnEntryMarkItsNameAlike) {
  std::vector<test::ZipItem> items = test::PackageText({.shapes = "<Shape ID='1' Type='Shape'/>"}).items();
  constexpr std::uint16_t kUtf8Name = 0x0800;
  for (test::ZipItem& item : items) item.flags = kUtf8Name;
  const TempFolder folder;
  test::WriteFile(folder / "marked.vsdx", test::MakeZip(items));
  DrawingHost host;
  host.Open(folder / "marked.vsdx");
  host.TypeText(host.RefTo(host.ActivePage(), 1), "typed", false);
  host.Save(folder / "marked.vsdx");
  const std::string zip = test::ReadFile(folder / "marked.vsdx");
  const auto number = [&](size_t at, size_t bytes) {
    size_t value = 0;
    while (bytes-- > 0) value = value << 8 | static_cast<unsigned char>(zip[at + bytes]);
    return value;
  };
  size_t entries = 0;
  for (size_t at = zip.find("PK\1\2"); at != std::string::npos; at = zip.find("PK\1\2", at + 1), ++entries)
    EXPECT_EQ(number(at + 8, 2), number(number(at + 42, 4) + 6, 2)) << zip.substr(at + 46, number(at + 28, 2));
  EXPECT_EQ(entries, items.size());
}

std::vector<fs::path> Samples(const fs::path& below) {
  std::vector<fs::path> files;
  const char* folder = std::getenv("VARDO_SAMPLES");
  if (folder && fs::is_directory(folder / below))
    for (const auto& entry : fs::directory_iterator(folder / below))
      if (entry.path().extension().string().starts_with(".vs")) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

TEST(RoundTrip, Samples) {
  const std::vector<fs::path> files = Samples("");
  if (files.empty()) GTEST_SKIP() << "VARDO_SAMPLES names no folder of drawings";
  for (const fs::path& file : files) ExpectLosslessRoundTrip(file);
}

TEST(RoundTrip, MalformedSamplesAreRefusedInOneSentenceOrKeptWhole) {
  const std::vector<fs::path> files = Samples("malformed");
  if (files.empty()) GTEST_SKIP() << "VARDO_SAMPLES names no folder of malformed drawings";
  for (const fs::path& file : files) {
    DrawingHost host;
    host.New();
    try {
      host.Open(file);
    } catch (const FileError& error) {
      EXPECT_THAT(error.what(), HasSubstr(file.filename().string()));
      EXPECT_THAT(error.what(), EndsWith("."));
      EXPECT_EQ(host.drawing().MasterCount(), 19) << "the open drawing stays";
      continue;
    }
    ExpectLosslessRoundTrip(file);
  }
}

}  // namespace
}  // namespace vardo
