#include "document/FormulaScopeOfDrawing.h"

#include "document/Drawing.h"
#include "document/Glue.h"

namespace vardo {

const Sheet* FormulaScopeOfDrawing::Find(std::string_view sheet) const {
  if (sheet.empty()) return &sheet_;
  if (sheet == "ThePage") return page_ ? &page_->PageSheet() : nullptr;
  if (sheet == "TheDoc") return &drawing_.DocumentSheet();
  return page_ ? page_->FindSheet(sheet) : nullptr;
}

std::optional<CellValue> FormulaScopeOfDrawing::Value(const FormulaReference& reference) const {
  const Sheet* target = Find(reference.sheet);
  if (!target) throw BadReference{};
  if (!reference.name) return std::nullopt;
  if (const auto address = target->Find(*reference.name)) return target->Value(*address);
  // A shape has more cells than we know, but not more rows.
  if (reference.name->section) throw BadReference{};
  return std::nullopt;
}

std::optional<Point> FormulaScopeOfDrawing::OnPage(std::string_view sheet, Point own) const {
  const auto* shape = dynamic_cast<const DrawingShape*>(Find(sheet));
  return shape ? std::optional(vardo::OnPage(*shape, own)) : std::nullopt;
}

std::optional<Point> FormulaScopeOfDrawing::WalkingEnd(std::string_view trigger, std::string_view otherTrigger) const {
  const auto* const connector = dynamic_cast<const DrawingShape*>(&sheet_);
  const ConnectorEnd *end = FindConnectorEnd(trigger), *other = FindConnectorEnd(otherTrigger);
  return page_ && connector && end && other ? vardo::WalkingEnd(*page_, *connector, *end, *other) : std::nullopt;
}

}  // namespace vardo
