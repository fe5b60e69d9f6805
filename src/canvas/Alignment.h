// How shapes come into line, and in which order they lie.
#pragma once

#include "canvas/Deed.h"

#include <span>
#include <vector>

namespace vardo {

struct FramedShape {
  int shape = 0;
  Box frame;
};

// How far each moves, in their order.
std::vector<PagePoint> WaysToAlign(std::span<const FramedShape> shapes, deeds::Alignment how);
// The outermost two stay; the gaps between all become equal.
std::vector<PagePoint> WaysToDistribute(std::span<const FramedShape> shapes, bool across);

struct Reordered {
  int shape = 0;
  int before = 0;  // the shape that it comes to lie behind; 0: none, it is on top
};
// What is to be done, one after the other, to a page whose shapes lie in that order, the topmost last. Those that move keep their
// order among themselves.
std::vector<Reordered> NewPlaces(const std::vector<int>& order, const std::vector<int>& moved, deeds::Place to);

}  // namespace vardo
