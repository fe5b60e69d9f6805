#include "model/Distribution.h"

#include <cmath>

namespace vardo {
namespace {

using Parameters = std::span<const double>;

bool IsWholeFrom1(double x) { return x >= 1 && x == std::floor(x); }

// Probabilities at the even places rise to 1.
bool IsCumulative(Parameters p) {
  if (p.empty() || p.size() % 2 != 0) return false;
  double last = 0;
  for (size_t i = 0; i < p.size(); i += 2) {
    if (!(p[i] >= last)) return false;
    last = p[i];
  }
  return last == 1;
}

struct Rule {
  bool (*isMet)(Parameters);
  std::string_view complaint;
};

constexpr std::string_view kCumulative = "probabilities are cumulative, rise from 0 and end with 1";

// One for each distribution.
constexpr Rule kRules[] = {
    {[](Parameters p) { return p[0] >= 0; }, "EXPO wants a mean that is not negative"},
    {[](Parameters p) { return p[1] >= 0; }, "NORM wants a standard deviation that is not negative"},
    {[](Parameters p) { return p[0] <= p[1] && p[1] <= p[2]; }, "TRIA wants minimum <= mode <= maximum"},
    {[](Parameters p) { return p[0] <= p[1]; }, "UNIF wants minimum <= maximum"},
    {[](Parameters p) { return p[0] >= 0 && IsWholeFrom1(p[1]); },
     "ERLA wants a mean that is not negative and a whole number of phases"},
    {[](Parameters p) { return p[0] > 0 && p[1] > 0; }, "GAMM wants a scale and a shape above 0"},
    {[](Parameters p) { return p[0] > 0 && p[1] > 0; }, "WEIB wants a scale and a shape above 0"},
    {[](Parameters p) { return p[0] > 0 && p[1] >= 0; },
     "LOGN wants a mean above 0 and a standard deviation that is not negative"},
    {[](Parameters p) { return p[0] > 0 && p[1] > 0; }, "BETA wants two shapes above 0"},
    {[](Parameters p) { return p[0] >= 0 && p[0] <= 1e15; }, "POIS wants a mean from 0 to 1E15"},
    {[](Parameters p) { return p[1] > 0 && p[2] > 0; }, "JOHN wants a D and an L above 0"},
    {IsCumulative, kCumulative},
    {IsCumulative, kCumulative},
};

}  // namespace

std::string_view ComplaintOf(Distribution distribution, Parameters parameters) {
  for (const double parameter : parameters)
    if (!std::isfinite(parameter)) return "a parameter is no finite number";
  const Rule& rule = kRules[static_cast<size_t>(distribution)];
  return rule.isMet(parameters) ? std::string_view() : rule.complaint;
}

}  // namespace vardo
