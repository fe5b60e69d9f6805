#include "simulate/Courses.h"

#include "base/Numbers.h"
#include "simulate/Elementary.h"

namespace vardo {

void Courses::Clear() {
  next_.assign(world_.program().courses.size(), 0);
  arrivals_.assign(world_.program().creates.size(), {});
}

void Courses::Step(std::uint32_t number, std::uint32_t actor) {
  const CourseTable& course = world_.program().courses[number];
  // A row without length is passed over as if it were not there.
  const CourseRow* row = nullptr;
  double seconds = 0;
  for (std::uint32_t passed = 0; seconds == 0; ++passed) {
    if (passed > course.rows.count) throw ModelError{course.place, "no row of the schedule has any length"};
    row = &world_.program().courseRows[course.rows.first + next_[number]];
    next_[number] = (next_[number] + 1) % course.rows.count;
    if (row->duration == kNone) break;
    seconds = world_.Duration(row->duration, kNone, course.unit);
  }
  const double value = world_.Evaluate(row->value, kNone) * course.scale;
  if (value < 0 && !course.mayBeNegative)
    throw ModelError{world_.program().values[row->value].place, NumberText(value) + " is negative"};
  const bool endsSometime = row->duration != kNone;
  if (course.user == CourseUser::Resource) {
    const double units = world_.CountOf(value, world_.program().values[row->value].place);
    resources_.SetCapacity(course.target, units, world_.program().resources[course.target].rule);
    if (endsSometime) resources_.ActWhenPlanIsMet(course.target, actor, seconds);
    return;
  }
  if (course.user == CourseUser::Create)
    SetRate(course.target, value / 3600);
  else
    world_.courseValues[number] = value;
  if (endsSometime) world_.ScheduleIn(seconds, actor, course.place);
}

void Courses::NextArrival(std::uint32_t create, std::uint32_t row) {
  Arrivals& arrivals = arrivals_[create];
  arrivals.row = row;
  arrivals.work = -Log(world_.Uniform(world_.program().creates[create].workSource));
  arrivals.since = world_.now;
  ScheduleArrival(create);
}

void Courses::SetRate(std::uint32_t create, double perSecond) {
  Arrivals& arrivals = arrivals_[create];
  arrivals.work -= arrivals.rate * (world_.now - arrivals.since);
  arrivals.since = world_.now;
  arrivals.rate = perSecond;
  if (arrivals.row != kNone) ScheduleArrival(create);
}

// An arrival that was expected at another time is one no more.
void Courses::ScheduleArrival(std::uint32_t create) {
  const Arrivals& arrivals = arrivals_[create];
  world_.entities[arrivals.row].order = 0;
  if (arrivals.rate <= 0) return;
  const double seconds = arrivals.work > 0 ? arrivals.work / arrivals.rate : 0;
  world_.ScheduleIn(seconds, arrivals.row, world_.program().courses[world_.program().creates[create].course].place);
}

}  // namespace vardo
