// What a package may be at most. A file beyond any of these is refused before anything of it is unpacked, the depth as it is
// parsed.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vardo {

inline constexpr std::uint64_t kMaxFileBytes = 1ull << 30;      // the file itself
inline constexpr std::uint64_t kMaxEntries = 10'000;            // parts and folders
inline constexpr std::uint64_t kMaxUnpackedBytes = 1ull << 30;  // all parts together, as the directory declares them
inline constexpr std::uint64_t kMaxCompressionRatio = 200;      // unpacked to packed size, of a part ...
inline constexpr std::uint64_t kRatioFreeBytes = 1ull << 20;    // ... that unpacks to more than this
inline constexpr size_t kMaxXmlDepth = 256;                     // elements within elements

}  // namespace vardo
