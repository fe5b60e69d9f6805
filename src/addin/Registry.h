// The one value that the add-in reads from outside the drawing.
#pragma once

#include <string>
#include <string_view>

namespace vardo {

// A string value of the current user; empty, whatever the default, when it is missing or no string.
std::string GetRegistryString(std::string_view key, std::string_view valueName, std::string_view defaultText);

}  // namespace vardo
