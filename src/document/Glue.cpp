#include "document/Glue.h"

#include "document/Drawing.h"
#include "formula/FormulaReferences.h"

namespace vardo {
namespace {

constexpr int kWholeShape = 3, kPartBeforeFirstPoint = 99;

// The shape of the page that the formula first names, and the cell of it.
std::optional<GlueTarget> FirstShapeIn(DrawingPage& page, std::string_view formula) {
  for (const FormulaReference& reference : ReferencesIn(formula)) {
    const DrawingShape* shape = reference.onOtherPage ? nullptr : page.FindSheet(reference.sheet);
    if (shape) return GlueTarget{shape->id(), reference.cell, 0};
  }
  return std::nullopt;
}

std::string FormulaOf(const DrawingShape& shape, const char* cell) {
  const auto address = shape.Find(cell);
  return address ? shape.Formula(*address) : "";
}

}  // namespace

const ConnectorEnd* FindConnectorEnd(std::string_view cell) {
  for (const ConnectorEnd& end : kConnectorEnds)
    if (cell == end.x || cell == end.y || cell == end.trigger) return &end;
  return nullptr;
}

std::optional<GlueTarget> GlueTargetOf(DrawingPage& page, const DrawingShape& connector, const ConnectorEnd& end) {
  const std::string formula = FormulaOf(connector, end.x);
  if (formula.starts_with("_WALKGLUE(")) {
    const auto target = FirstShapeIn(page, FormulaOf(connector, end.trigger));
    return target ? std::optional(GlueTarget{target->shape, "PinX", kWholeShape}) : std::nullopt;
  }
  auto target = formula.starts_with("PAR(PNT(") ? FirstShapeIn(page, formula) : std::nullopt;
  if (!target) return std::nullopt;
  const auto name = ParseCellName(target->cell);
  const SectionInfo* points = FindSectionByElement("Connection");
  if (!name || name->section != points) return std::nullopt;
  if (name->byNumber) {
    target->part = kPartBeforeFirstPoint + std::atoi(name->row.c_str());
    return target;
  }
  const std::vector<Sheet::Row> rows = page.FindShape(target->shape)->Rows(*points);
  for (size_t i = 0; i < rows.size(); ++i)
    if (rows[i].key == name->row) target->part = kPartBeforeFirstPoint + static_cast<int>(i) + 1;
  return target->part ? target : std::nullopt;
}

std::optional<Point> WalkingEnd(DrawingPage& page, const DrawingShape& connector, const ConnectorEnd& end,
                                const ConnectorEnd& otherEnd) {
  const auto glued = FirstShapeIn(page, FormulaOf(connector, end.trigger));
  if (!glued) return std::nullopt;
  const auto other = FirstShapeIn(page, FormulaOf(connector, otherEnd.trigger));
  const Point target = other ? MiddleOf(*page.FindShape(other->shape))
                             : Point{NumberIn(connector, otherEnd.x).value_or(0), NumberIn(connector, otherEnd.y).value_or(0)};
  const DrawingShape& shape = *page.FindShape(glued->shape);
  return OnPageInParts(shape, NearestSide(shape, target));
}

std::string PointGlue(int shapeId, int point) {
  const std::string cells = "Sheet." + std::to_string(shapeId) + "!Connections.", number = std::to_string(point);
  return "PAR(PNT(" + cells + "X" + number + "," + cells + "Y" + number + "))";
}

std::string TriggerOfShape(int shapeId) { return "_XFTRIGGER(Sheet." + std::to_string(shapeId) + "!EventXFMod)"; }

}  // namespace vardo
