// A drawing made ready to be run: what the command line, the script language and the Simulate menu have in common.
#pragma once

#include "addin/host/HostFwd.h"
#include "model/Finding.h"
#include "model/Program.h"
#include "model/RunSetup.h"
#include "simulate/Parts.h"
#include "simulate/Runner.h"

#include <memory>
#include <string>
#include <vector>

namespace vardo {

// What somebody asks for, as texts.
struct RunOrder {
  SetupTexts setup;                        // what is not given the drawing says
  std::vector<std::string> settings = {};  // NAME=VALUE, or MODULE, FIELD=TEXT
};

struct PreparedRun {
  RunSetup setup;
  std::vector<Finding> findings;           // of the drawing and of the set-up, in order
  std::shared_ptr<const Program> program;  // none when there is an error among the findings
};

// Reads, checks and compiles. The file's name is for reports alone. Throws HostError when the host refuses to tell something.
PreparedRun PrepareRun(const IVDocumentPtr& document, const RunOrder& order, const std::string& file);

// The set-up is then that of the part. Throws std::runtime_error with a sentence when it cannot be parted, or has fewer
// replications than parts.
void TakePart(const PartChoice& part, RunSetup& setup);

// When the set-up wants a warm-up proposed, it has it then. Throws RunError, and std::runtime_error with a sentence when there is
// none to propose.
void FindWarmUp(PreparedRun& run, const RunOptions& options, Progress& progress);

}  // namespace vardo
