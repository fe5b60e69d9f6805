// Brings the values of formulas up to date after cells have changed: every formula that depends on them, on the changed sheets
// and on other sheets of the page, is evaluated once, after all that it depends on. Formulas that depend on themselves keep their
// values.
#pragma once

#include "document/CellAddress.h"

#include <unordered_map>
#include <vector>

namespace vardo {

class Drawing;
class DrawingPage;
class DrawingShape;
class Formula;
class Sheet;
struct CellCall;

class Recalculation {
 public:
  // The sheets are the page's; for the document's own sheet there is no page.
  Recalculation(Drawing& drawing, DrawingPage* page) : drawing_(drawing), page_(page) {}

  // A cell whose value is new already.
  void Changed(Sheet& sheet, const CellAddress& address) { nodes_[NodeOf(sheet, address)].done = true; }
  // A formula whose value is out of date.
  void Outdated(Sheet& sheet, const CellAddress& address) { nodes_[NodeOf(sheet, address)].outdated = true; }
  void Run();

 private:
  struct Cell {
    Sheet* sheet;
    CellAddress address;
    friend bool operator==(const Cell&, const Cell&) = default;
  };
  struct CellHash {
    size_t operator()(const Cell& cell) const {
      return CellAddressHash()(cell.address) ^ (reinterpret_cast<std::uintptr_t>(cell.sheet) >> 4);
    }
  };
  struct Node {
    Cell cell;
    std::vector<size_t> readers = {};
    int waitingFor = 0;
    bool done = false;      // changed before the recalculation began
    bool outdated = false;  // something that it depends on has changed
  };
  size_t NodeOf(Sheet& sheet, const CellAddress& address);
  void FindReaders(size_t at);
  void AddReadersIn(size_t at, Sheet& reader, const CellCall& call);
  void AddReadersOnPage(size_t at, Sheet& called, const CellCall& call);
  void AddReader(size_t at, Sheet& reader, const CellAddress& address);
  bool Evaluate(Node& node);
  const Formula* FormulaOf(const Node& node) const;

  Drawing& drawing_;
  DrawingPage* page_;
  std::vector<Node> nodes_;
  std::unordered_map<Cell, size_t, CellHash> places_;
};

}  // namespace vardo
