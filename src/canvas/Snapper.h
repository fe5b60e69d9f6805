// Where a moved box comes to rest: in line with others, or on the grid.
#pragma once

#include "canvas/Boxes.h"

#include <span>
#include <vector>

namespace vardo {

struct SnapSettings {
  bool toGrid = true, toOthers = true;
  double gridStep = 0.125;  // inches
};

struct Snapped {
  PagePoint by;               // how far the box moves now
  std::vector<Box> guides{};  // lines, from the boxes in line to the moved one
};

// reach: how far a box lets itself be drawn, in inches.
Snapped Snap(const Box& box, PagePoint wanted, std::span<const Box> others, const SnapSettings& settings, double reach);
PagePoint SnapPoint(PagePoint point, const SnapSettings& settings);

}  // namespace vardo
