// The add-in of this process: the core's commands, with the services and the windows of Windows.
#pragma once

#include "addin/Application.h"

namespace vardo {

// Made on first use; from then on it stays, and the server loaded, until the process ends.
Application& TheAddin();

}  // namespace vardo
