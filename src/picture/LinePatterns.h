// What the numbers of line patterns and of the older fill patterns mean.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace vardo::picture {

inline constexpr int kNoLine = 0, kSolidLine = 1, kLastLinePattern = 23;
inline constexpr int kNoFill = 0, kSolidFill = 1, kLastHatch = 24, kLastGradientPattern = 40;

// Line and gap by turns, in inches, for a line of that weight; empty for a solid one and for numbers that mean nothing.
std::vector<double> DashesOf(int pattern, double weight);

// The rows of an 8 by 8 tile from the top, the leftmost dot in the highest bit. For patterns 2 to 24.
using HatchTile = std::array<std::uint8_t, 8>;
const HatchTile& HatchOf(int pattern);
inline constexpr double kHatchDot = 1.0 / 96;  // inches

}  // namespace vardo::picture
