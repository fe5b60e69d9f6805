#include "app/Commands.h"
#include "base/Errors.h"
#include "desktop/Desktop.h"
#include "forms/qt/QtSession.h"

namespace vardo {

Outcome ShowDesktop(const DesktopOptions& options, int argc, char** argv) {
  if (!HasDisplay()) throw AutomationError(5, "There is no display to show a drawing on.");
  return {RunDesktop(options.files, argc, argv), {}};
}

}  // namespace vardo
