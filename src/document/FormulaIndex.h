// Which formulas of a sheet read which cells, by the names that the formulas use.
#pragma once

#include "document/CellAddress.h"
#include "formula/Formula.h"

#include <memory>
#include <unordered_map>
#include <vector>

namespace vardo {

class Sheet;

// A cell as formulas call it: of a sheet by that name (empty: their own), its row by name or by position.
struct CellCall {
  Symbol sheet;
  const SectionInfo* section = nullptr;
  Symbol row;
  int position = 0;
  Symbol cell;
  // The same cell, of the sheet of that name.
  CellCall Of(Symbol name) const { return {name, section, row, position, cell}; }
  friend bool operator==(const CellCall&, const CellCall&) = default;
};

struct CellCallHash {
  size_t operator()(const CellCall& call) const {
    size_t hash = reinterpret_cast<std::uintptr_t>(call.section);
    for (const size_t part :
         {size_t{call.sheet.number()}, size_t{call.row.number()}, static_cast<size_t>(call.position), size_t{call.cell.number()}})
      hash = (hash ^ part) * size_t{0x9E3779B97F4A7C15};
    return hash ^ (hash >> 32);
  }
};

// What a reference calls; a formula that follows a point of another shape also waits for that shape to move.
std::vector<CellCall> CallsOf(const Formula& formula);

// The names by which formulas of the sheet itself, or with another sheet's name of other sheets, call a cell. A shape that moves
// is called by the event of that, too.
std::vector<CellCall> NamesOfCell(const Sheet& sheet, const CellAddress& address);
bool IsTransformCell(const CellAddress& address);
// What formulas call that wait for a shape to move.
CellCall MoveOf(Symbol sheet);

class FormulaIndex {
 public:
  explicit FormulaIndex(const Sheet& sheet);
  // The cells whose formulas call that one; null for none.
  const std::vector<CellAddress>* ReadersOf(const CellCall& call) const;
  // The formula of a cell of the sheet's own; null when it has none.
  const Formula* FormulaOf(const CellAddress& address) const;
  bool empty() const { return formulas_.empty(); }

 private:
  std::unordered_map<CellCall, std::vector<CellAddress>, CellCallHash> readers_;
  std::unordered_map<CellAddress, Formula, CellAddressHash> formulas_;
};

}  // namespace vardo
