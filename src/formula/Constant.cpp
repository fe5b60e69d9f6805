#include "formula/Constant.h"

#include "base/Numbers.h"
#include "base/Text.h"

#include <numbers>

namespace vardo {
namespace {

constexpr int kShownDigits = 12;

struct Unit {
  std::string_view code;    // U
  std::string_view suffix;  // behind the number in a formula
  double perInternal;       // how many of them make one internal unit
};

constexpr Unit kUnits[] = {
    {"IN", " in", 1},
    {"MM", " mm", 25.4},
    {"CM", " cm", 2.54},
    {"M", " m", 0.0254},
    {"FT", " ft", 1.0 / 12},
    {"PT", " pt", 72},
    {"DEG", " deg", 180 / std::numbers::pi},
    {"RAD", " rad", 1},
    {"PER", "%", 100},
};

const Unit* UnitOfCode(std::string_view code) {
  for (const Unit& unit : kUnits)
    if (unit.code == code) return &unit;
  return nullptr;
}

const Unit* UnitOfSuffix(std::string_view suffix) {
  for (const Unit& unit : kUnits)
    if (unit.suffix == suffix || unit.suffix.substr(unit.suffix[0] == ' ') == suffix) return &unit;
  return nullptr;
}

}  // namespace

std::optional<Constant> ParseConstant(std::string_view formula) {
  if (formula.size() >= 2 && formula.front() == '"' && formula.back() == '"') {
    const std::string text = UnquoteText(formula);
    if (QuoteText(text) == formula) return Constant{text, "STR"};
    return std::nullopt;
  }
  if (formula == "TRUE") return Constant{"1", "BOOL"};
  if (formula == "FALSE") return Constant{"0", "BOOL"};
  if (ParseNumber(formula)) return Constant{std::string(formula), ""};
  const size_t end = formula.find_last_of("0123456789.");
  if (end == std::string_view::npos) return std::nullopt;
  std::string_view suffix = formula.substr(end + 1);
  while (!suffix.empty() && suffix.front() == ' ') suffix.remove_prefix(1);
  const Unit* unit = UnitOfSuffix(suffix);
  const std::optional<double> number = ParseNumber(formula.substr(0, end + 1));
  if (!unit || !number) return std::nullopt;
  return Constant{NumberText(*number / unit->perInternal), std::string(unit->code)};
}

std::optional<std::string> InUnit(double number, std::string_view unitCode) {
  const Unit* unit = UnitOfCode(unitCode);
  if (!unit) return std::nullopt;
  return NumberText(number * unit->perInternal, kShownDigits) + std::string(unit->suffix);
}

}  // namespace vardo
