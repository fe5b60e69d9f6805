// Where things are on a page. Lengths in inches; a shape's own coordinates count from its lower left corner.
#pragma once

#include "formula/Formula.h"

#include <optional>
#include <string_view>

namespace vardo {

class DrawingShape;
class Sheet;

// A cell's value; none when the sheet has no such cell or it holds no number.
std::optional<double> NumberIn(const Sheet& sheet, std::string_view cell);

// A point in the shape's own coordinates, as the page counts, through all groups around the shape.
Point OnPage(const DrawingShape& shape, Point own);
// The middle of the shape's box.
Point MiddleOf(const DrawingShape& shape);

// The middle of that side of the shape's box that is nearest to a point of the page, in parts of the width and height.
Point NearestSide(const DrawingShape& shape, Point target);
// A place given in parts of the width and height, on the page.
Point OnPageInParts(const DrawingShape& shape, Point parts);

}  // namespace vardo
