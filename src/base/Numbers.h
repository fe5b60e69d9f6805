// Numbers as files and formulas write them, whatever the locale.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vardo {

// At most 16 significant digits, no trailing zeros, no negative zero; an exponent as "1E-6".
std::string NumberText(double value);
// At most so many significant digits.
std::string NumberText(double value, int digits);

// The whole text as a finite number; a leading "+" is allowed, blanks are not.
std::optional<double> ParseNumber(std::string_view text);
// The whole text as a whole number that fits.
std::optional<int> ParseInteger(std::string_view text);

}  // namespace vardo
