#include "canvas/LegalTargets.h"

#include "canvas/ShapeFacts.h"
#include "document/Drawing.h"
#include "document/Glue.h"
#include "modules/ModuleKinds.h"

#include <algorithm>

namespace vardo {
namespace {

// Exits that have a connector of their own.
struct OwnExit {
  std::string_view kind;
  int point;
  std::string_view master;
};
constexpr OwnExit kOwnExits[] = {
    {"Decide", 1, "True Connector"},
    {"Decide", 3, "False Connector"},
    {"Separate", 1, "Original Connector"},
    {"Separate", 3, "Duplicate Connector"},
};

size_t CountOfPoints(const DrawingShape& shape) { return PointsOf(shape, 1).size(); }

bool HasConnections(std::string_view kind) {
  const ModuleSchema* const module = FindModule(kind);
  return module && !module->look.connections.empty();
}

std::vector<int> PointsLeft(DrawingPage& page, const DrawingShape& shape) {
  std::vector<int> points;
  for (const DrawingPage::GluedEnd& end : page.GluedEnds()) {
    if (end.target != shape.id() || !end.isBegin) continue;
    const DrawingShape* const connector = page.FindShape(end.connector);
    const auto target = connector ? GlueTargetOf(page, *connector, kConnectorEnds[0]) : std::nullopt;
    constexpr std::string_view kPoint = "Connections.X";
    if (target && target->cell.starts_with(kPoint)) points.push_back(std::atoi(target->cell.c_str() + kPoint.size()));
  }
  return points;
}

}  // namespace

std::vector<int> ExitsOf(const DrawingShape& shape) {
  const std::string kind = KindOf(shape);
  std::vector<int> exits;
  for (const OwnExit& exit : kOwnExits)
    if (exit.kind == kind && static_cast<size_t>(exit.point) <= CountOfPoints(shape)) exits.push_back(exit.point);
  if (exits.empty() && HasConnections(kind) && kind != "Dispose") exits.push_back(1);
  return exits;
}

std::optional<int> EntryOf(const DrawingShape& shape) {
  const std::string kind = KindOf(shape);
  if (!HasConnections(kind) || kind == "Create") return std::nullopt;
  return kind == "Dispose" ? 1 : 2;
}

ConnectorStart ChooseConnector(DrawingPage& page, const DrawingShape& begin, std::optional<int> point) {
  const std::string kind = KindOf(begin);
  std::vector<int> exits = ExitsOf(begin);
  if (!point && exits.size() > 1) {
    const std::vector<int> left = PointsLeft(page, begin);
    const auto isFree = [&](int exit) { return std::find(left.begin(), left.end(), exit) == left.end(); };
    const auto free = std::find_if(exits.begin(), exits.end(), isFree);
    point = free == exits.end() ? exits.back() : *free;
  }
  if (!point && !exits.empty()) point = exits.front();
  for (const OwnExit& exit : kOwnExits)
    if (exit.kind == kind && (!point || exit.point == *point)) return {std::string(exit.master), exit.point};
  return {std::string(kPlainConnector), point};
}

std::optional<std::string> WhyNotConnect(std::string_view master, const DrawingShape* begin, const DrawingShape* end) {
  const auto own = std::find_if(std::begin(kOwnExits), std::end(kOwnExits), [&](const OwnExit& e) { return e.master == master; });
  const bool isOwn = own != std::end(kOwnExits);
  const std::string from = begin ? KindOf(*begin) : "";
  const bool leavesByChoice =
      std::any_of(std::begin(kOwnExits), std::end(kOwnExits), [&](const OwnExit& e) { return e.kind == from; });
  if (isOwn && own->kind != from) return "A " + std::string(master) + " leaves a " + std::string(own->kind) + " module.";
  if (!isOwn && leavesByChoice) return "A " + from + " module is left by connectors of its own.";
  if (isOwn && static_cast<size_t>(own->point) > CountOfPoints(*begin))
    return "This Separate module makes no duplicates that could leave it.";
  if (begin && !from.empty() && ExitsOf(*begin).empty()) return "Nothing leaves a " + from + " module.";
  const std::string to = end ? KindOf(*end) : "";
  if (!to.empty() && !EntryOf(*end)) return "Nothing enters a " + to + " module.";
  return std::nullopt;
}

}  // namespace vardo
