#include "simulate/Parts.h"

#include "base/Numbers.h"
#include "base/Text.h"

#include <stdexcept>
#include <vector>

namespace vardo {
namespace {

using Environment = std::function<std::optional<std::string>(const char*)>;

std::optional<int> NumberIn(const Environment& environment, const char* name) {
  const auto text = environment(name);
  return text ? ParseInteger(*text) : std::nullopt;
}

// Ranks count from 0.
struct Launcher {
  const char* rank;
  const char* size;
};
constexpr Launcher kLaunchers[] = {
    {"OMPI_COMM_WORLD_RANK", "OMPI_COMM_WORLD_SIZE"}, {"PMI_RANK", "PMI_SIZE"}, {"SLURM_PROCID", "SLURM_NTASKS"}};

// A task array counts from some number in steps.
std::optional<PartChoice> FromArray(const Environment& environment) {
  const auto id = NumberIn(environment, "SLURM_ARRAY_TASK_ID");
  if (!id) return std::nullopt;
  const int first = NumberIn(environment, "SLURM_ARRAY_TASK_MIN").value_or(1);
  const int step = NumberIn(environment, "SLURM_ARRAY_TASK_STEP").value_or(1);
  const int count = NumberIn(environment, "SLURM_ARRAY_TASK_COUNT").value_or(1);
  return PartChoice{(*id - first) / (step < 1 ? 1 : step) + 1, count, "SLURM_ARRAY_TASK_ID"};
}

// parts: 0 when it is not known.
PartChoice Automatic(int parts, const Environment& environment) {
  std::vector<PartChoice> found;
  if (const auto array = FromArray(environment)) found.push_back(*array);
  if (const auto index = NumberIn(environment, "JOB_COMPLETION_INDEX"))
    found.push_back({*index + 1, parts, "JOB_COMPLETION_INDEX"});
  for (const Launcher& launcher : kLaunchers)
    if (const auto rank = NumberIn(environment, launcher.rank), size = NumberIn(environment, launcher.size); rank && size)
      found.push_back({*rank + 1, *size, launcher.rank});
  // One of one is no part.
  std::erase_if(found, [](const PartChoice& choice) { return choice.parts == 1; });
  if (found.empty()) throw std::runtime_error("No launcher says which part this is; give it as --part I/N.");
  if (found.size() > 1)
    throw std::runtime_error("Both " + found[0].source + " and " + found[1].source +
                             " say which part this is; give it as --part I/N.");
  if (found.front().parts == 0)
    throw std::runtime_error(found.front().source + " does not say how many parts there are; give --part auto/N.");
  return found.front();
}

}  // namespace

PartChoice ChoosePart(std::string_view text, const Environment& environment) {
  const size_t slash = text.find('/');
  const std::string_view first = text.substr(0, slash);
  const bool saysHowMany = slash != std::string_view::npos;
  const int parts = saysHowMany ? ParseInteger(text.substr(slash + 1)).value_or(0) : 0;
  const int part = ParseInteger(first).value_or(0);
  PartChoice choice{part, parts, ""};
  if (EqualAsciiIgnoringCase(first, "auto") && (parts > 0 || !saysHowMany))
    choice = Automatic(parts, environment);
  else if (part == 0 || parts == 0)
    throw std::runtime_error("\"" + InWords(text) + "\" is no part; write --part 2/10, or auto.");
  if (choice.part < 1 || choice.part > choice.parts)
    throw std::runtime_error("There is no part " + std::to_string(choice.part) + " of " + std::to_string(choice.parts) + ".");
  return choice;
}

ReplicationRange RangeOfPart(const PartChoice& choice, ReplicationRange all) {
  const long long count = all.last - all.first + 1;
  const auto before = [&](long long part) { return static_cast<int>(all.first + count * part / choice.parts); };
  return {before(choice.part - 1), before(choice.part) - 1};
}

}  // namespace vardo
