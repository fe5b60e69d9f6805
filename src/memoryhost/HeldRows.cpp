#include "memoryhost/HeldRows.h"

namespace vardo {

std::shared_ptr<const HeldRow> HeldRows::Hold(const SheetRef& sheet, const SectionInfo& section, int position) {
  if (held_.size() == held_.capacity()) std::erase_if(held_, [](const auto& row) { return row.expired(); });
  const auto row = std::make_shared<HeldRow>(HeldRow{sheet, &section, position});
  held_.push_back(row);
  return row;
}

void HeldRows::PutIn(Journal& journal, const HeldRow& at) {
  const auto lost = std::make_shared<std::vector<std::shared_ptr<HeldRow>>>();
  MakeRoom(at, lost);
  journal.Record([=, this] { CloseUp(at, lost); }, [=, this] { MakeRoom(at, lost); });
}

void HeldRows::TakenOut(Journal& journal, const HeldRow& at) {
  const auto lost = std::make_shared<std::vector<std::shared_ptr<HeldRow>>>();
  CloseUp(at, lost);
  journal.Record([=, this] { MakeRoom(at, lost); }, [=, this] { CloseUp(at, lost); });
}

std::vector<std::shared_ptr<HeldRow>> HeldRows::RowsFrom(const HeldRow& at) const {
  std::vector<std::shared_ptr<HeldRow>> rows;
  for (const std::weak_ptr<HeldRow>& held : held_)
    if (auto row = held.lock(); row && !row->gone && row->sheet == at.sheet && row->section == at.section)
      if (row->position >= at.position) rows.push_back(std::move(row));
  return rows;
}

void HeldRows::MakeRoom(const HeldRow& at, const Lost& lost) {
  for (const auto& row : RowsFrom(at)) ++row->position;
  for (const auto& row : *lost) row->gone = false;
  lost->clear();
}

void HeldRows::CloseUp(const HeldRow& at, const Lost& lost) {
  for (const auto& row : RowsFrom(at)) {
    if (row->position > at.position) {
      --row->position;
      continue;
    }
    row->gone = true;
    lost->push_back(row);
  }
}

}  // namespace vardo
