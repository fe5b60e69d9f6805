// Brings the values of formulas up to date after cells have changed: every formula that depends on them, on the changed sheets
// and on other sheets of the page, is evaluated once, after all that it depends on. Formulas that depend on themselves keep their
// values.
#pragma once

#include "document/Drawing.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace vardo {

class Recalculation {
 public:
  // The sheets are the page's; for the document's own sheet there is no page.
  Recalculation(Drawing& drawing, DrawingPage* page) : drawing_(drawing), page_(page) {}

  // A cell whose value is new already.
  void Changed(Sheet& sheet, const CellAddress& address) { AddNode(sheet, address).done = true; }
  // A formula whose value is out of date.
  void Outdated(Sheet& sheet, const CellAddress& address) { AddNode(sheet, address).outdated = true; }
  // All of them.
  void OutdatedFormulas(Sheet& sheet);
  void Run();

 private:
  struct Node {
    Sheet* sheet;
    CellAddress address;
    std::vector<size_t> readers;
    int waitingFor = 0;
    bool done = false;      // changed before the recalculation began
    bool outdated = false;  // something that it depends on has changed
  };
  Node& AddNode(Sheet& sheet, const CellAddress& address);
  size_t NodeOf(Sheet& sheet, const CellAddress& address);
  void FindReaders(size_t node);
  void AddReaders(size_t node, Sheet& reader, const FormulaIndex& index, const std::string& name, bool inherited);
  void AddReadersByMaster(size_t at, const std::string& name);
  const FormulaIndex& IndexOf(const Sheet& sheet);
  bool Evaluate(Node& node);

  Drawing& drawing_;
  DrawingPage* page_;
  std::vector<Node> nodes_;
  std::unordered_map<std::string, size_t> places_;
  std::unordered_map<const Sheet*, FormulaIndex> indexes_;
};

}  // namespace vardo
