#include "canvas/Snapper.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace vardo {
namespace {

double OnGrid(double value, double step) { return std::round(value / step) * step; }

std::array<double, 3> Across(const Box& box) { return {box.left, box.middle().x, box.right}; }
std::array<double, 3> Up(const Box& box) { return {box.bottom, box.middle().y, box.top}; }

struct Pull {
  double by;     // to add to the way
  double place;  // of the line
  const Box* to;
};

// The nearest of the others' edges and middles to one of the box's.
std::optional<Pull> NearestPull(const std::array<double, 3>& own, std::span<const Box> others,
                                std::array<double, 3> (*places)(const Box&), double reach) {
  std::optional<Pull> nearest;
  for (const Box& other : others)
    for (const double place : places(other))
      for (const double mine : own) {
        const double by = place - mine;
        if (std::abs(by) <= reach && (!nearest || std::abs(by) < std::abs(nearest->by) - 1e-9)) nearest = Pull{by, place, &other};
      }
  return nearest;
}

}  // namespace

PagePoint SnapPoint(PagePoint point, const SnapSettings& settings) {
  return settings.toGrid ? PagePoint{OnGrid(point.x, settings.gridStep), OnGrid(point.y, settings.gridStep)} : point;
}

Snapped Snap(const Box& box, PagePoint wanted, std::span<const Box> others, const SnapSettings& settings, double reach) {
  Snapped snapped{wanted};
  Box moved = MovedBy(box, wanted);
  if (settings.toGrid)
    snapped.by = snapped.by + PagePoint{OnGrid(moved.left, settings.gridStep) - moved.left,
                                        OnGrid(moved.bottom, settings.gridStep) - moved.bottom};
  if (!settings.toOthers) return snapped;
  const auto across = NearestPull(Across(moved), others, Across, reach);
  const auto up = NearestPull(Up(moved), others, Up, reach);
  if (across) snapped.by.x = wanted.x + across->by;
  if (up) snapped.by.y = wanted.y + up->by;
  moved = MovedBy(box, snapped.by);
  if (across) {
    Box line = *across->to;
    line.Add(moved);
    snapped.guides.push_back({across->place, line.bottom, across->place, line.top});
  }
  if (up) {
    Box line = *up->to;
    line.Add(moved);
    snapped.guides.push_back({line.left, up->place, line.right, up->place});
  }
  return snapped;
}

}  // namespace vardo
