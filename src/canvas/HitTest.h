// What of a page is at a place.
#pragma once

#include "canvas/Scene.h"

#include <optional>
#include <vector>

namespace vardo {

// Whether a click there, within the tolerance in inches on paper, is on what the shape paints: a fill, a line, a text or an
// image.
bool IsHit(const picture::Slice& slice, double scale, picture::Point at, double tolerance);

// The shapes of the page there, the topmost first; each once. Guides, and pages that lie behind, are not there for clicks.
std::vector<int> ShapesAt(const Scene& scene, picture::Point at, double tolerance);
std::optional<int> ShapeAt(const Scene& scene, picture::Point at, double tolerance);

// Those wholly inside the box, or with `touched` those that it meets; in drawing order.
std::vector<int> ShapesIn(const Scene& scene, const picture::Box& box, bool touched);

}  // namespace vardo
