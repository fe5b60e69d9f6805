// What is known of a distribution whose parameters are constants.
#pragma once

#include "model/Expression.h"

#include <optional>
#include <string>
#include <vector>

namespace vardo {

struct Distribution {
  Function function = Function::Expo;
  std::vector<double> parameters;
};

// The one that a node calls; none when it calls none, or one with parameters that vary.
std::optional<Distribution> DistributionAt(const Expression& expression, const ExpressionNode& node);
// The one that an expression is.
std::optional<Distribution> DistributionAt(const Expression& expression);

Range RangeOf(const Distribution& distribution);
// How much of it lies below 0; none where that is not known in closed form.
std::optional<double> ShareBelowZero(const Distribution& distribution);

// A sentence without a full stop; empty when the parameters are as they should be.
std::string WhyWrongParameters(const Distribution& distribution);
std::string WhyNotCumulative(const Distribution& distribution);

}  // namespace vardo
