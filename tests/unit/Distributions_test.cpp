#include "simulate/Distributions.h"

#include "Fingerprint.h"
#include "model/Sources.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace vardo {
namespace {

// The cumulative distribution functions, from the C++ library's mathematics: here last bits do not matter.
double NormalBelow(double z) { return std::erfc(-z / std::sqrt(2)) / 2; }

double IncompleteGamma(double shape, double x) {
  if (x <= 0) return 0;
  double term = std::exp(shape * std::log(x) - x - std::lgamma(shape + 1)), sum = term;
  for (double k = shape + 1; term > sum * 1e-16; ++k) sum += term *= x / k;
  return sum;
}

double TriangularBelow(double x) {  // of 1, 2, 4
  return x < 2 ? (x - 1) * (x - 1) / 3 : 1 - (4 - x) * (4 - x) / 6;
}

double PoissonBelow(double mean, double k) { return 1 - IncompleteGamma(std::floor(k) + 1, mean); }

double BetaBelow(double x) {  // of 2, 3
  return x * x * (6 - 8 * x + 3 * x * x);
}

struct Case {
  const char* name;
  Distribution distribution;
  std::vector<double> parameters;
  double mean, variance;
  double (*below)(double);  // null where Kolmogorov and Smirnov's distance says nothing
};

const std::vector<Case>& Cases() {
  static const double gammaOf3Halves = std::tgamma(1.5);
  static const std::vector<Case> cases = {
      {"EXPO", Distribution::Expo, {3}, 3, 9, [](double x) { return 1 - std::exp(-x / 3); }},
      {"NORM", Distribution::Norm, {10, 2}, 10, 4, [](double x) { return NormalBelow((x - 10) / 2); }},
      {"TRIA", Distribution::Tria, {1, 2, 4}, 7. / 3, 7. / 18, TriangularBelow},
      {"UNIF", Distribution::Unif, {2, 5}, 3.5, .75, [](double x) { return (x - 2) / 3; }},
      {"ERLA", Distribution::Erla, {2, 3}, 6, 12, [](double x) { return IncompleteGamma(3, x / 2); }},
      {"ERLA of many phases", Distribution::Erla, {.5, 80}, 40, 20, [](double x) { return IncompleteGamma(80, x * 2); }},
      {"GAMM", Distribution::Gamm, {2, 1.5}, 3, 6, [](double x) { return IncompleteGamma(1.5, x / 2); }},
      {"GAMM below shape 1", Distribution::Gamm, {2, .5}, 1, 2, [](double x) { return IncompleteGamma(.5, x / 2); }},
      {"WEIB",
       Distribution::Weib,
       {1, 2},
       gammaOf3Halves,
       1 - gammaOf3Halves * gammaOf3Halves,
       [](double x) { return 1 - std::exp(-x * x); }},
      {"LOGN",
       Distribution::Logn,
       {3, 1},
       3,
       1,
       [](double x) {
         const double variance = std::log(1 + 1. / 9);
         return NormalBelow((std::log(x) - std::log(3) + variance / 2) / std::sqrt(variance));
       }},
      {"BETA", Distribution::Beta, {2, 3}, .4, .04, BetaBelow},
      {"POIS", Distribution::Pois, {4}, 4, 4, [](double k) { return PoissonBelow(4, k); }},
      {"POIS of a large mean", Distribution::Pois, {100}, 100, 100, [](double k) { return PoissonBelow(100, k); }},
      {"JOHN",
       Distribution::John,
       {0, 1, 4, 1},
       3,
       0.694064578218576,
       [](double x) { return NormalBelow(std::log((x - 1) / (5 - x))); }},
      {"DISC", Distribution::Disc, {.25, 1, .75, 2, 1, 5}, 2.5, 2.25, nullptr},
      {"CONT", Distribution::Cont, {.25, 1, .75, 2, 1, 6}, 2, 1.75, nullptr},
  };
  return cases;
}

// What lies between steps of a distribution of whole numbers has the chance of the step below.
double DistanceOf(const std::vector<double>& sorted, double (*below)(double)) {
  const double n = static_cast<double>(sorted.size());
  double distance = 0;
  for (size_t i = 0; i < sorted.size(); ++i) {
    if (i + 1 < sorted.size() && sorted[i + 1] == sorted[i]) continue;
    distance = std::max(distance, std::fabs(below(sorted[i]) - static_cast<double>(i + 1) / n));
  }
  return distance;
}

TEST(Distributions, MeanVarianceAndShapeOfManyDraws) {
  const int n = test::Fewer(250000);
  for (const Case& c : Cases()) {
    Stream stream(RandomRun{.seed = 3}, SourceOf(1, static_cast<uint64_t>(c.distribution), c.parameters.size(), 0));
    std::vector<double> draws;
    double sum = 0, squares = 0;
    for (int i = 0; i < n; ++i) {
      draws.push_back(Draw(c.distribution, c.parameters, stream));
      sum += draws.back();
    }
    const double mean = sum / n;
    double fourth = 0;
    for (const double x : draws) {
      const double square = (x - mean) * (x - mean);
      squares += square;
      fourth += square * square;
    }
    const double variance = squares / n;
    EXPECT_NEAR(mean, c.mean, 4 * std::sqrt(c.variance / n)) << c.name;
    EXPECT_NEAR(variance, c.variance, 4 * std::sqrt((fourth / n - variance * variance) / n) + 1e-4) << c.name;
    if (!c.below) continue;
    std::sort(draws.begin(), draws.end());
    EXPECT_LT(DistanceOf(draws, c.below), 1.95 / std::sqrt(n)) << c.name;
  }
}

TEST(Distributions, SingleInversionsRiseWithTheUniformAndTakeOneNumber) {
  for (const Case& c : Cases()) {
    Stream stream(RandomRun{}, 7), plain(RandomRun{}, 7);
    Draw(c.distribution, c.parameters, stream);
    plain.Uniform();
    const bool isLong = c.distribution == Distribution::Erla || c.distribution == Distribution::Gamm ||
                        c.distribution == Distribution::Beta || c.parameters.front() == 100;
    EXPECT_EQ(stream.Uniform() == plain.Uniform(), !isLong) << c.name;
  }
}

TEST(Distributions, DiscreteAndContinuousBeginAtTheFirstPoint) {
  const std::vector<double> points = {.5, 10, 1, 20};
  int first = 0, second = 0, between = 0;
  Stream stream(RandomRun{}, 1);
  for (int i = 0; i < 1000; ++i) {
    const double discrete = Draw(Distribution::Disc, points, stream);
    EXPECT_TRUE(discrete == 10 || discrete == 20) << discrete;
    const double continuous = Draw(Distribution::Cont, points, stream);
    EXPECT_TRUE(continuous >= 10 && continuous <= 20) << continuous;
    first += discrete == 10;
    second += continuous == 10;
    between += continuous > 10 && continuous < 20;
  }
  EXPECT_NEAR(first, 500, 60);
  EXPECT_NEAR(second, 500, 60);
  EXPECT_EQ(second + between, 1000);
}

TEST(Distributions, ParametersOutOfRangeOrOrderAreRefused) {
  const struct {
    Distribution distribution;
    std::vector<double> parameters;
    std::string_view want;
  } cases[] = {
      {Distribution::Expo, {-1}, "EXPO wants a mean that is not negative"},
      {Distribution::Expo, {0}, ""},
      {Distribution::Norm, {0, -1}, "NORM wants a standard deviation that is not negative"},
      {Distribution::Tria, {3, 2, 1}, "TRIA wants minimum <= mode <= maximum"},
      {Distribution::Tria, {1, 1, 1}, ""},
      {Distribution::Unif, {2, 1}, "UNIF wants minimum <= maximum"},
      {Distribution::Erla, {1, 2.5}, "ERLA wants a mean that is not negative and a whole number of phases"},
      {Distribution::Gamm, {1, 0}, "GAMM wants a scale and a shape above 0"},
      {Distribution::Disc, {.3, 1, .7, 2}, "probabilities are cumulative, rise from 0 and end with 1"},
      {Distribution::Cont, {.5, 1, .3, 2, 1, 3}, "probabilities are cumulative, rise from 0 and end with 1"},
      {Distribution::Cont, {0, 1, 1, 3}, ""},
      {Distribution::Norm, {NAN, 1}, "a parameter is no finite number"},
  };
  for (const auto& [distribution, parameters, want] : cases) EXPECT_EQ(ComplaintOf(distribution, parameters), want);
}

TEST(Distributions, DrawsHaveTheirFingerprint) {
  test::Fingerprint fingerprint;
  for (const Case& c : Cases()) {
    Stream stream(RandomRun{}, 11);
    for (int i = 0; i < 20000; ++i) fingerprint.Add(Draw(c.distribution, c.parameters, stream));
  }
  EXPECT_EQ(fingerprint.hash(), 10760344828924033953u);
}

}  // namespace
}  // namespace vardo
