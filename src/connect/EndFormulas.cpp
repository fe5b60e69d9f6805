#include "connect/EndFormulas.h"

#include "base/Numbers.h"
#include "base/Text.h"

namespace vardo {

std::string ShapeReferredTo(std::string_view formula, std::string_view beginning) {
  if (!formula.starts_with(beginning)) return "";
  formula.remove_prefix(beginning.size());
  if (!formula.starts_with('\'')) {
    const size_t end = formula.find('!');
    return std::string(end == std::string_view::npos ? "" : formula.substr(0, end));
  }
  std::string name;
  for (size_t i = 1; i < formula.size(); ++i) {
    if (formula[i] == '\'' && (i + 1 == formula.size() || formula[++i] != '\'')) return name;
    name += formula[i];
  }
  return "";
}

int PointReferredTo(std::string_view formula) {
  constexpr std::string_view kPoint = "!Connections.X";
  const size_t at = formula.find(kPoint);
  if (at == std::string_view::npos) return 0;
  formula.remove_prefix(at + kPoint.size());
  size_t digits = 0;
  while (digits < formula.size() && IsAsciiDigit(formula[digits])) ++digits;
  return ParseInteger(formula.substr(0, digits)).value_or(0);
}

}  // namespace vardo
