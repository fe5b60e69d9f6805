// Results as a person reads them.
#pragma once

#include "model/RunSetup.h"
#include "simulate/Runner.h"

#include <ostream>
#include <string_view>

namespace vardo {

// Tables of all that is reported, one line an output; all: the extreme observations and quantiles as well. What never happened is
// "-".
void PrintResults(const Program& program, const RunSetup& setup, const RunResults& results, bool all, std::ostream& output);

// A time in seconds with the best unit: "30 d", "8 h".
std::string TimeText(double seconds);

}  // namespace vardo
