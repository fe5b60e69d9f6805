#include "package/TreeMemory.h"

#include "platform/Memory.h"

#include <cstdint>
#include <mutex>
#include <new>

namespace vardo {
namespace {

constexpr size_t kBlockBytes = 2 << 20;
constexpr size_t kPageBytes = 33 * 1024;  // what the parser asks for, and what it puts before it

struct Page {
  Page* next;
};

// Begins at a multiple of its size, so that a page tells its block.
struct alignas(64) Block {
  Block *previous = nullptr, *next = nullptr;  // among those that have room
  Page* given = nullptr;                       // pages that were given back
  size_t used = 0;                             // pages that are taken
  size_t cut = 1;                              // pages that have ever been taken, and this head
  bool isLarge = false;                        // of a single piece that is larger than a page

  bool IsFull() const { return !given && (cut + 1) * kPageBytes > kBlockBytes; }
  void* Take() {
    ++used;
    if (!given) return reinterpret_cast<char*>(this) + cut++ * kPageBytes;
    Page* const page = given;
    given = page->next;
    return page;
  }
};

std::mutex mutex;
Block* withRoom = nullptr;

void PutIn(Block* block) {
  block->previous = nullptr;
  block->next = withRoom;
  if (withRoom) withRoom->previous = block;
  withRoom = block;
}

void TakeOut(const Block* block) {
  (block->previous ? block->previous->next : withRoom) = block->next;
  if (block->next) block->next->previous = block->previous;
}

Block* NewBlock(size_t size) {
  void* const memory = ::operator new(size, std::align_val_t(kBlockBytes), std::nothrow);
  if (!memory) return nullptr;
  ExpectUseOf(memory, size);
  return new (memory) Block;
}

void Delete(Block* block) { ::operator delete(block, std::align_val_t(kBlockBytes)); }

}  // namespace

void* TakeTreePage(size_t size) noexcept {
  if (size > kPageBytes) {
    Block* const block = NewBlock(sizeof(Block) + size);
    if (!block) return nullptr;
    block->isLarge = true;
    return block + 1;
  }
  const std::lock_guard lock(mutex);
  if (!withRoom) {
    Block* const block = NewBlock(kBlockBytes);
    if (!block) return nullptr;
    PutIn(block);
  }
  Block* const block = withRoom;
  void* const page = block->Take();
  if (block->IsFull()) TakeOut(block);
  return page;
}

void GiveTreePage(void* memory) noexcept {
  if (!memory) return;
  Block* const block = reinterpret_cast<Block*>(reinterpret_cast<std::uintptr_t>(memory) & ~(kBlockBytes - 1));
  if (block->isLarge) return Delete(block);
  const std::lock_guard lock(mutex);
  if (block->IsFull()) PutIn(block);
  block->given = new (memory) Page{block->given};
  if (--block->used > 0) return;
  TakeOut(block);
  Delete(block);
}

}  // namespace vardo
