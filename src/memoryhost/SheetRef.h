// Names a sheet of the open drawing, whatever has been undone meanwhile.
#pragma once

namespace vardo {

struct SheetRef {
  int drawing = 0;  // which of the drawings that the host has had
  int page = 0;
  int shape = kPageSheet;
  static constexpr int kPageSheet = -1;
  static constexpr int kDocumentSheet = -2;
  bool operator==(const SheetRef&) const = default;
};

}  // namespace vardo
