// From a drawing's model to a program that can be run.
#pragma once

#include "model/Finding.h"
#include "model/Model.h"
#include "model/Program.h"
#include "model/RunSetup.h"

#include <memory>
#include <string>
#include <vector>

namespace vardo {

// Modules that no entity reaches take no part. What cannot be compiled is added to the findings, and then there is no program; a
// model in which the checks find no error compiles. The file's name is for reports alone.
std::shared_ptr<const Program> Compile(const Model& model, const RunSetup& setup, const std::string& file,
                                       std::vector<Finding>& findings);

// A number for everything that counts in a run: equal for drawings in which shapes have merely been moved.
std::uint64_t HashOf(const Model& model);

}  // namespace vardo
