// What happens to a connector that has been drawn: whether it may leave the module it begins at, and which connection points its
// ends are glued to.
//   Ends are numbered 1, where the connector leaves a shape, and 2, where it enters one. Shapes are named as the active page
//   names them; a module's kind is its name up to the first ".". Shapes that are no modules are left alone: those
//   of another name, or without a class name.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vardo {

// The formula that glues the end last looked at; empty when that end gets none.
extern std::string GlueFormula;
// 1 while both ends are to be glued, 2 when the exit end has been.
extern std::int16_t FirstEndToGlue;

// Checks and glues the first shape selected in the active window, which has to be a connector. One that is refused is deleted
// after its message. Throws AutomationError when the connector cannot be read, or a refused one cannot be deleted.
void CheckConnector();

// Glues the selected connector's exit end to the exit of a Decide or Separate shape that it is made for, or refuses it.
// connectorName is its master's.
void CheckExitPoint(std::string_view kind, std::string_view connectorName, std::string_view shapeName);

// Sets GlueFormula for an end. The exits of Decide and Separate shapes are CheckExitPoint's.
void BuildGlueFormula(std::string_view shapeName, std::string_view kind, int endIndex);

// Refuses a selected special connector that leaves neither a Decide nor a Separate shape. Otherwise takes off both shapes the
// connection point that the host has made where the connector touched the outline.
void CheckConnectorShapes(std::string_view beginShape, std::string_view endShape, std::string_view beginKind,
                          std::string_view endKind);

}  // namespace vardo
