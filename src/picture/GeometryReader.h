// The rows of a Geometry section as a path.
#pragma once

#include "picture/Outline.h"
#include "picture/StoredSheet.h"

#include <string>
#include <vector>

namespace vardo::picture {

struct Path {
  Outline outline;
  bool filled = true, stroked = true, shown = true;
  bool isInfinite = false;  // of two points, through which a line goes without end
};

// Of a shape that is so wide and high. What cannot be read as it is meant leaves a sentence in troubles.
Path ReadGeometry(const StoredSection& section, double width, double height, std::vector<std::string>& troubles);

// Every corner between two straight lines gives way to an arc of that radius, or of what the lines have room for.
Outline WithRoundedCorners(const Outline& outline, double radius);

// Continues the path with the arc of an ellipse through a point to its end. angle: of the axis that is `ratio` times the other.
void AppendEllipticalArc(Outline& outline, Point through, Point to, double angle, double ratio);

}  // namespace vardo::picture
