#include "simulate/Elementary.h"

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>

// Registers of more digits than a double's would give other bits.
static_assert(FLT_EVAL_METHOD == 0);

namespace vardo {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kPi = 3.14159265358979323846;
// The logarithm of 2; of the first part, the product with any exponent is exact.
constexpr double kLn2High = 6.93147180369123816490e-01;
constexpr double kLn2Low = 1.90821492927058770002e-10;

// coefficients[0] + coefficients[1] x + ...
template <int count>
constexpr double Polynomial(const double (&coefficients)[count], double x) {
  double sum = coefficients[count - 1];
  for (int i = count - 2; i >= 0; --i) sum = sum * x + coefficients[i];
  return sum;
}

constexpr double PowerOfTwo(int64_t exponent) { return std::bit_cast<double>(static_cast<uint64_t>(exponent + 1023) << 52); }

// x with a whole exponent, by squaring.
double WholePower(double x, unsigned exponent) {
  double result = 1;
  for (; exponent != 0; exponent >>= 1, x *= x)
    if (exponent & 1) result *= x;
  return result;
}

}  // namespace

double Log(double x) {
  // Subnormal numbers are brought up first.
  constexpr double kTwo54 = 18014398509481984.0;
  int64_t exponent = 0;
  if (x < DBL_MIN) {
    x *= kTwo54;
    exponent = -54;
  }
  // x is m times a power of two with m between sqrt(1/2) and sqrt(2).
  constexpr uint64_t kSqrtHalf = 0x3fe6a09e667f3bcdu;
  const uint64_t above = std::bit_cast<uint64_t>(x) - kSqrtHalf;
  exponent += static_cast<int64_t>(above) >> 52;
  const double f = std::bit_cast<double>((above & 0x000fffffffffffffu) + kSqrtHalf) - 1;
  // log(1+f) = 2 (s + s^3/3 + s^5/5 + ...), its first part taken from f itself, which is exact. The coefficients are those of the
  // series, fitted to the interval so that seven of them do for eleven.
  const double s = f / (2 + f);
  const double z = s * s;
  const double w = z * z;
  constexpr double kEven[] = {0.666666666666667, 0.2857142862600327, 0.18182889455674947, 0.14616585424888623};
  constexpr double kOdd[] = {0.39999999999899444, 0.22222211130259878, 0.15331710618210773};
  const double rest = z * (Polynomial(kEven, w) + z * Polynomial(kOdd, w));
  const double half = 0.5 * f * f;
  const double k = static_cast<double>(exponent);
  return k * kLn2High - ((half - (s * (half + rest) + k * kLn2Low)) - f);
}

double Log10(double x) {
  constexpr double kLog10OfE = 0.43429448190325182765;
  const double estimate = Log(x) * kLog10OfE;
  const double whole = RoundHalfUp(estimate);
  return Pow(10, whole) == x ? whole : estimate;
}

double Exp(double x) {
  if (x > 709.782712893384) return kInfinity;
  if (x < -745.2) return 0;
  // Added and taken away, this rounds to a whole number.
  constexpr double kRounder = 6755399441055744.0;
  constexpr double kLog2OfE = 1.44269504088896340736;
  const double k = (x * kLog2OfE + kRounder) - kRounder;
  const double high = x - k * kLn2High;
  const double low = k * kLn2Low;
  const double r = high - low;
  constexpr double kTaylor[] = {1. / 2,          1. / 6,           1. / 24,          1. / 120,      1. / 720,
                                1. / 5040,       1. / 40320,       1. / 362880.,     1. / 3628800., 1. / 39916800.,
                                1. / 479001600., 1. / 6227020800., 1. / 87178291200.};
  const double value = 1 + (high + (r * r * Polynomial(kTaylor, r) - low));
  const auto exponent = static_cast<int64_t>(k);
  // In two steps: the power itself may be out of range where the product is not.
  const int64_t half = exponent / 2;
  return value * PowerOfTwo(half) * PowerOfTwo(exponent - half);
}

double Pow(double x, double y) {
  if (y == std::floor(y) && y >= -64 && y <= 64) {
    const double power = WholePower(x, static_cast<unsigned>(y < 0 ? -y : y));
    return y < 0 ? 1 / power : power;
  }
  return x == 0 ? 0 : Exp(y * Log(x));
}

double Arctangent(double x) {
  // Halving the angle three times leaves little for the series: tan(a/2) = t / (1 + sqrt(1 + t^2)).
  double t = x;
  if (t > 1e150 || t < -1e150) return t > 0 ? kPi / 2 : -kPi / 2;
  for (int i = 0; i < 3; ++i) t = t / (1 + std::sqrt(1 + t * t));
  constexpr double kSeries[] = {1,       -1. / 3,  1. / 5,  -1. / 7,  1. / 9,  -1. / 11,
                                1. / 13, -1. / 15, 1. / 17, -1. / 19, 1. / 21, -1. / 23};
  return 8 * t * Polynomial(kSeries, t * t);
}

// Wichura (1988), algorithm AS 241.
double InverseNormal(double p) {
  constexpr double kA[] = {3.3871328727963666080e0,  1.3314166789178437745e+2, 1.9715909503065514427e+3,
                           1.3731693765509461125e+4, 4.5921953931549871457e+4, 6.7265770927008700853e+4,
                           3.3430575583588128105e+4, 2.5090809287301226727e+3};
  constexpr double kB[] = {1,
                           4.2313330701600911252e+1,
                           6.8718700749205790830e+2,
                           5.3941960214247511077e+3,
                           2.1213794301586595867e+4,
                           3.9307895800092710610e+4,
                           2.8729085735721942674e+4,
                           5.2264952788528545610e+3};
  constexpr double kC[] = {1.42343711074968357734e0,  4.63033784615654529590e0, 5.76949722146069140550e0,
                           3.64784832476320460504e0,  1.27045825245236838258e0, 2.41780725177450611770e-1,
                           2.27238449892691845833e-2, 7.74545014278341407640e-4};
  constexpr double kD[] = {1,
                           2.05319162663775882187e0,
                           1.67638483018380384940e0,
                           6.89767334985100004550e-1,
                           1.48103976427480074590e-1,
                           1.51986665636164571966e-2,
                           5.47593808499534494600e-4,
                           1.05075007164441684324e-9};
  constexpr double kE[] = {6.65790464350110377720e0,  5.46378491116411436990e0,  1.78482653991729133580e0,
                           2.96560571828504891230e-1, 2.65321895265761230930e-2, 1.24266094738807843860e-3,
                           2.71155556874348757815e-5, 2.01033439929228813265e-7};
  constexpr double kF[] = {1,
                           5.99832206555887937690e-1,
                           1.36929880922735805310e-1,
                           1.48753612908506148525e-2,
                           7.86869131145613259100e-4,
                           1.84631831751005468180e-5,
                           1.42151175831644588870e-7,
                           2.04426310338993978564e-15};
  const double q = p - 0.5;
  if (q >= -0.425 && q <= 0.425) {
    const double r = 0.180625 - q * q;
    return q * Polynomial(kA, r) / Polynomial(kB, r);
  }
  const double r = std::sqrt(-Log(q < 0 ? p : 1 - p));
  const double value = r <= 5 ? Polynomial(kC, r - 1.6) / Polynomial(kD, r - 1.6) : Polynomial(kE, r - 5) / Polynomial(kF, r - 5);
  return q < 0 ? -value : value;
}

namespace {

// The chance that Student's variable lies between -t and t, a finite sum; and its density at t.
struct StudentPoint {
  double between;
  double density;
};

StudentPoint StudentAt(double t, long degrees) {
  const double n = static_cast<double>(degrees);
  const double cosine2 = n / (n + t * t);
  const double sine = t / std::sqrt(n + t * t);
  const bool odd = degrees % 2 != 0;
  // The terms' last one is the density's, too: its factors are the same.
  double term = odd ? std::sqrt(cosine2) : 1;
  double sum = degrees == 1 ? 0 : term;
  for (long k = odd ? 3 : 2; k <= degrees - 2; k += 2) {
    term *= cosine2 * static_cast<double>(k - 1) / static_cast<double>(k);
    sum += term;
  }
  // Gamma((n+1)/2) / (sqrt(n pi) Gamma(n/2)) by the same product.
  double factor = odd ? 1 / kPi : 0.5;
  for (long k = odd ? 2 : 3; k <= degrees - 1; k += 2) factor *= static_cast<double>(k) / static_cast<double>(k - 1);
  const double power = Exp((n + 1) / 2 * Log(cosine2));
  const double between = odd ? 2 / kPi * (Arctangent(t / std::sqrt(n)) + sine * sum) : sine * sum;
  return {between, factor / std::sqrt(n) * power};
}

// Student's quantile from the normal one, in powers of 1/n (Fisher and Cornish).
double StudentSeries(double z, double n) {
  const double z2 = z * z;
  const double g1 = (z2 + 1) * z / 4;
  const double g2 = ((5 * z2 + 16) * z2 + 3) * z / 96;
  const double g3 = (((3 * z2 + 19) * z2 + 17) * z2 - 15) * z / 384;
  const double g4 = ((((79 * z2 + 776) * z2 + 1482) * z2 - 1920) * z2 - 945) * z / 92160;
  return z + (g1 + (g2 + (g3 + g4 / n) / n) / n) / n;
}

}  // namespace

double InverseStudent(double p, long degrees) {
  if (p < 0.5) return -InverseStudent(1 - p, degrees);
  const double z = InverseNormal(p);
  const double n = static_cast<double>(degrees);
  if (degrees > 1000) return StudentSeries(z, n);
  // From a start below the solution, where the distribution is concave, Newton's steps rise to it.
  double t = z;
  for (int i = 0; i < 200; ++i) {
    const StudentPoint at = StudentAt(t, degrees);
    const double step = ((2 * p - 1) - at.between) / (2 * at.density);
    t += step;
    if (step <= 1e-15 * t) break;
  }
  return t;
}

double RoundHalfUp(double x) {
  const double below = std::floor(x);
  return x - below >= 0.5 ? below + 1 : below;
}

}  // namespace vardo
