// The lines of the results of a program.
#pragma once

#include "model/Program.h"

#include <string_view>

namespace vardo {

// Which of a program's things are reported, by their places; all numbers of levels, counters and tallies are given.
struct ReportedThings {
  std::vector<std::uint32_t> types, queues, resources, processes, batches, duplicates, splits, variables;
  std::vector<std::string> batchNames, duplicateNames, splitNames;
  struct Recorded {
    std::string name;
    std::uint32_t index = 0;  // counter or tally
  };
  std::vector<Recorded> counters, tallies;
};

void AddOutputs(const ReportedThings& things, Program& program);

}  // namespace vardo
