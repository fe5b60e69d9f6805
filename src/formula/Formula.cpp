#include "formula/Formula.h"

#include "base/Numbers.h"
#include "base/Text.h"

#include <algorithm>
#include <cmath>
#include <vector>

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

bool IsNameStart(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}
bool IsNamePart(char c) { return IsNameStart(c) || (c >= '0' && c <= '9') || c == '.'; }

class Evaluator {
 public:
  Evaluator(std::string_view text, const FormulaScope& scope) : text_(text), scope_(scope) {}

  CellValue Whole() {
    CellValue value = Comparison();
    SkipBlanks();
    if (at_ != text_.size()) throw CannotEvaluate{};
    return value;
  }

 private:
  CellValue Comparison() {
    const Nested nested(*this);
    CellValue left = Sum();
    for (const std::string_view op : {"<=", ">=", "<>", "=", "<", ">"})
      if (Take(op)) return Compare(op, left, Sum()) ? 1.0 : 0.0;
    return left;
  }

  static bool Compare(std::string_view op, const CellValue& left, const CellValue& right) {
    if (left.index() != right.index()) throw CannotEvaluate{};
    if (op == "<=") return left <= right;
    if (op == ">=") return left >= right;
    if (op == "<>") return left != right;
    if (op == "<") return left < right;
    if (op == ">") return left > right;
    return left == right;
  }

  CellValue Sum() {
    CellValue value = Product();
    for (;;) {
      if (Take("+"))
        value = Number(value) + Number(Product());
      else if (Take("-"))
        value = Number(value) - Number(Product());
      else if (Take("&"))
        value = AsText(value) + AsText(Product());
      else
        return value;
    }
  }

  CellValue Product() {
    CellValue value = Power();
    for (;;) {
      if (Take("*")) {
        value = Number(value) * Number(Power());
      } else if (Take("/")) {
        const double divisor = Number(Power());
        if (divisor == 0) throw CannotEvaluate{"#DIV/0!"};
        value = Number(value) / divisor;
      } else {
        return value;
      }
    }
  }

  CellValue Power() {
    CellValue value = Signed();
    while (Take("^")) value = std::pow(Number(value), Number(Signed()));
    return value;
  }

  CellValue Signed() {
    const Nested nested(*this);
    if (Take("-")) return -Number(Signed());
    if (Take("+")) return Number(Signed());
    return Primary();
  }

  CellValue Primary() {
    SkipBlanks();
    if (Take("(")) {
      CellValue value = Comparison();
      Expect(")");
      return value;
    }
    if (at_ >= text_.size()) throw CannotEvaluate{};
    const char c = text_[at_];
    if (c == '"') return Text();
    if ((c >= '0' && c <= '9') || c == '.') return NumberWithUnit();
    if (c == '\'') return Reference(QuotedName());
    if (IsNameStart(c)) return NameOrCall();
    throw CannotEvaluate{};
  }

  CellValue Text() {
    const size_t start = at_++;
    while (at_ < text_.size()) {
      if (text_[at_++] != '"') continue;
      if (at_ >= text_.size() || text_[at_] != '"') return std::get<std::string>(FromConstant(text_.substr(start, at_ - start)));
      ++at_;
    }
    throw CannotEvaluate{};
  }

  CellValue NumberWithUnit() {
    const size_t start = at_;
    while (at_ < text_.size() && ((text_[at_] >= '0' && text_[at_] <= '9') || text_[at_] == '.')) ++at_;
    if (at_ + 1 < text_.size() && (text_[at_] == 'E' || text_[at_] == 'e') && ExponentFollows()) {
      at_ += 2;
      while (at_ < text_.size() && text_[at_] >= '0' && text_[at_] <= '9') ++at_;
    }
    const size_t end = at_;
    SkipBlanks();
    if (at_ < text_.size() && text_[at_] == '%')
      ++at_;
    else
      while (at_ < text_.size() && std::isalpha(static_cast<unsigned char>(text_[at_]))) ++at_;
    if (const auto withUnit = ParseConstant(text_.substr(start, at_ - start))) return *ParseNumber(withUnit->value);
    at_ = end;
    return FromConstant(text_.substr(start, end - start));
  }

  bool ExponentFollows() const {
    const char next = text_[at_ + 1];
    return (next >= '0' && next <= '9') ||
           ((next == '-' || next == '+') && at_ + 2 < text_.size() && std::isdigit(static_cast<unsigned char>(text_[at_ + 2])));
  }

  static CellValue FromConstant(std::string_view text) {
    const auto constant = ParseConstant(text);
    if (!constant) throw CannotEvaluate{};
    if (constant->unit == "STR") return constant->value;
    return *ParseNumber(constant->value);
  }

  CellValue NameOrCall() {
    const size_t start = at_;
    while (at_ < text_.size() && IsNamePart(text_[at_])) ++at_;
    const std::string name(text_.substr(start, at_ - start));
    if (Take("(")) return Call(name);
    return Reference(name);
  }

  std::string QuotedName() {
    std::string name;
    for (++at_; at_ < text_.size(); ++at_) {
      if (text_[at_] != '\'') {
        name += text_[at_];
      } else if (at_ + 1 < text_.size() && text_[at_ + 1] == '\'') {
        name += text_[at_++];
      } else {
        ++at_;
        return name;
      }
    }
    throw CannotEvaluate{};
  }

  CellValue Reference(const std::string& name) {
    if (name == "TRUE") return 1.0;
    if (name == "FALSE") return 0.0;
    std::string sheet, cell = name;
    if (at_ < text_.size() && text_[at_] == '!') {
      const size_t start = ++at_;
      while (at_ < text_.size() && IsNamePart(text_[at_])) ++at_;
      sheet = name;
      cell = text_.substr(start, at_ - start);
    }
    lastSheet_ = sheet;
    if (const auto value = scope_.cell(sheet, cell)) return *value;
    throw CannotEvaluate{};
  }

  CellValue Call(const std::string& name) {
    static constexpr SpecialCall kSpecialCalls[] = {
        {"PAR", &Evaluator::PointOfShape},
        {"_XFTRIGGER", &Evaluator::Trigger},
        {"_WALKGLUE", &Evaluator::WalkingGlue},
        {"REF", &Evaluator::LostReference},
    };
    for (const SpecialCall& special : kSpecialCalls)
      if (EqualAsciiIgnoringCase(special.name, name)) return (this->*special.run)();
    Arguments arguments;
    if (!Take(")")) {
      do arguments.push_back(Comparison());
      while (Take(","));
      Expect(")");
    }
    for (const Function& function : kFunctions)
      if (EqualAsciiIgnoringCase(function.name, name) && arguments.size() >= function.fewest && arguments.size() <= function.most)
        return function.apply(arguments);
    throw CannotEvaluate{};
  }

  // A function that does not look at its arguments' values alone.
  struct SpecialCall {
    std::string_view name;
    CellValue (Evaluator::*run)();
  };

  // A point is one of its coordinates to the cell.
  CellValue Coordinate(const std::optional<Point>& point) const {
    if (!point) throw CannotEvaluate{};
    return scope_.wantsY ? point->y : point->x;
  }

  // PAR(PNT(x,y)): a point of another shape, as the page counts.
  CellValue PointOfShape() {
    if (!scope_.onPage || !Take("PNT(")) throw CannotEvaluate{};
    const double x = Number(Comparison());
    Expect(",");
    const double y = Number(Comparison());
    Expect(")");
    Expect(")");
    return Coordinate(scope_.onPage(lastSheet_, {x, y}));
  }

  // _XFTRIGGER(cell): looks at nothing, and is computed anew whenever that cell's shape moves.
  CellValue Trigger() {
    const size_t end = text_.find(')', at_);
    if (end == std::string_view::npos) throw CannotEvaluate{};
    const bool ofOtherShape = text_.substr(at_, end - at_).find('!') != std::string_view::npos;
    if (ofOtherShape) Comparison();
    at_ = end + 1;
    return ofOtherShape ? 2.0 : 1.0;
  }

  // _WALKGLUE(trigger,other trigger,preference)
  CellValue WalkingGlue() {
    const auto name = [this] {
      SkipBlanks();
      const size_t start = at_;
      while (at_ < text_.size() && IsNamePart(text_[at_])) ++at_;
      return text_.substr(start, at_ - start);
    };
    const std::string_view trigger = name();
    Expect(",");
    const std::string_view otherTrigger = name();
    while (Take(",")) name();
    Expect(")");
    if (!scope_.walk) throw CannotEvaluate{};
    return Coordinate(scope_.walk(trigger, otherTrigger));
  }

  CellValue LostReference() { throw CannotEvaluate{"#REF!"}; }

  static std::string AsText(const CellValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    return NumberText(std::get<double>(value));
  }

  void SkipBlanks() {
    while (at_ < text_.size() && text_[at_] == ' ') ++at_;
  }
  bool Take(std::string_view token) {
    SkipBlanks();
    if (text_.substr(at_, token.size()) != token) return false;
    at_ += token.size();
    return true;
  }
  void Expect(std::string_view token) {
    if (!Take(token)) throw CannotEvaluate{};
  }

  struct Nested {
    explicit Nested(Evaluator& evaluator) : depth(evaluator.depth_) {
      if (++depth > 3 * kDeepestFormula) {
        --depth;
        throw CannotEvaluate{};
      }
    }
    ~Nested() { --depth; }
    int& depth;
  };

  std::string_view text_;
  const FormulaScope& scope_;
  std::string lastSheet_;  // of the last reference
  size_t at_ = 0;
  int depth_ = 0;
};

}  // namespace

Evaluation EvaluateIn(const FormulaScope& scope, std::string_view formula) try {
  const CellValue value = Evaluator(formula, scope).Whole();
  if (const auto* number = std::get_if<double>(&value); number && !std::isfinite(*number)) return {};
  return {value};
} catch (const CannotEvaluate& reason) {
  return {std::nullopt, reason.error};
} catch (const BadReference&) {
  return {std::nullopt, "#REF!"};
}

std::optional<CellValue> Evaluate(std::string_view formula, const CellLookup& lookup) {
  return EvaluateIn({lookup}, formula).value;
}

}  // namespace vardo
