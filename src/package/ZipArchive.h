// A ZIP archive in memory: its entries inflated, and a copy of it with some of them changed.
#pragma once

#include "package/ZipDirectory.h"

#include <zip.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vardo {

// One change of an archive.
struct ZipEdit {
  std::optional<size_t> index;         // the entry to change; none: a new one, which goes last
  std::string name;                    // of a new entry
  std::optional<std::string> content;  // none: the entry is taken out
};

// Owns its bytes. Not for several threads at a time. Every throw is a FileError that names `file`, and the part where one is to
// blame.
class ZipArchive {
 public:
  // An archive without entries.
  explicit ZipArchive(std::string file);
  // Throws as ReadZipDirectory does.
  ZipArchive(std::string bytes, std::string file);

  const std::string& Bytes() const { return bytes_; }
  const std::vector<ZipEntry>& Entries() const { return entries_; }

  // Inflates an entry into Entries()[index].size bytes at `out`. Throws when its checksum or its length is not the declared one.
  void Read(size_t index, char* out) const;
  // Throws as Read does, and keeps nothing.
  void Check(size_t index) const;

  // The archive with those changes: other entries keep their packed bytes and their place, changed ones are deflated and dated
  // 1980-01-01, so that equal changes give equal bytes.
  std::string With(std::vector<ZipEdit> edits) const;

 private:
  struct Discard {
    void operator()(zip_t* zip) const { zip_discard(zip); }
  };

  std::string file_, bytes_;
  std::vector<ZipEntry> entries_;
  std::unique_ptr<zip_t, Discard> zip_;
};

}  // namespace vardo
