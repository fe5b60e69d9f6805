#include "stencil/MasterParts.h"

#include "modules/ModuleKinds.h"
#include "stencil/MasterIcon.h"
#include "stencil/MasterShapes.h"
#include "stencil/SheetRows.h"
#include "stencil/StyleSheets.h"

#include <functional>

namespace vardo {
namespace {

constexpr std::string_view kShapeMaster = "2";
constexpr std::string_view kConnectorMaster = "541";
constexpr std::string_view kCustomSize = "4";

PartWriter::Attributes TopShape(Style style) {
  const std::string number = StyleNumber(style);
  return {{"ID", "5"},           {"OriginalID", "0"},   {"Type", "Shape"},
          {"LineStyle", number}, {"FillStyle", number}, {"TextStyle", number}};
}

std::string ContentsOf(Style style, const std::function<void(PartWriter&)>& shape) {
  return VisioPart("MasterContents", {}, [&](PartWriter& writer) {
    writer.Element("Shapes", {}, [&] { writer.Element("Shape", TopShape(style), [&] { shape(writer); }); });
  });
}

// Numbers that stay the same for ever, so that a drawing made years ago knows its masters again.
std::string Guid(std::string_view stem, int number) {
  const std::string digits = std::to_string(number);
  return "{" + std::string(stem) + std::string(12 - digits.size(), '0') + digits + "}";
}
constexpr std::string_view kUniqueIdStem = "6E1B4A52-93D7-4C08-8F35-";
constexpr std::string_view kBaseIdStem = "B7C20F9D-5A16-4E73-A2C4-";

void WriteMasterEntry(PartWriter& writer, const MasterPart& master, int number) {
  const std::string name(master.name);
  const PartWriter::Attributes attributes{{"ID", std::to_string(number)},
                                          {"NameU", name},
                                          {"IsCustomNameU", "1"},
                                          {"Name", name},
                                          {"IsCustomName", "1"},
                                          {"Prompt", std::string(master.prompt)},
                                          {"IconSize", "1"},
                                          {"AlignName", "2"},
                                          {"MatchByName", "1"},
                                          {"IconUpdate", "0"},  // the host keeps the icon that is here

                                          {"UniqueID", Guid(kUniqueIdStem, number)},
                                          {"BaseID", Guid(kBaseIdStem, number)},
                                          {"PatternFlags", "0"},
                                          {"Hidden", "0"},
                                          {"MasterType", std::string(master.type)}};
  writer.Element("Master", attributes, [&] {
    const std::string none = StyleNumber(Style::None);
    writer.Element("PageSheet", {{"LineStyle", none}, {"FillStyle", none}, {"TextStyle", none}}, [&] {
      WritePageCells(writer, master.width, master.height, kCustomSize);
      writer.Cell("ShapeKeywords", master.keywords);
    });
    writer.Element("Icon", {}, master.icon);
    writer.Element("Rel", {{"r:id", "rId" + std::to_string(number)}});
  });
}

std::vector<MasterPart> WriteMasterParts() {
  std::vector<MasterPart> parts;
  for (const ModuleSchema& module : kModules)
    parts.push_back({.name = module.kind,
                     .prompt = module.prompt,
                     .keywords = module.keywords,
                     .width = module.look.width,
                     .height = module.look.height,
                     .type = kShapeMaster,
                     .icon = IconOf(module.look),
                     .contents = ContentsOf(Style::Normal, [&](PartWriter& writer) { WriteModule(writer, module); })});
  for (const Connector& connector : Connectors())
    parts.push_back({.name = connector.name,
                     .prompt = connector.prompt,
                     .keywords = connector.keywords,
                     .width = kConnectorWidth,
                     .height = kConnectorHeight,
                     .type = kConnectorMaster,
                     .icon = ConnectorIcon(connector.colour),
                     .contents = ContentsOf(Style::Connector, [&](PartWriter& writer) { WriteConnector(writer, connector); })});
  return parts;
}

}  // namespace

const std::vector<MasterPart>& MasterParts() {
  static const std::vector<MasterPart> parts = WriteMasterParts();
  return parts;
}

std::string MasterListPart() {
  return VisioPart("Masters", {}, [](PartWriter& writer) {
    int number = 0;
    for (const MasterPart& master : MasterParts()) WriteMasterEntry(writer, master, ++number);
  });
}

}  // namespace vardo
