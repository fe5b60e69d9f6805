#include "formula/Formula.h"

#include "base/Numbers.h"
#include "base/Text.h"
#include "formula/FormulaParser.h"

#include <algorithm>
#include <cmath>

namespace vardo {
namespace {

// Ends the evaluation; never leaves this file.
struct CannotEvaluate {
  std::string_view error = {};  // empty when the formula may be right, but is beyond us
};

double Number(const CellValue& value) {
  if (const auto* number = std::get_if<double>(&value)) return *number;
  // What a theme gives is not stored in the cell.
  throw CannotEvaluate{std::get<std::string>(value) == "Themed" ? "" : "#VALUE!"};
}

std::string AsText(const CellValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  return NumberText(std::get<double>(value));
}

using Arguments = std::vector<CellValue>;

double Smallest(const Arguments& a) {
  double least = Number(a[0]);
  for (const CellValue& value : a) least = std::min(least, Number(value));
  return least;
}

double Largest(const Arguments& a) {
  double most = Number(a[0]);
  for (const CellValue& value : a) most = std::max(most, Number(value));
  return most;
}

struct Function {
  std::string_view name;
  size_t fewest, most;
  CellValue (*apply)(const Arguments&);
};

constexpr size_t kAnyNumber = 100;

const Function kFunctions[] = {
    {"GUARD", 1, 1, [](const Arguments& a) { return a[0]; }},
    {"IF", 3, 3, [](const Arguments& a) { return Number(a[0]) != 0 ? a[1] : a[2]; }},
    {"ABS", 1, 1, [](const Arguments& a) -> CellValue { return std::abs(Number(a[0])); }},
    {"SQRT", 1, 1, [](const Arguments& a) -> CellValue { return std::sqrt(Number(a[0])); }},
    {"SIN", 1, 1, [](const Arguments& a) -> CellValue { return std::sin(Number(a[0])); }},
    {"COS", 1, 1, [](const Arguments& a) -> CellValue { return std::cos(Number(a[0])); }},
    {"ATAN2", 2, 2, [](const Arguments& a) -> CellValue { return std::atan2(Number(a[0]), Number(a[1])); }},
    {"MIN", 1, kAnyNumber, [](const Arguments& a) -> CellValue { return Smallest(a); }},
    {"MAX", 1, kAnyNumber, [](const Arguments& a) -> CellValue { return Largest(a); }},
    {"NOT", 1, 1, [](const Arguments& a) -> CellValue { return Number(a[0]) == 0 ? 1.0 : 0.0; }},
};

bool Compare(FormulaOperation operation, const CellValue& left, const CellValue& right) {
  if (left.index() != right.index()) throw CannotEvaluate{};
  switch (operation) {
    case FormulaOperation::AtMost:
      return left <= right;
    case FormulaOperation::AtLeast:
      return left >= right;
    case FormulaOperation::Unequal:
      return left != right;
    case FormulaOperation::Less:
      return left < right;
    case FormulaOperation::Greater:
      return left > right;
    default:
      return left == right;
  }
}

double Divide(double dividend, double divisor) {
  if (divisor == 0) throw CannotEvaluate{"#DIV/0!"};
  return dividend / divisor;
}

}  // namespace

std::optional<std::uint32_t> FindFormulaFunction(std::string_view name, size_t arguments) {
  for (std::uint32_t at = 0; at < std::size(kFunctions); ++at)
    if (EqualAsciiIgnoringCase(kFunctions[at].name, name) && arguments >= kFunctions[at].fewest &&
        arguments <= kFunctions[at].most)
      return at;
  return std::nullopt;
}

class FormulaEvaluator {
 public:
  FormulaEvaluator(const Formula& formula, const FormulaScope& scope) : formula_(formula), tree_(*formula.tree_), scope_(scope) {}

  CellValue Whole() { return Value(tree_.root); }

 private:
  CellValue Value(std::uint32_t at) {
    const Formula::Node& node = tree_.nodes[at];
    const auto operation = static_cast<FormulaOperation>(node.kind);
    switch (operation) {
      case FormulaOperation::Number:
        return tree_.numbers[node.content];
      case FormulaOperation::String:
        return tree_.strings[node.content];
      case FormulaOperation::Reference:
        return Referred(node.content);
      case FormulaOperation::Call:
        return kFunctions[node.content].apply(Operands(node));
      case FormulaOperation::Negative:
        return -Number(Value(node.first));
      case FormulaOperation::Positive:
        return Number(Value(node.first));
      case FormulaOperation::PointOfShape:
        return PointOfShape(node);
      case FormulaOperation::Trigger:
        return Trigger(node);
      case FormulaOperation::WalkingGlue:
        return Coordinate(scope_.WalkingEnd(tree_.strings[node.content], tree_.strings[node.content + 1]));
      case FormulaOperation::LostReference:
        throw CannotEvaluate{"#REF!"};
      default:
        return Combined(operation, node);
    }
  }

  CellValue Combined(FormulaOperation operation, const Formula::Node& node) {
    const CellValue left = Value(node.first);
    const CellValue right = Value(tree_.nodes[node.first].next);
    switch (operation) {
      case FormulaOperation::Add:
        return Number(left) + Number(right);
      case FormulaOperation::Subtract:
        return Number(left) - Number(right);
      case FormulaOperation::Join:
        return AsText(left) + AsText(right);
      case FormulaOperation::Multiply:
        return Number(left) * Number(right);
      case FormulaOperation::Divide:
        return Divide(Number(left), Number(right));
      case FormulaOperation::Power:
        return std::pow(Number(left), Number(right));
      default:
        return Compare(operation, left, right) ? 1.0 : 0.0;
    }
  }

  CellValue Referred(std::uint32_t reference) {
    lastReference_ = reference;
    if (auto value = scope_.Value(formula_.references_[reference])) return *std::move(value);
    throw CannotEvaluate{};
  }

  Arguments Operands(const Formula::Node& node) {
    Arguments values;
    for (std::uint32_t at = node.first; at != 0; at = tree_.nodes[at].next) values.push_back(Value(at));
    return values;
  }

  // A point is one of its coordinates to the cell.
  CellValue Coordinate(const std::optional<Point>& point) const {
    if (!point) throw CannotEvaluate{};
    return scope_.WantsY() ? point->y : point->x;
  }

  CellValue PointOfShape(const Formula::Node& node) {
    const double x = Number(Value(node.first));
    const double y = Number(Value(tree_.nodes[node.first].next));
    const std::string_view sheet = lastReference_ ? std::string_view(formula_.references_[*lastReference_].sheet) : "";
    return Coordinate(scope_.OnPage(sheet, {x, y}));
  }

  // The value says only whether another shape is waited for.
  CellValue Trigger(const Formula::Node& node) {
    if (node.first == 0) return 1.0;
    Value(node.first);
    return 2.0;
  }

  const Formula& formula_;
  const Formula::Tree& tree_;
  const FormulaScope& scope_;
  std::optional<std::uint32_t> lastReference_;
};

Formula::Formula(std::string_view text) : text_(text) {
  FormulaParser parser(text_);
  references_ = std::move(parser.references);
  places_ = std::move(parser.places);
  followsPoint_ = parser.namesPoint;
}

Evaluation Formula::Evaluate(const FormulaScope& scope) const try {
  if (!tree_) tree_ = FormulaParser(text_).Parse();
  if (tree_->root == 0) return {};
  CellValue value = FormulaEvaluator(*this, scope).Whole();
  if (const auto* number = std::get_if<double>(&value); number && !std::isfinite(*number)) return {};
  return {std::move(value)};
} catch (const CannotEvaluate& reason) {
  return {std::nullopt, reason.error};
} catch (const BadReference&) {
  return {std::nullopt, "#REF!"};
}

std::string Formula::WithReferences(const std::function<bool(FormulaReference&)>& change) const {
  std::string result;
  size_t copied = 0;
  for (size_t i = 0; i < references_.size(); ++i) {
    FormulaReference reference = references_[i];
    if (!change(reference)) continue;
    result.append(text_, copied, places_[i].start - copied);
    if (!reference.sheet.empty()) result += SheetNameInFormula(reference.sheet) + "!";
    result += reference.cell;
    copied = places_[i].end;
  }
  return result.append(text_, copied);
}

bool IsGuarded(std::string_view formula) {
  constexpr std::string_view kGuard = "GUARD(";
  formula.remove_prefix(std::min(formula.find_first_not_of(" ="), formula.size()));
  formula = formula.substr(0, formula.find_last_not_of(' ') + 1);
  if (!EqualAsciiIgnoringCase(formula.substr(0, kGuard.size()), kGuard)) return false;
  int depth = 0;
  char quote = 0;
  for (size_t i = 0; i < formula.size(); ++i) {
    const char c = formula[i];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '(') {
      ++depth;
    } else if (c == ')' && --depth == 0) {
      return i + 1 == formula.size();
    }
  }
  return false;
}

std::string SheetNameInFormula(std::string_view name) {
  if (IsPlainFormulaName(name)) return std::string(name);
  std::string quoted = "'";
  for (const char c : name) quoted.append(c == '\'' ? 2 : 1, c);
  return quoted + "'";
}

}  // namespace vardo
