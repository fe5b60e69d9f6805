#include "document/FormulaIndex.h"

#include "document/Sheet.h"

#include <algorithm>

namespace vardo {
namespace {

const Symbol kMoved("EventXFMod");

bool IsNamed(const FormulaReference& reference) { return reference.name.has_value() && !reference.onOtherPage; }

}  // namespace

CellCall MoveOf(Symbol sheet) { return {sheet, nullptr, {}, 0, kMoved}; }

std::vector<CellCall> CallsOf(const Formula& formula) {
  std::vector<CellCall> calls;
  const auto add = [&](const CellCall& call) {
    if (std::find(calls.begin(), calls.end(), call) == calls.end()) calls.push_back(call);
  };
  for (const FormulaReference& reference : formula.references()) {
    if (!IsNamed(reference)) continue;
    // A trigger that names no other shape, as at a loose end, waits for nobody; the shape's own moves come of its ends.
    if (formula.IsTrigger() && reference.sheet.empty()) continue;
    const Symbol sheet(reference.sheet);
    add({sheet, reference.name->section, reference.name->row, reference.name->position, reference.name->cell});
    if (formula.FollowsPoint() && !sheet.empty()) add(MoveOf(sheet));
  }
  return calls;
}

bool IsTransformCell(const CellAddress& address) {
  static const Symbol cells[] = {Symbol("PinX"),    Symbol("PinY"),  Symbol("Width"), Symbol("Height"), Symbol("LocPinX"),
                                 Symbol("LocPinY"), Symbol("Angle"), Symbol("FlipX"), Symbol("FlipY")};
  return !address.section && std::find(std::begin(cells), std::end(cells), address.cell) != std::end(cells);
}

std::vector<CellCall> NamesOfCell(const Sheet& sheet, const CellAddress& address) {
  std::vector<CellCall> names;
  if (!address.section || address.row.IsNamed()) names.push_back({{}, address.section, address.row.name(), 0, address.cell});
  if (address.section && !address.section->rowsHaveNames)
    if (const auto position = sheet.PositionOf(address))
      names.push_back({{}, address.section, {}, static_cast<int>(*position) + 1, address.cell});
  if (IsTransformCell(address)) names.push_back(MoveOf({}));
  return names;
}

FormulaIndex::FormulaIndex(const Sheet& sheet) {
  for (const Sheet::OwnFormula& own : sheet.OwnFormulas()) {
    const Formula& formula = formulas_.emplace(own.address, Formula(own.formula)).first->second;
    for (const CellCall& call : CallsOf(formula)) readers_[call].push_back(own.address);
  }
}

const std::vector<CellAddress>* FormulaIndex::ReadersOf(const CellCall& call) const {
  const auto found = readers_.find(call);
  return found == readers_.end() ? nullptr : &found->second;
}

const Formula* FormulaIndex::FormulaOf(const CellAddress& address) const {
  const auto found = formulas_.find(address);
  return found == formulas_.end() ? nullptr : &found->second;
}

}  // namespace vardo
