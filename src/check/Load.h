// How busy resources are at least, by what arrives and how long it is worked on.
#pragma once

#include "check/CheckedModel.h"

#include <vector>

namespace vardo {

struct ResourceLoad {
  int resource;
  double utilisation;      // a lower bound; infinite when a loop makes more entities than it lets go
  std::vector<int> nodes;  // where it is worked with
  bool mayFinishLater;     // work is finished after its capacity has gone, which its mean capacity does not hold
};

// Those for which something is known, in the order of the resources.
std::vector<ResourceLoad> RoughCutLoad(const CheckedModel& checked);

}  // namespace vardo
