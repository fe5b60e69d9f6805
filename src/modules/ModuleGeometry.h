// What the modules look like. All places are parts of a shape's width and height, from its lower left corner.
#pragma once

#include <span>
#include <string_view>

namespace vardo {

struct Place {
  double x, y;
};

struct Look {
  std::string_view fill, line;  // colours, "#rrggbb"
};

struct ModuleGeometry {
  std::string_view kind;
  std::string_view prompt;             // the master's tip in the stencil
  double width = 1.25, height = 0.75;  // inches
  Look look;
  // Paths of "M x y" move, "L x y" line, "C x y x y x y" curve with two control points, "Z" back to the last move.
  std::string_view outline;
  std::string_view details = {};  // lines without fill
  Place textFrom = {0, 0}, textTo = {1, 1};
  // In the order of the connection rows, which is what glue and connector checks go by: the exit, the entry, the second exit.
  std::span<const Place> connections = {};
};

// The fourteen modules in stencil order.
std::span<const ModuleGeometry> ModuleGeometries();

}  // namespace vardo
