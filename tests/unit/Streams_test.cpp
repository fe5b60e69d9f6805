#include "simulate/Streams.h"

#include "model/Sources.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace vardo {
namespace {

// The known answers that are published with the generator.
TEST(Streams, PhiloxGivesThePublishedAnswers) {
  constexpr uint64_t kAll = ~uint64_t{0};
  struct {
    RandomBlock counter;
    std::array<uint64_t, 2> key;
    RandomBlock want;
  } const cases[] = {
      {{0, 0, 0, 0}, {0, 0}, {0x16554d9eca36314c, 0xdb20fe9d672d0fdc, 0xd7e772cee186176b, 0x7e68b68aec7ba23b}},
      {{kAll, kAll, kAll, kAll}, {kAll, kAll}, {0x87b092c3013fe90b, 0x438c3c67be8d0224, 0x9cc7d7c69cd777b6, 0xa09caebf594f0ba0}},
      {{0x243f6a8885a308d3, 0x13198a2e03707344, 0xa4093822299f31d0, 0x082efa98ec4e6c89},
       {0x452821e638d01377, 0xbe5466cf34e90c6c},
       {0xa528f45403e61d95, 0x38c72dbd566e9788, 0xa5a1610e72fd18b5, 0x57bd43b5e52b7fe6}},
  };
  for (const auto& [counter, key, want] : cases) EXPECT_EQ(PhiloxBlock(counter, key), want);
}

TEST(Streams, UniformsLieInTheOpenInterval) {
  EXPECT_EQ(UniformOf(0), 0x1p-53);
  EXPECT_EQ(UniformOf(~uint64_t{0}), 1 - 0x1p-53);
}

TEST(Streams, NumbersFollowFromSeedSourceReplicationAndPhaseAlone) {
  const auto first = [](RandomRun run, uint64_t source) { return Stream(run, source).Uniform(); };
  const double one = first({}, 1);
  EXPECT_EQ(first({}, 1), one);
  EXPECT_NE(first({}, 2), one);
  EXPECT_NE(first({.seed = 2}, 1), one);
  EXPECT_NE(first({.replication = 2}, 1), one);
  EXPECT_NE(first({.phase = 1}, 1), one);
}

TEST(Streams, DrawsAfterALongOneDoNotDependOnItsLength) {
  std::vector<double> after;
  for (const int length : {1, 4, 5, 50}) {
    Stream stream(RandomRun{}, 1);
    {
      LongDraw draw(stream);
      for (int i = 0; i < length; ++i) draw.Uniform();
    }
    after.push_back(stream.Uniform());
  }
  for (const double next : after) EXPECT_EQ(next, after.front());
}

TEST(Streams, ALongDrawNeverRepeatsANumber) {
  Stream stream(RandomRun{}, 1);
  std::vector<double> numbers = {stream.Uniform()};
  {
    LongDraw draw(stream);
    for (int i = 0; i < 9; ++i) numbers.push_back(draw.Uniform());
  }
  for (int i = 0; i < 9; ++i) numbers.push_back(stream.Uniform());
  for (size_t i = 0; i < numbers.size(); ++i)
    for (size_t j = i + 1; j < numbers.size(); ++j) EXPECT_NE(numbers[i], numbers[j]) << i << " and " << j;
}

TEST(Streams, SourcesOfNeighboursDiffer) {
  std::vector<uint64_t> sources;
  for (uint64_t page = 0; page < 4; ++page)
    for (uint64_t shape = 0; shape < 4; ++shape)
      for (uint64_t field = 0; field < 4; ++field)
        for (uint64_t call = 0; call < 4; ++call) sources.push_back(SourceOf(page, shape, field, call));
  for (uint64_t number = 0; number < 16; ++number) sources.push_back(SourceOfNamedStream(number));
  std::sort(sources.begin(), sources.end());
  EXPECT_EQ(std::adjacent_find(sources.begin(), sources.end()), sources.end());
}

}  // namespace
}  // namespace vardo
