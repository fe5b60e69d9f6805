// The gestures of the select tool.
#pragma once

#include "canvas/Tool.h"

namespace vardo {

// Which sides of a box a handle moves: -1 the left or lower, 1 the right or upper, 0 none.
struct Handle {
  int x = 0, y = 0;
};
inline constexpr Handle kHandles[] = {{-1, -1}, {0, -1}, {1, -1}, {-1, 0}, {1, 0}, {-1, 1}, {0, 1}, {1, 1}};
PagePoint PlaceOf(const Handle& handle, const Box& frame);
PointerShape ShapeOf(const Handle& handle);

std::unique_ptr<Gesture> MoveShapes(const Stage& stage, PagePoint from, std::vector<int> shapes);
std::unique_ptr<Gesture> ResizeShape(const Stage& stage, PagePoint from, int shape, Handle handle);
std::unique_ptr<Gesture> RubberBand(PagePoint from, std::vector<int> addTo);
// From a point of a shape.
std::unique_ptr<Gesture> DrawConnector(const Stage& stage, int shape, int point);
std::unique_ptr<Gesture> MoveEnd(const Stage& stage, int connector, bool isBegin);

}  // namespace vardo
