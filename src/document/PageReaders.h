// Which shapes of a page have formulas that name another sheet, and which of its cells they read: enough to know at once that
// nobody does.
#pragma once

#include "document/FormulaIndex.h"

#include <map>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vardo {

class PageReaders {
 public:
  bool known() const { return known_; }
  void Forget();
  void Begin() { known_ = true; }
  // A formula of the reader has come (+1) or is going (-1).
  void Note(int reader, std::string_view formula, int by);

  bool Reads(const CellCall& call) const;
  // That cell of any other sheet.
  bool ReadsOfAnySheet(const CellCall& call) const;
  // By number; those whose formulas name the sheet so.
  std::vector<int> ReadersOf(Symbol sheet) const;

 private:
  struct Called {
    std::map<int, int> readers;  // and how many of each one's formulas
    std::unordered_map<CellCall, int, CellCallHash> cells;
  };
  bool known_ = false;
  std::unordered_map<Symbol, Called> sheets_;
  std::unordered_map<CellCall, int, CellCallHash> ofAnySheet_;  // calls of the cells, whatever sheet they name
};

// Whether it names another sheet at all.
inline bool NamesSheet(std::string_view formula) { return formula.find('!') != std::string_view::npos; }

}  // namespace vardo
