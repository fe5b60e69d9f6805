#include "package/ZipDirectory.h"

#include "base/FileError.h"
#include "base/Text.h"
#include "package/Limits.h"
#include "package/ZipFormat.h"

#include <algorithm>
#include <array>
#include <unordered_set>
#include <utility>

namespace vardo {
namespace {

constexpr std::uint32_t kEnd64 = 0x06064b50, kEnd64Locator = 0x07064b50;
constexpr std::uint64_t kEnd64Size = 56, kLocatorSize = 20;
constexpr std::uint16_t kEncryptedFlags = 0x2041;  // classic, strong, masked headers
constexpr std::uint16_t kZip64Extra = 0x0001;

// Little-endian numbers of an archive; a read past the end says that the archive is damaged.
class Archive {
 public:
  Archive(std::string_view bytes, const std::string& file) : bytes_(bytes), file_(file) {}

  std::string_view Slice(std::uint64_t at, std::uint64_t size) const {
    if (at > bytes_.size() || size > bytes_.size() - at) throw Contradiction();
    return bytes_.substr(at, size);
  }
  std::uint64_t Number(std::uint64_t at, unsigned size) const {
    const std::string_view bytes = Slice(at, size);
    std::uint64_t number = 0;
    for (unsigned i = size; i-- > 0;) number = number << 8 | static_cast<unsigned char>(bytes[i]);
    return number;
  }
  std::uint16_t U16(std::uint64_t at) const { return static_cast<std::uint16_t>(Number(at, 2)); }
  std::uint32_t U32(std::uint64_t at) const { return static_cast<std::uint32_t>(Number(at, 4)); }
  std::uint64_t U64(std::uint64_t at) const { return Number(at, 8); }
  std::uint64_t Size() const { return bytes_.size(); }
  std::string_view All() const { return bytes_; }
  const std::string& File() const { return file_; }

  FileError Contradiction() const { return FileError::Damaged(file_, "its ZIP directory contradicts the file"); }
  FileError Unsafe(const ZipEntry& entry, const std::string& what) const {
    return FileError::Unsafe(file_, PartInWords(entry.name) + " " + what);
  }

 private:
  std::string_view bytes_;
  const std::string& file_;
};

bool Contains(std::string_view text, std::string_view word) { return text.find(word) != std::string_view::npos; }

std::string Utf16(std::string_view ascii) {
  std::string wide;
  for (char c : ascii) wide += {c, '\0'};
  return wide;
}

// What a file without a ZIP directory is.
FileError NotAZip(std::string_view bytes, const std::string& file) {
  if (bytes.empty()) return FileError(file + " is empty; restore it from a backup.");
  if (bytes.starts_with("PK\x03\x04"))
    return FileError::Damaged(file, "it is truncated, the ZIP directory at its end is missing or broken");
  if (bytes.starts_with("\xD0\xCF\x11\xE0")) {
    if (Contains(bytes, Utf16("EncryptedPackage")))
      return FileError(file + " is protected by a password; save it without one in Visio.");
    if (Contains(bytes, Utf16("VisioDocument")))
      return FileError(file + " is a drawing in the old binary format; save it as .vsdx in Visio.");
    return FileError::NotADrawing(file, "an OLE compound file (an old binary or encrypted document) and no ZIP file");
  }
  const std::string_view text = bytes.substr(bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0);
  const size_t start = text.find_first_not_of(" \t\r\n");
  if (start != std::string_view::npos && text[start] == '<') {
    const std::string_view head = text.substr(start, 4096);
    if (Contains(head, "<VisioDocument"))
      return FileError(file + " is a drawing in the XML format of 2003; save it as .vsdx in Visio.");
    if (Contains(head, "<svg")) return FileError::NotADrawing(file, "an SVG picture and no ZIP file");
    return FileError::NotADrawing(file, "an XML or HTML text and no ZIP file");
  }
  return FileError::NotADrawing(file, "no ZIP file");
}

// The end record, whose comment must reach exactly to the end of the file. A second one that fits as well would let two readers
// see two different drawings.
std::uint64_t FindEnd(const Archive& zip) {
  const std::uint64_t size = zip.Size();
  std::uint64_t found = size;
  const std::uint64_t lowest = size > kEndSize + 0xFFFF ? size - kEndSize - 0xFFFF : 0;
  for (std::uint64_t at = size < kEndSize ? 0 : size - kEndSize + 1; at-- > lowest;) {
    if (zip.All()[at] != 'P' || zip.U32(at) != kEnd || at + kEndSize + zip.U16(at + 20) != size) continue;
    if (found != size) throw FileError::Unsafe(zip.File(), "it has two ZIP directories");
    found = at;
  }
  if (found == size) throw NotAZip(zip.All(), zip.File());
  return found;
}

struct Directory {
  std::uint64_t count, size, offset, limit;  // limit: where the records after it begin
  std::string_view comment;
};

Directory FindDirectory(const Archive& zip) {
  const std::uint64_t end = FindEnd(zip);
  Directory directory{zip.U16(end + 10), zip.U32(end + 12), zip.U32(end + 16), end, zip.All().substr(end + kEndSize)};
  bool oneDisk = zip.U16(end + 4) == zip.U16(end + 6) && zip.U16(end + 8) == directory.count;
  if (directory.count == 0xFFFF || directory.size == 0xFFFFFFFF || directory.offset == 0xFFFFFFFF) {
    const std::uint64_t locator = end - std::min(end, kLocatorSize);
    if (zip.U32(locator) != kEnd64Locator) throw zip.Contradiction();
    const std::uint64_t end64 = zip.U64(locator + 8);
    zip.Slice(end64, kEnd64Size);
    if (zip.U32(end64) != kEnd64 || end64 + kEnd64Size > locator) throw zip.Contradiction();
    directory = {zip.U64(end64 + 32), zip.U64(end64 + 40), zip.U64(end64 + 48), end64, directory.comment};
    oneDisk = zip.U64(end64 + 24) == directory.count;
  }
  if (!oneDisk) throw FileError::Damaged(zip.File(), "it is one piece of a ZIP file in several");
  if (directory.count > kMaxEntries)
    throw FileError::Unsafe(zip.File(), "it has " + std::to_string(directory.count) + " parts, more than the " +
                                            std::to_string(kMaxEntries) + " allowed");
  if (directory.offset > directory.limit || directory.size > directory.limit - directory.offset) throw zip.Contradiction();
  return directory;
}

// Sizes that do not fit into 32 bits stand in an extra field, in this order, only those that are needed.
void ReadZip64(const Archive& zip, std::uint64_t at, std::uint64_t size, ZipEntry& entry) {
  for (const std::uint64_t end = at + size; at + 4 <= end;) {
    const std::uint64_t id = zip.U16(at), length = zip.U16(at + 2);
    at += 4;
    if (length > end - at) throw zip.Contradiction();
    if (id == kZip64Extra) {
      std::uint64_t field = at;
      for (std::uint64_t* value : {&entry.size, &entry.packed, &entry.header}) {
        if (*value != 0xFFFFFFFF) continue;
        if (field + 8 > at + length) throw zip.Contradiction();
        *value = zip.U64(field);
        field += 8;
      }
    }
    at += length;
  }
}

ZipEntry ReadEntry(const Archive& zip, std::uint64_t& at) {
  if (zip.U32(at) != kCentralHeader) throw zip.Contradiction();
  const std::uint64_t nameSize = zip.U16(at + 28), extraSize = zip.U16(at + 30), commentSize = zip.U16(at + 32);
  ZipEntry entry{.name = std::string(zip.Slice(at + kCentralSize, nameSize)),
                 .method = zip.U16(at + 10),
                 .crc = zip.U32(at + 16),
                 .packed = zip.U32(at + 20),
                 .size = zip.U32(at + 24),
                 .record = at,
                 .header = zip.U32(at + 42)};
  ReadZip64(zip, at + kCentralSize + nameSize, extraSize, entry);
  if (zip.U16(at + 8) & kEncryptedFlags)
    throw FileError(zip.File() + " is encrypted (" + PartInWords(entry.name) + "); save it without a password.");
  if (entry.method != kStored && entry.method != kDeflated)
    throw zip.Unsafe(entry, "is packed by the unknown method " + std::to_string(entry.method));
  entry.recordEnd = at += kCentralSize + nameSize + extraSize + commentSize;
  return entry;
}

// The local header must tell the same, and the data lie before the directory.
void FindData(const Archive& zip, ZipEntry& entry, std::uint64_t directory) {
  const std::uint64_t at = entry.header;
  zip.Slice(at, kLocalSize);
  const std::uint64_t nameSize = zip.U16(at + 26);
  bool agrees =
      zip.U32(at) == kLocalHeader && zip.Slice(at + kLocalSize, nameSize) == entry.name && zip.U16(at + 8) == entry.method;
  if (!(zip.U16(at + 6) & kDescriptorFlag)) {
    const auto same = [&](std::uint64_t field, std::uint64_t value) {
      return zip.U32(field) == value || zip.U32(field) == 0xFFFFFFFF;
    };
    agrees = agrees && zip.U32(at + 14) == entry.crc && same(at + 18, entry.packed) && same(at + 22, entry.size);
  }
  entry.data = at + kLocalSize + nameSize + zip.U16(at + 28);
  if (!agrees || entry.data > directory || entry.packed > directory - entry.data)
    throw FileError::Damaged(zip.File(), PartInWords(entry.name) + " is not what the ZIP directory says");
}

void CheckNoOverlap(const Archive& zip, const std::vector<ZipEntry>& entries) {
  std::vector<const ZipEntry*> inOrder;
  for (const ZipEntry& entry : entries) inOrder.push_back(&entry);
  std::sort(inOrder.begin(), inOrder.end(), [](const ZipEntry* a, const ZipEntry* b) { return a->header < b->header; });
  for (size_t i = 1; i < inOrder.size(); ++i)
    if (inOrder[i]->header < inOrder[i - 1]->data + inOrder[i - 1]->packed)
      throw zip.Unsafe(*inOrder[i], "overlaps another part");
}

void CheckSizes(const Archive& zip, const std::vector<ZipEntry>& entries) {
  std::uint64_t total = 0;
  for (const ZipEntry& entry : entries) {
    if (entry.size > kMaxUnpackedBytes || (total += entry.size) > kMaxUnpackedBytes)
      throw zip.Unsafe(entry, "brings the package to more than " + std::to_string(kMaxUnpackedBytes >> 20) + " MiB");
    if (IsPackedTooTightly(entry.size, entry.packed))
      throw zip.Unsafe(entry, "is packed more than " + std::to_string(kMaxCompressionRatio) + " to one");
    if (entry.method == kStored && entry.size != entry.packed)
      throw FileError::Damaged(zip.File(), PartInWords(entry.name) + " is not as long as the ZIP directory says");
  }
}

bool IsDeviceName(std::string_view segment) {
  static constexpr std::array<std::string_view, 4> kPlain{"con", "prn", "aux", "nul"};
  const std::string stem = LowerAscii(segment.substr(0, segment.find('.')));
  if (std::find(kPlain.begin(), kPlain.end(), stem) != kPlain.end()) return true;
  return stem.size() == 4 && (stem.starts_with("com") || stem.starts_with("lpt")) && stem[3] >= '1' && stem[3] <= '9';
}

// What is wrong with a name, or nothing.
const char* NameFault(std::string_view name) {
  if (name.empty()) return "has no name";
  if (Contains(name, {"\0", 1})) return "has a NUL character in its name";
  if (Contains(name, "\\")) return "has a backslash in its name";
  if (Contains(name, ":")) return "has a drive in its name";
  if (name.front() == '/') return "has an absolute name";
  if (name.back() == '/') name.remove_suffix(1);
  while (true) {
    const size_t slash = name.find('/');
    const std::string_view segment = name.substr(0, slash);
    if (segment == "..") return "climbs out of the package";
    if (segment.empty() || segment == ".") return "has an empty step in its name";
    if (IsDeviceName(segment)) return "has the name of a device";
    if (slash == std::string_view::npos) return nullptr;
    name.remove_prefix(slash + 1);
  }
}

void CheckNames(const Archive& zip, const std::vector<ZipEntry>& entries) {
  std::unordered_set<std::string> names;
  for (const ZipEntry& entry : entries) {
    if (const char* fault = NameFault(entry.name)) throw zip.Unsafe(entry, fault);
    if (!names.insert(LowerAscii(entry.name)).second) throw zip.Unsafe(entry, "is there twice");
  }
}

}  // namespace

ZipDirectory ReadZipDirectory(std::string_view bytes, const std::string& file) {
  const Archive zip(bytes, file);
  const Directory directory = FindDirectory(zip);
  std::vector<ZipEntry> entries;
  std::uint64_t at = directory.offset;
  for (std::uint64_t i = 0; i < directory.count; ++i) entries.push_back(ReadEntry(zip, at));
  if (at != directory.offset + directory.size) throw zip.Contradiction();
  CheckNames(zip, entries);
  CheckSizes(zip, entries);
  for (ZipEntry& entry : entries) FindData(zip, entry, directory.offset);
  CheckNoOverlap(zip, entries);
  return {std::move(entries), directory.comment};
}

bool IsPackedTooTightly(std::uint64_t size, std::uint64_t packed) {
  return size > kRatioFreeBytes && (size - 1) / kMaxCompressionRatio >= packed;
}

}  // namespace vardo
