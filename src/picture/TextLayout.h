// Breaks a text into lines and puts its runs into their places.
#pragma once

#include "picture/TextBlock.h"

#include <memory>
#include <string>
#include <vector>

namespace vardo::picture {

struct CharacterFormat {
  Font font;
  Rgba colour;
  enum class Case { AsTyped, Upper, Initials } letters = Case::AsTyped;
  enum class Position { Normal, Super, Sub } position = Position::Normal;
  double spacing = 0;  // inches between characters
  double stretch = 1;  // of their widths
};

struct ParagraphFormat {
  double first = 0, left = 0, right = 0;  // indents; the first line's counts from the left one's
  double before = 0, after = 0;
  double line = -1.2;  // below 0 that many times the line's own height, above 0 inches, 0 its own height
  enum class Align { Left, Centre, Right, Justify, Distribute } align = Align::Centre;
  std::string bullet;
  std::vector<double> tabs;  // stops, ascending
};

struct FormattedPiece {
  std::string text{};
  size_t character = 0, paragraph = 0;  // of the formats
};

struct TextToLay {
  std::vector<FormattedPiece> pieces{};
  std::vector<CharacterFormat> characters{};
  std::vector<ParagraphFormat> paragraphs{};
  double width = 0, height = 0;  // of the frame; no width: lines are not broken
  double leftMargin = 0, rightMargin = 0, topMargin = 0, bottomMargin = 0;
  enum class Stand { Top, Middle, Bottom } stand = Stand::Middle;
  double tabStep = 0.5;
  bool hasGround = false;
  Rgba ground{};
};

struct TextExtent {
  double width = 0, height = 0;
};

// The text without lines broken, and as high as it is within that width, margins included. Width 0: not broken.
TextExtent ExtentOf(const TextToLay& text, double width);

TextBlock LayOut(const TextToLay& text);

}  // namespace vardo::picture
