// Places and paths. Lengths in inches, x to the right, y upwards.
#pragma once

#include <cstdint>
#include <vector>

namespace vardo::picture {

struct Point {
  double x = 0, y = 0;
  bool operator==(const Point&) const = default;
};

inline Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
inline Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
inline Point operator*(Point a, double k) { return {a.x * k, a.y * k}; }
double Distance(Point a, Point b);

// x' = a x + c y + e, y' = b x + d y + f.
struct Matrix {
  double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;
  Point operator()(Point p) const { return {a * p.x + c * p.y + e, b * p.x + d * p.y + f}; }
  // First the other one, then this.
  Matrix operator*(const Matrix& first) const;
  bool operator==(const Matrix&) const = default;
};
Matrix Translation(Point by);
Matrix Rotation(double angle);  // radians, counter-clockwise
Matrix Scaling(double x, double y);

// Empty until something is added.
struct Box {
  double left = 1, bottom = 1, right = 0, top = 0;
  bool empty() const { return left > right; }
  double width() const { return right - left; }
  double height() const { return top - bottom; }
  Point middle() const { return {(left + right) / 2, (bottom + top) / 2}; }
  void Add(Point point);
  void Add(const Box& box);
  Box Grown(double by) const { return empty() ? *this : Box{left - by, bottom - by, right + by, top + by}; }
  bool operator==(const Box&) const = default;
};
Box Transformed(const Box& box, const Matrix& matrix);

enum class Verb : std::uint8_t { Move, Line, Cubic, Close };

// A path of lines and cubic curves; every other curve is one of these by the time it is here. A move and a line take one point, a
// cubic three, a close none.
struct Outline {
  std::vector<Verb> verbs;
  std::vector<Point> points;

  bool empty() const { return verbs.empty(); }
  void Move(Point to);
  void Line(Point to);
  void Cubic(Point control1, Point control2, Point to);
  void Close();
  void Append(const Outline& other);
  void AppendRectangle(const Box& box);
  // Around the points of the path and of its controls.
  Box Bounds() const;
  bool operator==(const Outline&) const = default;
};
Outline Transformed(Outline outline, const Matrix& matrix);

// The subpaths by themselves.
std::vector<Outline> Subpaths(const Outline& outline);
// Whether a subpath ends where it began.
bool IsClosed(const Outline& subpath);

}  // namespace vardo::picture
