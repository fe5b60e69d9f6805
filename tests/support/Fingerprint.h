// For what must be the same bits on every machine.
#pragma once

#include <bit>
#include <cstdint>
#include <string_view>

namespace vardo::test {

// FNV-1a.
class Fingerprint {
 public:
  void Add(double x) { Add(std::bit_cast<std::uint64_t>(x)); }
  void Add(std::uint64_t bits) {
    for (int i = 0; i < 8; ++i) AddByte(static_cast<unsigned char>(bits >> (8 * i)));
  }
  void Add(std::string_view text) {
    for (const char c : text) AddByte(static_cast<unsigned char>(c));
  }
  std::uint64_t hash() const { return hash_; }

 private:
  void AddByte(unsigned char byte) { hash_ = (hash_ ^ byte) * 0x100000001b3u; }

  std::uint64_t hash_ = 0xcbf29ce484222325u;
};

// The sanitizers make long runs longer still: there they are a hundredth as long.
#ifdef __SANITIZE_ADDRESS__
inline constexpr bool kIsShortened = true;
#else
inline constexpr bool kIsShortened = false;
#endif
constexpr int Fewer(int count) { return kIsShortened ? count / 100 : count; }

}  // namespace vardo::test
