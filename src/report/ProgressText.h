// How far a run is, in words.
#pragma once

#include <cstdint>
#include <string>

namespace vardo {

struct ProgressSeen {
  std::uint64_t done = 0;  // replications
  std::uint64_t all = 0;   // 0: nobody knows
  double work = 0;         // what is done, in replications, with the parts of those that are under way
  std::uint64_t events = 0;
  double seconds = 0;  // since the run began
};

// "37 of 100 replications, 0.42 of the next, 10.8 M events/s, 5 s left".
std::string ProgressText(const ProgressSeen& seen);

}  // namespace vardo
