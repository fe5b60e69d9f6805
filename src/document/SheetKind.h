// What a sheet of cells belongs to.
#pragma once

#include <cstdint>

namespace vardo {

enum class SheetKind : std::uint8_t { Shape, Page, Document };

}  // namespace vardo
