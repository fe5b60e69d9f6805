#include "simulate/Distributions.h"

#include "simulate/Elementary.h"

#include <cmath>

namespace vardo {
namespace {

double Exponential(double mean, double u) { return -mean * Log(u); }

double Triangular(double least, double mode, double most, double u) {
  const double width = most - least;
  const double below = mode - least;
  if (u * width < below) return least + std::sqrt(u * width * below);
  return most - std::sqrt((1 - u) * width * (most - mode));
}

double LogNormal(double mean, double deviation, double u) {
  const double ratio = deviation / mean;
  const double variance = Log(1 + ratio * ratio);
  return Exp(Log(mean) - variance / 2 + std::sqrt(variance) * InverseNormal(u));
}

double BoundedJohnson(double g, double d, double length, double least, double u) {
  return least + length / (1 + Exp(-(InverseNormal(u) - g) / d));
}

// Marsaglia and Tsang (2000); below shape 1 by the power of a further uniform.
double StandardGamma(double shape, LongDraw& draw) {
  if (shape < 1) {
    const double power = Exp(Log(draw.Uniform()) / shape);
    return power * StandardGamma(shape + 1, draw);
  }
  const double d = shape - 1. / 3;
  const double c = 1 / std::sqrt(9 * d);
  for (;;) {
    const double z = InverseNormal(draw.Uniform());
    const double root = 1 + c * z;
    const double u = draw.Uniform();
    if (root <= 0) continue;
    const double v = root * root * root;
    if (Log(u) < z * z / 2 + d * (1 - v + Log(v))) return d * v;
  }
}

constexpr double kMostPhases = 64;

double Erlang(double mean, double phases, LongDraw& draw) {
  if (phases > kMostPhases) return mean * StandardGamma(phases, draw);
  double product = 1;
  for (double i = 0; i < phases; ++i) product *= draw.Uniform();
  return -mean * Log(product);
}

double BetaOf(double a, double b, LongDraw& draw) {
  const double x = StandardGamma(a, draw);
  const double y = StandardGamma(b, draw);
  return x + y > 0 ? x / (x + y) : a / (a + b);  // both may underflow
}

double SmallPoisson(double mean, double u) {
  double chance = Exp(-mean);
  double sum = chance;
  double k = 0;
  // The sum may end just below 1 by rounding.
  while (u > sum && k < 1000) {
    k += 1;
    chance *= mean / k;
    sum += chance;
  }
  return k;
}

double LogFactorial(double k) {
  if (k < 10) {
    double product = 1;
    for (double i = 2; i <= k; ++i) product *= i;
    return Log(product);
  }
  constexpr double kHalfLog2Pi = 0.91893853320467274178;
  const double n = k + 1;
  const double r = 1 / (n * n);
  return (n - 0.5) * Log(n) - n + kHalfLog2Pi + (1. / 12 - (1. / 360 - (1. / 1260 - r / 1680) * r) * r) / n;
}

// Hoermann (1993), transformed rejection with a squeeze.
double LargePoisson(double mean, LongDraw& draw) {
  const double b = 0.931 + 2.53 * std::sqrt(mean);
  const double a = -0.059 + 0.02483 * b;
  const double inverseAlpha = 1.1239 + 1.1328 / (b - 3.4);
  const double squeeze = 0.9277 - 3.6224 / (b - 2);
  const double logMean = Log(mean);
  for (;;) {
    const double u = draw.Uniform() - 0.5;
    const double v = draw.Uniform();
    const double rest = 0.5 - (u < 0 ? -u : u);
    const double k = std::floor((2 * a / rest + b) * u + mean + 0.43);
    if (rest >= 0.07 && v <= squeeze) return k;
    if (k < 0 || (rest < 0.013 && v > rest)) continue;
    if (Log(v * inverseAlpha / (a / (rest * rest) + b)) <= k * logMean - mean - LogFactorial(k)) return k;
  }
}

// The first point whose cumulative chance is not below u.
size_t PointAt(std::span<const double> points, double u) {
  size_t i = 0;
  while (i + 2 < points.size() && points[i] < u) i += 2;
  return i;
}

double Discrete(std::span<const double> points, double u) { return points[PointAt(points, u) + 1]; }

double Continuous(std::span<const double> points, double u) {
  const size_t i = PointAt(points, u);
  if (i == 0) return points[1];
  const double from = points[i - 2], to = points[i];
  return points[i - 1] + (points[i + 1] - points[i - 1]) * ((u - from) / (to - from));
}

}  // namespace

double Draw(Distribution distribution, std::span<const double> p, Stream& stream) {
  switch (distribution) {
    case Distribution::Expo:
      return Exponential(p[0], stream.Uniform());
    case Distribution::Norm:
      return p[0] + p[1] * InverseNormal(stream.Uniform());
    case Distribution::Tria:
      return Triangular(p[0], p[1], p[2], stream.Uniform());
    case Distribution::Unif:
      return p[0] + (p[1] - p[0]) * stream.Uniform();
    case Distribution::Weib:
      return p[0] * Exp(Log(-Log(stream.Uniform())) / p[1]);
    case Distribution::Logn:
      return LogNormal(p[0], p[1], stream.Uniform());
    case Distribution::John:
      return BoundedJohnson(p[0], p[1], p[2], p[3], stream.Uniform());
    case Distribution::Disc:
      return Discrete(p, stream.Uniform());
    case Distribution::Cont:
      return Continuous(p, stream.Uniform());
    case Distribution::Pois:
      if (p[0] <= 30) return SmallPoisson(p[0], stream.Uniform());
      break;
    default:
      break;
  }
  LongDraw draw(stream);
  switch (distribution) {
    case Distribution::Erla:
      return Erlang(p[0], p[1], draw);
    case Distribution::Gamm:
      return p[0] * StandardGamma(p[1], draw);
    case Distribution::Beta:
      return BetaOf(p[0], p[1], draw);
    default:
      return LargePoisson(p[0], draw);
  }
}

}  // namespace vardo
