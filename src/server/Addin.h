// The add-in of this process: the core's commands, with the services and the windows of Windows.
#pragma once

#include "addin/Application.h"

namespace vardo {

// Made on first use; from then on it stays, and the server loaded, until the process ends. Throws AutomationError on any other
// thread than that of the first use: the host's objects and the dialogs belong to that one.
Application& TheAddin();

}  // namespace vardo
