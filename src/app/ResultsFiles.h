// The files that results go to.
#pragma once

#include "app/Commands.h"
#include "platform/OutputFile.h"
#include "report/ResultsHtml.h"
#include "report/ResultsJson.h"

#include <optional>
#include <ostream>
#include <span>
#include <string>

namespace vardo {

inline constexpr std::string_view kToStandardOutput = "-";

// Files are begun at once, so that a long run is not in vain, and appear when they are finished.
class ResultsFiles {
 public:
  // All must outlive it. Throws FileError.
  ResultsFiles(const ResultsOptions& options, const Program& program, const RunSetup& setup, std::span<const Finding> findings,
               std::ostream& output);

  // Replications in order.
  void Add(const ReplicationRecord& record);
  // The summary, into the files and, unless it is quiet, as tables. seconds: what the run has taken; 0: not to be told.
  void Finish(const RunResults& results, double seconds);

 private:
  const ResultsOptions& options_;
  const Program& program_;
  const RunSetup& setup_;
  std::span<const Finding> findings_;
  std::ostream& output_;
  SeriesSeen series_;
  std::optional<OutputFile> jsonFile_, summaryFile_, replicationsFile_, htmlFile_;
  std::optional<ResultsWriter> json_;
};

}  // namespace vardo
