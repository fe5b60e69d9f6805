// `vardo desktop`: the drawing program.
#pragma once

#include <filesystem>
#include <span>

namespace vardo {

// Shows a window with the first drawing, or with a new one, and returns when it is closed; further drawings get windows and
// programs of their own. The exit status. argv outlives the call.
int RunDesktop(std::span<const std::filesystem::path> files, int argc, char** argv);

}  // namespace vardo
