// What a shape was made from.
#pragma once

#include "addin/host/HostFwd.h"

#include <string>
#include <string_view>

namespace vardo {

// Holds a module's kind, quoted; other shapes do not have it.
inline constexpr std::string_view kClassNameCell = "User.ClassName";

// The name of the shape's master, which for a module is its kind; empty for a shape that has none. Throws HostError.
std::string MasterNameOf(const IVShapePtr& shape);

}  // namespace vardo
