// A drawing's themes: colours, fills, lines and fonts by which cells are painted whose value is "Themed".
#pragma once

#include "picture/Look.h"

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vardo {
class Drawing;
}

namespace vardo::picture {

// A colour of its own, or one of the theme's by name, changed step by step.
struct ThemeColour {
  Rgba own;
  std::string scheme{};                                   // "accent1"; "phClr": the one that is asked for; empty: own
  std::vector<std::pair<std::string, double>> changes{};  // "shade", 0.75
};

struct ThemeFill {
  enum class Kind { None, Solid, Linear, Radial } kind = Kind::None;
  ThemeColour colour;
  struct Stop {
    double at;
    ThemeColour colour;
  };
  std::vector<Stop> stops;
  double angle = 0;  // radians, counter-clockwise
  int pattern = 1;
};

struct ThemeLine {
  double weight = 0.01;  // inches
  ThemeFill fill;
  Stroke::Cap cap = Stroke::Cap::Round;
  int pattern = 1, beginArrow = 0, endArrow = 0, beginSize = 2, endSize = 2;
  double rounding = 0;
};

struct ThemeShadow {
  ThemeColour colour;
  double distance = 0, direction = 0;  // inches; radians, clockwise from the right
};

// What one kind of shapes takes. Entries are numbered from 1.
struct ThemeFormats {
  std::vector<ThemeFill> fills;
  std::vector<ThemeLine> lines;
  std::vector<std::optional<ThemeShadow>> shadows;
  std::vector<ThemeColour> fontColours;
};

struct ThemeVariant {
  int fill = 1, line = 1, effect = 1, font = 1;
};

// The seven colours of a variant. Where it is of one tone, shapes that follow the variant all take the first of them.
struct ThemeVariantColours {
  bool isOfOneTone = false;
  std::array<Rgba, 7> colours{};
};

struct Theme {
  int number = 0;
  std::vector<std::pair<std::string, Rgba>> colours;  // dk1, lt1, accent1, ...; "bkgnd"
  std::vector<ThemeVariantColours> variantColours;
  std::vector<std::array<ThemeVariant, 4>> variants;
  ThemeFormats shapes, connectors;
  std::string majorFont, minorFont;

  Rgba Colour(const std::string& name) const;
  Rgba Resolve(const ThemeColour& colour, Rgba asked) const;
};

std::vector<Theme> ReadThemes(Drawing& drawing);

// Of a colour, 0 to 1.
double Luminance(Rgba colour);

}  // namespace vardo::picture
