// A picture as a file of Scalable Vector Graphics.
#pragma once

#include "picture/PagePicture.h"

#include <string>

namespace vardo::picture {

inline constexpr double kPixelsPerInch = 96;

// At a scale of 1 an inch is 96 pixels. The same picture gives the same bytes everywhere.
std::string SvgOf(const PagePicture& picture, double scale = 1);

}  // namespace vardo::picture
