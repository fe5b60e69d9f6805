// Results as a person reads them.
#pragma once

#include "model/RunSetup.h"
#include "simulate/Runner.h"

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

struct TableOptions {
  bool all = false;    // every line, and a second table of all observations with extremes and quantiles
  double seconds = 0;  // what the run has taken; 0: not to be told
};
// Tables of all that is reported, one line an output. What never happened is "-".
void PrintResults(const Program& program, const RunSetup& setup, const RunResults& results, const TableOptions& options,
                  std::ostream& output);

// Whether a time or cost that never was above 0 may be left out of a table: of the categories, models use few.
bool IsOfNoInterest(const Output& output, const OutputSummary& summary);

// "bank.vsdx: 20 replications of 30 d, warm-up 2 d, seed 1".
std::string RunTitle(const Program& program, const RunSetup& setup, std::uint64_t replications);
// "Queues".
std::string CategoryTitle(std::string_view category);
// Without its capital, unless that begins an abbreviation.
std::string InSentence(std::string_view text);
// How the replications ended, and what else is to be said of them, a sentence a line.
std::vector<std::string> ClosingSentences(const Program& program, const RunSetup& setup, const RunResults& results);

// A time in seconds with the best unit: "30 d", "8 h".
std::string TimeText(double seconds);

}  // namespace vardo
