// Results as one page that explains them: no script, nothing from outside, good on paper and in the dark.
#pragma once

#include "model/Finding.h"
#include "model/RunSetup.h"
#include "simulate/Runner.h"

#include <ostream>
#include <span>
#include <string>
#include <vector>

namespace vardo {

// How levels go on in the first replications, put together for plots.
class SeriesSeen {
 public:
  explicit SeriesSeen(const Program& program) : bands_(program.outputs.size()) {}
  void Add(const ReplicationRecord& record);

  struct Band {
    std::vector<double> mean, least, most;  // of each part of the length
    std::vector<std::uint64_t> count;
  };
  const Band& Of(size_t output) const { return bands_[output]; }

 private:
  std::vector<Band> bands_;
};

struct ResultsPage {
  const Program& program;
  const RunSetup& setup;
  const RunResults& results;
  const SeriesSeen& series;
  std::span<const Finding> findings;
};
void WriteHtml(const ResultsPage& page, std::ostream& output);

}  // namespace vardo
