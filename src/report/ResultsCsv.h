// Results for spreadsheets and statistics programs: RFC 4180, a point as decimal sign, nothing inside the numbers.
#pragma once

#include "simulate/Runner.h"

#include <ostream>

namespace vardo {

// A line an output: what the summary says of it. What does not exist is empty.
void WriteSummaryCsv(const Program& program, const Summary& summary, std::ostream& output);

// A line an output of each replication, long form.
void WriteReplicationsHead(std::ostream& output);
void WriteReplicationCsv(const Program& program, const ReplicationRecord& record, std::ostream& output);

}  // namespace vardo
