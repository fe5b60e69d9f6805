#include "Play.h"

#include <exception>
#include <iostream>
#include <random>
#include <system_error>
#include <utility>
#include <vector>

namespace vardo {

TemporaryFolder::TemporaryFolder() {
  std::random_device random;
  do {
    path_ = std::filesystem::temp_directory_path() / ("vardo-scenario-" + std::to_string(random()));
  } while (!std::filesystem::create_directory(path_));
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::optional<std::string> Play::NextRequest() {
  if (next_ == scenario_.requests.size()) return std::nullopt;
  CheckPrevious();
  return scenario_.requests[next_++].text;
}

void Play::End(int status) {
  CheckPrevious();
  const ScenarioJson came = {{"exit", status}};
  if (scenario_.exit && !Matches(scenario_.exit->value, came))
    Complain(scenario_.file + ":" + std::to_string(scenario_.exit->line) + ": expected " + scenario_.exit->value.dump() +
             "\n  but there came " + came.dump());
}

void Play::CheckPrevious() {
  std::vector<std::string> came;
  std::istringstream lines(std::exchange(output_, {}).str());
  for (std::string line; std::getline(lines, line);) came.push_back(line);
  if (next_ == 0) return;
  for (const std::string& wrong : Mismatches(scenario_, scenario_.requests[next_ - 1], came)) Complain(wrong);
}

void Play::Complain(const std::string& wrong) {
  failed_ = true;
  std::cerr << wrong << '\n';
}

namespace {

bool PlayFile(const std::filesystem::path& file, const std::filesystem::path& data,
              const std::function<bool(const Scenario&)>& succeeds) try {
  const TemporaryFolder temporary;
  return succeeds(ReadScenario(file, {{"${TMP}", temporary.path().generic_string()}, {"${DATA}", data.generic_string()}}));
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return false;
}

}  // namespace

int PlayAll(const std::vector<std::filesystem::path>& files, const std::filesystem::path& data,
            const std::function<bool(const Scenario&)>& succeeds) {
  int status = 0;
  for (const std::filesystem::path& file : files) {
    std::cerr << file.filename().string() << std::endl;  // for who reads of a crash
    if (!PlayFile(file, data, succeeds)) status = 1;
  }
  return status;
}

}  // namespace vardo
