// Finds what is in a part of a page without looking at all of it: boxes in a grid.
#pragma once

#include "canvas/Boxes.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace vardo {

class PageIndex {
 public:
  // Of so many boxes, numbered from 0. Empty ones are never found.
  void Build(size_t count, const std::function<Box(size_t)>& boxOf);
  void Move(size_t number, const Box& before, const Box& after);

  // The numbers of those that touch the box, ascending. Some that only come near may be among them.
  std::vector<std::uint32_t> Find(const Box& box) const;
  size_t size() const { return count_; }

 private:
  struct Cells {
    int left, bottom, right, top;
  };
  Cells CellsOf(const Box& box) const;
  std::vector<std::uint32_t>& CellAt(int x, int y) { return cells_[static_cast<size_t>(y * columns_ + x)]; }
  const std::vector<std::uint32_t>& CellAt(int x, int y) const { return cells_[static_cast<size_t>(y * columns_ + x)]; }

  size_t count_ = 0;
  Box around_{};
  double cellSize_ = 1;  // inches
  int columns_ = 1, rows_ = 1;
  std::vector<std::vector<std::uint32_t>> cells_;  // what lies outside is in the cells at the edge
  mutable std::vector<std::uint32_t> seen_;        // by which search
  mutable std::uint32_t search_ = 0;
};

}  // namespace vardo
