#include "addin/host/HostConstants.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"

namespace vardo {

std::optional<std::string> FormulaIfThere(IVShape& shape, const std::string& cell) {
  try {
    return shape.Cells(cell)->Formula();
  } catch (const HostError&) {
    if (shape.CellExists(cell, kExistsAnywhere)) throw;
  }
  return std::nullopt;
}
BulkTexts IVPage::PropertyFormulas(std::span<const int> positions, std::string_view field) {
  BulkTexts formulas;
  formulas.Reserve(positions.size());
  const IVShapesPtr shapes = Shapes();
  const std::string cell = "Prop." + std::string(field);
  for (const int position : positions) {
    if (auto formula = FormulaIfThere(*shapes->Item(position), cell))
      formulas.AddCopy(*std::move(formula));
    else
      formulas.AddView(std::nullopt);
  }
  return formulas;
}

BulkTexts IVPage::MasterNames() {
  BulkTexts names;
  const IVShapesPtr shapes = Shapes();
  const int count = shapes->Count();
  for (int i = 1; i <= count; ++i) {
    if (const IVMasterPtr master = shapes->Item(i)->Master())
      names.AddCopy(master->Name());
    else
      names.AddView(std::nullopt);
  }
  return names;
}

std::optional<ListedTexts> IVPage::CountInListedShapes(std::string_view, std::string_view, std::string_view) {
  return std::nullopt;
}

}  // namespace vardo
