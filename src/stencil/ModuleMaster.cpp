#include "modules/ModuleProperties.h"
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

void WriteModuleTransform(PartWriter& writer, const ModuleGeometry& module) {
  writer.Cell("PinX", NumberForFile(module.width / 2));
  writer.Cell("PinY", NumberForFile(module.height / 2));
  writer.Cell("Width", NumberForFile(module.width));
  writer.Cell("Height", NumberForFile(module.height));
  writer.Part("LocPinX", 0.5, "Width", module.width);
  writer.Part("LocPinY", 0.5, "Height", module.height);
  writer.Cells({{"Angle", "0"}, {"FlipX", "0"}, {"FlipY", "0"}, {"ResizeMode", "0"}});
}

void WriteTextBlock(PartWriter& writer, const ModuleGeometry& module) {
  const double across = module.textTo.x - module.textFrom.x, up = module.textTo.y - module.textFrom.y;
  writer.Part("TxtPinX", (module.textFrom.x + module.textTo.x) / 2, "Width", module.width);
  writer.Part("TxtPinY", (module.textFrom.y + module.textTo.y) / 2, "Height", module.height);
  writer.Part("TxtWidth", across, "Width", module.width);
  writer.Part("TxtHeight", up, "Height", module.height);
  writer.Part("TxtLocPinX", 0.5, "TxtWidth", across * module.width);
  writer.Part("TxtLocPinY", 0.5, "TxtHeight", up * module.height);
  writer.Cell("TxtAngle", "0");
}

void WriteLook(PartWriter& writer, const Look& look) {
  writer.Cells({{"LineWeight", "0.01388888888888889", "PT"},
                {"LineColor", look.line},
                {"LinePattern", "1"},
                {"FillForegnd", look.fill},
                {"FillBkgnd", "#ffffff"},
                {"FillPattern", "1"}});
}

void WriteConnection(PartWriter& writer, size_t index, const Place& place, const ModuleGeometry& module) {
  writer.Element("Row", {{"T", "Connection"}, {"IX", std::to_string(index)}}, [&] {
    writer.Part("X", place.x, "Width", module.width);
    writer.Part("Y", place.y, "Height", module.height);
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

void WriteModule(PartWriter& writer, const ModuleGeometry& module) {
  const bool hasSubmodel = module.kind == "Process";
  WriteModuleTransform(writer, module);
  writer.Cell("EventDblClick", "0", {}, kEditAction);
  WriteTextBlock(writer, module);
  writer.Cell("ObjType", "1");
  WriteLook(writer, module.look);
  writer.Section("Property", [&] {
    for (const ModuleProperty& property : PropertiesOf(module.kind)) WritePropertyRow(writer, property);
  });
  if (!module.connections.empty())
    writer.Section("Connection", [&] {
      for (size_t i = 0; i < module.connections.size(); ++i) WriteConnection(writer, i, module.connections[i], module);
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
  WritePath(writer, 0, module.outline, true);
  if (!module.details.empty()) WritePath(writer, 1, module.details, false);
  WriteShapeText(writer, std::string(module.kind) + " 1");
}

}  // namespace vardo
