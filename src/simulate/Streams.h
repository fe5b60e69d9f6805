// Random numbers by place instead of by state: the numbers of a stream follow from the seed, its source and the replication
// alone.
#pragma once

#include <array>
#include <cstdint>

namespace vardo {

// One block of four numbers (Philox 4x64-10).
using RandomBlock = std::array<uint64_t, 4>;
RandomBlock PhiloxBlock(const RandomBlock& counter, const std::array<uint64_t, 2>& key);

// Numbers in the open interval (0, 1), every step of their making exact.
constexpr double UniformOf(uint64_t bits) { return static_cast<double>(bits >> 12) * 0x1p-52 + 0x1p-53; }

// Which numbers a replication draws, beside the source of each.
struct RandomRun {
  uint64_t seed = 1;
  uint64_t replication = 1;
  uint64_t phase = 0;  // pilot runs have numbers of their own
};

// The numbers of one source of randomness in one replication.
class Stream {
 public:
  Stream() = default;
  Stream(const RandomRun& run, uint64_t source)
      : seed_(run.seed), source_(source), replication_(run.replication), phase_(run.phase) {}

  // One draw that is a single inversion.
  double Uniform() {
    if (left_ == 0) NextBlock();
    return UniformOf(numbers_[4 - left_--]);
  }

 private:
  friend class LongDraw;

  void NextBlock() { Fill(0), ++block_; }
  void Fill(uint64_t attempt);

  uint64_t seed_ = 0;
  uint64_t source_ = 0;
  uint64_t replication_ = 0;
  uint64_t phase_ = 0;
  uint64_t block_ = 0;
  RandomBlock numbers_ = {};
  uint32_t left_ = 0;
};

// A draw that takes as many numbers as it happens to need. It has a block of its own, so the draws after it do not depend on how
// many.
class LongDraw {
 public:
  explicit LongDraw(Stream& stream) : stream_(stream) { stream_.left_ = 0; }
  ~LongDraw() {
    stream_.left_ = 0;
    ++stream_.block_;
  }
  LongDraw(const LongDraw&) = delete;
  LongDraw& operator=(const LongDraw&) = delete;

  double Uniform() {
    if (stream_.left_ == 0) stream_.Fill(attempt_++);
    return UniformOf(stream_.numbers_[4 - stream_.left_--]);
  }

 private:
  Stream& stream_;
  uint64_t attempt_ = 0;
};

}  // namespace vardo
