// How a connector's ends are glued to shapes, in its cells: to a connection point, or to a shape as a whole, the end then walking
// to the nearest side.
#pragma once

#include "document/Places.h"

#include <optional>
#include <string>
#include <string_view>

namespace vardo {

class DrawingPage;
class DrawingShape;

struct ConnectorEnd {
  const char *x, *y, *trigger;
  std::string_view walkingGlue;
  int fromPart;  // of the Connect element
};
inline constexpr ConnectorEnd kConnectorEnds[] = {
    {"BeginX", "BeginY", "BegTrigger", "_WALKGLUE(BegTrigger,EndTrigger,WalkPreference)", 9},
    {"EndX", "EndY", "EndTrigger", "_WALKGLUE(EndTrigger,BegTrigger,WalkPreference)", 12},
};
// The end that the cell is about; null for any other cell.
const ConnectorEnd* FindConnectorEnd(std::string_view cell);

struct GlueTarget {
  int shape = 0;
  std::string cell;  // "Connections.X2"; "PinX" for the shape as a whole
  int part = 0;      // ToPart of the Connect element
};
// None for a loose end.
std::optional<GlueTarget> GlueTargetOf(DrawingPage& page, const DrawingShape& connector, const ConnectorEnd& end);

// Where an end is that is glued to a shape as a whole: at the side nearest to the other end. None when the end is not glued.
std::optional<Point> WalkingEnd(DrawingPage& page, const DrawingShape& connector, const ConnectorEnd& end,
                                const ConnectorEnd& otherEnd);

// The formulas of an end; points count from 1.
std::string PointGlue(int shapeId, int point);
std::string TriggerOfShape(int shapeId);

}  // namespace vardo
