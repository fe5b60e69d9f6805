// What ends a run before its time.
#pragma once

#include "model/Program.h"

#include <exception>
#include <string>

namespace vardo {

// Something that the model must not do. Raised within a replication.
struct ModelError {
  std::uint32_t place = kNone;     // of Program::places
  std::string sentence;            // without a full stop
  std::uint32_t position = kNone;  // in the text of the place's field, from 0
};

// The same with when and where, in words: Replication 3 at 12.5 h: Bank: Process "Weld", Expression: square root of -2 at
// character 5.
class RunError : public std::exception {
 public:
  RunError(const Program& program, std::uint64_t replication, double time, const ModelError& error);
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  std::string text_;
};

// What is remarkable, but no reason to stop. Counted for each kind and place.
enum class RunWarning : std::uint8_t {
  NegativeTime,
  RoundedCount,
  PercentOutOfRange,
  NothingToSplit,
  LeftHolding,  // place: of the resource
};

struct WarningCount {
  RunWarning warning = RunWarning::NegativeTime;
  std::uint32_t place = 0;
  std::uint64_t count = 0;
  std::uint64_t of = 0;  // times it could have happened; 0: not known
  friend bool operator==(const WarningCount&, const WarningCount&) = default;
};
std::string SentenceOf(const WarningCount& warning, const Program& program);

// "Process "Weld", Expression".
std::string WordsFor(const SourcePlace& place);

}  // namespace vardo
