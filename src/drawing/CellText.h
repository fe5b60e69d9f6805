// A Cell element and the formula text that it stands for.
//   In a file V is the value in internal units (inches, radians, fractions), U the unit it is shown in, F a formula that is no
//   constant.
#pragma once

#include "drawing/TreeEditor.h"

#include <pugixml.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace vardo {

using CellValue = std::variant<double, std::string>;

inline constexpr std::string_view kInherited = "Inh";
inline constexpr std::string_view kNoFormula = "No Formula";

// The text in double quotes, its own double quotes doubled.
std::string QuoteText(std::string_view text);

// True when the cell's formula is the master's: it is marked so, and only its value is local.
bool FormulaIsInherited(pugi::xml_node cell);
// The formula of a cell that does not inherit it. isText: a constant without a unit is a string all the same.
std::string FormulaText(pugi::xml_node cell, bool isText);
// The value as it stands in the file: a number where it reads as one and the unit is no string's.
CellValue StoredValue(pugi::xml_node cell, bool isText);

// What a formula is, before anything is computed.
struct Constant {
  std::string value;  // V
  std::string unit;   // U; empty for none
};
// A string, a number with or without a unit, TRUE or FALSE; none when the formula has to be kept as a formula.
std::optional<Constant> ParseConstant(std::string_view formula);

// Writes a formula into a Cell element. value is what it evaluates to; without one the cell keeps its last value.
void WriteFormula(TreeEditor& editor, XmlPart& part, pugi::xml_node cell, std::string_view formula,
                  const std::optional<CellValue>& value, bool isText);

// Writes what the cell's formula has become, and leaves the formula.
void WriteValue(TreeEditor& editor, XmlPart& part, pugi::xml_node cell, const CellValue& value, bool isText);

// A number as the files have it: at most 16 significant digits, no trailing zeros, no negative zero.
std::string NumberText(double value);
// The whole text as a finite number in the C locale.
std::optional<double> ParseNumber(std::string_view text);

}  // namespace vardo
