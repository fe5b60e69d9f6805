// The part of a run that one of several machines does.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vardo {

struct ReplicationRange {
  int first = 1, last = 0;
};

struct PartChoice {
  int part = 1, parts = 1;
  std::string source;  // what it was taken from, for "auto": "SLURM_ARRAY_TASK_ID"
};

// From "I/N"; "auto", which looks at what launchers leave in the environment; or "auto/N". Throws std::runtime_error with a
// sentence.
PartChoice ChoosePart(std::string_view text, const std::function<std::optional<std::string>(const char*)>& environment);

// The replications of that part, as even as can be.
ReplicationRange RangeOfPart(const PartChoice& choice, ReplicationRange all);

}  // namespace vardo
