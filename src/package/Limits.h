// What a drawing may be at most; docs/limits.md tells it to people. A file beyond any of these is refused before it takes the
// machine: what its directory declares before anything is unpacked, what its parts hold before they are parsed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vardo {

// Of the file as an archive.
inline constexpr std::uint64_t kMaxEntries = 10'000;            // parts and folders
inline constexpr std::uint64_t kMaxUnpackedBytes = 1ull << 30;  // all parts together, as the directory declares them
inline constexpr std::uint64_t kMaxCompressionRatio = 200;      // unpacked to packed size, of a part ...
inline constexpr std::uint64_t kRatioFreeBytes = 1ull << 20;    // ... that unpacks to more than this

// Of the drawing in memory: the file, the largest part that is no part of the drawing, the texts of those that are, and their
// trees.
inline constexpr std::uint64_t kMaxMemoryBytes = 1000ull << 20;
// Throws FileError, naming the file and the part, when a part brings a drawing to more than that many bytes in memory.
void CheckMemory(std::uint64_t bytes, const std::string& file, const std::string& part);

// Of XML.
inline constexpr size_t kMaxXmlDepth = 256;          // elements within elements
inline constexpr size_t kMaxXmlAttributes = 10'000;  // of an element

// Of the drawing.
inline constexpr size_t kMaxPages = 5'000;
inline constexpr size_t kMaxMasters = 5'000;
inline constexpr size_t kMaxRows = 32'767;  // of a section; the host numbers them with 16 bits

}  // namespace vardo
