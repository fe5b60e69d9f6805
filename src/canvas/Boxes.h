// Places on the page, in inches on paper, y upwards.
#pragma once

#include "picture/Outline.h"

namespace vardo {

using picture::Box;
using PagePoint = picture::Point;

inline bool Holds(const Box& box, PagePoint p) {
  return p.x >= box.left && p.x <= box.right && p.y >= box.bottom && p.y <= box.top;
}
inline bool Meets(const Box& a, const Box& b) {
  return a.left <= b.right && b.left <= a.right && a.bottom <= b.top && b.bottom <= a.top;
}
inline bool IsWithin(const Box& inner, const Box& outer) {
  return inner.left >= outer.left && inner.right <= outer.right && inner.bottom >= outer.bottom && inner.top <= outer.top;
}
inline Box MovedBy(const Box& box, PagePoint by) {
  return box.empty() ? box : Box{box.left + by.x, box.bottom + by.y, box.right + by.x, box.top + by.y};
}
inline Box BoxBetween(PagePoint a, PagePoint b) {
  Box box;
  box.Add(a);
  box.Add(b);
  return box;
}

}  // namespace vardo
