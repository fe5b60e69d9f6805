// A page as a list of what to paint, from its cells as they stand after inheritance from masters, style sheets and theme.
//   Inches on paper, x to the right, y upwards from the page's lower left corner.
#pragma once

#include "picture/Look.h"
#include "picture/TextBlock.h"

#include <memory>
#include <string>
#include <vector>

namespace vardo {
class Drawing;
class DrawingPage;
}  // namespace vardo

namespace vardo::picture {

// A shape's share of the page. Shapes that look alike share one look.
struct Slice {
  int shape = 0, parent = 0;  // IDs on their page; parent 0: none
  std::string name;
  Matrix toPage;                          // of the look
  std::shared_ptr<const Look> look;       // null: nothing
  Matrix textToPage;                      // of the text: turned, never mirrored or scaled
  std::shared_ptr<const TextBlock> text;  // null: none
  Box box;                                // on the page, around all of it; empty for a shape that shows nothing
  bool ofBackground = false;              // of a page that stands behind this one
  bool prints = true;
  bool isOneDimensional = false;
  bool isGuide = false;  // for the screen alone
};

// What is not painted as the drawing means it.
struct Note {
  std::string page;
  int shape = 0;
  std::string sentence;
};

struct PagePicture {
  std::string name;
  double width = 0, height = 0;
  double scale = 1;  // inches on paper for an inch of the drawing
  Rgba paper{255, 255, 255};
  std::vector<Slice> slices;  // in painting order
  std::vector<Note> notes;
};

// The page as it is now. Shapes that no layer shows are left out.
PagePicture PictureOf(Drawing& drawing, DrawingPage& page);

}  // namespace vardo::picture
