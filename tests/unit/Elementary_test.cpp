#include "simulate/Elementary.h"

#include "Fingerprint.h"
#include "simulate/Streams.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vardo {
namespace {

struct Point {
  double x, want;
};

// In units of the last place of a double.
double ErrorOf(double got, double want) {
  if (got == want) return 0;
  const double place = std::nextafter(std::fabs(want), INFINITY) - std::fabs(want);
  return std::fabs(got - want) / place;
}

template <int count>
void ExpectNear(double (*function)(double), const Point (&points)[count], double places) {
  for (const auto& [x, want] : points) EXPECT_LE(ErrorOf(function(x), want), places) << "at " << x;
}

// The references were computed with fifty digits.
constexpr Point kLogs[] = {
    {0x0.0000000000001p-1022, -0x1.74385446d71c3p+9}, {0x0.012688b70e62bp-1022, -0x1.64e69394d9508p+9},
    {0x1.79ca10c924223p-67, -0x1.7069e2aa2aa5bp+5},   {0x1.0000000000000p-2, -0x1.62e42fefa39efp+0},
    {0x1.0000000000000p-1, -0x1.62e42fefa39efp-1},    {0x1.6a09e667f3bccp-1, -0x1.62e42fefa39f1p-2},
    {0x1.6a09e667f3bcdp-1, -0x1.62e42fefa39eep-2},    {0x1.ccccccccccccdp-1, -0x1.af8e8210a415cp-4},
    {0x1.fffffffffffffp-1, -0x1.0000000000000p-53},   {0x1.0000000000000p+0, 0x0.0p+0},
    {0x1.0000000000001p+0, 0x1.fffffffffffffp-53},    {0x1.199999999999ap+0, 0x1.8663f793c46ccp-4},
    {0x1.6a09e667f3bcdp+0, 0x1.62e42fefa39f0p-2},     {0x1.0000000000000p+1, 0x1.62e42fefa39efp-1},
    {0x1.5bf0a8b145769p+1, 0x1.0000000000000p+0},     {0x1.4000000000000p+3, 0x1.26bb1bbb55516p+1},
    {0x1.f440000000000p+9, 0x1.ba20da39bd28cp+2},     {0x1.6345785d8a000p+56, 0x1.3926cd770aa67p+5},
    {0x1.fffffffffffffp+1023, 0x1.62e42fefa39efp+9},
};
constexpr Point kExps[] = {
    {-0x1.7480000000000p+9, 0x0.0000000000001p-1022}, {-0x1.6240000000000p+9, 0x0.e6cf6d08897acp-1022},
    {-0x1.5e20000000000p+9, 0x1.af5fe9a485c8ep-1011}, {-0x1.2c00000000000p+5, 0x1.dd5c566301ec8p-55},
    {-0x1.0000000000000p+0, 0x1.78b56362cef38p-2},    {-0x1.62e33eff19503p-2, 0x1.6a0a3b975afaep-1},
    {-0x1.70ef54646d497p-57, 0x1.0000000000000p+0},   {0x0.0p+0, 0x1.0000000000000p+0},
    {0x1.70ef54646d497p-57, 0x1.0000000000000p+0},    {0x1.4f8b588e368f1p-17, 0x1.0000a7c5e340ep+0},
    {0x1.62e5de15ca6cap-2, 0x1.6a0a7e7cb904cp+0},     {0x1.0000000000000p-1, 0x1.a61298e1e069cp+0},
    {0x1.0000000000000p+0, 0x1.5bf0a8b145769p+1},     {0x1.0000000000000p+1, 0x1.d8e64b8d4ddaep+2},
    {0x1.4800000000000p+3, 0x1.b9ea2aed2a0f1p+14},    {0x1.9400000000000p+5, 0x1.cf65319c5751ap+72},
    {0x1.2c20000000000p+8, 0x1.fc0ed35ef0037p+432},   {0x1.62c0000000000p+9, 0x1.81e9b4b52d0c9p+1023},
};
constexpr Point kArctangents[] = {
    {-0x1.dcd6500000000p+29, -0x1.921fb53ff74e9p+0}, {-0x1.4000000000000p+4, -0x1.8555a2787981fp+0},
    {-0x1.4000000000000p+1, -0x1.30b6d796a4da8p+0},  {-0x1.0000000000000p+0, -0x1.921fb54442d18p-1},
    {-0x1.3333333333333p-2, -0x1.2a73a661eaf06p-2},  {0x0.0p+0, 0x0.0p+0},
    {0x1.12e0be826d695p-30, 0x1.12e0be826d695p-30},  {0x1.999999999999ap-4, 0x1.983e282e2cc4dp-4},
    {0x1.0000000000000p-1, 0x1.dac670561bb4fp-2},    {0x1.ff7ced916872bp-1, 0x1.91de23a8c3fa0p-1},
    {0x1.0000000000000p+0, 0x1.921fb54442d18p-1},    {0x1.8000000000000p+0, 0x1.f730bd281f69bp-1},
    {0x1.8000000000000p+1, 0x1.3fc176b7a8560p+0},    {0x1.f400000000000p+9, 0x1.91de2c0e658bdp+0},
    {0x1.4e718d7d7625ap+664, 0x1.921fb54442d18p+0},
};
constexpr Point kNormals[] = {
    {0x1.0000000000000p-53, -0x1.06b48528cea52p+3},
    {0x1.b7cdfd9d7bdbbp-34, -0x1.97203597a2155p+2},
    {0x1.a36e2eb1c432dp-14, -0x1.dc08bb712893bp+1},
    {0x1.47ae147ae147bp-7, -0x1.29c5c4630ff0fp+1},
    {0x1.999999999999ap-5, -0x1.a515209676abdp+0},
    {0x1.3333333333333p-4, -0x1.7085226d3e524p+0},
    {0x1.999999999999ap-4, -0x1.4813c36e26d32p+0},
    {0x1.3333333333333p-2, -0x1.0c7e39582c5fbp-1},
    {0x1.0000000000000p-1, 0x0.0p+0},
    {0x1.3333333333333p-1, 0x1.036d6c4a04b59p-2},
    {0x1.ccccccccccccdp-1, 0x1.4813c36e26d33p+0},
    {0x1.d99999999999ap-1, 0x1.7085226d3e525p+0},
    {0x1.f333333333333p-1, 0x1.f5c0331eeff83p+0},
    {0x1.ff7ced916872bp-1, 0x1.8b8cbb7204470p+1},
    {0x1.fffffffffffffp-1, 0x1.06b48528cea52p+3},
};

TEST(Elementary, AgreesWithReferencesOfFiftyDigits) {
  ExpectNear(Log, kLogs, 1.5);
  ExpectNear(Exp, kExps, 2);
  ExpectNear(Arctangent, kArctangents, 4);
  ExpectNear(InverseNormal, kNormals, 8);
}

TEST(Elementary, LogarithmsOfPowersOfTenAreWhole) {
  double power = 1;
  for (int i = 0; i <= 22; ++i, power *= 10) EXPECT_EQ(Log10(power), i);
  EXPECT_EQ(Log10(0.1), -1);
  EXPECT_NEAR(Log10(2), 0.30102999566398120, 1e-15);
}

TEST(Elementary, ExponentialsBeyondTheRangeOfDoubles) {
  EXPECT_EQ(Exp(710), INFINITY);
  EXPECT_EQ(Exp(1e300), INFINITY);
  EXPECT_EQ(Exp(-746), 0);
  EXPECT_EQ(Exp(-1e300), 0);
}

TEST(Elementary, WholePowersAreMultipliedOut) {
  EXPECT_EQ(Pow(3, 2), 9);
  EXPECT_EQ(Pow(-2, 3), -8);
  EXPECT_EQ(Pow(2, -2), 0.25);
  EXPECT_EQ(Pow(0, 0), 1);
  EXPECT_EQ(Pow(2, 64), 0x1p64);
  EXPECT_EQ(Pow(0, 0.5), 0);
  EXPECT_NEAR(Pow(2, 0.5), 1.4142135623730951, 1e-15);
  EXPECT_NEAR(Pow(10, 100) / 1e100, 1, 1e-13);
}

TEST(Elementary, RoundsHalvesUpAndNothingElse) {
  EXPECT_EQ(RoundHalfUp(2.5), 3);
  EXPECT_EQ(RoundHalfUp(-2.5), -2);
  EXPECT_EQ(RoundHalfUp(.49999999999999994), 0);
  EXPECT_EQ(RoundHalfUp(4503599627370497), 4503599627370497);
}

TEST(Elementary, StudentQuantiles) {
  struct {
    double p;
    long degrees;
    double want;
  } const cases[] = {
      {0x1.f333333333333p-1, 1, 0x1.96993aacc4d1ep+3},    {0x1.ffbe76c8b4396p-1, 1, 0x1.3e4f438b2d052p+9},
      {0x1.f333333333333p-1, 2, 0x1.135ea98e146b9p+2},    {0x1.ffbe76c8b4396p-1, 2, 0x1.f995ba4065a1bp+4},
      {0x1.f333333333333p-1, 3, 0x1.975a66893c1a9p+1},    {0x1.ffbe76c8b4396p-1, 3, 0x1.9d913ba558e11p+3},
      {0x1.f333333333333p-1, 4, 0x1.63628d9efb5dep+1},    {0x1.ffbe76c8b4396p-1, 4, 0x1.1387972e971bbp+3},
      {0x1.f333333333333p-1, 5, 0x1.4908d359dff38p+1},    {0x1.ffbe76c8b4396p-1, 5, 0x1.b79adafe03767p+2},
      {0x1.f333333333333p-1, 9, 0x1.218e5dac50b23p+1},    {0x1.ffbe76c8b4396p-1, 9, 0x1.31fa78c866fffp+2},
      {0x1.f333333333333p-1, 10, 0x1.1d33a7661d303p+1},   {0x1.ffbe76c8b4396p-1, 10, 0x1.258fab42567cfp+2},
      {0x1.f333333333333p-1, 19, 0x1.0be83653b666dp+1},   {0x1.ffbe76c8b4396p-1, 19, 0x1.f1137166fd35bp+1},
      {0x1.f333333333333p-1, 29, 0x1.05ca15bce2871p+1},   {0x1.ffbe76c8b4396p-1, 29, 0x1.d4676238b691bp+1},
      {0x1.f333333333333p-1, 30, 0x1.05692f10aaee9p+1},   {0x1.ffbe76c8b4396p-1, 30, 0x1.d2aec5c60987ep+1},
      {0x1.f333333333333p-1, 100, 0x1.fbe58eb4410d9p+0},  {0x1.ffbe76c8b4396p-1, 100, 0x1.b1fb9e89694d5p+1},
      {0x1.f333333333333p-1, 101, 0x1.fbd5cb85c16f7p+0},  {0x1.ffbe76c8b4396p-1, 101, 0x1.b1da5020cc5c8p+1},
      {0x1.f333333333333p-1, 1000, 0x1.f65bda9fcfe75p+0}, {0x1.ffbe76c8b4396p-1, 1000, 0x1.a66fa96d44bfep+1},
      {0x1.f333333333333p-1, 1001, 0x1.f65bb2c4ebf90p+0}, {0x1.ffbe76c8b4396p-1, 1001, 0x1.a66f57734a2d3p+1},
      {0x1.f333333333333p-1, 5000, 0x1.f5df4d0965a56p+0}, {0x1.ffbe76c8b4396p-1, 5000, 0x1.a56fc76a689d0p+1},
  };
  for (const auto& [p, degrees, want] : cases) {
    EXPECT_NEAR(InverseStudent(p, degrees) / want, 1, 2e-12) << degrees << " degrees of freedom, " << p;
    EXPECT_EQ(InverseStudent(1 - p, degrees), -InverseStudent(1 - (1 - p), degrees));
  }
}

// The same bits on every machine; the sanitizers look at the first of them alone.
TEST(Elementary, ManyValuesOfEachHaveTheirFingerprint) {
  const struct {
    const char* name;
    double (*function)(double u);
    uint64_t first, all;
  } cases[] = {
      {"Log", [](double u) { return Log(u * 100); }, 16948585692162150973u, 3566761594054001659u},
      {"Exp", [](double u) { return Exp(u * 200 - 100); }, 5497824363194203340u, 5081055759645461622u},
      {"Pow", [](double u) { return Pow(u * 10, 0.3 + u); }, 4119656660573941685u, 2700752110536256498u},
      {"InverseNormal", InverseNormal, 8962605017462409674u, 208259390821665912u},
      {"Arctangent", [](double u) { return Arctangent(u * 20 - 10); }, 4670149587048058579u, 12418077978045193984u},
  };
  for (const auto& [name, function, first, all] : cases) {
    test::Fingerprint fingerprint;
    Stream stream(RandomRun{}, 1);
    for (int i = 0; i < 10000; ++i) fingerprint.Add(function(stream.Uniform()));
    EXPECT_EQ(fingerprint.hash(), first) << name;
    if (test::kIsShortened) continue;
    for (int i = 10000; i < 1000000; ++i) fingerprint.Add(function(stream.Uniform()));
    EXPECT_EQ(fingerprint.hash(), all) << name;
  }
}

}  // namespace
}  // namespace vardo
