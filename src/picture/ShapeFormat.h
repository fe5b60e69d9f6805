// How a shape's lines, fill and text are drawn: its cells, with the theme's values in the place of those that are "Themed".
#pragma once

#include "picture/Look.h"
#include "picture/ResolvedSheet.h"
#include "picture/Theme.h"

#include <optional>
#include <string>
#include <vector>

namespace vardo::picture {

struct ShapeFormat {
  double lineWeight = 0;  // inches on paper
  Rgba lineColour;
  int linePattern = 1;
  Stroke::Cap lineCap = Stroke::Cap::Round;
  double rounding = 0;
  int beginArrow = 0, endArrow = 0, beginSize = 2, endSize = 2;

  int fillPattern = 1;
  Rgba fillColour, fillGround;
  bool gradient = false;
  int gradientDirection = 0;
  double gradientAngle = 0;
  bool gradientTurns = true;  // with the shape
  std::vector<GradientStop> stops;

  bool shadow = false;
  Rgba shadowColour;
  Point shadowOffset;

  Rgba themedText;  // of runs whose colour is "Themed"
  std::string themedFont;
  std::vector<std::string> notes;
};

class FormatReader {
 public:
  FormatReader(Drawing& drawing, const SheetResolver& resolver) : resolver_(resolver), themes_(ReadThemes(drawing)) {}

  ShapeFormat Read(const ResolvedSheet& shape, const ResolvedSheet& page, bool isOneDimensional) const;
  // With an opacity from 1 less the transparency.
  std::optional<Rgba> Colour(std::string_view value, double transparency = 0) const;
  std::string Face(std::string_view value) const;

 private:
  class Themed;
  class Reading;
  const SheetResolver& resolver_;
  std::vector<Theme> themes_;
};

// The foreground seen at that opacity.
Rgba WithOpacity(Rgba colour, double opacity);

}  // namespace vardo::picture
