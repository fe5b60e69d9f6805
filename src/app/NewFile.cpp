#include "app/NewFile.h"

#include "base/FileError.h"
#include "platform/FileSystem.h"

#include <system_error>

namespace vardo {

void ExpectFree(const std::filesystem::path& file) {
  std::error_code unknown;  // of a file that cannot even be looked for, saving says why
  if (std::filesystem::exists(file, unknown))
    throw FileError(PathInWords(file) + " exists already; choose another place or give --replace.");
}

}  // namespace vardo
