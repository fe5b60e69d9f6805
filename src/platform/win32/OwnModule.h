// The program or library that this code is part of.
#pragma once

#include <windows.h>

#include <filesystem>

namespace vardo {

HINSTANCE OwnModule();
// The full path of a module's file; of the program's for null.
std::filesystem::path ModuleFile(HMODULE module);

}  // namespace vardo
