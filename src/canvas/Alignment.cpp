#include "canvas/Alignment.h"

#include <algorithm>
#include <numeric>

namespace vardo {
namespace {

double Low(const Box& box, bool across) { return across ? box.left : box.bottom; }
double Length(const Box& box, bool across) { return across ? box.width() : box.height(); }

bool Contains(const std::vector<int>& shapes, int shape) {
  return std::find(shapes.begin(), shapes.end(), shape) != shapes.end();
}

}  // namespace

std::vector<PagePoint> WaysToAlign(std::span<const FramedShape> shapes, deeds::Alignment how) {
  using deeds::Alignment;
  Box all;
  for (const FramedShape& shape : shapes) all.Add(shape.frame);
  std::vector<PagePoint> ways;
  for (const auto& [id, box] : shapes) {
    PagePoint way{};
    if (how == Alignment::Left) way.x = all.left - box.left;
    if (how == Alignment::Centre) way.x = all.middle().x - box.middle().x;
    if (how == Alignment::Right) way.x = all.right - box.right;
    if (how == Alignment::Top) way.y = all.top - box.top;
    if (how == Alignment::Middle) way.y = all.middle().y - box.middle().y;
    if (how == Alignment::Bottom) way.y = all.bottom - box.bottom;
    ways.push_back(way);
  }
  return ways;
}

std::vector<PagePoint> WaysToDistribute(std::span<const FramedShape> shapes, bool across) {
  std::vector<size_t> order(shapes.size());
  std::iota(order.begin(), order.end(), size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](size_t a, size_t b) { return Low(shapes[a].frame, across) < Low(shapes[b].frame, across); });
  const Box &first = shapes[order.front()].frame, &last = shapes[order.back()].frame;
  double room = Low(last, across) + Length(last, across) - Low(first, across);
  for (const FramedShape& shape : shapes) room -= Length(shape.frame, across);
  const double gap = room / static_cast<double>(shapes.size() - 1);
  std::vector<PagePoint> ways(shapes.size());
  double at = Low(first, across);
  for (const size_t i : order) {
    const double way = at - Low(shapes[i].frame, across);
    ways[i] = across ? PagePoint{way, 0} : PagePoint{0, way};
    at += Length(shapes[i].frame, across) + gap;
  }
  return ways;
}

std::vector<Reordered> NewPlaces(const std::vector<int>& order, const std::vector<int>& moved, deeds::Place to) {
  using deeds::Place;
  std::vector<Reordered> places;
  const auto shapeAt = [&](size_t i) { return i < order.size() ? order[i] : 0; };
  if (to == Place::Front)
    for (const int shape : order)
      if (Contains(moved, shape)) places.push_back({shape, 0});
  if (to == Place::Back) {
    const auto lowest = std::find_if(order.begin(), order.end(), [&](int shape) { return !Contains(moved, shape); });
    for (const int shape : order)
      if (Contains(moved, shape) && lowest != order.end()) places.push_back({shape, *lowest});
  }
  // One that has none of the moved ones before it goes past its neighbour.
  if (to == Place::Forward)
    for (size_t i = order.size(); i-- > 0;)
      if (Contains(moved, order[i]) && i + 1 < order.size() && !Contains(moved, order[i + 1]))
        places.push_back({order[i], shapeAt(i + 2)});
  if (to == Place::Backward)
    for (size_t i = 1; i < order.size(); ++i)
      if (Contains(moved, order[i]) && !Contains(moved, order[i - 1])) places.push_back({order[i], order[i - 1]});
  return places;
}

}  // namespace vardo
