// Schedules as their users follow them: capacities, rates of arrival, and values that expressions ask for.
#pragma once

#include "simulate/Resources.h"
#include "simulate/World.h"

#include <cstdint>
#include <vector>

namespace vardo {

class Courses {
 public:
  Courses(World& world, Resources& resources) : world_(world), resources_(resources) {}
  void Clear();

  // The next step of a course begins. The row is the course's own.
  void Step(std::uint32_t course, std::uint32_t row);

  // --- Arrivals by a rate: an exponential amount of work is used up at the rate of the moment.
  // Draws the work of the next one. The row is the Create's.
  void NextArrival(std::uint32_t create, std::uint32_t row);

 private:
  struct Arrivals {
    double work = 0;
    double since = 0;
    double rate = 0;            // per second
    std::uint32_t row = kNone;  // the Create's; none while nobody is to come
  };

  double DurationOf(const CourseTable& course, const CourseRow& row);
  void Apply(const CourseTable& course, std::uint32_t number, double value);
  void SetRate(std::uint32_t create, double perSecond);
  void ScheduleArrival(std::uint32_t create);

  World& world_;
  Resources& resources_;
  std::vector<std::uint32_t> next_;  // by course: the row that comes next
  std::vector<Arrivals> arrivals_;   // by Create
};

}  // namespace vardo
