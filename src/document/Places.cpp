#include "document/Places.h"

#include "document/Drawing.h"

#include <algorithm>
#include <cmath>

namespace vardo {
namespace {

double NumberOrZero(const Sheet& sheet, std::string_view cell) { return NumberIn(sheet, cell).value_or(0); }

double Distance(Point a, Point b) { return std::hypot(a.x - b.x, a.y - b.y); }

Point InParent(const DrawingShape& shape, Point own) {
  Point p{own.x - NumberOrZero(shape, "LocPinX"), own.y - NumberOrZero(shape, "LocPinY")};
  if (NumberOrZero(shape, "FlipX") != 0) p.x = -p.x;
  if (NumberOrZero(shape, "FlipY") != 0) p.y = -p.y;
  const double angle = NumberOrZero(shape, "Angle"), sine = std::sin(angle), cosine = std::cos(angle);
  return {NumberOrZero(shape, "PinX") + p.x * cosine - p.y * sine, NumberOrZero(shape, "PinY") + p.x * sine + p.y * cosine};
}

}  // namespace

std::optional<double> NumberIn(const Sheet& sheet, std::string_view cell) {
  const auto address = sheet.Find(cell);
  if (!address) return std::nullopt;
  const CellValue value = sheet.Value(*address);
  const auto* number = std::get_if<double>(&value);
  return number ? std::optional(*number) : std::nullopt;
}

Point OnPage(const DrawingShape& shape, Point own) {
  for (const DrawingShape* at = &shape; at; at = at->parent()) own = InParent(*at, own);
  return own;
}

Point OnPageInParts(const DrawingShape& shape, Point parts) {
  return OnPage(shape, {parts.x * NumberOrZero(shape, "Width"), parts.y * NumberOrZero(shape, "Height")});
}

Point MiddleOf(const DrawingShape& shape) { return OnPageInParts(shape, {0.5, 0.5}); }

Point NearestSide(const DrawingShape& shape, Point target) {
  constexpr Point kSides[] = {{1, 0.5}, {0, 0.5}, {0.5, 1}, {0.5, 0}};
  return *std::min_element(std::begin(kSides), std::end(kSides), [&](Point a, Point b) {
    return Distance(OnPageInParts(shape, a), target) < Distance(OnPageInParts(shape, b), target);
  });
}

}  // namespace vardo
