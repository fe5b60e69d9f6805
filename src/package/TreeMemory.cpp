#include "package/TreeMemory.h"

#include "package/Limits.h"

#include "platform/Memory.h"

#include <atomic>

#include <cstdint>
#include <mutex>
#include <new>

namespace vardo {
namespace {

constexpr size_t kBlockBytes = 2 << 20, kHeadBytes = 64;
constexpr size_t kPagesOfBlock = (kBlockBytes - kHeadBytes) / kTreePage;
static_assert(kPagesOfBlock == kBlockBytes / kTreePageBytes);

struct Page {
  Page* next;
};

// Begins at a multiple of its size, so that a page tells its block.
struct alignas(kHeadBytes) Block {
  Block *previous = nullptr, *next = nullptr;  // among those that have room
  Page* given = nullptr;                       // pages that were given back
  size_t used = 0;                             // pages that are taken
  size_t cut = 0;                              // pages that have ever been taken
  bool isLarge = false;                        // of a single piece that is larger than a page

  bool IsFull() const { return !given && cut == kPagesOfBlock; }
  void* Take() {
    ++used;
    if (!given) return reinterpret_cast<char*>(this + 1) + cut++ * kTreePage;
    Page* const page = given;
    given = page->next;
    return page;
  }
};

static_assert(sizeof(Block) == kHeadBytes);

std::mutex mutex;
std::atomic<bool> ranOut = false;
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

// No text is larger than a whole drawing may be.
Block* NewBlock(size_t size) {
  void* const memory = size > kMaxMemoryBytes ? nullptr : ::operator new(size, std::align_val_t(kBlockBytes), std::nothrow);
  if (!memory) {
    ranOut = true;
    return nullptr;
  }
  ExpectUseOf(memory, size);
  return new (memory) Block;
}

void Delete(Block* block) { ::operator delete(block, std::align_val_t(kBlockBytes)); }

}  // namespace

bool TreesRanOut() noexcept { return ranOut.exchange(false); }

void* TakeTreePage(size_t size) noexcept {
  if (size > kTreePage) {
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
