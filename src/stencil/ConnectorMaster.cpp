#include "stencil/MasterShapes.h"
#include "stencil/SheetRows.h"
#include "stencil/StyleSheets.h"

namespace vardo {
namespace {

constexpr Connector kConnectors[] = {
    {"Dynamic connector", "Leads entities from one module to the next.", "connector,line,arrow,flow", "", "#404040"},
    {"True Connector", "Leads from the True exit of a Decide module.", "connector,line,arrow,yes,decide", "True", "#2e7d32"},
    {"False Connector", "Leads from the False exit of a Decide module.", "connector,line,arrow,no,decide", "False", "#c62828"},
    {"Original Connector", "Leads the original from a Separate module.", "connector,line,arrow,separate", "Original", "#1f4e79"},
    {"Duplicate Connector", "Leads the duplicates from a Separate module.", "connector,line,arrow,copy,separate", "Duplicate",
     "#b45f06"},
};

// From (0, 0.5) to (1, 0) of a square inch, by way of two right angles. The host lays the way anew once the ends are glued.
constexpr FileCell kConnectorTransform[] = {
    {"PinX", "0.5", "", "GUARD((BeginX+EndX)/2)"},
    {"PinY", "0.25", "", "GUARD((BeginY+EndY)/2)"},
    {"Width", "1", "", "GUARD(EndX-BeginX)"},
    {"Height", "-0.5", "", "GUARD(EndY-BeginY)"},
    {"LocPinX", "0.5", "", "GUARD(Width*0.5)"},
    {"LocPinY", "-0.25", "", "GUARD(Height*0.5)"},
    {"Angle", "0", "", "GUARD(0DA)"},
    {"FlipX", "0", "", "GUARD(FALSE)"},
    {"FlipY", "0", "", "GUARD(FALSE)"},
    {"ResizeMode", "0"},
    {"BeginX", "0"},
    {"BeginY", "0.5"},
    {"EndX", "1"},
    {"EndY", "0"},
    {"TxtPinX", "0.5", "", "Width*0.5"},
    {"TxtPinY", "-0.25", "", "Height*0.5"},
    {"TxtWidth", "0.5555555555555556", "", "MAX(TEXTWIDTH(TheText),5*Char.Size)"},
    {"TxtHeight", "0.2444444444444444", "", "TEXTHEIGHT(TheText,TxtWidth)"},
    {"TxtLocPinX", "0.2777777777777778", "", "TxtWidth*0.5"},
    {"TxtLocPinY", "0.1222222222222222", "", "TxtHeight*0.5"},
    {"TxtAngle", "0"},
};
constexpr FileCell kConnectorBehaviour[] = {
    {"LockHeight", "1"},     {"LockCalcWH", "1"},
    {"NoAlignBox", "1"},     {"DynFeedback", "2"},
    {"GlueType", "2"},       {"BegTrigger", "1", "", "_XFTRIGGER(EventXFMod)"},
    {"ObjType", "2"},        {"EndTrigger", "1", "", "_XFTRIGGER(EventXFMod)"},
    {"NoLiveDynamics", "1"}, {"ShapeSplittable", "1"},
};

constexpr Place kConnectorWay[] = {{0, 0}, {0.5, 0}, {0.5, 1}, {1, 1}};

}  // namespace

std::span<const Connector> Connectors() { return kConnectors; }

std::span<const Place> ConnectorWay() { return kConnectorWay; }

void WriteConnector(PartWriter& writer, const Connector& connector) {
  writer.Cells(kConnectorTransform);
  writer.Cells(kConnectorBehaviour);
  writer.Cells({{"LineWeight", "0.01388888888888889", "PT"},
                {"LineColor", connector.colour},
                {"LinePattern", "1"},
                {"EndArrow", "4"},
                {"EndArrowSize", "1"},
                {"TextBkgnd", "#ffffff"}});
  WriteCharacter(writer, kConnectorTextSize);
  WriteGeometry(writer, 0, false, [&] {
    int row = 0;
    for (const Place& corner : kConnectorWay)
      writer.Element("Row", {{"T", row++ == 0 ? "MoveTo" : "LineTo"}, {"IX", std::to_string(row)}}, [&] {
        writer.Part("X", corner.x, "Width", kConnectorWidth);
        writer.Part("Y", corner.y, "Height", -kConnectorHeight);
      });
  });
  if (!connector.text.empty()) WriteShapeText(writer, connector.text);
}

}  // namespace vardo
