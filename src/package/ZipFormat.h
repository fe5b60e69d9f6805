// The records of a ZIP archive. Numbers are little-endian.
#pragma once

#include <cstdint>

namespace vardo {

inline constexpr std::uint32_t kLocalHeader = 0x04034b50, kCentralHeader = 0x02014b50, kEnd = 0x06054b50;
inline constexpr std::uint64_t kLocalSize = 30, kCentralSize = 46, kEndSize = 22;  // without names, extra fields, comments

inline constexpr std::uint16_t kStored = 0, kDeflated = 8;  // methods
inline constexpr std::uint16_t kDescriptorFlag = 0x0008;    // sizes follow the data
inline constexpr std::uint16_t kUtf8NameFlag = 0x0800;

}  // namespace vardo
