#include "simulate/Statistics.h"

#include "simulate/Streams.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace vardo {
namespace {

TEST(Statistics, ATallyOfFewObservations) {
  Tally tally;
  EXPECT_EQ(tally.n, 0u);
  EXPECT_TRUE(std::isnan(tally.Deviation()));
  for (const double x : {2., 4., 4., 4., 5., 5., 7., 9.}) tally.Add(x);
  EXPECT_EQ(tally.n, 8u);
  EXPECT_EQ(tally.mean, 5);
  EXPECT_DOUBLE_EQ(tally.Deviation(), std::sqrt(32. / 7));
  EXPECT_EQ(tally.min, 2);
  EXPECT_EQ(tally.max, 9);
  EXPECT_EQ(tally.Sum(), 40);
}

TEST(Statistics, ATallyLosesNoDigitsFarFromZero) {
  Tally tally;
  for (int i = 0; i < 1000; ++i) tally.Add(1e9 + i % 2);
  EXPECT_NEAR(tally.Deviation(), std::sqrt(250. / 999), 1e-9);
}

TEST(Statistics, ALevelIsTheIntegralOfItsValue) {
  Level level;
  level.Restart(0);
  level.Set(2, 3);   // 0 until 2
  level.Add(5, -1);  // 3 until 5
  EXPECT_EQ(level.AreaUntil(10), 3 * 3 + 2 * 5);
  EXPECT_EQ(level.min, 0);
  EXPECT_EQ(level.max, 3);
}

TEST(Statistics, ALevelThatBeginsAnewKeepsItsValueAlone) {
  Level level;
  level.Set(1, 5);
  level.Set(2, 4);
  level.Restart(3);
  EXPECT_EQ(level.AreaUntil(4), 4);
  EXPECT_EQ(level.min, 4);
  EXPECT_EQ(level.max, 4);
}

TEST(Statistics, BucketsTellAValueToLessThanAHundredth) {
  Stream stream(RandomRun{}, 1);
  for (int i = 0; i < 10000; ++i) {
    const double x = std::exp((stream.Uniform() - .5) * 80) * (i % 2 == 0 ? 1 : -1);
    EXPECT_LE(std::fabs(Buckets::ValueOf(Buckets::NumberOf(x)) / x - 1), .008) << x;
  }
  EXPECT_EQ(Buckets::ValueOf(Buckets::NumberOf(0)), 0);
  EXPECT_EQ(Buckets::NumberOf(-3), -Buckets::NumberOf(3));
  EXPECT_EQ(Buckets::NumberOf(1e300), 8192);
  EXPECT_EQ(Buckets::NumberOf(1e-300), 1);
}

TEST(Statistics, BucketsRiseWithTheirValues) {
  double last = -INFINITY;
  for (std::int32_t number = -8192; number <= 8192; ++number) {
    EXPECT_LT(last, Buckets::ValueOf(number)) << number;
    EXPECT_EQ(Buckets::NumberOf(Buckets::ValueOf(number)), number);
    last = Buckets::ValueOf(number);
  }
}

TEST(Statistics, QuantilesOfCountedValues) {
  Buckets buckets;
  std::vector<double> values;
  Stream stream(RandomRun{}, 2);
  for (int i = 0; i < 1000; ++i) {
    values.push_back(stream.Uniform() < .1 ? 0 : -5 * std::log(stream.Uniform()) - 1);
    buckets.Add(values.back());
  }
  std::sort(values.begin(), values.end());
  const std::vector<Buckets::Count> counts = buckets.Counts();
  EXPECT_TRUE(std::is_sorted(counts.begin(), counts.end()));
  for (const double share : {.05, .25, .5, .95}) {
    const double want = values[static_cast<size_t>(share * 1000) - 1];
    EXPECT_NEAR(QuantileOf(counts, share), want, .008 * std::fabs(want)) << share;
  }
  EXPECT_TRUE(std::isnan(QuantileOf({}, .5)));
}

TEST(Statistics, BucketsOfPartsAddUp) {
  Buckets one, other, both;
  for (int i = -50; i < 50; ++i) {
    (i % 3 == 0 ? one : other).Add(i * 1.5);
    both.Add(i * 1.5);
  }
  for (const Buckets::Count& count : other.Counts()) one.Add(count);
  EXPECT_EQ(one.Counts(), both.Counts());
  one.Clear();
  EXPECT_TRUE(one.Counts().empty());
}

}  // namespace
}  // namespace vardo
