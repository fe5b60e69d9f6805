#include "memoryhost/HeldRows.h"

#include <algorithm>

namespace vardo {

std::shared_ptr<const HeldRow> HeldRows::Hold(const SheetRef& sheet, const SectionInfo& section, int position) {
  if (held_.size() == held_.capacity()) std::erase_if(held_, [](const auto& row) { return row.expired(); });
  const auto row = std::make_shared<HeldRow>(HeldRow{sheet, &section, position});
  held_.push_back(row);
  return row;
}

std::vector<std::shared_ptr<HeldRow>> HeldRows::RowsOf(const SheetRef& sheet, const SectionInfo* section) const {
  std::vector<std::shared_ptr<HeldRow>> rows;
  for (const std::weak_ptr<HeldRow>& held : held_)
    if (auto row = held.lock(); row && row->sheet == sheet && row->section == section) rows.push_back(std::move(row));
  return rows;
}

void HeldRows::Shifted(int drawing, const RowsShifted& shifted, bool again) {
  const auto rows = RowsOf({drawing, shifted.page, shifted.shape, shifted.kind}, shifted.section);
  if (shifted.by < 0) {
    ++lastGone_;
    for (const auto& row : rows) {
      if (row->gone || row->position < shifted.position) continue;
      if (row->position == shifted.position)
        row->gone = lastGone_;
      else
        --row->position;
    }
    return;
  }
  int back = 0;
  for (const auto& row : rows) {
    if (!row->gone && row->position >= shifted.position) ++row->position;
    if (again && row->gone && row->position == shifted.position) back = std::max(back, row->gone);
  }
  for (const auto& row : rows)
    if (back && row->gone == back) row->gone = 0;
}

}  // namespace vardo
