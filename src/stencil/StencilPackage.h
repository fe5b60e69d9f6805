// What people begin with: a new drawing, the stencil, and the template. All have the same nineteen masters, and are always the
// same.
#pragma once

#include "package/Package.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

inline constexpr std::string_view kStencilFile = "Vardo.vssx";
inline constexpr std::string_view kTemplateFile = "Vardo.vstx";

// One empty page "Page-1" that carries the bookkeeping rows.
std::unique_ptr<Package> MakeNewDrawing();
// A drawing that opens with the stencil beside it, which is looked for by its file name.
std::unique_ptr<Package> MakeTemplate();
// The masters and no page to draw on.
std::unique_ptr<Package> MakeStencil();

// The fourteen modules, then the five connectors, in stencil order.
const std::vector<std::string>& StencilMasterNames();

}  // namespace vardo
