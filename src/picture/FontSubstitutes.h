// Which fonts stand in for one that a machine may not have.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vardo::picture {

// The font itself first, then others that are as wide, a kind of font last: "sans-serif", "serif", "monospace".
std::vector<std::string> FontsFor(std::string_view family);

}  // namespace vardo::picture
