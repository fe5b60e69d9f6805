#include "picture/Outline.h"

#include <algorithm>
#include <cmath>

namespace vardo::picture {
namespace {

constexpr double kSamePlace = 1e-5;

size_t PointsOf(Verb verb) { return verb == Verb::Cubic ? 3 : verb == Verb::Close ? 0 : 1; }

}  // namespace

double Distance(Point a, Point b) { return std::hypot(b.x - a.x, b.y - a.y); }

Matrix Matrix::operator*(const Matrix& m) const {
  return {a * m.a + c * m.b, b * m.a + d * m.b,     a * m.c + c * m.d,
          b * m.c + d * m.d, a * m.e + c * m.f + e, b * m.e + d * m.f + f};
}

Matrix Translation(Point by) { return {1, 0, 0, 1, by.x, by.y}; }
Matrix Rotation(double angle) { return {std::cos(angle), std::sin(angle), -std::sin(angle), std::cos(angle), 0, 0}; }
Matrix Scaling(double x, double y) { return {x, 0, 0, y, 0, 0}; }

void Box::Add(Point p) {
  if (empty())
    *this = {p.x, p.y, p.x, p.y};
  else
    *this = {std::min(left, p.x), std::min(bottom, p.y), std::max(right, p.x), std::max(top, p.y)};
}

void Box::Add(const Box& box) {
  if (box.empty()) return;
  Add(Point{box.left, box.bottom});
  Add(Point{box.right, box.top});
}

Box Transformed(const Box& box, const Matrix& matrix) {
  Box result;
  if (box.empty()) return result;
  for (const Point corner :
       {Point{box.left, box.bottom}, Point{box.right, box.bottom}, Point{box.right, box.top}, Point{box.left, box.top}})
    result.Add(matrix(corner));
  return result;
}

void Outline::Move(Point to) {
  verbs.push_back(Verb::Move);
  points.push_back(to);
}

void Outline::Line(Point to) {
  verbs.push_back(Verb::Line);
  points.push_back(to);
}

void Outline::Cubic(Point control1, Point control2, Point to) {
  verbs.push_back(Verb::Cubic);
  points.insert(points.end(), {control1, control2, to});
}

void Outline::Close() { verbs.push_back(Verb::Close); }

void Outline::Append(const Outline& other) {
  verbs.insert(verbs.end(), other.verbs.begin(), other.verbs.end());
  points.insert(points.end(), other.points.begin(), other.points.end());
}

void Outline::AppendRectangle(const Box& box) {
  Move({box.left, box.bottom});
  Line({box.right, box.bottom});
  Line({box.right, box.top});
  Line({box.left, box.top});
  Close();
}

Box Outline::Bounds() const {
  Box box;
  for (const Point point : points) box.Add(point);
  return box;
}

Outline Transformed(Outline outline, const Matrix& matrix) {
  for (Point& point : outline.points) point = matrix(point);
  return outline;
}

std::vector<Outline> Subpaths(const Outline& outline) {
  std::vector<Outline> subpaths;
  size_t at = 0;
  for (const Verb verb : outline.verbs) {
    if (verb == Verb::Move || subpaths.empty()) subpaths.emplace_back();
    subpaths.back().verbs.push_back(verb);
    for (size_t i = 0; i < PointsOf(verb); ++i) subpaths.back().points.push_back(outline.points[at++]);
  }
  std::erase_if(subpaths, [](const Outline& subpath) { return subpath.verbs.size() < 2; });
  return subpaths;
}

bool IsClosed(const Outline& subpath) {
  if (subpath.verbs.size() < 3 && subpath.verbs.back() != Verb::Cubic && subpath.verbs.back() != Verb::Close) return false;
  return subpath.verbs.back() == Verb::Close || Distance(subpath.points.front(), subpath.points.back()) <= kSamePlace;
}

}  // namespace vardo::picture
