// Which shapes of a page have formulas that name another sheet, and which of its cells they read: enough to know at once that
// nobody does.
#pragma once

#include "document/FormulaIndex.h"

#include <map>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace vardo {

class PageReaders {
 public:
  bool known() const { return known_; }
  void Forget();
  void Begin() { known_ = true; }
  // A formula of the reader has come (+1) or is going (-1).
  void Note(int reader, std::string_view formula, int by);
  // A shape has gone. Its formulas stay counted until it comes back, or most of what is counted has gone: then all is forgotten,
  // so that many can go at little cost. left: how many shapes the page still has.
  void ReaderGone(int reader, size_t left);
  // Whether it is one that had gone, so that nothing needs to be noted again.
  bool ReaderIsBack(int reader);

  bool Reads(const CellCall& call) const;
  // That cell of any other sheet.
  bool ReadsOfAnySheet(const CellCall& call) const;
  // By number; those whose formulas name the sheet so, some of which may have gone.
  std::vector<int> ReadersOf(Symbol sheet) const;

 private:
  struct Called {
    std::map<int, int> readers;  // and how many of each one's formulas
    std::unordered_map<CellCall, int, CellCallHash> cells;
  };
  bool known_ = false;
  std::unordered_map<Symbol, Called> sheets_;
  std::unordered_map<CellCall, int, CellCallHash> ofAnySheet_;  // calls of the cells, whatever sheet they name
  std::unordered_set<int> gone_;
};

// Whether it names another sheet at all.
inline bool NamesSheet(std::string_view formula) { return formula.find('!') != std::string_view::npos; }

}  // namespace vardo
