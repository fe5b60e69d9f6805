#include "canvas/ShapeFacts.h"

#include "addin/host/HostConstants.h"
#include "document/Drawing.h"
#include "document/Places.h"
#include "props/ShapeKinds.h"

namespace vardo {
namespace {

PagePoint OnPaper(Point point, double scale) { return PagePoint{point.x, point.y} * scale; }

}  // namespace

double ScaleOf(DrawingPage& page) {
  const double onPaper = NumberIn(page.PageSheet(), "PageScale").value_or(1),
               drawn = NumberIn(page.PageSheet(), "DrawingScale").value_or(1);
  return onPaper > 0 && drawn > 0 ? onPaper / drawn : 1;
}

std::string TextIn(const Sheet& sheet, std::string_view cell) {
  const auto address = sheet.Find(cell);
  if (!address) return "";
  const CellValue value = sheet.Value(*address);
  const auto* const text = std::get_if<std::string>(&value);
  return text ? *text : "";
}

std::string KindOf(const Sheet& shape) { return TextIn(shape, kClassNameCell); }

bool IsSet(const Sheet& sheet, std::string_view cell) { return NumberIn(sheet, cell).value_or(0) != 0; }

bool IsGuarded(const Sheet& sheet, std::string_view cell) {
  const auto address = sheet.Find(cell);
  return address && sheet.Formula(*address).starts_with("GUARD(");
}

Box FrameOf(const DrawingShape& shape, double scale) {
  if (shape.IsOneDimensional()) {
    const EndPlaces ends = EndsOf(shape, scale);
    return BoxBetween(ends.begin, ends.end);
  }
  const double width = NumberIn(shape, "Width").value_or(0), height = NumberIn(shape, "Height").value_or(0);
  Box box;
  for (const Point corner : {Point{0, 0}, Point{width, 0}, Point{0, height}, Point{width, height}})
    box.Add(OnPaper(OnPage(shape, corner), scale));
  return box;
}

std::vector<PagePoint> PointsOf(const DrawingShape& shape, double scale) {
  const SectionInfo& section = *FindSection(kSectionConnectionPts);
  std::vector<PagePoint> points;
  for (const Sheet::Row& row : shape.Rows(section)) {
    const auto number = [&](const char* column) {
      const CellValue value = shape.Value({&section, row.key, Symbol(column)});
      const auto* const real = std::get_if<double>(&value);
      return real ? *real : 0;
    };
    points.push_back(OnPaper(OnPage(shape, {number("X"), number("Y")}), scale));
  }
  return points;
}

EndPlaces EndsOf(const DrawingShape& connector, double scale) {
  const auto at = [&](const char* cell) { return NumberIn(connector, cell).value_or(0) * scale; };
  return {{at("BeginX"), at("BeginY")}, {at("EndX"), at("EndY")}};
}

std::string NameInWords(DrawingPage& page, const DrawingShape& shape) {
  const std::string kind = KindOf(shape);
  if (kind.empty()) return page.NameOf(shape);
  return kind + " \"" + shape.Text() + "\"";
}

}  // namespace vardo
