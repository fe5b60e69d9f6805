#include "canvas/PageIndex.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vardo {
namespace {

constexpr double kUsualCell = 2;  // inches
constexpr double kMostCells = 65'536;

}  // namespace

void PageIndex::Build(size_t count, const std::function<Box(size_t)>& boxOf) {
  count_ = count;
  around_ = {};
  for (size_t i = 0; i < count; ++i) around_.Add(boxOf(i));
  if (around_.empty()) around_ = {0, 0, 1, 1};
  const double area = std::max(1.0, around_.width()) * std::max(1.0, around_.height());
  cellSize_ = std::max(kUsualCell, std::sqrt(area / kMostCells));
  const auto cellsAlong = [&](double length) {
    return 1 + static_cast<int>(std::min(kMostCells, std::max(0.0, length / cellSize_)));
  };
  columns_ = cellsAlong(around_.width());
  rows_ = cellsAlong(around_.height());
  cells_.assign(static_cast<size_t>(columns_) * static_cast<size_t>(rows_), {});
  seen_.assign(count, 0);
  search_ = 0;
  for (size_t i = 0; i < count; ++i) Move(i, {}, boxOf(i));
}

PageIndex::Cells PageIndex::CellsOf(const Box& box) const {
  const auto cell = [&](double from, double at, int count) {
    return static_cast<int>(std::clamp(std::floor((at - from) / cellSize_), 0.0, static_cast<double>(count - 1)));
  };
  return {cell(around_.left, box.left, columns_), cell(around_.bottom, box.bottom, rows_),
          cell(around_.left, box.right, columns_), cell(around_.bottom, box.top, rows_)};
}

void PageIndex::Move(size_t number, const Box& before, const Box& after) {
  const auto id = static_cast<std::uint32_t>(number);
  const auto forCells = [&](const Box& box, auto act) {
    if (box.empty()) return;
    const Cells cells = CellsOf(box);
    for (int y = cells.bottom; y <= cells.top; ++y)
      for (int x = cells.left; x <= cells.right; ++x) act(CellAt(x, y));
  };
  forCells(before, [&](auto& cell) { std::erase(cell, id); });
  forCells(after, [&](auto& cell) { cell.push_back(id); });
}

std::vector<std::uint32_t> PageIndex::Find(const Box& box) const {
  std::vector<std::uint32_t> found;
  if (box.empty() || cells_.empty()) return found;
  const Cells cells = CellsOf(box);
  if (cells.left == 0 && cells.bottom == 0 && cells.right == columns_ - 1 && cells.top == rows_ - 1) {
    found.resize(count_);
    std::iota(found.begin(), found.end(), 0U);
    return found;
  }
  ++search_;
  for (int y = cells.bottom; y <= cells.top; ++y)
    for (int x = cells.left; x <= cells.right; ++x)
      for (const std::uint32_t id : CellAt(x, y))
        if (seen_[id] != search_) {
          seen_[id] = search_;
          found.push_back(id);
        }
  std::sort(found.begin(), found.end());
  return found;
}

}  // namespace vardo
