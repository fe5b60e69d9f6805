#include "app/Commands.h"
#include "base/FileError.h"
#include "document/Drawing.h"
#include "platform/FileSystem.h"

#include <fmt/ostream.h>

#include <system_error>

namespace vardo {

Outcome NewDrawing(const NewOptions& options, std::ostream& output) {
  const std::string file = PathInWords(options.file);
  std::error_code unknown;  // of a file that cannot even be looked for, saving says why
  if (!options.replace && std::filesystem::exists(options.file, unknown))
    throw FileError(file + " exists already; choose another name or give --replace.");
  Drawing::New()->Save(options.file);
  fmt::print(output, "Made {}.\n", file);
  return {0, options.file};
}

}  // namespace vardo
