#include "platform/Memory.h"

namespace vardo {

// Windows gives large pages only to those who may lock memory.
void ExpectUseOf(void*, size_t) {}

}  // namespace vardo
