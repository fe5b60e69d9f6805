// The icons that the masters have in the stencil: 32 pixels square, in the sixteen colours of the host's icons, transparent
// around the shape.
#pragma once

#include "modules/ModuleLook.h"

#include <string>
#include <string_view>

namespace vardo {

// An icon file in Base64, in lines, as the list of masters holds it. Of a module with a symbol, that is shown large on its card.
std::string IconOf(const ModuleLook& look);
// Of a connector in that colour, "#rrggbb".
std::string ConnectorIcon(std::string_view colour);

}  // namespace vardo
