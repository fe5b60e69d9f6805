// What happens in a replication, step by step, as JSON lines.
#pragma once

#include "simulate/Trace.h"

#include "model/Program.h"

#include <ostream>

namespace vardo {

// One line an act: when, in base units; who, where; and what it comes with.
class TraceWriter : public TraceSink {
 public:
  // Both must outlive it.
  TraceWriter(const Program& program, std::ostream& output) : program_(program), output_(output) {}
  void Take(const TraceRecord& record) override;

 private:
  const Program& program_;
  std::ostream& output_;
};

}  // namespace vardo
