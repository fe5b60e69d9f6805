// What a person sees a shape as: a module of a kind, a connector with two ends, a box with points to connect to. Places in inches
// on paper.
#pragma once

#include "canvas/Boxes.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

class DrawingPage;
class DrawingShape;
class Sheet;

// Inches on paper for one of the page's.
double ScaleOf(DrawingPage& page);

// The module's kind; empty for a shape that is no module.
std::string KindOf(const Sheet& shape);
// A cell's text; empty when there is none.
std::string TextIn(const Sheet& sheet, std::string_view cell);
bool IsSet(const Sheet& sheet, std::string_view cell);
// Whether nobody but its formula may write the cell.
bool IsGuarded(const Sheet& sheet, std::string_view cell);

// Around the shape's width and height as it stands on the page; of a connector around its ends.
Box FrameOf(const DrawingShape& shape, double scale);
// In their order, from point 1 on.
std::vector<PagePoint> PointsOf(const DrawingShape& shape, double scale);
struct EndPlaces {
  PagePoint begin, end;
};
EndPlaces EndsOf(const DrawingShape& connector, double scale);

// "Process 'Check order'", as a person calls the shape.
std::string NameInWords(DrawingPage& page, const DrawingShape& shape);

}  // namespace vardo
