// What somebody who follows a replication is told.
#pragma once

#include <cstdint>

namespace vardo {

enum class TraceAct : std::uint8_t {
  Create,
  Enter,
  Queue,
  Seize,      // what: the resource; number: units
  Delay,      // number: seconds
  Release,    // what: the resource; number: units
  Preempt,    // the same
  Resume,     // number: seconds left of the delay
  Decide,     // what: 0 True, 1 False
  Assign,     // what: the row of Program::assignRows; number: the value
  Batch,      // number: members
  Split,      // number: members
  Duplicate,  // number: duplicates
  Record,     // number: the value
  Leave,
  Dispose,
  Capacity,  // what: the resource; number: units
  WarmUp,
  End,
};

struct TraceRecord {
  double time = 0;           // seconds
  std::uint64_t entity = 0;  // its number; 0: none
  std::uint32_t type = 0;
  std::uint32_t step = 0;  // of Program::steps
  TraceAct does = TraceAct::Create;
  std::uint32_t what = 0;
  double number = 0;
};

class TraceSink {
 public:
  virtual ~TraceSink() = default;
  virtual void Take(const TraceRecord& record) = 0;
};

}  // namespace vardo
