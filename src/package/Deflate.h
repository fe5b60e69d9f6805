// Bytes packed, unpacked and summed up in one call each. Throw std::bad_alloc.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace vardo {

// Bytes of a size that is known when they are made; they are not set to anything first.
struct ByteArray {
  std::unique_ptr<char[]> data;
  size_t size = 0;

  static ByteArray OfSize(size_t size);
  static ByteArray CopyOf(std::string_view bytes);
  std::string_view View() const { return {data.get(), size}; }
};

std::uint32_t Crc32(std::string_view bytes);

// The bytes deflated; empty unless they get shorter by it.
ByteArray Deflate(std::string_view bytes);

enum class Inflated { Whole, WrongLength, BadData };
// Inflates into just `size` bytes at `out`.
Inflated Inflate(std::string_view packed, char* out, size_t size);

}  // namespace vardo
