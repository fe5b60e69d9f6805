#include "picture/Splines.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vardo::picture {
namespace {

constexpr double kFlat = 0.0005;
constexpr int kMostHalvings = 10;

// A point with its weight, its coordinates multiplied by it.
struct Weighted {
  double x = 0, y = 0, w = 0;
  Point point() const { return {x / w, y / w}; }
};

Weighted Mix(const Weighted& a, const Weighted& b, double t) {
  return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, a.w + (b.w - a.w) * t};
}

using Piece = std::array<Weighted, kHighestDegree + 1>;  // control points of a Bezier curve

bool IsSpline(const Spline& spline) {
  const size_t count = spline.points.size(), degree = static_cast<size_t>(spline.degree);
  if (spline.degree < 1 || spline.degree > kHighestDegree || count <= degree || count > kMostSplinePoints) return false;
  if (spline.weights.size() != count || spline.knots.size() < count + degree + 1) return false;
  return std::is_sorted(spline.knots.begin(), spline.knots.end()) &&
         std::all_of(spline.weights.begin(), spline.weights.end(), [](double w) { return w > 0; });
}

// The spline's polar form over the span, which gives the control points of its Bezier curve: the first `late` of the arguments
// are the span's end, the others its beginning.
Weighted Blossom(const Spline& spline, size_t span, int late) {
  const int degree = spline.degree;
  const auto& knots = spline.knots;
  Piece d;
  for (int j = 0; j <= degree; ++j) {
    const size_t i = span - static_cast<size_t>(degree) + static_cast<size_t>(j);
    d[static_cast<size_t>(j)] = {spline.points[i].x * spline.weights[i], spline.points[i].y * spline.weights[i],
                                 spline.weights[i]};
  }
  for (int r = 1; r <= degree; ++r) {
    const double t = r <= late ? knots[span + 1] : knots[span];
    for (int j = degree; j >= r; --j) {
      const double low = knots[span - static_cast<size_t>(degree - j)], high = knots[span + static_cast<size_t>(1 + j - r)];
      const double part = high > low ? (t - low) / (high - low) : 0;
      d[static_cast<size_t>(j)] = Mix(d[static_cast<size_t>(j - 1)], d[static_cast<size_t>(j)], part);
    }
  }
  return d[static_cast<size_t>(degree)];
}

// Replaces the piece by its first half and returns the second.
Piece Halve(Piece& piece, int degree) {
  Piece first = piece, second;
  for (int r = 0; r <= degree; ++r) {
    first[static_cast<size_t>(r)] = piece[0];
    second[static_cast<size_t>(degree - r)] = piece[static_cast<size_t>(degree - r)];
    for (int j = 0; j < degree - r; ++j)
      piece[static_cast<size_t>(j)] = Mix(piece[static_cast<size_t>(j)], piece[static_cast<size_t>(j + 1)], 0.5);
  }
  piece = first;
  return second;
}

bool IsFlat(const Piece& piece, int degree) {
  const Point from = piece[0].point(), to = piece[static_cast<size_t>(degree)].point();
  const double length = Distance(from, to);
  for (int i = 1; i < degree; ++i) {
    const Point p = piece[static_cast<size_t>(i)].point() - from;
    const Point way = to - from;
    const double off = length < kFlat ? std::hypot(p.x, p.y) : std::abs(way.x * p.y - way.y * p.x) / length;
    if (off > kFlat) return false;
  }
  return true;
}

void AppendLines(Outline& outline, Piece piece, int degree, int halvings) {
  if (halvings >= kMostHalvings || IsFlat(piece, degree)) return outline.Line(piece[static_cast<size_t>(degree)].point());
  const Piece second = Halve(piece, degree);
  AppendLines(outline, piece, degree, halvings + 1);
  AppendLines(outline, second, degree, halvings + 1);
}

void AppendPiece(Outline& outline, const Piece& piece, int degree, bool isRational) {
  const auto at = [&](size_t i) { return piece[i].point(); };
  if (degree == 1) return outline.Line(at(1));
  if (isRational || degree > 3) return AppendLines(outline, piece, degree, 0);
  if (degree == 3) return outline.Cubic(at(1), at(2), at(3));
  outline.Cubic(at(0) + (at(1) - at(0)) * (2.0 / 3), at(2) + (at(1) - at(2)) * (2.0 / 3), at(2));
}

}  // namespace

bool AppendSpline(Outline& outline, const Spline& spline) {
  if (!IsSpline(spline)) return false;
  const bool isRational = std::any_of(spline.weights.begin(), spline.weights.end(),
                                      [&](double w) { return std::abs(w - spline.weights[0]) > 1e-9 * spline.weights[0]; });
  for (size_t span = static_cast<size_t>(spline.degree); span < spline.points.size(); ++span) {
    if (spline.knots[span + 1] <= spline.knots[span]) continue;
    Piece piece;
    for (int i = 0; i <= spline.degree; ++i) piece[static_cast<size_t>(i)] = Blossom(spline, span, i);
    AppendPiece(outline, piece, spline.degree, isRational);
  }
  return true;
}

}  // namespace vardo::picture
