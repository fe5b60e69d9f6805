#include "stencil/DocumentParts.h"

#include "modules/BookkeepingRows.h"
#include "stencil/PartWriter.h"
#include "stencil/SheetRows.h"
#include "stencil/StyleSheets.h"

namespace vardo {
namespace {

constexpr double kPageWidth = 11, kPageHeight = 8.5;
constexpr std::string_view kStandardSize = "0";
constexpr std::string_view kLandscape = "2";

struct Setting {
  std::string_view name, value;
};
constexpr Setting kSnapAndGlue[] = {
    {"GlueSettings", "9"}, {"SnapSettings", "65847"}, {"SnapExtensions", "34"}, {"SnapAngles", ""}, {"DynamicGridEnabled", "1"}};
constexpr Setting kProtection[] = {
    {"ProtectStyles", "0"}, {"ProtectShapes", "0"}, {"ProtectMasters", "0"}, {"ProtectBkgnds", "0"}};
constexpr Setting kWindowShows[] = {
    {"ShowRulers", "1"}, {"ShowGrid", "1"}, {"ShowPageBreaks", "0"}, {"ShowGuides", "1"}, {"ShowConnectionPoints", "1"}};

void WriteSettings(PartWriter& writer, std::span<const Setting> settings) {
  for (const Setting& setting : settings) {
    if (setting.value.empty())
      writer.Element(setting.name);
    else
      writer.Element(setting.name, {}, setting.value);
  }
}

// A row's initial formula is a number or an empty string in quotation marks.
void WriteBookkeepingRow(PartWriter& writer, const BookkeepingRow& row) {
  const bool isText = row.formula == "\"\"";
  const ModuleProperty property{.field = row.name, .label = "", .defaultValue = isText ? "" : row.formula, .prompt = kHiddenRow};
  WritePropertyRow(writer, property, isText ? kText : "");
}

PartWriter::Attributes View() {
  return {{"ViewScale", "1"}, {"ViewCenterX", NumberForFile(kPageWidth / 2)}, {"ViewCenterY", NumberForFile(kPageHeight / 2)}};
}

constexpr std::string_view kOfficeDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n";

}  // namespace

std::string DocumentPart() {
  return VisioPart("VisioDocument", {}, [](PartWriter& writer) {
    const std::string none = StyleNumber(Style::None), normal = StyleNumber(Style::Normal);
    const PartWriter::Attributes defaults{{"TopPage", "0"},
                                          {"DefaultTextStyle", normal},
                                          {"DefaultLineStyle", normal},
                                          {"DefaultFillStyle", normal},
                                          {"DefaultGuideStyle", normal}};
    writer.Element("DocumentSettings", defaults, [&] {
      WriteSettings(writer, kSnapAndGlue);
      WriteSettings(writer, kProtection);
    });
    writer.Element("FaceNames", {}, [&] {
      writer.Element("FaceName", {{"NameU", "Calibri"},
                                  {"UnicodeRanges", "-469750017 -1073732485 9 0"},
                                  {"CharSets", "536871423 0"},
                                  {"Panose", "2 15 5 2 2 2 4 3 2 4"},
                                  {"Flags", "325"}});
    });
    WriteStyleSheets(writer);
    const PartWriter::Attributes sheet{{"NameU", "TheDoc"}, {"IsCustomNameU", "1"}, {"Name", "TheDoc"}, {"IsCustomName", "1"},
                                       {"LineStyle", none}, {"FillStyle", none},    {"TextStyle", none}};
    writer.Element("DocumentSheet", sheet, [&] {
      writer.Cells({{"OutputFormat", "0"},
                    {"LockPreview", "0"},
                    {"AddMarkup", "0"},
                    {"ViewMarkup", "0"},
                    {"DocLockReplace", "0", "BOOL"},
                    {"NoCoauth", "0", "BOOL"},
                    {"DocLockDuplicatePage", "0", "BOOL"},
                    {"PreviewQuality", "0"},
                    {"PreviewScope", "0"},
                    {"DocLangID", kLanguage}});
    });
  });
}

std::string WindowsPart() {
  return VisioPart("Windows", {{"ClientWidth", "1280"}, {"ClientHeight", "800"}}, [](PartWriter& writer) {
    PartWriter::Attributes window{
        {"ID", "0"},        {"WindowType", "Drawing"}, {"WindowState", "1073741824"}, {"WindowLeft", "0"},
        {"WindowTop", "0"}, {"WindowWidth", "1280"},   {"WindowHeight", "800"},       {"ContainerType", "Page"},
        {"Page", "0"}};
    for (auto& attribute : View()) window.push_back(std::move(attribute));
    writer.Element("Window", window, [&] {
      WriteSettings(writer, kWindowShows);
      WriteSettings(writer, kSnapAndGlue);
      writer.Element("TabSplitterPos", {}, "0.5");
    });
  });
}

std::string PageListPart() {
  return VisioPart("Pages", {}, [](PartWriter& writer) {
    const std::string name(kFirstPageName), none = StyleNumber(Style::None);
    PartWriter::Attributes page{{"ID", "0"}, {"NameU", name}, {"Name", name}};
    for (auto& attribute : View()) page.push_back(std::move(attribute));
    writer.Element("Page", page, [&] {
      writer.Element("PageSheet", {{"LineStyle", none}, {"FillStyle", none}, {"TextStyle", none}}, [&] {
        WritePageCells(writer, kPageWidth, kPageHeight, kStandardSize);
        writer.Cells({{"PageShapeSplit", "1"}, {"PrintPageOrientation", kLandscape}});
        writer.Section("Property", [&] {
          for (const BookkeepingRow& row : kBookkeepingRows) WriteBookkeepingRow(writer, row);
        });
      });
      writer.Element("Rel", {{"r:id", "rId1"}});
    });
  });
}

std::string EmptyPagePart() { return VisioPart("PageContents", {}, nullptr); }

std::string CorePropertiesPart() {
  std::string part(kOfficeDeclaration);
  part +=
      "<cp:coreProperties xmlns:cp=\"http://schemas.openxmlformats.org/package/2006/metadata/core-properties\" "
      "xmlns:dc=\"http://purl.org/dc/elements/1.1/\" xmlns:dcterms=\"http://purl.org/dc/terms/\" "
      "xmlns:dcmitype=\"http://purl.org/dc/dcmitype/\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">"
      "<dc:title></dc:title><dc:creator></dc:creator><dc:language>";
  return part + std::string(kLanguage) + "</dc:language></cp:coreProperties>";
}

std::string ApplicationPropertiesPart(const std::vector<std::string>& pages, const std::vector<std::string>& masters) {
  std::string counts, titles;
  const auto add = [&](const char* heading, const std::vector<std::string>& names) {
    counts += std::string("<vt:variant><vt:lpstr>") + heading + "</vt:lpstr></vt:variant><vt:variant><vt:i4>" +
              std::to_string(names.size()) + "</vt:i4></vt:variant>";
    for (const std::string& name : names) titles += "<vt:lpstr>" + name + "</vt:lpstr>";
  };
  add("Pages", pages);
  add("Masters", masters);
  std::string part(kOfficeDeclaration);
  part +=
      "<Properties xmlns=\"http://schemas.openxmlformats.org/officeDocument/2006/extended-properties\" "
      "xmlns:vt=\"http://schemas.openxmlformats.org/officeDocument/2006/docPropsVTypes\"><Application>Vardo</Application>"
      "<HeadingPairs><vt:vector size=\"4\" baseType=\"variant\">";
  return part + counts + "</vt:vector></HeadingPairs><TitlesOfParts><vt:vector size=\"" +
         std::to_string(pages.size() + masters.size()) + "\" baseType=\"lpstr\">" + titles +
         "</vt:vector></TitlesOfParts></Properties>";
}

}  // namespace vardo
