// Splines as paths.
#pragma once

#include "picture/Outline.h"

#include <cstddef>
#include <vector>

namespace vardo::picture {

// Weights as many as points; knots at least points + degree + 1, not decreasing.
struct Spline {
  int degree = 3;
  std::vector<Point> points;
  std::vector<double> weights;
  std::vector<double> knots;
};

inline constexpr int kHighestDegree = 9;
inline constexpr size_t kMostSplinePoints = 10'000;

// Continues the path, which stands at the spline's first point, to its last one: cubics where they give the curve exactly, else
// lines that keep within 0.0005 inches of it. False, and nothing is added, for what is no spline.
bool AppendSpline(Outline& outline, const Spline& spline);

}  // namespace vardo::picture
