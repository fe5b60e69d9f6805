#include "simulate/RunError.h"

#include "base/Numbers.h"
#include "base/Text.h"

namespace vardo {
namespace {

// "12.5 h".
std::string TimeWords(const Program& program, double time) {
  const std::string unit = program.timeUnit == "Minutes" ? "min" : std::string(1, LowerAscii(program.timeUnit.front()));
  return NumberText(time / program.unit, 6) + " " + unit;
}

}  // namespace

std::string WordsFor(const SourcePlace& place) {
  std::string words = place.kind;
  if (!place.module.empty()) words += (words.empty() ? "\"" : " \"") + InWords(place.module) + "\"";
  if (!place.field.empty()) words += (words.empty() ? "" : ", ") + place.field;
  return words;
}

RunError::RunError(const Program& program, std::uint64_t replication, double time, const ModelError& error) {
  text_ = "Replication " + std::to_string(replication) + " at " + TimeWords(program, time) + ": ";
  if (error.place != kNone) {
    const SourcePlace& place = program.places[error.place];
    if (!place.page.empty()) text_ += InWords(place.page) + ": ";
    text_ += WordsFor(place) + ": ";
  }
  text_ += error.sentence;
  if (error.position != kNone) text_ += " at character " + std::to_string(error.position + 1);
  text_ += ".";
}

std::string SentenceOf(const WarningCount& warning, const Program& program) {
  const std::string where = WordsFor(program.places[warning.place]) + ": ";
  const std::string count = NumberText(static_cast<double>(warning.count));
  const bool isOne = warning.count == 1;
  switch (warning.warning) {
    case RunWarning::NegativeTime:
      if (warning.of != 0)
        return where + NumberText(100 * static_cast<double>(warning.count) / static_cast<double>(warning.of), 2) +
               " % of the delays were negative and counted as 0.";
      return where + count + (isOne ? " time was negative and counted as 0." : " times were negative and counted as 0.");
    case RunWarning::RoundedCount:
      return where + count + (isOne ? " value was rounded to a whole number." : " values were rounded to whole numbers.");
    case RunWarning::PercentOutOfRange:
      return where + count + (isOne ? " percentage was" : " percentages were") +
             " not between 0 and 100 and counted as the nearer of these.";
    case RunWarning::NothingToSplit:
      return where + count + (isOne ? " entity that was" : " entities that were") + " no temporary batch passed unchanged.";
    case RunWarning::LeftHolding:
      return where + count + (isOne ? " entity" : " entities") + " left the model holding units, which stay taken.";
  }
  return where;
}

}  // namespace vardo
