// A text laid out: lines broken, every run in its place.
#pragma once

#include "picture/Look.h"

#include <string>
#include <vector>

namespace vardo::picture {

struct Font {
  std::string family{};
  double size = 0;  // inches
  bool bold = false, italic = false, underline = false, strike = false, smallCapitals = false;
  bool operator==(const Font&) const = default;
};

struct TextRun {
  Point at;          // where its baseline begins
  double width = 0;  // what it is to take, whatever font is at hand
  size_t font = 0;   // of the block's fonts
  Rgba colour;
  std::string text;
};

// In inches from the lower left corner of the text's frame.
struct TextBlock {
  std::vector<Font> fonts;
  std::vector<TextRun> runs;
  std::vector<Box> grounds;  // behind the lines
  Rgba ground;
  Box box;  // around runs and grounds
};

}  // namespace vardo::picture
