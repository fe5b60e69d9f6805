#include "package/TreeMemory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

namespace vardo {
namespace {

struct Piece {
  unsigned char* memory;
  size_t size;
  unsigned char content;
};

TEST(TreeMemory, PiecesKeepWhatIsWrittenToThem) {
  std::mt19937 random(1);
  std::vector<Piece> pieces;
  const auto give = [&](size_t i) {
    const Piece piece = pieces[i];
    pieces[i] = pieces.back();
    pieces.pop_back();
    EXPECT_TRUE(std::all_of(piece.memory, piece.memory + piece.size, [&](unsigned char c) { return c == piece.content; }));
    GiveTreePage(piece.memory);
  };
  // More pages than a block has, small and large ones between them, given back in any order.
  for (int step = 0; step < 3000; ++step) {
    if (!pieces.empty() && random() % 5 < (step < 1500 ? 1 : 3)) {
      give(random() % pieces.size());
      continue;
    }
    const size_t sizes[] = {1, 100, kTreePage, kTreePage, kTreePage, 5 * kTreePage};
    const size_t size = sizes[random() % std::size(sizes)];
    auto* const memory = static_cast<unsigned char*>(TakeTreePage(size));
    ASSERT_NE(memory, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % 64, 0u);
    const auto content = static_cast<unsigned char>(random());
    std::memset(memory, content, size);
    pieces.push_back({memory, size, content});
  }
  while (!pieces.empty()) give(pieces.size() - 1);
}

TEST(TreeMemory, APageGivenBackIsTheNextToBeTaken) {
  void* const first = TakeTreePage(kTreePage);
  void* const second = TakeTreePage(kTreePage);
  GiveTreePage(first);
  EXPECT_EQ(TakeTreePage(kTreePage), first);
  GiveTreePage(second);
  GiveTreePage(first);
}

TEST(TreeMemory, NothingCanBeGivenBack) { GiveTreePage(nullptr); }

}  // namespace
}  // namespace vardo
