#include "app/Commands.h"
#include "app/NewFile.h"
#include "platform/FileSystem.h"
#include "stencil/StencilPackage.h"

#include <fmt/ostream.h>

namespace vardo {

Outcome WriteStencil(const StencilOptions& options, std::ostream& output) {
  const std::filesystem::path stencil = options.folder / kStencilFile, drawing = options.folder / kTemplateFile;
  if (!options.replace)
    for (const auto& file : {stencil, drawing}) ExpectFree(file);
  MakeStencil()->Save(stencil);
  MakeTemplate()->Save(drawing);
  fmt::print(output, "Made {} and {}.\n", PathInWords(stencil), PathInWords(drawing));
  return {0, stencil};
}

}  // namespace vardo
