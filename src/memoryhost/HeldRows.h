// Rows without a name that somebody holds a cell of: each knows its place as rows before it come and go, also by undo and redo.
#pragma once

#include "document/CellNames.h"
#include "document/Journal.h"
#include "memoryhost/SheetRef.h"

#include <memory>
#include <vector>

namespace vardo {

struct HeldRow {
  SheetRef sheet;
  const SectionInfo* section;
  int position;  // from 0, among the rows that are there
  bool gone = false;
};

class HeldRows {
 public:
  // Told of moves as long as it is kept.
  std::shared_ptr<const HeldRow> Hold(const SheetRef& sheet, const SectionInfo& section, int position);
  // A row has just been put in at that position, or taken out of it. The journal must not outlive this.
  void PutIn(Journal& journal, const HeldRow& at);
  void TakenOut(Journal& journal, const HeldRow& at);

 private:
  // The held rows that went when a row was taken out, for when it comes back.
  using Lost = std::shared_ptr<std::vector<std::shared_ptr<HeldRow>>>;
  std::vector<std::shared_ptr<HeldRow>> RowsFrom(const HeldRow& at) const;
  void MakeRoom(const HeldRow& at, const Lost& lost);
  void CloseUp(const HeldRow& at, const Lost& lost);

  std::vector<std::weak_ptr<HeldRow>> held_;
};

}  // namespace vardo
