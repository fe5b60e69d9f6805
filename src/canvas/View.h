// Which part of a page is seen, and how large. Places on the page in inches on paper, y upwards; pixels from the upper left
// corner of the window's part that shows the page, y downwards.
#pragma once

#include "canvas/Boxes.h"

namespace vardo {

struct Pixel {
  double x = 0, y = 0;
  bool operator==(const Pixel&) const = default;
};
inline Pixel operator-(Pixel a, Pixel b) { return {a.x - b.x, a.y - b.y}; }
double Distance(Pixel a, Pixel b);

struct PixelSize {
  double width = 0, height = 0;
};

// At this many pixels an inch a page is as large as on paper.
inline constexpr double kFullSize = 96;

class View {
 public:
  static constexpr double kSmallest = 0.05 * kFullSize, kLargest = 6 * kFullSize;

  View() = default;
  // corner: what of the page is at the pixel 0, 0.
  View(PagePoint corner, double pixelsPerInch) : corner_(corner), pixelsPerInch_(pixelsPerInch) {}
  // With all of the box in the middle, as large as possible but not larger than that.
  static View Fitting(const Box& box, PixelSize window, double margin, double largest = kFullSize);

  double pixelsPerInch() const { return pixelsPerInch_; }
  PagePoint corner() const { return corner_; }
  double Zoom() const { return pixelsPerInch_ / kFullSize; }

  Pixel ToPixel(PagePoint point) const {
    return {(point.x - corner_.x) * pixelsPerInch_, (corner_.y - point.y) * pixelsPerInch_};
  }
  PagePoint ToPage(Pixel pixel) const { return {corner_.x + pixel.x / pixelsPerInch_, corner_.y - pixel.y / pixelsPerInch_}; }
  double ToInches(double pixels) const { return pixels / pixelsPerInch_; }
  Box Seen(PixelSize window) const;

  // What is at the pixel stays there; the size is kept within what is possible.
  View ZoomedAt(Pixel pixel, double pixelsPerInch) const;
  View MovedBy(Pixel pixels) const;
  bool operator==(const View&) const = default;

 private:
  PagePoint corner_{};
  double pixelsPerInch_ = kFullSize;
};

}  // namespace vardo
