#include "app/Commands.h"
#include "document/Drawing.h"

#include <fmt/format.h>

#include <cstdio>

namespace vardo {

int NewDrawing(const NewOptions& options) {
  if (!options.replace && std::filesystem::exists(options.file)) {
    fmt::print(stderr, "vardo: {} exists already; choose another name or give --replace.\n", options.file.string());
    return 1;
  }
  Drawing::New()->Save(options.file);
  fmt::print("Made {}.\n", options.file.string());
  return 0;
}

}  // namespace vardo
