// The services of the machine the program was built for.
#pragma once

#include "platform/Platform.h"

#include <memory>

namespace vardo {

std::unique_ptr<Platform> MakeNativePlatform();

}  // namespace vardo
