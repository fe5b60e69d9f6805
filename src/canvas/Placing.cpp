#include "canvas/Placing.h"

#include "canvas/HitTest.h"
#include "canvas/ShapeFacts.h"
#include "document/Drawing.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace vardo {
namespace {

constexpr double kGap = 0.75, kGapBelow = 0.4, kFurther = 0.4;  // inches
constexpr int kTries = 20;
constexpr double kRow = 0.5;  // inches: what stands less far apart is read as one row

Box BoxAbout(PagePoint middle, double width, double height) {
  return {middle.x - width / 2, middle.y - height / 2, middle.x + width / 2, middle.y + height / 2};
}

bool IsFree(const Scene& scene, DrawingPage& page, const Box& box) {
  for (const int id : ShapesIn(scene, box, true)) {
    const DrawingShape* const shape = page.FindShape(id);
    if (shape && !shape->IsOneDimensional()) return false;
  }
  return true;
}

PagePoint FreePlace(const Scene& scene, DrawingPage& page, PagePoint first, double width, double height) {
  PagePoint at = first;
  for (int i = 0; i < kTries; ++i) {
    if (IsFree(scene, page, BoxAbout(at, width, height))) return at;
    at.y -= height + kGapBelow;
  }
  return first + PagePoint{kFurther, 0};
}

}  // namespace

PagePoint PlaceBeside(const Scene& scene, DrawingPage& page, const Box& box, double width, double height) {
  return FreePlace(scene, page, {box.right + kGap + width / 2, box.middle().y}, width, height);
}

PagePoint PlaceIn(const Scene& scene, DrawingPage& page, const Box& seen, double width, double height) {
  const Box paper = scene.Paper();
  Box both{std::max(seen.left, paper.left), std::max(seen.bottom, paper.bottom), std::min(seen.right, paper.right),
           std::min(seen.top, paper.top)};
  if (both.empty() || both.bottom > both.top) both = paper;
  return FreePlace(scene, page, both.middle(), width, height);
}

std::vector<int> ReadingOrder(DrawingPage& page) {
  struct Seen {
    int shape;
    double row, left;
  };
  std::vector<Seen> modules;
  std::unordered_map<int, std::vector<int>> leaving;  // connectors by the shape they leave
  std::unordered_map<int, int> begins;
  for (const DrawingPage::GluedEnd& end : page.GluedEnds())
    if (end.isBegin) begins[end.connector] = end.target;
  std::vector<int> loose;
  for (const DrawingShape* shape : page.TopLevel()) {
    if (shape->IsOneDimensional()) {
      const auto begin = begins.find(shape->id());
      (begin == begins.end() ? loose : leaving[begin->second]).push_back(shape->id());
      continue;
    }
    const Box box = FrameOf(*shape, 1);
    modules.push_back({shape->id(), -std::floor(box.middle().y / kRow), box.left});
  }
  std::sort(modules.begin(), modules.end(),
            [](const Seen& a, const Seen& b) { return std::tie(a.row, a.left, a.shape) < std::tie(b.row, b.left, b.shape); });
  std::vector<int> order;
  for (const Seen& module : modules) {
    order.push_back(module.shape);
    const std::vector<int>& connectors = leaving[module.shape];
    order.insert(order.end(), connectors.begin(), connectors.end());
  }
  order.insert(order.end(), loose.begin(), loose.end());
  return order;
}

std::optional<int> NextShape(DrawingPage& page, std::optional<int> current, int step) {
  const std::vector<int> order = ReadingOrder(page);
  if (order.empty()) return std::nullopt;
  const auto at = current ? std::find(order.begin(), order.end(), *current) : order.end();
  if (at == order.end()) return step > 0 ? order.front() : order.back();
  const auto count = static_cast<int>(order.size());
  return order[static_cast<size_t>((static_cast<int>(at - order.begin()) + step + count) % count)];
}

std::optional<int> NearestShape(DrawingPage& page, int from, int x, int y) {
  const DrawingShape* const start = page.FindShape(from);
  if (!start) return std::nullopt;
  const PagePoint origin = FrameOf(*start, 1).middle();
  std::optional<int> nearest;
  double best = 0;
  for (const DrawingShape* shape : page.TopLevel()) {
    if (shape->id() == from || shape->IsOneDimensional()) continue;
    const PagePoint way = FrameOf(*shape, 1).middle() - origin;
    const double along = way.x * x + way.y * y, aside = std::abs(way.x * y) + std::abs(way.y * x);
    if (along <= 0) continue;
    const double far = along + 2 * aside;  // what lies ahead is nearer than what lies aside
    if (!nearest || far < best) {
      nearest = shape->id();
      best = far;
    }
  }
  return nearest;
}

}  // namespace vardo
