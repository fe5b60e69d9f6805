// A shape's text as it stands in the file: pieces with the rows that format them.
#pragma once

#include "document/XmlNode.h"

#include <string>
#include <vector>

namespace vardo::picture {

struct TextPiece {
  std::string text;                            // UTF-8; a line end ends a paragraph, U+2028 a line
  int character = 0, paragraph = 0, tabs = 0;  // IX of the rows
};

// Of a Text element, without the closing line end. Fields by the text they showed last.
std::vector<TextPiece> ReadText(XmlNode element);

}  // namespace vardo::picture
