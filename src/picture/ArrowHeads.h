// The heads at the ends of lines, as paths.
#pragma once

#include "picture/Look.h"

#include <vector>

namespace vardo::picture {

// Those that there is a picture of; any other is drawn as the plain triangle.
bool IsKnownArrow(int arrow);
// Of sizes 0 to 6, at a line of that weight, in inches on paper.
double ArrowLength(int size, double weight);

struct LineEnd {
  int arrow = 0;      // 0: none
  double length = 0;  // in the path's units
};

// Draws an open path with its heads: the path, cut back to where filled heads begin, then the heads.
void AppendLine(std::vector<Operation>& operations, const Outline& subpath, const Stroke& stroke, LineEnd begin, LineEnd end);

}  // namespace vardo::picture
