#include "connect/Glue_Connections.h"

#include "addin/Global_Variables.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "base/Text.h"
#include "connect/EndFormulas.h"
#include "modules/ModuleKinds.h"
#include "platform/Platform.h"
#include "props/ShapeKinds.h"

#include <algorithm>
#include <utility>

namespace vardo {

std::string GlueFormula;
std::int16_t FirstEndToGlue = 1;

namespace {

constexpr std::string_view kDecide = "Decide", kSeparate = "Separate";

// The connectors made for one exit each, and the point that is that exit.
struct SpecialConnector {
  std::string_view name;
  std::string_view leaves;
  int exit;
};
constexpr SpecialConnector kSpecialConnectors[] = {
    {"True Connector", kDecide, 1},
    {"False Connector", kDecide, 3},
    {"Original Connector", kSeparate, 1},
    {"Duplicate Connector", kSeparate, 3},
};
constexpr int kDuplicateExit = 3;

// The connection points that a kind's own design has; one more is the host's.
struct OwnPoints {
  std::string_view kind;
  short count;
};
constexpr OwnPoints kOwnPoints[] = {{"Create", 1}, {"Dispose", 1}, {kDecide, 3}, {kSeparate, 3}};
constexpr short kPointsOfOthers = 2;

struct EndCells {
  const char* x;
  const char* y;
  const char* trigger;
};
constexpr EndCells kEndCells[] = {{"BeginX", "BeginY", "BegTrigger"}, {"EndX", "EndY", "EndTrigger"}};

// The host names further instances of a master, and copies of the master itself, with a "." and a number behind.
std::string_view BeforeDot(std::string_view name) { return name.substr(0, name.find('.')); }

const SpecialConnector* FindSpecial(std::string_view connectorName) {
  const auto found = std::find_if(std::begin(kSpecialConnectors), std::end(kSpecialConnectors),
                                  [&](const SpecialConnector& special) { return connectorName.starts_with(special.name); });
  return found == std::end(kSpecialConnectors) ? nullptr : found;
}

short CountOfOwnPoints(std::string_view kind) {
  for (const OwnPoints& points : kOwnPoints)
    if (points.kind == kind) return points.count;
  return kPointsOfOthers;
}

bool LeavesByChosenExit(std::string_view kind) { return kind == kDecide || kind == kSeparate; }

IVShapePtr SelectedConnector() { return visApp->ActiveWindow()->Selection()->Item(1); }

IVShapePtr ShapeNamed(std::string_view name) { return visApp->ActivePage()->Shapes()->Item(name); }

// A shape of any drawing may be called as modules are.
std::string KindOfEnd(const std::string& shapeName) {
  if (shapeName.empty() || !ShapeNamed(shapeName)->CellExists(kClassNameCell, kExistsAnywhere)) return "";
  return std::string(BeforeDot(shapeName));
}

// A step that may fail without harm to those behind it.
template <class Step>
void Attempt(Step step) {
  try {
    step();
  } catch (const AutomationError&) {
    // What the step was about is not there, or has just been deleted.
  }
}

std::string ShapeAtEnd(const IVShapePtr& connector, const EndCells& end) {
  const std::string glued = ShapeReferredTo(connector->Cells(end.x)->Formula(), kGluedBeginning);
  return glued.empty() ? ShapeReferredTo(connector->Cells(end.trigger)->Formula(), kTriggerBeginning) : glued;
}

bool NeedsQuotes(std::string_view name) {
  const auto isPlain = [](unsigned char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '.' || c >= 0x80;
  };
  return !std::all_of(name.begin(), name.end(), isPlain);
}

std::string AsReference(std::string_view name) {
  if (!NeedsQuotes(name)) return std::string(name);
  std::string quoted = "'";
  for (const char c : name) quoted.append(c == '\'' ? 2 : 1, c);
  return quoted + "'";
}

std::string FormulaOfPoint(std::string_view shapeName, int point) {
  const std::string shape = AsReference(shapeName), number = std::to_string(point);
  return "PAR(PNT(" + shape + "!Connections.X" + number + ", " + shape + "!Connections.Y" + number + "))";
}

void GlueEnd(const EndCells& end) {
  for (const char* cell : {end.x, end.y}) SelectedConnector()->Cells(cell)->SetFormula(GlueFormula);
}

void Refuse(const std::string& message) {
  ThePlatform().ShowMessage(message, kProductTitle, kStyleExclamation);
  SelectedConnector()->Delete();
}

void RefuseAs(std::string_view connectorName, std::string_view forWhat, std::string_view instead) {
  Refuse("The " + InWords(BeforeDot(connectorName)) + " is an invalid connector for this " + std::string(forWhat) +
         ".  Try using the " + std::string(instead) + " instead.");
}

// A point that the host has made by itself carries a mark.
bool IsHostMade(const IVShapePtr& shape, short row) {
  const std::string mark = shape->CellsSRC(kSectionConnectionPts, row, kCellConnectionAutoGen)->Formula();
  return mark == "1" || mark == "TRUE";
}

bool HasRow(const IVShapePtr& shape, short row) { return shape->RowExists(kSectionConnectionPts, row, kExistsAnywhere); }

bool HasDuplicateExit(const IVShapePtr& shape) {
  constexpr short kRow = kDuplicateExit - 1;
  return HasRow(shape, kRow) && !IsHostMade(shape, kRow);
}

void RemoveHostMadePoint(std::string_view shapeName, std::string_view kind) {
  if (!IsModuleKind(kind)) return;
  const IVShapePtr shape = ShapeNamed(shapeName);
  short row = CountOfOwnPoints(kind);
  // A Separate that splits has no third exit, so the host's point stands in its place.
  if (kind == kSeparate && HasRow(shape, row - 1) && IsHostMade(shape, row - 1)) --row;
  if (HasRow(shape, row)) shape->DeleteRow(kSectionConnectionPts, row);
}

}  // namespace

void CheckConnector() {
  FirstEndToGlue = 1;
  const IVShapePtr connector = SelectedConnector();
  std::string shapes[2], kinds[2];
  for (size_t i = 0; i < 2; ++i) {
    shapes[i] = ShapeAtEnd(connector, kEndCells[i]);
    kinds[i] = KindOfEnd(shapes[i]);
  }
  const std::string connectorName = MasterNameOf(connector);
  if (LeavesByChosenExit(kinds[0])) CheckExitPoint(kinds[0], connectorName, shapes[0]);
  for (int end = FirstEndToGlue; end <= 2; ++end) {
    const auto i = static_cast<size_t>(end - 1);
    BuildGlueFormula(shapes[i], kinds[i], end);
    if (!GlueFormula.empty()) Attempt([&] { GlueEnd(kEndCells[i]); });
  }
  Attempt([&] { CheckConnectorShapes(shapes[0], shapes[1], kinds[0], kinds[1]); });
}

void CheckExitPoint(std::string_view kind, std::string_view connectorName, std::string_view shapeName) {
  const SpecialConnector* special = FindSpecial(connectorName);
  if (!special || special->leaves != kind) {
    const std::string_view instead =
        kind == kDecide ? "True Connector or False Connector" : "Original Connector or Duplicate Connector";
    return RefuseAs(connectorName, "exit point", instead);
  }
  if (kind == kSeparate && special->exit == kDuplicateExit && !HasDuplicateExit(ShapeNamed(shapeName)))
    return Refuse(
        "The Duplicate connector can only be used with the Separate shape if the 'Type' custom property is set to 'Duplicate "
        "Original'. ");
  GlueFormula = FormulaOfPoint(shapeName, special->exit);
  GlueEnd(kEndCells[0]);
  FirstEndToGlue = 2;
}

void BuildGlueFormula(std::string_view shapeName, std::string_view kind, int endIndex) {
  GlueFormula.clear();
  if (!IsModuleKind(kind) || (endIndex == 1 && LeavesByChosenExit(kind))) return;
  GlueFormula = FormulaOfPoint(shapeName, kind == "Dispose" || endIndex == 1 ? 1 : 2);
}

void CheckConnectorShapes(std::string_view beginShape, std::string_view endShape, std::string_view beginKind,
                          std::string_view endKind) {
  // A connector that has been refused has no master to be looked at any more.
  std::string connectorName;
  Attempt([&] { connectorName = MasterNameOf(SelectedConnector()); });
  if (FindSpecial(connectorName) && !LeavesByChosenExit(beginKind)) return RefuseAs(connectorName, "shape", "Dynamic Connector");
  Attempt([&] { RemoveHostMadePoint(beginShape, beginKind); });
  Attempt([&] { RemoveHostMadePoint(endShape, endKind); });
}

}  // namespace vardo
