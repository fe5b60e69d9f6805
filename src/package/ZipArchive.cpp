#include "package/ZipArchive.h"

#include "base/FileError.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace vardo {
namespace {

constexpr std::uint32_t kDeflateLevel = 6;
constexpr std::uint16_t kDosDate1980 = 0x0021, kDosMidnight = 0;
constexpr size_t kPieceSize = 64 * 1024;

struct FreeSource {
  void operator()(zip_source_t* source) const { zip_source_free(source); }
};
using Source = std::unique_ptr<zip_source_t, FreeSource>;

// The bytes as a source to read from, which does not own them.
Source SourceOf(const std::string& bytes, const std::string& file) {
  zip_error_t error;
  zip_error_init(&error);
  Source source(zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error));
  if (!source) throw FileError::Damaged(file, zip_error_strerror(&error));
  return source;
}

// The same to write to. It needs a copy: once written, a source frees what it was made of, whether it was told to own it or not.
Source WritableSourceOf(const std::string& bytes) {
  struct Free {
    void operator()(void* memory) const { std::free(memory); }
  };
  std::unique_ptr<void, Free> copy(bytes.empty() ? nullptr : std::malloc(bytes.size()));
  if (copy) std::memcpy(copy.get(), bytes.data(), bytes.size());
  Source source(copy || bytes.empty() ? zip_source_buffer_create(copy.get(), bytes.size(), 1, nullptr) : nullptr);
  if (!source) throw std::bad_alloc();
  (void)copy.release();
  return source;
}

// An archive over the source. The archive takes over one reference of it.
zip_t* Open(Source source, int flags, const std::string& file) {
  zip_error_t error;
  zip_error_init(&error);
  zip_t* zip = zip_open_from_source(source.get(), flags, &error);
  if (!zip) {
    const std::string reason = zip_error_strerror(&error);
    zip_error_fini(&error);
    throw FileError::Damaged(file, "its ZIP directory cannot be read (" + reason + ")");
  }
  (void)source.release();
  return zip;
}

// The inflated bytes of one entry, in order. The checksum and the length are compared once the end is reached.
class EntryStream {
 public:
  EntryStream(zip_t* zip, size_t index, const ZipEntry& entry, const std::string& file)
      : entry_(entry), file_(file), stream_(zip_fopen_index(zip, index, 0)) {
    if (!stream_) throw Damaged("cannot be unpacked");
  }
  ~EntryStream() { zip_fclose(stream_); }
  EntryStream(const EntryStream&) = delete;
  EntryStream& operator=(const EntryStream&) = delete;

  // Up to `size` bytes; 0 at the end.
  size_t Read(char* out, size_t size) {
    const zip_int64_t got = zip_fread(stream_, out, size);
    if (got >= 0) return static_cast<size_t>(got);
    const int code = zip_error_code_zip(zip_file_get_error(stream_));
    throw Damaged(code == ZIP_ER_CRC      ? "fails its checksum"
                  : code == ZIP_ER_INCONS ? "is not as long as the ZIP directory says"
                                          : "cannot be unpacked");
  }
  FileError Damaged(const std::string& what) const { return FileError::Damaged(file_, PartInWords(entry_.name) + " " + what); }
  FileError WrongLength() const { return Damaged("is not as long as the ZIP directory says"); }

 private:
  const ZipEntry& entry_;
  const std::string& file_;
  zip_file_t* stream_;
};

// What a failing call on the archive being written means: memory has run out, or the archive being copied is broken.
[[noreturn]] void ThrowUnwritable(zip_t* zip, const std::string& file) {
  throw FileError(file + " could not be packed (" + zip_strerror(zip) + "); close other programs and save it again.");
}

// The method to ask for so that an entry is deflated at our level. The level is dropped when the method is the one an entry has
// already ("default" for a new one), and the default method is to deflate.
zip_int32_t MethodFor(const ZipEdit& edit, const std::vector<ZipEntry>& entries) {
  return edit.index && entries[*edit.index].method == ZIP_CM_DEFLATE ? ZIP_CM_DEFAULT : ZIP_CM_DEFLATE;
}

void Apply(zip_t* zip, const ZipEdit& edit, const std::vector<ZipEntry>& entries, const std::string& file) {
  if (!edit.content) {
    if (zip_delete(zip, *edit.index) < 0) ThrowUnwritable(zip, file);
    return;
  }
  Source content(zip_source_buffer(zip, edit.content->data(), edit.content->size(), 0));
  if (!content) ThrowUnwritable(zip, file);
  const zip_int64_t index =
      edit.index ? static_cast<zip_int64_t>(*edit.index) : zip_file_add(zip, edit.name.c_str(), content.get(), ZIP_FL_ENC_UTF_8);
  if (index < 0 || (edit.index && zip_file_replace(zip, *edit.index, content.get(), 0) < 0)) ThrowUnwritable(zip, file);
  (void)content.release();
  if (zip_set_file_compression(zip, index, MethodFor(edit, entries), kDeflateLevel) < 0 ||
      zip_file_set_dostime(zip, index, kDosMidnight, kDosDate1980, 0) < 0)
    ThrowUnwritable(zip, file);
}

std::string Contents(zip_source_t* source, const std::string& file) {
  zip_stat_t stat;
  if (zip_source_open(source) < 0 || zip_source_stat(source, &stat) < 0)
    throw FileError(file + " could not be packed; close other programs and save it again.");
  std::string bytes(stat.size, '\0');
  const zip_int64_t got = zip_source_read(source, bytes.data(), bytes.size());
  zip_source_close(source);
  if (got != static_cast<zip_int64_t>(bytes.size()))
    throw FileError(file + " could not be packed; close other programs and save it again.");
  return bytes;
}

}  // namespace

ZipArchive::ZipArchive(std::string file) : file_(std::move(file)) {}

ZipArchive::ZipArchive(std::string bytes, std::string file) : file_(std::move(file)), bytes_(std::move(bytes)) {
  entries_ = ReadZipDirectory(bytes_, file_);
  zip_.reset(Open(SourceOf(bytes_, file_), ZIP_RDONLY, file_));
  // Two readers of one directory have to agree, or a third may see yet another drawing.
  bool agree = zip_get_num_entries(zip_.get(), 0) == static_cast<zip_int64_t>(entries_.size());
  for (size_t i = 0; agree && i < entries_.size(); ++i) {
    zip_stat_t stat;
    agree = zip_stat_index(zip_.get(), i, ZIP_FL_ENC_RAW, &stat) == 0 && entries_[i].name == stat.name &&
            stat.size == entries_[i].size && stat.comp_size == entries_[i].packed && stat.crc == entries_[i].crc;
  }
  if (!agree) throw FileError::Damaged(file_, "its ZIP directory contradicts the file");
}

void ZipArchive::Read(size_t index, char* out) const {
  EntryStream stream(zip_.get(), index, entries_[index], file_);
  size_t left = entries_[index].size;
  while (left > 0) {
    const size_t got = stream.Read(out, left);
    if (got == 0) throw stream.WrongLength();
    out += got;
    left -= got;
  }
  char beyond;
  if (stream.Read(&beyond, 1) != 0) throw stream.WrongLength();
}

void ZipArchive::Check(size_t index) const {
  EntryStream stream(zip_.get(), index, entries_[index], file_);
  std::array<char, kPieceSize> piece;
  std::uint64_t size = 0;
  while (const size_t got = stream.Read(piece.data(), piece.size()))
    if ((size += got) > entries_[index].size) throw stream.WrongLength();
  if (size != entries_[index].size) throw stream.WrongLength();
}

std::string ZipArchive::With(std::vector<ZipEdit> edits) const {
  Source source = WritableSourceOf(bytes_);
  zip_source_keep(source.get());
  std::unique_ptr<zip_t, Discard> zip(Open(Source(source.get()), bytes_.empty() ? ZIP_CREATE | ZIP_TRUNCATE : 0, file_));
  for (const ZipEdit& edit : edits) Apply(zip.get(), edit, entries_, file_);
  if (zip_close(zip.get()) < 0) ThrowUnwritable(zip.get(), file_);
  (void)zip.release();
  // libzip copies local headers as they are but marks no ASCII name as UTF-8 in the directory; strict readers want the two alike.
  std::string bytes = Contents(source.get(), file_);
  MarkNamesAsLocalHeadersDo(bytes, file_);
  return bytes;
}

}  // namespace vardo
