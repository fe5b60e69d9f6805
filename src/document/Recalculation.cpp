#include "document/Recalculation.h"

#include "addin/host/HostConstants.h"
#include "document/Drawing.h"
#include "document/FormulaIndex.h"
#include "document/FormulaScopeOfDrawing.h"

#include <algorithm>

namespace vardo {

void Recalculation::Run() {
  for (size_t at = 0; at < nodes_.size(); ++at) FindReaders(at);
  std::vector<size_t> ready;
  for (size_t at = 0; at < nodes_.size(); ++at)
    if (nodes_[at].done || nodes_[at].waitingFor == 0) ready.push_back(at);
  for (size_t next = 0; next < ready.size(); ++next) {
    Node& node = nodes_[ready[next]];
    const bool changed = node.done || (node.outdated && Evaluate(node));
    for (const size_t reader : node.readers) {
      Node& waiting = nodes_[reader];
      waiting.outdated = waiting.outdated || changed;
      if (--waiting.waitingFor == 0 && !waiting.done) ready.push_back(reader);
    }
  }
}

size_t Recalculation::NodeOf(Sheet& sheet, const CellAddress& address) {
  const Cell cell{&sheet, address};
  const auto [place, isNew] = places_.emplace(cell, nodes_.size());
  if (isNew) nodes_.push_back({cell});
  return place->second;
}

void Recalculation::FindReaders(size_t at) {
  Sheet& sheet = *nodes_[at].cell.sheet;
  const CellAddress address = nodes_[at].cell.address;
  for (const CellCall& call : NamesOfCell(sheet, address)) {
    AddReadersIn(at, sheet, call);
    if (page_) AddReadersOnPage(at, sheet, call);
  }
  // What is inside a group moves with it.
  auto* const group = page_ && IsTransformCell(address) ? dynamic_cast<DrawingShape*>(&sheet) : nullptr;
  if (group && group->Type() == kShapeTypeGroup)
    for (DrawingShape* inner : page_->InnerShapes(*group)) AddReadersOnPage(at, *inner, MoveOf({}));
}

// Formulas of the reader's own and those that it inherits.
void Recalculation::AddReadersIn(size_t at, Sheet& reader, const CellCall& call) {
  if (const auto* own = reader.formulas().ReadersOf(call))
    for (const CellAddress& address : *own) AddReader(at, reader, address);
  for (const Sheet* base = reader.base(); base; base = base->base()) {
    const auto* inherited = base->formulas().ReadersOf(call);
    if (!inherited) continue;
    for (const CellAddress& address : *inherited)
      if (reader.Exists(address) && reader.InheritsFormula(address)) AddReader(at, reader, address);
  }
}

// Formulas of other sheets that call the cell by a name of its sheet.
void Recalculation::AddReadersOnPage(size_t at, Sheet& called, const CellCall& call) {
  const PageReaders& readers = page_->Readers();
  if (readers.ReadsOfAnySheet(call)) {
    for (const Symbol name : page_->CalledAs(called)) {
      const CellCall fromOutside = call.Of(name);
      if (!readers.Reads(fromOutside)) continue;
      for (const int id : readers.ReadersOf(name)) {
        DrawingShape* reader = page_->FindShape(id);
        const auto* addresses = reader ? reader->formulas().ReadersOf(fromOutside) : nullptr;
        if (!addresses) continue;
        for (const CellAddress& address : *addresses) AddReader(at, *reader, address);
      }
    }
  }
  // A master's formulas name no shape of the page, but may name the page's sheet.
  if (&called != &page_->PageSheet()) return;
  const CellCall fromMaster = call.Of(Symbol("ThePage"));
  for (const Sheet* master : drawing_.MasterShapesCalling(fromMaster))
    for (DrawingShape* instance : page_->InstancesOf(*master))
      for (const CellAddress& address : *master->formulas().ReadersOf(fromMaster))
        if (instance->Exists(address) && instance->InheritsFormula(address)) AddReader(at, *instance, address);
}

void Recalculation::AddReader(size_t at, Sheet& reader, const CellAddress& address) {
  const size_t node = NodeOf(reader, address);
  if (node == at) return;
  nodes_[at].readers.push_back(node);
  ++nodes_[node].waitingFor;
}

const Formula* Recalculation::FormulaOf(const Node& node) const {
  const auto& [sheet, address] = node.cell;
  for (const Sheet* at = sheet; at; at = at->base())
    if (const Formula* formula = at->formulas().FormulaOf(address))
      return at == sheet || sheet->InheritsFormula(address) ? formula : nullptr;
  return nullptr;
}

// Whether readers of the cell have to look at it again.
bool Recalculation::Evaluate(Node& node) {
  const auto& [sheet, address] = node.cell;
  const Formula* formula = FormulaOf(node);
  if (!formula) return false;
  // A master's formula numbers the shapes inside the master, not those of the page.
  const bool isInherited = sheet->InheritsFormula(address);
  const auto namesShape = [](const FormulaReference& reference) { return reference.sheet.starts_with("Sheet."); };
  if (isInherited && std::any_of(formula->references().begin(), formula->references().end(), namesShape)) return false;
  const bool isTrigger = formula->IsTrigger();
  const Evaluation evaluation = formula->Evaluate(FormulaScopeOfDrawing(drawing_, page_, *sheet, address));
  if (!evaluation.value && evaluation.error.empty()) return false;
  const bool changed = sheet->StoreEvaluation(drawing_.editor(), address, evaluation);
  return changed || (evaluation.value && isTrigger);
}

}  // namespace vardo
