// A ZIP archive in memory, and the writing of a new one from it.
#pragma once

#include "package/Deflate.h"
#include "package/ZipDirectory.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// Owns its bytes. Every throw but std::bad_alloc is a FileError that names `file`, and the part where one is to blame.
class ZipArchive {
 public:
  // An archive without entries.
  explicit ZipArchive(std::string file);
  // Throws as ReadZipDirectory does.
  ZipArchive(std::string bytes, std::string file);
  ZipArchive(const ZipArchive&) = delete;
  ZipArchive& operator=(const ZipArchive&) = delete;

  const std::string& Bytes() const { return bytes_; }
  const std::vector<ZipEntry>& Entries() const { return directory_.entries; }
  std::string_view Comment() const { return directory_.comment; }

  // An entry inflated. Throws when its checksum or its length is not the declared one.
  ByteArray Read(size_t index) const;
  // Throws as Read does, and keeps nothing.
  void Check(size_t index) const;

 private:
  std::string_view Packed(const ZipEntry& entry) const;
  void CheckSum(const ZipEntry& entry, std::string_view content) const;

  std::string file_, bytes_;
  ZipDirectory directory_;
};

// Writes an archive entry by entry. Equal entries give equal bytes.
class ZipWriter {
 public:
  // The new archive takes over the comment of the original one, which must outlive the writer.
  explicit ZipWriter(const ZipArchive& original);

  // An entry of the original, its packed bytes as they are.
  void Copy(size_t index);
  // A new one, deflated where that helps, and dated 1980-01-01.
  void Add(std::string_view name, std::string_view content);
  // The whole archive. Nothing can be written afterwards.
  std::string Finish();

 private:
  const ZipArchive& original_;
  std::string bytes_, directory_;
  size_t count_ = 0;
};

}  // namespace vardo
