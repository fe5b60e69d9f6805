// Files that a command is to make.
#pragma once

#include <filesystem>

namespace vardo {

// Throws FileError when the file exists already.
void ExpectFree(const std::filesystem::path& file);

}  // namespace vardo
