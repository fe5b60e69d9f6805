#include "stencil/SheetRows.h"

#include "stencil/StyleSheets.h"

namespace vardo {

void WritePageCells(PartWriter& writer, double width, double height, std::string_view sizeType) {
  writer.Cell("PageWidth", NumberForFile(width));
  writer.Cell("PageHeight", NumberForFile(height));
  writer.Cells({{"ShdwOffsetX", "0.125"},
                {"ShdwOffsetY", "-0.125"},
                {"PageScale", "1", "IN_F"},
                {"DrawingScale", "1", "IN_F"},
                {"DrawingSizeType", sizeType},
                {"DrawingScaleType", "0"},
                {"InhibitSnap", "0"},
                {"PageLockReplace", "0", "BOOL"},
                {"PageLockDuplicate", "0", "BOOL"},
                {"UIVisibility", "0"},
                {"ShdwType", "0"},
                {"ShdwObliqueAngle", "0"},
                {"ShdwScaleFactor", "1"},
                {"DrawingResizeType", "1"}});
}

void WritePropertyRow(PartWriter& writer, const ModuleProperty& property, std::string_view unit) {
  writer.Element("Row", {{"N", std::string(property.field)}}, [&] {
    writer.Cells({{"Value", property.defaultValue, unit},
                  {"Prompt", property.prompt},
                  {"Label", property.label},
                  {"Format", ""},
                  {"SortKey", ""},
                  {"Type", "0"},
                  {"Invisible", property.IsHidden() ? "1" : "0"},
                  {"Verify", "0"},
                  {"DataLinked", "0", "", kNoFormula},
                  {"LangID", kLanguage},
                  {"Calendar", "0"}});
  });
}

void WriteGeometry(PartWriter& writer, int index, bool filled, const PartWriter::Content& rows) {
  writer.Element("Section", {{"N", "Geometry"}, {"IX", std::to_string(index)}}, [&] {
    writer.Cells({{"NoFill", filled ? "0" : "1"}, {"NoLine", "0"}, {"NoShow", "0"}, {"NoSnap", "0"}, {"NoQuickDrag", "0"}});
    rows();
  });
}

void WriteShapeText(PartWriter& writer, std::string_view text) { writer.Element("Text", {}, std::string(text) + "\n"); }

}  // namespace vardo
