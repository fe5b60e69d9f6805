#include "report/ProgressText.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace vardo {
namespace {

// Less than that much work says nothing about the rest.
constexpr double kLeastWork = 0.01;

std::string SpeedText(double eventsPerSecond) {
  return eventsPerSecond < 1e5 ? fmt::format("{:.1f} k events/s", eventsPerSecond / 1e3)
                               : fmt::format("{:.1f} M events/s", eventsPerSecond / 1e6);
}

std::string TimeLeft(double seconds) {
  if (seconds < 60) return fmt::format("{:.0f} s left", std::ceil(seconds));
  if (seconds < 3600) return fmt::format("{:.0f} min left", std::ceil(seconds / 60));
  return fmt::format("{:.1f} h left", seconds / 3600);
}

}  // namespace

std::string ProgressText(const ProgressSeen& seen) {
  std::string text =
      seen.all == 0 ? fmt::format("{} replications", seen.done) : fmt::format("{} of {} replications", seen.done, seen.all);
  const double next = std::max(seen.work - static_cast<double>(seen.done), 0.0);
  if (next >= kLeastWork) text += fmt::format(", {:.2f} of the next", next);
  if (seen.seconds > 0) text += ", " + SpeedText(static_cast<double>(seen.events) / seen.seconds);
  if (seen.all != 0 && seen.work >= kLeastWork)
    text += ", " + TimeLeft(seen.seconds * (static_cast<double>(seen.all) - seen.work) / seen.work);
  return text;
}

}  // namespace vardo
