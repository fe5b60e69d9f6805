// Rows without a name that somebody holds a cell of: each knows its place as rows before it come and go, also by undo and redo.
#pragma once

#include "document/Edit.h"
#include "memoryhost/SheetRef.h"

#include <memory>
#include <vector>

namespace vardo {

struct HeldRow {
  SheetRef sheet;
  const SectionInfo* section;
  int position;  // from 0, among the rows that are there
  int gone = 0;  // which of the rows that have gone it went with; 0: it is there
};

class HeldRows {
 public:
  // Told of moves as long as it is kept.
  std::shared_ptr<const HeldRow> Hold(const SheetRef& sheet, const SectionInfo& section, int position);
  // A row of the drawing of that number has been put in, or taken out. again: the row that last went from there has come back.
  void Shifted(int drawing, const RowsShifted& rows, bool again);

 private:
  std::vector<std::shared_ptr<HeldRow>> RowsOf(const SheetRef& sheet, const SectionInfo* section) const;

  std::vector<std::weak_ptr<HeldRow>> held_;
  int lastGone_ = 0;
};

}  // namespace vardo
