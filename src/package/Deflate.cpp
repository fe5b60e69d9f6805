#include "package/Deflate.h"

#include "platform/Memory.h"

#include <libdeflate.h>

#include <new>

namespace vardo {
namespace {

// As small as zlib's usual level makes them, in half its time.
constexpr int kLevel = 5;

struct Free {
  void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
  void operator()(libdeflate_decompressor* decompressor) const { libdeflate_free_decompressor(decompressor); }
};

template <class Tool>
std::unique_ptr<Tool, Free> Made(Tool* tool) {
  if (!tool) throw std::bad_alloc();
  return std::unique_ptr<Tool, Free>(tool);
}

}  // namespace

ByteArray ByteArray::OfSize(size_t size) {
  ByteArray bytes{std::make_unique_for_overwrite<char[]>(size), size};
  ExpectUseOf(bytes.data.get(), size);
  return bytes;
}

ByteArray ByteArray::CopyOf(std::string_view bytes) {
  ByteArray copy = OfSize(bytes.size());
  bytes.copy(copy.data.get(), bytes.size());
  return copy;
}

std::uint32_t Crc32(std::string_view bytes) { return libdeflate_crc32(0, bytes.data(), bytes.size()); }

ByteArray Deflate(std::string_view bytes) {
  if (bytes.empty()) return {};
  const auto compressor = Made(libdeflate_alloc_compressor(kLevel));
  ByteArray packed = ByteArray::OfSize(bytes.size() - 1);
  packed.size = libdeflate_deflate_compress(compressor.get(), bytes.data(), bytes.size(), packed.data.get(), packed.size);
  return packed;
}

Inflated Inflate(std::string_view packed, char* out, size_t size) {
  const auto decompressor = Made(libdeflate_alloc_decompressor());
  switch (libdeflate_deflate_decompress(decompressor.get(), packed.data(), packed.size(), out, size, nullptr)) {
    case LIBDEFLATE_SUCCESS:
      return Inflated::Whole;
    case LIBDEFLATE_BAD_DATA:
      return Inflated::BadData;
    default:
      return Inflated::WrongLength;
  }
}

}  // namespace vardo
