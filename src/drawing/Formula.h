// Evaluates a cell's formula: constants, references, arithmetic, comparisons and the functions that our shapes and common
// drawings use.
#pragma once

#include "drawing/CellText.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vardo {

// The value of a cell: sheet is what stands before "!", empty for the formula's own sheet. None when there is no such cell.
using CellLookup = std::function<std::optional<CellValue>(std::string_view sheet, std::string_view cell)>;

// None for a formula that cannot be evaluated: unknown function, missing cell, wrong types, division by zero, nested deeper than
// kDeepestFormula. Numbers are in internal units (inches, radians, fractions).
std::optional<CellValue> Evaluate(std::string_view formula, const CellLookup& lookup);

inline constexpr int kDeepestFormula = 100;

}  // namespace vardo
