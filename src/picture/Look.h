// What a shape looks like, in its own coordinates: paths with fills and lines, and pictures. Arrow heads and shadows are ordinary
// paths by now, so that no painter knows of them.
#pragma once

#include "picture/Outline.h"

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace vardo::picture {

struct Rgba {
  std::uint8_t r = 0, g = 0, b = 0, a = 255;
  bool operator==(const Rgba&) const = default;
};

struct GradientStop {
  double at = 0;  // 0 to 1
  Rgba colour;
  bool operator==(const GradientStop&) const = default;
};

struct Fill {
  enum class Kind : std::uint8_t { Solid, Linear, Radial, Hatch };
  Kind kind = Kind::Solid;
  Rgba colour{};           // of a solid fill, and of a hatch's lines
  Rgba ground{};           // of a hatch
  std::uint8_t hatch = 0;  // the pattern's number
  // A linear gradient's ends; a radial one's centre, and a point of its outermost circle.
  Point from{}, to{};
  std::vector<GradientStop> stops{};  // in order, at least two of a gradient
  bool operator==(const Fill&) const = default;
};

struct Stroke {
  enum class Cap : std::uint8_t { Round, Flat, Square };
  Rgba colour;
  double weight = 0;  // inches on paper whatever the drawing's scale; 0: one pixel
  Cap cap = Cap::Round;
  std::vector<double> dash;  // inches on paper, line and gap by turns; empty: solid
  bool operator==(const Stroke&) const = default;
};

// With the even-odd rule. Where clip is not empty, only what is within that, too.
struct FillPath {
  Outline outline;
  Fill fill;
  Outline clip;
  bool operator==(const FillPath&) const = default;
};
// Round joins with round caps, else mitred ones.
struct StrokePath {
  Outline outline;
  Stroke stroke;
  bool operator==(const StrokePath&) const = default;
};
// A file's bytes in a box, of which only what is within clip is seen.
struct Image {
  std::shared_ptr<const std::string> bytes;  // PNG, JPEG, GIF, BMP, or a bitmap without its file header
  std::string type;                          // "image/png"
  Box place, clip;
  double opacity = 1;
  bool operator==(const Image&) const = default;
};
// What stands for a picture that cannot be painted.
struct Frame {
  Box place;
  std::string label;
  bool operator==(const Frame&) const = default;
};

using Operation = std::variant<FillPath, StrokePath, Image, Frame>;

struct Look {
  std::vector<Operation> operations;  // in painting order
  Box box;                            // around all that is painted
};

}  // namespace vardo::picture
