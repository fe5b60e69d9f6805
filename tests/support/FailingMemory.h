// Memory of which any single piece can be refused. To be included by one source of a test program: all that the program and its
// libraries allocate is counted then.
#pragma once

#include <cstdlib>
#include <new>

namespace {

long allocationsLeft = -1;  // how many succeed before one fails; negative: all
long alive = 0;

void* Allocate(size_t size) {
  if (allocationsLeft >= 0 && allocationsLeft-- == 0) return nullptr;  // and all succeed again
  void* const memory = std::malloc(size ? size : 1);
  if (memory) ++alive;
  return memory;
}

void Free(void* memory) {
  if (memory) --alive;
  std::free(memory);
}

}  // namespace

void* operator new(size_t size) {
  if (void* const memory = Allocate(size)) return memory;
  throw std::bad_alloc();
}
void* operator new(size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* memory) noexcept { Free(memory); }
void operator delete(void* memory, size_t) noexcept { Free(memory); }
