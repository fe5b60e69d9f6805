// The drawing that people begin with, and the stencil in it.
#pragma once

#include "package/Package.h"

#include <memory>
#include <string>
#include <vector>

namespace vardo {

// The parts of a new drawing: one empty page "Page-1" that carries the bookkeeping rows, and all nineteen masters. Always the
// same.
std::unique_ptr<Package> MakeNewDrawing();

// The fourteen modules, then the five connectors, in stencil order.
const std::vector<std::string>& StencilMasterNames();

}  // namespace vardo
