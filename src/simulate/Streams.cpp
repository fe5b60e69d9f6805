#include "simulate/Streams.h"

#include <Random123/philox.h>

namespace vardo {
namespace {

// Steele, Lea and Flood's finaliser: every bit of the number depends on every bit of what goes in.
constexpr uint64_t Mix(uint64_t x) {
  x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9u;
  x = (x ^ (x >> 27)) * 0x94d049bb133111ebu;
  return x ^ (x >> 31);
}

constexpr uint64_t MixInto(uint64_t hash, uint64_t x) { return Mix(hash + 0x9e3779b97f4a7c15u + Mix(x)); }

}  // namespace

RandomBlock PhiloxBlock(const RandomBlock& counter, const std::array<uint64_t, 2>& key) {
  const r123::Philox4x64::ctr_type at = {{counter[0], counter[1], counter[2], counter[3]}};
  const r123::Philox4x64::key_type with = {{key[0], key[1]}};
  const auto block = r123::Philox4x64()(at, with);
  return {block[0], block[1], block[2], block[3]};
}

void Stream::Fill(uint64_t attempt) {
  numbers_ = PhiloxBlock({block_, replication_, attempt, phase_}, {seed_, source_});
  left_ = 4;
}

uint64_t SourceOf(uint64_t page, uint64_t shape, uint64_t field, uint64_t call) {
  return MixInto(MixInto(MixInto(MixInto(1, page), shape), field), call);
}

uint64_t SourceOfNamedStream(uint64_t number) { return MixInto(2, number); }

}  // namespace vardo
