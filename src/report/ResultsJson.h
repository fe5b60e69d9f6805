// Results as a file that programs read, and that parts of a run are put together from.
#pragma once

#include "model/RunSetup.h"
#include "simulate/Runner.h"

#include <nlohmann/json.hpp>

#include <deque>
#include <filesystem>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

namespace vardo {

// Writes replications as they come, one a line, and the summary at the end. Equal runs give equal bytes.
class ResultsWriter {
 public:
  ResultsWriter(std::ostream& output, const Program& program, const RunSetup& setup);
  void Add(const ReplicationRecord& record);
  void Finish(const RunResults& results);

 private:
  std::ostream& output_;
  const Program& program_;
  bool isFirst_ = true;
};

// The summary alone, for people and scripts: each output by its name.
nlohmann::ordered_json SummaryOf(const Program& program, const RunResults& results);

// One file of results read again: enough of its program and set-up to summarise and write it. It can be moved, not copied, for
// the program refers to the texts.
struct ReadResults {
  ReadResults() = default;
  ReadResults(ReadResults&&) = default;
  ReadResults& operator=(ReadResults&&) = default;

  Program program;
  std::deque<std::string> texts;  // that the program's outputs refer to
  RunSetup setup;
  std::string head;  // equal for parts of one run
  std::vector<ReplicationRecord> records;
};
// Throws std::runtime_error with a sentence that names the file.
ReadResults ReadResultsFile(const std::filesystem::path& file);

// Puts the replications of several parts into one run, whatever their order: the first holds them all then. The same replication
// may be in several parts when it is equal. Throws std::runtime_error with a sentence. Returns sentences on gaps.
std::vector<std::string> MergeParts(std::vector<ReadResults>& parts, const std::vector<std::string>& names);

}  // namespace vardo
