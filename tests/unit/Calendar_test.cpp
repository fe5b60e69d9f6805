#include "simulate/Calendar.h"

#include "Fingerprint.h"
#include "simulate/Streams.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <utility>

namespace vardo {
namespace {

// The calendar beside a sorted list, through random operations with many ties.
TEST(Calendar, KeepsTheOrderOfASortedList) {
  for (const double most : {4., 40., 4000.}) {
    Calendar calendar;
    std::map<std::pair<double, uint64_t>, uint32_t> sorted;
    Stream stream(RandomRun{}, static_cast<uint64_t>(most));
    double now = 0;
    for (int i = 0; i < test::Fewer(300000); ++i) {
      const bool isFull = static_cast<double>(sorted.size()) > most * stream.Uniform();
      if (!isFull) {
        // Whole times tie, and every third event is one of the present instant.
        const double time = stream.Uniform() < .3 ? now : now + std::floor(10 * stream.Uniform());
        const auto row = static_cast<uint32_t>(1 + 1000 * stream.Uniform());
        sorted[{time, calendar.Push(time, now, row)}] = row;
      } else {
        const double before = now + 1 + std::floor(8 * stream.Uniform());
        Event event;
        const auto first = sorted.begin();
        ASSERT_EQ(calendar.Pop(before, event), first->first.first < before);
        if (first->first.first < before) {
          ASSERT_EQ(event.time, first->first.first);
          ASSERT_EQ(event.order, first->first.second);
          ASSERT_EQ(event.row, first->second);
          now = event.time;
          sorted.erase(first);
        }
      }
      ASSERT_EQ(calendar.size(), sorted.size());
    }
  }
}

TEST(Calendar, EventsOfTheSameTimeComeInTheOrderOfScheduling) {
  Calendar calendar;
  Event event;
  for (uint32_t row = 1; row <= 9; ++row) calendar.Push(5, 0, row);
  for (uint32_t row = 1; row <= 9; ++row) {
    ASSERT_TRUE(calendar.Pop(INFINITY, event));
    EXPECT_EQ(event.row, row);
    if (row == 3) calendar.Push(5, 5, 10);
  }
  ASSERT_TRUE(calendar.Pop(INFINITY, event));
  EXPECT_EQ(event.row, 10u);
  EXPECT_FALSE(calendar.Pop(INFINITY, event));
}

TEST(Calendar, NothingHappensAtTheEndItself) {
  Calendar calendar;
  Event event;
  calendar.Push(8, 0, 1);
  EXPECT_FALSE(calendar.Pop(8, event));
  EXPECT_TRUE(calendar.Pop(8.000000000000002, event));
}

TEST(Calendar, NegativeZeroIsNow) {
  Calendar calendar;
  Event event;
  calendar.Push(1, .5, 1);
  calendar.Push(-0.0, .5, 2);
  ASSERT_TRUE(calendar.Pop(INFINITY, event));
  EXPECT_EQ(event.row, 2u);
}

TEST(Calendar, BeginsAnewWhenCleared) {
  Calendar calendar;
  Event event;
  for (uint32_t row = 0; row < 100; ++row) calendar.Push(row % 7, 0, row);
  calendar.Pop(INFINITY, event);
  calendar.Clear();
  EXPECT_EQ(calendar.size(), 0u);
  EXPECT_FALSE(calendar.Pop(INFINITY, event));
  EXPECT_EQ(calendar.Push(1, 0, 5), 1u);
  ASSERT_TRUE(calendar.Pop(INFINITY, event));
  EXPECT_EQ(event.row, 5u);
}

}  // namespace
}  // namespace vardo
