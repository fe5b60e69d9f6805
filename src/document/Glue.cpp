#include "document/Glue.h"

#include "document/Drawing.h"
#include "document/FormulaIndex.h"

namespace vardo {
namespace {

constexpr int kWholeShape = 3, kPartBeforeFirstPoint = 99;

// The shape of the page that the cell's formula first names, and the cell of it.
struct Named {
  DrawingShape* shape;
  FormulaReference reference;
};
std::optional<Named> FirstShapeIn(DrawingPage& page, const Formula& formula) {
  for (const FormulaReference& reference : formula.references()) {
    DrawingShape* shape = reference.onOtherPage ? nullptr : page.FindSheet(reference.sheet);
    if (shape) return Named{shape, reference};
  }
  return std::nullopt;
}

std::string FormulaOf(const DrawingShape& shape, const char* cell) {
  const auto address = shape.Find(std::string_view(cell));
  return address ? shape.Formula(*address) : "";
}

// The shape that an end's trigger waits for.
DrawingShape* TriggeringShape(DrawingPage& page, const DrawingShape& connector, const ConnectorEnd& end) {
  const auto named = FirstShapeIn(page, Formula(FormulaOf(connector, end.trigger)));
  return named ? named->shape : nullptr;
}

}  // namespace

const ConnectorEnd* FindConnectorEnd(std::string_view cell) {
  for (const ConnectorEnd& end : kConnectorEnds)
    if (cell == end.x || cell == end.y || cell == end.trigger) return &end;
  return nullptr;
}

std::optional<GlueTarget> GlueTargetOf(DrawingPage& page, const DrawingShape& connector, const ConnectorEnd& end) {
  const std::string text = FormulaOf(connector, end.x);
  if (text.starts_with("_WALKGLUE(")) {
    const DrawingShape* target = TriggeringShape(page, connector, end);
    return target ? std::optional(GlueTarget{target->id(), "PinX", kWholeShape}) : std::nullopt;
  }
  const Formula formula(text);
  const auto named = formula.FollowsPoint() ? FirstShapeIn(page, formula) : std::nullopt;
  const SectionInfo* points = FindSectionByElement("Connection");
  if (!named || !named->reference.name || named->reference.name->section != points) return std::nullopt;
  const auto address = named->shape->Find(*named->reference.name);
  const auto position = address ? named->shape->PositionOf(*address) : std::nullopt;
  if (!position) return std::nullopt;
  return GlueTarget{named->shape->id(), named->reference.cell, kPartBeforeFirstPoint + static_cast<int>(*position) + 1};
}

std::optional<Point> WalkingEnd(DrawingPage& page, const DrawingShape& connector, const ConnectorEnd& end,
                                const ConnectorEnd& otherEnd) {
  const DrawingShape* glued = TriggeringShape(page, connector, end);
  if (!glued) return std::nullopt;
  const DrawingShape* other = TriggeringShape(page, connector, otherEnd);
  const Point target =
      other ? MiddleOf(*other) : Point{NumberIn(connector, otherEnd.x).value_or(0), NumberIn(connector, otherEnd.y).value_or(0)};
  return OnPageInParts(*glued, NearestSide(*glued, target));
}

std::string PointGlue(int shapeId, int point) {
  const std::string cells = "Sheet." + std::to_string(shapeId) + "!Connections.", number = std::to_string(point);
  return "PAR(PNT(" + cells + "X" + number + "," + cells + "Y" + number + "))";
}

std::string TriggerOfShape(int shapeId) { return "_XFTRIGGER(Sheet." + std::to_string(shapeId) + "!EventXFMod)"; }

}  // namespace vardo
