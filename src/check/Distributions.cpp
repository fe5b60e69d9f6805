#include "check/Distributions.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace vardo {
namespace {

using Values = std::vector<double>;

bool ArePositive(const Values& values) {
  return std::ranges::all_of(values, [](double value) { return value > 0; });
}

// What the parameters of a distribution have to be.
constexpr struct {
  Function function;
  bool (*isRight)(const Values& values);
  std::string_view wants;
} kWants[] = {
    {Function::Expo, [](const Values& v) { return v[0] >= 0; }, "a mean that is not negative"},
    {Function::Norm, [](const Values& v) { return v[1] >= 0; }, "a standard deviation that is not negative"},
    {Function::Tria, [](const Values& v) { return v[0] <= v[1] && v[1] <= v[2]; }, "minimum <= mode <= maximum"},
    {Function::Unif, [](const Values& v) { return v[0] <= v[1]; }, "minimum <= maximum"},
    {Function::Erla, [](const Values& v) { return v[0] >= 0 && v[1] >= 1 && v[1] == std::floor(v[1]); },
     "a mean that is not negative and a whole number of stages"},
    {Function::Gamm, ArePositive, "a scale and a shape above 0"},
    {Function::Weib, ArePositive, "a scale and a shape above 0"},
    {Function::Logn, [](const Values& v) { return v[0] > 0 && v[1] >= 0; },
     "a mean above 0 and a standard deviation that is not negative"},
    {Function::Beta, ArePositive, "two values above 0"},
    {Function::Pois, [](const Values& v) { return v[0] >= 0; }, "a mean that is not negative"},
    {Function::John, [](const Values& v) { return v[1] > 0 && v[2] > 0; }, "D and L above 0"},
};

double NormalShareBelow(double x) { return std::erfc(-x / std::sqrt(2.0)) / 2; }

}  // namespace

std::optional<Distribution> DistributionAt(const Expression& expression, const ExpressionNode& node) {
  if (node.kind != NodeKind::Function || !InfoOf(node.AsFunction()).isDistribution) return std::nullopt;
  Distribution distribution{node.AsFunction(), {}};
  for (const ExpressionNode* child = expression.FirstChild(node); child; child = expression.NextSibling(*child)) {
    const auto constant = ConstantOf(expression, *child);
    if (!constant) return std::nullopt;
    distribution.parameters.push_back(*constant);
  }
  return distribution;
}

std::optional<Distribution> DistributionAt(const Expression& expression) {
  return expression.IsGood() ? DistributionAt(expression, expression.Root()) : std::nullopt;
}

Range RangeOf(const Distribution& distribution) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const Values& v = distribution.parameters;
  switch (distribution.function) {
    case Function::Norm:
      return v[1] == 0 ? Range{v[0], v[0]} : Range{-kInfinity, kInfinity};
    case Function::Tria:
      return {v[0], v[2]};
    case Function::Unif:
      return {v[0], v[1]};
    default:
      return {0, kInfinity};
  }
}

std::optional<double> ShareBelowZero(const Distribution& distribution) {
  const Values& v = distribution.parameters;
  if (!WhyWrongParameters(distribution).empty()) return std::nullopt;
  switch (distribution.function) {
    case Function::Norm:
      return v[1] > 0 ? NormalShareBelow(-v[0] / v[1]) : v[0] < 0;
    case Function::Unif:
      return v[0] >= 0 ? 0 : v[1] <= 0 ? 1 : -v[0] / (v[1] - v[0]);
    case Function::Tria:
      if (v[0] >= 0) return 0;
      if (v[2] <= 0) return 1;
      return v[1] >= 0 ? v[0] * v[0] / ((v[2] - v[0]) * (v[1] - v[0])) : 1 - v[2] * v[2] / ((v[2] - v[0]) * (v[2] - v[1]));
    default:
      return std::nullopt;
  }
}

std::string WhyWrongParameters(const Distribution& distribution) {
  for (const auto& [function, isRight, wants] : kWants)
    if (function == distribution.function && !isRight(distribution.parameters))
      return std::string(InfoOf(function).name) + " wants " + std::string(wants);
  return "";
}

std::string WhyNotCumulative(const Distribution& distribution) {
  if (!InfoOf(distribution.function).inPairs) return "";
  constexpr double kNearly = 1e-9;
  double before = 0;
  for (size_t i = 0; i < distribution.parameters.size(); i += 2) {
    if (distribution.parameters[i] < before) return "the probabilities are cumulative and end with 1";
    before = distribution.parameters[i];
  }
  return std::abs(before - 1) > kNearly ? "the probabilities are cumulative and end with 1" : "";
}

}  // namespace vardo
