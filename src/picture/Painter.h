// What paints a picture. All is in inches on the page, y upwards.
#pragma once

#include "picture/PagePicture.h"

namespace vardo::picture {

class Painter {
 public:
  virtual ~Painter() = default;
  // Around all that one shape shows.
  virtual void BeginShape(const Slice&) {}
  virtual void EndShape() {}
  virtual void Draw(const FillPath& fill) = 0;
  virtual void Draw(const StrokePath& stroke) = 0;
  // toPage leads from the coordinates of the image's boxes, or of the block.
  virtual void Draw(const Image& image, const Matrix& toPage) = 0;
  virtual void Draw(const TextBlock& text, const Matrix& toPage) = 0;
};

enum class Audience { Screen, Paper };

// In painting order; on paper without guides and what does not print.
void Paint(const PagePicture& picture, Painter& painter, Audience audience);
void PaintSlice(const Slice& slice, Painter& painter);

}  // namespace vardo::picture
