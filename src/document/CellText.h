// A Cell element and the formula text that it stands for.
//   In a file V is the value in internal units (inches, radians, fractions), U the unit it is shown in, F a formula that is no
//   constant.
#pragma once

#include "document/TreeEditor.h"
#include "document/XmlNode.h"
#include "formula/Formula.h"

#include <functional>
#include <string>
#include <string_view>

namespace vardo {

inline constexpr std::string_view kInheritedFormula = "Inh";

// True when the cell's formula is the master's: it is marked so, and only its value is local.
bool FormulaIsInherited(pugi::xml_node cell);
// The cell's own formula, where it is neither a constant, nor inherited, nor none; else empty.
std::string_view OwnFormulaOf(pugi::xml_node cell);
// The formula of a cell; none when it inherits it. isText: a constant without a unit is a string all the same.
std::optional<std::string> FormulaText(pugi::xml_node cell, bool isText);
// The value as it stands in the file: a number where it reads as one and the unit is no string's.
CellValue StoredValue(pugi::xml_node cell, bool isText);

// Writes a formula into a Cell element. evaluate is asked for what it comes to unless it is a constant; without a value the cell
// keeps its last one.
void WriteFormula(TreeEditor& editor, XmlPart& part, pugi::xml_node cell, std::string_view formula,
                  const std::function<Evaluation()>& evaluate, bool isText);

// Writes what the cell's formula has become, and leaves the formula.
void WriteValue(TreeEditor& editor, XmlPart& part, pugi::xml_node cell, const CellValue& value, bool isText);

}  // namespace vardo
