// What the modules of a kind look like. All places are parts of a shape's width and height, from its lower left corner.
#pragma once

#include <span>
#include <string_view>

namespace vardo {

struct Place {
  double x, y;
};

struct Colours {
  std::string_view fill, line;  // "#rrggbb"
};

struct ModuleLook {
  double width = 1.25, height = 0.75;  // inches
  Colours colours;
  // Paths of "M x y" move, "L x y" line, "C x y x y x y" curve with two control points, "Z" back to the last move.
  std::string_view outline;
  std::string_view symbol = {};  // of lines without fill; stands in a header, which a line parts from the text below
  Place textFrom = {0, 0}, textTo = {1, 1};
  // In the order of the connection rows, which is what glue and connector checks go by: the exit, the entry, the second exit.
  std::span<const Place> connections = {};
};

}  // namespace vardo
