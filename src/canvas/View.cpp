#include "canvas/View.h"

#include <algorithm>
#include <cmath>

namespace vardo {

double Distance(Pixel a, Pixel b) { return std::hypot(a.x - b.x, a.y - b.y); }

View View::Fitting(const Box& box, PixelSize window, double margin, double largest) {
  const double across = (window.width - 2 * margin) / std::max(box.width(), 1e-6),
               up = (window.height - 2 * margin) / std::max(box.height(), 1e-6);
  const double scale = std::clamp(std::min({across, up, largest}), kSmallest, kLargest);
  const PagePoint middle = box.middle();
  return {{middle.x - window.width / 2 / scale, middle.y + window.height / 2 / scale}, scale};
}

Box View::Seen(PixelSize window) const {
  return {corner_.x, corner_.y - window.height / pixelsPerInch_, corner_.x + window.width / pixelsPerInch_, corner_.y};
}

View View::ZoomedAt(Pixel pixel, double pixelsPerInch) const {
  const double scale = std::clamp(pixelsPerInch, kSmallest, kLargest);
  const PagePoint fixed = ToPage(pixel);
  return {{fixed.x - pixel.x / scale, fixed.y + pixel.y / scale}, scale};
}

View View::MovedBy(Pixel pixels) const {
  return {{corner_.x - pixels.x / pixelsPerInch_, corner_.y + pixels.y / pixelsPerInch_}, pixelsPerInch_};
}

}  // namespace vardo
