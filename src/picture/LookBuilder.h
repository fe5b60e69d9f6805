// From a shape's cells to its look.
#pragma once

#include "picture/Look.h"
#include "picture/ResolvedSheet.h"
#include "picture/ShapeFormat.h"

#include <string>
#include <vector>

namespace vardo::picture {

struct ShapeToDraw {
  const ResolvedSheet& sheet;
  const ShapeFormat& format;
  double width = 0, height = 0;
  double scale = 1;  // inches on paper for one of the shape
  Matrix toPage{};
};

// Throws nothing for what cannot be painted: that leaves a sentence in notes.
Look BuildLook(const ShapeToDraw& shape, std::vector<std::string>& notes);

// Sets its box to what its operations cover; strokes have a weight on paper.
void MeasureLook(Look& look, double scale);

}  // namespace vardo::picture
