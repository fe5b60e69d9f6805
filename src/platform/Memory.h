// Memory of the machine in large pieces.
#pragma once

#include <cstddef>

namespace vardo {

// Tells the machine that all of that memory will be used soon: it may then be given in few large pages instead of many small
// ones, each of which costs time when it is first touched. Changes nothing else; memory of less than a large page is left alone.
void ExpectUseOf(void* memory, size_t size);

}  // namespace vardo
