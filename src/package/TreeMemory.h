// The memory of trees. The parser asks for it in pages of 32 KiB, of which a large drawing takes thousands.
#pragma once

#include <cstddef>

namespace vardo {

// What the parser asks for at a time, and what that takes of the machine's memory.
inline constexpr size_t kTreePage = 32 * 1024, kTreePageBytes = (2 << 20) / 63;

// Trees live in pages cut from blocks of 2 MiB, which the machine gives much faster than as many small pieces. A page that is
// given back is the next to be taken; a block goes back to the machine with the last of its pages. May be called by several
// threads.
void* TakeTreePage(size_t size) noexcept;  // null when there is no memory
void GiveTreePage(void* page) noexcept;
// Whether a page has been refused since this was last asked: the parser's own calls say so to nobody.
bool TreesRanOut() noexcept;

}  // namespace vardo
