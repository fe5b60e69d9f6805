// What can be said of an expression without running it.
#include "model/Expression.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vardo {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

using Values = std::vector<double>;

// Of the functions that depend on nothing but their arguments; none for the others, and where there is no such value.
std::optional<double> Apply(Function function, const Values& a) {
  const double x = a.empty() ? 0 : a[0];
  switch (function) {
    case Function::Abs:
      return std::abs(x);
    case Function::Min:
      return *std::ranges::min_element(a);
    case Function::Max:
      return *std::ranges::max_element(a);
    case Function::Round:
      return std::round(x);
    case Function::Int:
      return std::trunc(x);
    case Function::Floor:
      return std::floor(x);
    case Function::Ceil:
      return std::ceil(x);
    case Function::Mod:
      return std::fmod(x, a[1]);
    case Function::Sqrt:
      return std::sqrt(x);
    case Function::Exp:
      return std::exp(x);
    case Function::Ln:
      return std::log(x);
    case Function::Log10:
      return std::log10(x);
    case Function::Pow:
      return std::pow(x, a[1]);
    case Function::Sign:
      return (x > 0) - (x < 0);
    case Function::If:
      return x != 0 ? a[1] : a[2];
    default:
      return std::nullopt;
  }
}

double Apply(Operator code, double a, double b) {
  switch (code) {
    case Operator::Or:
      return a != 0 || b != 0;
    case Operator::And:
      return a != 0 && b != 0;
    case Operator::Less:
      return a < b;
    case Operator::LessOrEqual:
      return a <= b;
    case Operator::Greater:
      return a > b;
    case Operator::GreaterOrEqual:
      return a >= b;
    case Operator::Equal:
      return a == b;
    case Operator::NotEqual:
      return a != b;
    case Operator::Add:
      return a + b;
    case Operator::Subtract:
      return a - b;
    case Operator::Multiply:
      return a * b;
    case Operator::Divide:
      return a / b;
    case Operator::Power:
      return std::pow(a, b);
  }
  return 0;
}

std::optional<double> IfFinite(std::optional<double> value) { return value && std::isfinite(*value) ? value : std::nullopt; }

class Facts {
 public:
  explicit Facts(const Expression& expression) : expression_(expression) {}

  std::optional<double> Constant(const ExpressionNode& node) const {
    switch (node.kind) {
      case NodeKind::Number:
        return node.value;
      case NodeKind::EntityType:
      case NodeKind::Picture:
        return node.index + 1;
      case NodeKind::Negate: {
        const auto value = Constant(Child(node));
        return value ? std::optional(-*value) : std::nullopt;
      }
      case NodeKind::Not: {
        const auto value = Constant(Child(node));
        return value ? std::optional<double>(*value == 0) : std::nullopt;
      }
      case NodeKind::Binary: {
        const auto a = Constant(Child(node)), b = Constant(Second(node));
        return a && b ? IfFinite(Apply(node.AsOperator(), *a, *b)) : std::nullopt;
      }
      case NodeKind::Function: {
        if (InfoOf(node.AsFunction()).isDistribution || node.firstChild == kNoNode) return std::nullopt;
        const auto values = Constants(node);
        return values ? IfFinite(Apply(node.AsFunction(), *values)) : std::nullopt;
      }
      default:
        return std::nullopt;
    }
  }

  std::optional<double> Mean(const ExpressionNode& node) const {
    if (const auto constant = Constant(node)) return constant;
    if (node.kind == NodeKind::Negate) {
      const auto mean = Mean(Child(node));
      return mean ? std::optional(-*mean) : std::nullopt;
    }
    if (node.kind == NodeKind::Binary) return MeanOfBinary(node);
    if (node.kind != NodeKind::Function) return std::nullopt;
    if (InfoOf(node.AsFunction()).isDistribution) {
      const auto values = Constants(node);
      return values ? IfFinite(MeanOfDistribution(node.AsFunction(), *values)) : std::nullopt;
    }
    if (node.AsFunction() == Function::If) {
      const auto a = Mean(Second(node)), b = Mean(*expression_.NextSibling(Second(node)));
      return a && b && *a == *b ? a : std::nullopt;
    }
    return std::nullopt;
  }

  Range RangeOf(const ExpressionNode& node) const {
    if (const auto constant = Constant(node)) return {*constant, *constant};
    switch (node.kind) {
      case NodeKind::Negate: {
        const Range range = RangeOf(Child(node));
        return {-range.most, -range.least};
      }
      case NodeKind::Not:
        return {0, 1};
      case NodeKind::Binary:
        return RangeOfBinary(node);
      case NodeKind::Function:
        return RangeOfFunction(node);
      default:
        return {-kInfinity, kInfinity};
    }
  }

 private:
  const ExpressionNode& Child(const ExpressionNode& node) const { return *expression_.FirstChild(node); }
  const ExpressionNode& Second(const ExpressionNode& node) const { return *expression_.NextSibling(Child(node)); }

  std::optional<Values> Constants(const ExpressionNode& node) const {
    Values values;
    for (const ExpressionNode* child = expression_.FirstChild(node); child; child = expression_.NextSibling(*child)) {
      const auto value = Constant(*child);
      if (!value) return std::nullopt;
      values.push_back(*value);
    }
    return values;
  }

  std::optional<double> MeanOfBinary(const ExpressionNode& node) const {
    const auto a = Mean(Child(node)), b = Mean(Second(node));
    if (!a || !b) return std::nullopt;
    const Operator code = node.AsOperator();
    const bool isLinear = code == Operator::Add || code == Operator::Subtract ||
                          (code == Operator::Multiply && (Constant(Child(node)) || Constant(Second(node)))) ||
                          (code == Operator::Divide && Constant(Second(node)));
    return isLinear ? IfFinite(Apply(code, *a, *b)) : std::nullopt;
  }

  // Pairs of a cumulative probability and a value. Between two values CONT is even.
  static double MeanOfTable(const Values& a, bool isEven) {
    double mean = a[0] * a[1];
    for (size_t i = 2; i + 1 < a.size(); i += 2) mean += (a[i] - a[i - 2]) * (isEven ? (a[i - 1] + a[i + 1]) / 2 : a[i + 1]);
    return mean;
  }
  static std::optional<double> MeanOfDistribution(Function function, const Values& a) {
    switch (function) {
      case Function::Expo:
      case Function::Pois:
      case Function::Norm:
      case Function::Logn:
        return a[0];
      case Function::Tria:
        return (a[0] + a[1] + a[2]) / 3;
      case Function::Unif:
        return (a[0] + a[1]) / 2;
      case Function::Erla:
      case Function::Gamm:
        return a[0] * a[1];
      case Function::Weib:
        return a[0] * std::tgamma(1 + 1 / a[1]);
      case Function::Beta:
        return a[0] / (a[0] + a[1]);
      case Function::Disc:
        return MeanOfTable(a, false);
      case Function::Cont:
        return MeanOfTable(a, true);
      default:
        return std::nullopt;
    }
  }

  Range RangeOfBinary(const ExpressionNode& node) const {
    const Range a = RangeOf(Child(node)), b = RangeOf(Second(node));
    switch (node.AsOperator()) {
      case Operator::Add:
        return {a.least + b.least, a.most + b.most};
      case Operator::Subtract:
        return {a.least - b.most, a.most - b.least};
      case Operator::Multiply:
        return Corners(a, b, Operator::Multiply);
      case Operator::Divide:
        if (b.least > 0 || b.most < 0) return Corners(a, b, Operator::Divide);
        return {-kInfinity, kInfinity};
      case Operator::Power:
        return {a.least >= 0 ? 0 : -kInfinity, kInfinity};
      default:
        return {0, 1};
    }
  }
  static Range Corners(const Range& a, const Range& b, Operator code) {
    Range range{kInfinity, -kInfinity};
    for (const double x : {a.least, a.most})
      for (const double y : {b.least, b.most}) {
        // Nothing times infinity and the like: what may be anything.
        const double value = Apply(code, x, y);
        range.least = std::isnan(value) ? std::min(range.least, 0.0) : std::min(range.least, value);
        range.most = std::isnan(value) ? std::max(range.most, 0.0) : std::max(range.most, value);
      }
    return range;
  }

  std::vector<Range> Ranges(const ExpressionNode& node) const {
    std::vector<Range> ranges;
    for (const ExpressionNode* child = expression_.FirstChild(node); child; child = expression_.NextSibling(*child))
      ranges.push_back(child->kind == NodeKind::Object ? Range{0, 0} : RangeOf(*child));
    return ranges;
  }

  Range RangeOfFunction(const ExpressionNode& node) const {
    constexpr Range kAnything{-kInfinity, kInfinity}, kNotNegative{0, kInfinity};
    const std::vector<Range> a = Ranges(node);
    switch (node.AsFunction()) {
      case Function::Beta:
        return {0, 1};
      case Function::Tria:
        return {a[0].least, a[2].most};
      case Function::Unif:
        return {a[0].least, a[1].most};
      case Function::John:
        return {a[3].least, a[3].most + std::max(a[2].most, 0.0)};
      case Function::Disc:
      case Function::Cont:
        return RangeOfValues(a);
      case Function::Sign:
        return {-1, 1};
      case Function::Min:
        return {Least(a), std::ranges::min_element(a, {}, &Range::most)->most};
      case Function::Max:
        return {std::ranges::max_element(a, {}, &Range::least)->least, Most(a)};
      case Function::Round:
        return {std::round(a[0].least), std::round(a[0].most)};
      case Function::Int:
        return {std::trunc(a[0].least), std::trunc(a[0].most)};
      case Function::Floor:
        return {std::floor(a[0].least), std::floor(a[0].most)};
      case Function::Ceil:
        return {std::ceil(a[0].least), std::ceil(a[0].most)};
      case Function::If:
        return {std::min(a[1].least, a[2].least), std::max(a[1].most, a[2].most)};
      case Function::Pow:
        return a[0].least >= 0 ? kNotNegative : kAnything;
      case Function::Norm:
      case Function::Count:
      case Function::Average:
      case Function::ScheduleValue:
      case Function::Mod:
      case Function::Ln:
      case Function::Log10:
        return kAnything;
      default:
        return kNotNegative;
    }
  }
  static double Least(const std::vector<Range>& ranges) { return std::ranges::min_element(ranges, {}, &Range::least)->least; }
  static double Most(const std::vector<Range>& ranges) { return std::ranges::max_element(ranges, {}, &Range::most)->most; }
  static Range RangeOfValues(const std::vector<Range>& pairs) {
    Range range{kInfinity, -kInfinity};
    for (size_t i = 1; i < pairs.size(); i += 2) {
      range.least = std::min(range.least, pairs[i].least);
      range.most = std::max(range.most, pairs[i].most);
    }
    return range;
  }

  const Expression& expression_;
};

}  // namespace

std::optional<double> ConstantOf(const Expression& expression, const ExpressionNode& node) {
  return Facts(expression).Constant(node);
}

std::optional<double> ConstantOf(const Expression& expression) {
  return expression.IsGood() ? ConstantOf(expression, expression.Root()) : std::nullopt;
}

std::optional<double> MeanOf(const Expression& expression) {
  return expression.IsGood() ? Facts(expression).Mean(expression.Root()) : std::nullopt;
}

Range RangeOf(const Expression& expression) {
  constexpr Range kAnything{-kInfinity, kInfinity};
  return expression.IsGood() ? Facts(expression).RangeOf(expression.Root()) : kAnything;
}

}  // namespace vardo
