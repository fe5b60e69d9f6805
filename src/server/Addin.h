// The add-in of this process: the core's commands, with the services and the windows of Windows.
#pragma once

#include "addin/Application.h"

namespace vardo {

// Made on first use; it stays until the process ends.
Application& TheAddin();

}  // namespace vardo
