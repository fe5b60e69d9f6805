#include "model/Sources.h"

namespace vardo {
namespace {

// Steele, Lea and Flood's finaliser: every bit of the number depends on every bit of what goes in.
constexpr std::uint64_t Mix(std::uint64_t x) {
  x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9u;
  x = (x ^ (x >> 27)) * 0x94d049bb133111ebu;
  return x ^ (x >> 31);
}

constexpr std::uint64_t MixInto(std::uint64_t hash, std::uint64_t x) { return Mix(hash + 0x9e3779b97f4a7c15u + Mix(x)); }

}  // namespace

std::uint64_t SourceOf(std::uint64_t page, std::uint64_t shape, std::uint64_t field, std::uint64_t call, std::uint64_t user) {
  const std::uint64_t source = MixInto(MixInto(MixInto(MixInto(1, page), shape), field), call);
  return user == 0 ? source : MixInto(source, user);
}

std::uint64_t SourceOfNamedStream(std::uint64_t number) { return MixInto(2, number); }

}  // namespace vardo
