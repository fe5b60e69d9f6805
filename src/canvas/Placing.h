// Where things go and in which order they are come by, without a pointer.
#pragma once

#include "canvas/Scene.h"

#include <optional>
#include <vector>

namespace vardo {

// The middle for a box of that size to the right of another: on its centre line, or below where that is taken.
PagePoint PlaceBeside(const Scene& scene, DrawingPage& page, const Box& box, double width, double height);
// A free place for a box of that size in the middle of what is seen, or near it.
PagePoint PlaceIn(const Scene& scene, DrawingPage& page, const Box& seen, double width, double height);

// The shapes of the page as they are read: in rows from the top, each from the left; a connector behind the shape that it leaves.
std::vector<int> ReadingOrder(DrawingPage& page);
// The next one behind the current one, or before it with a step of -1, around at the end; none on an empty page.
std::optional<int> NextShape(DrawingPage& page, std::optional<int> current, int step);
// The nearest module that way from a place: x and y are -1, 0 or 1.
std::optional<int> NearestShape(DrawingPage& page, int from, int x, int y);

}  // namespace vardo
