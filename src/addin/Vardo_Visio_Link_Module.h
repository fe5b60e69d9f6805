// From a module shape to its dialog.
#pragma once

#include "addin/host/HostFwd.h"

#include <string_view>

namespace vardo {

// Opens the dialog of the kind that the shape's User.ClassName holds (letter case counts); any other shape opens nothing.
// The dialog edits the active window's first selected shape. Returns when it is closed; throws what the host throws.
void OpenModuleDialog(const IVShapePtr& shape);

// Whether there is a dialog for modules of that kind.
bool HasModuleDialog(std::string_view kind);

}  // namespace vardo
