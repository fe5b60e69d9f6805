// The program or library that this code is part of.
#pragma once

#include <windows.h>

namespace vardo {

HINSTANCE OwnModule();

}  // namespace vardo
