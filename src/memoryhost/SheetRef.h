// Names a sheet of the open drawing, whatever has been undone meanwhile.
#pragma once

#include "document/SheetKind.h"

namespace vardo {

struct SheetRef {
  int drawing = 0;  // which of the drawings that the host has had
  int page = 0;
  int shape = 0;  // of a shape's
  SheetKind kind = SheetKind::Shape;
  bool IsShape() const { return kind == SheetKind::Shape; }
  bool operator==(const SheetRef&) const = default;
};

}  // namespace vardo
