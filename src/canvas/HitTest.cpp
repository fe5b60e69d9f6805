#include "canvas/HitTest.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_set>

namespace vardo {
namespace {

using picture::Matrix;
using picture::Outline;
using picture::Point;
using picture::Verb;

constexpr int kCurveSteps = 12;

std::optional<Matrix> Inverse(const Matrix& m) {
  const double det = m.a * m.d - m.b * m.c;
  if (std::abs(det) < 1e-12) return std::nullopt;
  return Matrix{m.d / det, -m.b / det, -m.c / det, m.a / det, (m.c * m.f - m.d * m.e) / det, (m.b * m.e - m.a * m.f) / det};
}

Point OnCurve(Point a, Point b, Point c, Point d, double t) {
  const double s = 1 - t;
  return a * (s * s * s) + b * (3 * s * s * t) + c * (3 * s * t * t) + d * (t * t * t);
}

// Calls act(from, to) for each straight piece.
template <class Act>
void ForPieces(const Outline& outline, bool closeAll, Act act) {
  Point at{}, start{};
  size_t next = 0;
  const auto lineTo = [&](Point to) {
    act(at, to);
    at = to;
  };
  for (const Verb verb : outline.verbs) {
    if (verb == Verb::Move) {
      if (closeAll) lineTo(start);
      at = start = outline.points[next++];
    } else if (verb == Verb::Line) {
      lineTo(outline.points[next++]);
    } else if (verb == Verb::Close) {
      lineTo(start);
    } else {
      const Point from = at, c1 = outline.points[next], c2 = outline.points[next + 1], to = outline.points[next + 2];
      for (int i = 1; i <= kCurveSteps; ++i) lineTo(OnCurve(from, c1, c2, to, static_cast<double>(i) / kCurveSteps));
      next += 3;
    }
  }
  if (closeAll) lineTo(start);
}

bool IsInside(const Outline& outline, Point p) {
  bool inside = false;
  ForPieces(outline, true, [&](Point a, Point b) {
    if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x) inside = !inside;
  });
  return inside;
}

double DistanceToPiece(Point p, Point a, Point b) {
  const Point along = b - a, to = p - a;
  const double length = along.x * along.x + along.y * along.y;
  const double t = length == 0 ? 0 : std::clamp((to.x * along.x + to.y * along.y) / length, 0.0, 1.0);
  return picture::Distance(p, a + along * t);
}

bool IsNear(const Outline& outline, Point p, double distance) {
  bool near = false;
  ForPieces(outline, false, [&](Point a, Point b) { near = near || DistanceToPiece(p, a, b) <= distance; });
  return near;
}

bool HitsLook(const picture::Look& look, Point own, double scale, double tolerance) {
  return std::any_of(look.operations.begin(), look.operations.end(), [&](const picture::Operation& operation) {
    if (const auto* fill = std::get_if<picture::FillPath>(&operation)) return IsInside(fill->outline, own);
    if (const auto* line = std::get_if<picture::StrokePath>(&operation))
      return IsNear(line->outline, own, (line->stroke.weight / 2 + tolerance) / scale);
    if (const auto* image = std::get_if<picture::Image>(&operation)) return Holds(image->place, own);
    return Holds(std::get<picture::Frame>(operation).place, own);
  });
}

}  // namespace

bool IsHit(const picture::Slice& slice, double scale, Point at, double tolerance) {
  if (!Holds(slice.box.Grown(tolerance), at)) return false;
  if (slice.text)
    if (const auto toText = Inverse(slice.textToPage); toText && Holds(slice.text->box, (*toText)(at))) return true;
  const auto toOwn = slice.look ? Inverse(slice.toPage) : std::nullopt;
  return toOwn && HitsLook(*slice.look, (*toOwn)(at), scale, tolerance);
}

std::vector<int> ShapesAt(const Scene& scene, Point at, double tolerance) {
  std::vector<int> shapes;
  const std::vector<std::uint32_t> near = scene.index().Find(Box{at.x, at.y, at.x, at.y}.Grown(tolerance));
  for (auto number = near.rbegin(); number != near.rend(); ++number) {
    const picture::Slice& slice = scene.slice(*number);
    const std::optional<int> shape = scene.TopLevelOf(*number);
    if (!shape || slice.isGuide || !IsHit(slice, scene.picture().scale, at, tolerance)) continue;
    if (std::find(shapes.begin(), shapes.end(), *shape) == shapes.end()) shapes.push_back(*shape);
  }
  return shapes;
}

std::optional<int> ShapeAt(const Scene& scene, Point at, double tolerance) {
  const std::vector<int> shapes = ShapesAt(scene, at, tolerance);
  return shapes.empty() ? std::nullopt : std::optional(shapes.front());
}

std::vector<int> ShapesIn(const Scene& scene, const Box& box, bool touched) {
  std::vector<int> shapes;
  std::unordered_set<int> seen;
  for (const std::uint32_t number : scene.index().Find(box)) {
    const std::optional<int> shape = scene.TopLevelOf(number);
    if (!shape || scene.slice(number).isGuide || !seen.insert(*shape).second) continue;
    const Box whole = scene.BoxOf(*shape);
    if (!whole.empty() && (touched ? Meets(whole, box) : IsWithin(whole, box))) shapes.push_back(*shape);
  }
  return shapes;
}

}  // namespace vardo
