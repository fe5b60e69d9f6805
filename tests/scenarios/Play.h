// Scenarios being played: a play hands out the requests of one, and compares what comes of each with what is expected.
#pragma once

#include "Scenario.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace vardo {

// A fresh one, gone with all that is in it when this is destroyed.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// What comes otherwise than expected is told on standard error.
class Play {
 public:
  // The scenario must outlive the play.
  explicit Play(const Scenario& scenario) : scenario_(scenario) {}

  // Takes the lines that come; those that have come since a request was handed out belong to it.
  std::ostream& output() { return output_; }
  // None after the last.
  std::optional<std::string> NextRequest();
  // The lines that the end of the input brings belong to the last request.
  void End(int status);
  bool Failed() const { return failed_; }

 private:
  void CheckPrevious();
  void Complain(const std::string& wrong);

  const Scenario& scenario_;
  std::ostringstream output_;
  size_t next_ = 0;
  bool failed_ = false;
};

// Plays the scenarios of the files one after the other, each with a temporary folder of its own. Returns the exit status: 0 when
// all succeed, 1 otherwise; one that throws is told on standard error, and the next follows.
int PlayAll(const std::vector<std::filesystem::path>& files, const std::filesystem::path& data,
            const std::function<bool(const Scenario&)>& succeeds);

}  // namespace vardo
