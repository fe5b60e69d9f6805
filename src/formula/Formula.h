// Evaluates a cell's formula: constants, references, arithmetic, comparisons and the functions that our shapes and common
// drawings use.
#pragma once

#include "formula/Constant.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vardo {

struct Point {
  double x = 0, y = 0;
};

// The value of a cell: sheet is what stands before "!", empty for the formula's own sheet. None when it is not known. May throw
// BadReference when there can be no such cell.
using CellLookup = std::function<std::optional<CellValue>(std::string_view sheet, std::string_view cell)>;
struct BadReference {};

// What a formula can ask about the drawing around it. Only cell has to be there.
struct FormulaScope {
  CellLookup cell;
  // A point in the coordinates of a sheet, as the page counts.
  std::function<std::optional<Point>(std::string_view sheet, Point own)> onPage = {};
  // Where an end of a connector is that is glued to a shape as a whole: the end of the first trigger cell, the other end's being
  // the second.
  std::function<std::optional<Point>(std::string_view trigger, std::string_view otherTrigger)> walk = {};
  // A formula that gives a point gives the cell one of its coordinates.
  bool wantsY = false;
};

struct Evaluation {
  std::optional<CellValue> value;
  std::string_view error = {};  // "#REF!", "#VALUE!" or "#DIV/0!"; empty when there is a value, and when the formula is beyond us
};
Evaluation EvaluateIn(const FormulaScope& scope, std::string_view formula);

// None for a formula that cannot be evaluated: unknown function, missing cell, wrong types, division by zero, nested deeper than
// kDeepestFormula. Numbers are in internal units (inches, radians, fractions).
std::optional<CellValue> Evaluate(std::string_view formula, const CellLookup& lookup);

inline constexpr int kDeepestFormula = 100;

}  // namespace vardo
