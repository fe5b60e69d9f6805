#include "app/Commands.h"
#include "app/NewFile.h"
#include "document/Drawing.h"
#include "platform/FileSystem.h"

#include <fmt/ostream.h>

namespace vardo {

Outcome NewDrawing(const NewOptions& options, std::ostream& output) {
  if (!options.replace) ExpectFree(options.file);
  Drawing::New()->Save(options.file);
  fmt::print(output, "Made {}.\n", PathInWords(options.file));
  return {0, options.file};
}

}  // namespace vardo
