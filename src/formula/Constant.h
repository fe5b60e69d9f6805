// What a formula is that has nothing to compute: a string, a number with or without a unit, TRUE or FALSE.
//   Numbers are in internal units: inches, radians, fractions.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace vardo {

// What a file says of a cell that has no formula.
inline constexpr std::string_view kNoFormula = "No Formula";

using CellValue = std::variant<double, std::string>;

struct Constant {
  std::string value;  // as a file has it
  std::string unit;   // the code of the unit it is shown in; empty for none
};
// None when the formula has to be kept as a formula.
std::optional<Constant> ParseConstant(std::string_view formula);

// How a formula writes a number in a unit: "25.4 mm". None for a unit that is not known.
std::optional<std::string> InUnit(double number, std::string_view unitCode);

}  // namespace vardo
