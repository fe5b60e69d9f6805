#include "package/ZipArchive.h"

#include "base/FileError.h"
#include "package/ZipFormat.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <utility>

namespace vardo {
namespace {

constexpr std::uint16_t kVersion = 20;  // of the format: deflate
constexpr std::uint16_t kDosDate1980 = 0x0021, kDosMidnight = 0;

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

void SetNumber(std::string& bytes, size_t at, std::uint64_t number, int size) {
  for (int i = 0; i < size; ++i) bytes[at++] = static_cast<char>(number >> (8 * i));
}

struct Field {
  std::uint64_t number;
  int size;
};

void Append(std::string& bytes, std::initializer_list<Field> fields) {
  for (const Field& field : fields) {
    bytes.append(static_cast<size_t>(field.size), '\0');
    SetNumber(bytes, bytes.size() - static_cast<size_t>(field.size), field.number, field.size);
  }
}

}  // namespace

// ------------------------------------------------------------------------------------------------------------ reading

ZipArchive::ZipArchive(std::string file) : file_(std::move(file)) {}

ZipArchive::ZipArchive(std::string bytes, std::string file)
    : file_(std::move(file)), bytes_(std::move(bytes)), directory_(ReadZipDirectory(bytes_, file_)) {}

std::string_view ZipArchive::Packed(const ZipEntry& entry) const {
  return std::string_view(bytes_).substr(entry.data, entry.packed);
}

void ZipArchive::CheckSum(const ZipEntry& entry, std::string_view content) const {
  if (Crc32(content) != entry.crc) throw FileError::Damaged(file_, PartInWords(entry.name) + " fails its checksum");
}

ByteArray ZipArchive::Read(size_t index) const {
  const ZipEntry& entry = Entries()[index];
  ByteArray content = ByteArray::OfSize(entry.size);
  Inflated inflated = Inflated::Whole;
  if (entry.method == kStored)
    Packed(entry).copy(content.data.get(), content.size);
  else
    inflated = Inflate(Packed(entry), content.data.get(), content.size);
  if (inflated == Inflated::WrongLength)
    throw FileError::Damaged(file_, PartInWords(entry.name) + " is not as long as the ZIP directory says");
  if (inflated == Inflated::BadData) throw FileError::Damaged(file_, PartInWords(entry.name) + " cannot be unpacked");
  CheckSum(entry, content.View());
  return content;
}

void ZipArchive::Check(size_t index) const {
  const ZipEntry& entry = Entries()[index];
  if (entry.method == kStored)
    CheckSum(entry, Packed(entry));
  else
    Read(index);
}

// ------------------------------------------------------------------------------------------------------------ writing

ZipWriter::ZipWriter(const ZipArchive& original) : original_(original) { bytes_.reserve(original.Bytes().size()); }

// Sizes are known here, so none need follow the data or stand in the extra fields that exceed 32 bits; those stay and say
// nothing.
void ZipWriter::Copy(size_t index) {
  const ZipEntry& entry = original_.Entries()[index];
  const std::string_view all = original_.Bytes();
  const size_t header = bytes_.size(), record = directory_.size();
  bytes_ += all.substr(entry.header, entry.data + entry.packed - entry.header);
  directory_ += all.substr(entry.record, entry.recordEnd - entry.record);
  const auto unsetDescriptor = [](std::string& bytes, size_t flags) { bytes[flags] &= static_cast<char>(~kDescriptorFlag); };
  if (bytes_[header + 6] & kDescriptorFlag) {
    unsetDescriptor(bytes_, header + 6);
    SetNumber(bytes_, header + 14, entry.crc, 4);
    SetNumber(bytes_, header + 18, entry.packed, 4);
    SetNumber(bytes_, header + 22, entry.size, 4);
  }
  unsetDescriptor(directory_, record + 8);
  SetNumber(directory_, record + 20, entry.packed, 4);
  SetNumber(directory_, record + 24, entry.size, 4);
  SetNumber(directory_, record + 42, header, 4);
  ++count_;
}

void ZipWriter::Add(std::string_view name, std::string_view content) {
  const ByteArray deflated = Deflate(content);
  // What readers would take for a bomb is better stored.
  const bool store = deflated.size == 0 || IsPackedTooTightly(content.size(), deflated.size);
  const std::string_view packed = store ? content : deflated.View();
  const size_t header = bytes_.size();
  std::string shared;
  Append(shared, {{kVersion, 2},
                  {IsAscii(name) ? 0u : kUtf8NameFlag, 2},
                  {store ? kStored : kDeflated, 2},
                  {kDosMidnight, 2},
                  {kDosDate1980, 2},
                  {Crc32(content), 4},
                  {packed.size(), 4},
                  {content.size(), 4},
                  {name.size(), 2},
                  {0, 2}});
  Append(bytes_, {{kLocalHeader, 4}});
  bytes_.append(shared).append(name).append(packed);
  Append(directory_, {{kCentralHeader, 4}, {kVersion, 2}});
  directory_ += shared;
  Append(directory_, {{0, 2}, {0, 2}, {0, 2}, {0, 4}, {header, 4}});
  directory_ += name;
  ++count_;
}

std::string ZipWriter::Finish() {
  const size_t directory = bytes_.size();
  bytes_ += directory_;
  Append(bytes_, {{kEnd, 4}, {0, 2}, {0, 2}, {count_, 2}, {count_, 2}, {directory_.size(), 4}, {directory, 4}});
  const std::string_view comment = original_.Comment();
  Append(bytes_, {{comment.size(), 2}});
  bytes_ += comment;
  return std::move(bytes_);
}

}  // namespace vardo
