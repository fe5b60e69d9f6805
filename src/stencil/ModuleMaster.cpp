#include "stencil/MasterShapes.h"
#include "stencil/SheetRows.h"
#include "stencil/StyleSheets.h"

#include <locale>
#include <sstream>

namespace vardo {
namespace {

constexpr std::string_view kEditAction =
    "RUNADDON(\"Set t=CreateObject(\"\"VardoBasic.Application\"\"):t.ShowEditor Application,ActiveWindow.Selection.Item(1)\")";
constexpr std::string_view kSubmodelAction =
    "RUNADDON(\"Set t=CreateObject(\"\"VardoBasic.Application\"\"):t.Submodel Application,ActiveWindow.Selection.Item(1)\")";

void WriteModuleTransform(PartWriter& writer, const ModuleLook& look) {
  writer.Cell("PinX", NumberForFile(look.width / 2));
  writer.Cell("PinY", NumberForFile(look.height / 2));
  writer.Cell("Width", NumberForFile(look.width));
  writer.Cell("Height", NumberForFile(look.height));
  writer.Part("LocPinX", 0.5, "Width", look.width);
  writer.Part("LocPinY", 0.5, "Height", look.height);
  writer.Cells({{"Angle", "0"}, {"FlipX", "0"}, {"FlipY", "0"}, {"ResizeMode", "0"}});
}

void WriteTextBlock(PartWriter& writer, const ModuleLook& look) {
  const double across = look.textTo.x - look.textFrom.x, up = look.textTo.y - look.textFrom.y;
  writer.Part("TxtPinX", (look.textFrom.x + look.textTo.x) / 2, "Width", look.width);
  writer.Part("TxtPinY", (look.textFrom.y + look.textTo.y) / 2, "Height", look.height);
  writer.Part("TxtWidth", across, "Width", look.width);
  writer.Part("TxtHeight", up, "Height", look.height);
  writer.Part("TxtLocPinX", 0.5, "TxtWidth", across * look.width);
  writer.Part("TxtLocPinY", 0.5, "TxtHeight", up * look.height);
  writer.Cell("TxtAngle", "0");
}

void WriteColours(PartWriter& writer, const Colours& colours) {
  writer.Cells({{"LineWeight", "0.01388888888888889", "PT"},
                {"LineColor", colours.line},
                {"LinePattern", "1"},
                {"FillForegnd", colours.fill},
                {"FillBkgnd", "#ffffff"},
                {"FillPattern", "1"}});
}

void WriteConnection(PartWriter& writer, size_t index, const Place& place, const ModuleLook& look) {
  writer.Element("Row", {{"T", "Connection"}, {"IX", std::to_string(index)}}, [&] {
    writer.Part("X", place.x, "Width", look.width);
    writer.Part("Y", place.y, "Height", look.height);
    for (const std::string_view unused : {"DirX", "DirY", "Type", "AutoGen"}) writer.Cell(unused, "0", {}, kNoFormula);
    writer.Cell("Prompt", "", {}, kNoFormula);
  });
}

// hiddenWhile: the formula of the Invisible cell; empty for a row that always shows.
void WriteAction(PartWriter& writer, std::string name, std::string_view menu, std::string_view action,
                 std::string_view hiddenWhile = {}) {
  writer.Element("Row", {{"N", std::move(name)}}, [&] {
    writer.Cell("Menu", menu);
    writer.Cell("Action", "0", {}, action);
    for (const std::string_view unused : {"Checked", "Disabled", "ReadOnly"}) writer.Cell(unused, "0", {}, kNoFormula);
    if (hiddenWhile.empty())
      writer.Cell("Invisible", "0", {}, kNoFormula);
    else
      writer.Cell("Invisible", "1", {}, hiddenWhile);
    for (const std::string_view unused : {"BeginGroup", "FlyoutChild"}) writer.Cell(unused, "0", {}, kNoFormula);
    for (const std::string_view unused : {"TagName", "ButtonFace", "SortKey"}) writer.Cell(unused, "", {}, kNoFormula);
  });
}

void WriteUser(PartWriter& writer, std::string name, std::string_view value, std::string_view unit) {
  writer.Element("Row", {{"N", std::move(name)}}, [&] {
    writer.Cell("Value", value, unit);
    writer.Cell("Prompt", "");
  });
}

// The steps of a path as rows of a Geometry section.
class PathRows {
 public:
  PathRows(PartWriter& writer, std::string_view path) : writer_(writer), steps_(std::string(path)) {
    steps_.imbue(std::locale::classic());
  }

  void Write() {
    for (char letter; steps_ >> letter;) {
      if (letter == 'M') Row("RelMoveTo", start_ = Next());
      if (letter == 'L') Row("RelLineTo", Next());
      if (letter == 'Z') Row("RelLineTo", start_);
      if (letter == 'C') Curve();
    }
  }

 private:
  Place Next() {
    Place place{};
    steps_ >> place.x >> place.y;
    return place;
  }

  void Row(std::string_view type, Place to, std::span<const FileCell> controls = {}) {
    writer_.Element("Row", {{"T", std::string(type)}, {"IX", std::to_string(++row_)}}, [&] {
      writer_.Cell("X", NumberForFile(to.x));
      writer_.Cell("Y", NumberForFile(to.y));
      writer_.Cells(controls);
    });
  }

  void Curve() {
    const Place first = Next(), second = Next();
    const std::string a = NumberForFile(first.x), b = NumberForFile(first.y), c = NumberForFile(second.x),
                      d = NumberForFile(second.y);
    const FileCell controls[] = {{"A", a}, {"B", b}, {"C", c}, {"D", d}};
    Row("RelCubBezTo", Next(), controls);
  }

  PartWriter& writer_;
  std::istringstream steps_;
  Place start_{};
  int row_ = 0;
};

void WritePath(PartWriter& writer, int index, std::string_view path, bool filled) {
  WriteGeometry(writer, index, filled, [&] { PathRows(writer, path).Write(); });
}

}  // namespace

void WriteModule(PartWriter& writer, const ModuleSchema& module) {
  const ModuleLook& look = module.look;
  const bool hasSubmodel = module.kind == "Process";
  WriteModuleTransform(writer, look);
  writer.Cell("EventDblClick", "0", {}, kEditAction);
  WriteTextBlock(writer, look);
  writer.Cell("ObjType", "1");
  WriteColours(writer, look.colours);
  writer.Section("Property", [&] {
    for (const ModuleProperty& property : module.properties) WritePropertyRow(writer, property);
  });
  if (!look.connections.empty())
    writer.Section("Connection", [&] {
      for (size_t i = 0; i < look.connections.size(); ++i) WriteConnection(writer, i, look.connections[i], look);
    });
  writer.Section("Actions", [&] {
    WriteAction(writer, "Edit", "&Properties...", kEditAction);
    if (hasSubmodel) WriteAction(writer, "Submodel", "Edit &Submodel", kSubmodelAction, "User.menuid");
  });
  writer.Section("User", [&] {
    WriteUser(writer, "ClassName", module.kind, kText);
    if (hasSubmodel) WriteUser(writer, "menuid", "1", {});
  });
  WriteCharacter(writer, kModuleTextSize);
  WritePath(writer, 0, look.outline, true);
  if (!look.details.empty()) WritePath(writer, 1, look.details, false);
  WriteShapeText(writer, module.Name().defaultValue);
}

}  // namespace vardo
