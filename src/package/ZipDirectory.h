// The directory of a ZIP archive, read by itself and believed only when it agrees with the archive around it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

struct ZipEntry {
  std::string name;  // the bytes as stored; ends in "/" for a folder
  std::uint16_t method = 0;
  std::uint32_t crc = 0;
  std::uint64_t packed = 0, size = 0;       // bytes, as declared
  std::uint64_t record = 0, recordEnd = 0;  // where its record in the directory stands,
  std::uint64_t header = 0, data = 0;       // its local header and its packed bytes

  bool IsFolder() const { return name.ends_with('/'); }
};

struct ZipDirectory {
  std::vector<ZipEntry> entries;  // in their order
  std::string_view comment;       // of the archive
};

// Nothing is unpacked.
// Throws FileError, its sentence naming `file`, when the archive is no ZIP archive (saying what it is instead), is truncated,
// exceeds Limits.h, is encrypted, packed by an unknown method, has a name that is repeated (without regard to case) or leads out
// of the package, or when the directory contradicts itself or the local headers: entries that overlap, sizes that differ, a
// second end record.
ZipDirectory ReadZipDirectory(std::string_view zip, const std::string& file);

// Whether a part is packed more tightly than any reader of ours believes.
bool IsPackedTooTightly(std::uint64_t size, std::uint64_t packed);

}  // namespace vardo
