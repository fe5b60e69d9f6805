// A picture or object from another program that a shape holds.
#pragma once

#include "picture/Look.h"

#include <optional>
#include <string>

namespace vardo {
class Drawing;
class DrawingShape;
}  // namespace vardo

namespace vardo::picture {

class SheetResolver;

struct ForeignPicture {
  std::shared_ptr<const std::string> bytes;  // null: nothing that can be painted
  std::string type;                          // "image/png"
  std::string label;                         // of the frame that stands for it then: "Picture (EMF)"
};

// None for a shape that holds none.
std::optional<ForeignPicture> ReadForeignPicture(Drawing& drawing, const SheetResolver& resolver, const DrawingShape& shape);

}  // namespace vardo::picture
