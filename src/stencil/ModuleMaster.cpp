#include "stencil/AddinCalls.h"
#include "stencil/LookPath.h"
#include "stencil/MasterShapes.h"
#include "stencil/SheetRows.h"
#include "stencil/StyleSheets.h"

#include <string>

namespace vardo {
namespace {

// Above it a data module shows its symbol, below it its text.
constexpr std::string_view kHeaderLine = "M0 .7 L1 .7 ";

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

std::string_view RowType(PathStep::Kind kind) {
  switch (kind) {
    case PathStep::Kind::Move:
      return "RelMoveTo";
    case PathStep::Kind::Line:
      return "RelLineTo";
    default:
      return "RelCubBezTo";
  }
}

void WriteStep(PartWriter& writer, const PathStep& step, int row) {
  writer.Element("Row", {{"T", std::string(RowType(step.kind))}, {"IX", std::to_string(row)}}, [&] {
    writer.Cell("X", NumberForFile(step.to.x));
    writer.Cell("Y", NumberForFile(step.to.y));
    if (step.kind != PathStep::Kind::Curve) return;
    writer.Cell("A", NumberForFile(step.control1.x));
    writer.Cell("B", NumberForFile(step.control1.y));
    writer.Cell("C", NumberForFile(step.control2.x));
    writer.Cell("D", NumberForFile(step.control2.y));
  });
}

void WritePath(PartWriter& writer, int index, std::string_view path, bool filled) {
  WriteGeometry(writer, index, filled, [&] {
    int row = 0;
    for (const PathStep& step : StepsOf(path)) WriteStep(writer, step, ++row);
  });
}

}  // namespace

void WriteModule(PartWriter& writer, const ModuleSchema& module) {
  const ModuleLook& look = module.look;
  const bool hasSubmodel = module.kind == "Process";
  const std::string edit = RunFormula(AddinCall("ShowEditor Application,ActiveWindow.Selection.Item(1)"));
  WriteModuleTransform(writer, look);
  writer.Cell("EventDblClick", "0", {}, edit);
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
    WriteAction(writer, "Edit", "&Properties...", edit);
    if (hasSubmodel)
      WriteAction(writer, "Submodel", "Edit &Submodel",
                  RunFormula(AddinCall("Submodel Application,ActiveWindow.Selection.Item(1)")), "User.menuid");
  });
  writer.Section("User", [&] {
    WriteUser(writer, "ClassName", module.kind, kText);
    if (hasSubmodel) WriteUser(writer, "menuid", "1", {});
  });
  WriteCharacter(writer, kModuleTextSize);
  WritePath(writer, 0, look.outline, true);
  if (!look.symbol.empty()) WritePath(writer, 1, std::string(kHeaderLine) + std::string(look.symbol), false);
  WriteShapeText(writer, module.Name().defaultValue);
}

}  // namespace vardo
