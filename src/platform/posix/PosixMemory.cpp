#include "platform/Memory.h"

#include <sys/mman.h>

#include <cstdint>

namespace vardo {

void ExpectUseOf(void* memory, size_t size) {
#ifdef MADV_HUGEPAGE
  constexpr std::uintptr_t kLargePage = 2 << 20;
  const auto first = reinterpret_cast<std::uintptr_t>(memory);
  const auto begin = (first + kLargePage - 1) & ~(kLargePage - 1), end = (first + size) & ~(kLargePage - 1);
  if (begin < end) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#endif
}

}  // namespace vardo
