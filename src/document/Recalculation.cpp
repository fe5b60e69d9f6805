#include "document/Recalculation.h"

#include "base/Text.h"
#include "formula/FormulaReferences.h"

#include <algorithm>

namespace vardo {
namespace {

constexpr std::string_view kTransformCells[] = {"PinX",    "PinY",  "Width", "Height", "LocPinX",
                                                "LocPinY", "Angle", "FlipX", "FlipY"};
constexpr const char* kTransformEvent = "EventXFMod";

std::string KeyOf(const Sheet& sheet, const CellAddress& address) {
  const std::string section(address.section ? address.section->prefix : "");
  return std::to_string(reinterpret_cast<std::uintptr_t>(&sheet)) + section + "\n" + address.row + "\n" + address.cell;
}

// The names by which formulas know that a cell has changed; a shape that moves triggers those that wait for its transform.
std::vector<std::string> NamesTold(const Sheet& sheet, const CellAddress& address) {
  std::vector<std::string> names = sheet.NamesOf(address);
  const bool moves = !address.section &&
                     std::find(std::begin(kTransformCells), std::end(kTransformCells), address.cell) != std::end(kTransformCells);
  if (moves) names.push_back(kTransformEvent);
  for (std::string& name : names) name = LowerAscii(name);
  return names;
}

// What formulas of other sheets call a sheet's cells, before the cell's name.
std::string NameFromOutside(int sheetId) { return std::to_string(sheetId) + "!"; }

bool IsTrigger(std::string_view formula) { return formula.starts_with("_XFTRIGGER("); }

}  // namespace

FormulaIndex IndexFormulas(const Sheet& sheet, DrawingPage* page) {
  FormulaIndex index;
  for (const Sheet::OwnFormula& own : sheet.OwnFormulas()) {
    const bool followsShape = own.formula.find("PNT(") != std::string_view::npos;
    std::vector<std::string> names;
    for (const FormulaReference& reference : ReferencesIn(own.formula)) {
      std::string of;
      if (!reference.sheet.empty()) {
        const DrawingShape* named = page && !reference.onOtherPage ? page->FindSheet(reference.sheet) : nullptr;
        if (!named && !NamesPageSheet(reference)) continue;
        of = NameFromOutside(named ? named->id() : DrawingPage::kPageSheet);
      }
      names.push_back(of + LowerAscii(reference.cell));
      if (followsShape && !of.empty()) names.push_back(of + LowerAscii(kTransformEvent));
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    for (std::string& name : names) index[std::move(name)].push_back(own.address);
  }
  return index;
}

void Recalculation::OutdatedFormulas(Sheet& sheet) {
  for (const Sheet* at = &sheet; at; at = at->base())
    for (const Sheet::OwnFormula& own : at->OwnFormulas())
      if (sheet.Exists(own.address) && (at == &sheet || sheet.InheritsFormula(own.address))) Outdated(sheet, own.address);
}

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

Recalculation::Node& Recalculation::AddNode(Sheet& sheet, const CellAddress& address) { return nodes_[NodeOf(sheet, address)]; }

size_t Recalculation::NodeOf(Sheet& sheet, const CellAddress& address) {
  const auto [place, isNew] = places_.emplace(KeyOf(sheet, address), nodes_.size());
  if (isNew) nodes_.push_back({&sheet, address, {}});
  return place->second;
}

void Recalculation::FindReaders(size_t at) {
  Sheet& sheet = *nodes_[at].sheet;
  const auto* shape = dynamic_cast<const DrawingShape*>(&sheet);
  const bool isPageSheet = page_ && &sheet == &page_->PageSheet();
  for (const std::string& name : NamesTold(sheet, CellAddress(nodes_[at].address))) {
    AddReaders(at, sheet, IndexOf(sheet), name, false);
    for (const Sheet* base = sheet.base(); base; base = base->base())
      AddReaders(at, sheet, drawing_.FormulasOfMaster(*base), name, true);
    if (!page_ || !(shape || isPageSheet)) continue;
    const int id = shape ? shape->id() : DrawingPage::kPageSheet;
    const std::string fromOutside = NameFromOutside(id) + name;
    for (const int reader : page_->ReadersOf(id))
      if (DrawingShape* other = page_->FindShape(reader)) AddReaders(at, *other, IndexOf(*other), fromOutside, false);
    if (isPageSheet) AddReadersByMaster(at, fromOutside);
  }
}

// The shapes that have a formula naming the page's sheet from their master.
void Recalculation::AddReadersByMaster(size_t at, const std::string& name) {
  for (int m = 1; m <= drawing_.MasterCount(); ++m) {
    const DrawingShape* master = drawing_.MasterAt(m).TopShape();
    if (!master || !drawing_.FormulasOfMaster(*master).contains(name)) continue;
    for (int i = 1; i <= page_->ShapeCount(); ++i) {
      DrawingShape& shape = page_->ShapeAt(i);
      if (shape.base() == master) AddReaders(at, shape, drawing_.FormulasOfMaster(*master), name, true);
    }
  }
}

void Recalculation::AddReaders(size_t at, Sheet& reader, const FormulaIndex& index, const std::string& name, bool inherited) {
  const auto found = index.find(name);
  if (found == index.end()) return;
  for (const CellAddress& address : found->second) {
    if (inherited && !(reader.Exists(address) && reader.InheritsFormula(address))) continue;
    const size_t node = NodeOf(reader, address);
    if (node == at) continue;
    nodes_[at].readers.push_back(node);
    ++nodes_[node].waitingFor;
  }
}

const FormulaIndex& Recalculation::IndexOf(const Sheet& sheet) {
  const auto [place, isNew] = indexes_.try_emplace(&sheet);
  if (isNew) place->second = IndexFormulas(sheet, page_);
  return place->second;
}

// Whether readers of the cell have to look at it again.
bool Recalculation::Evaluate(Node& node) {
  const std::string formula = node.sheet->Formula(node.address);
  // A master's formula numbers the shapes inside the master, not those of the page.
  if (node.sheet->InheritsFormula(node.address) && formula.find("Sheet.") != std::string::npos) return false;
  const Evaluation evaluation = EvaluateIn(drawing_.ScopeFor(page_, *node.sheet, node.address), formula);
  if (!evaluation.value && evaluation.error.empty()) return false;
  const bool changed = node.sheet->StoreEvaluation(drawing_.editor(), node.address, evaluation);
  return changed || (evaluation.value && IsTrigger(formula));
}

}  // namespace vardo
