#include "platform/OutputFile.h"

#include "base/FileError.h"

#include <system_error>

namespace vardo {
namespace {

namespace fs = std::filesystem;

constexpr size_t kPiece = 64 * 1024;

FileError NotWritten(const fs::path& target, const std::string& reason) {
  return FileError(PathInWords(target) + " could not be written (" + reason + "); choose another place.");
}

// Neither a plain file nor a name that is free.
bool IsDevice(const fs::path& target) {
  std::error_code error;
  const fs::file_status status = fs::status(target, error);
  return fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
}

}  // namespace

OutputFile::OutputFile(FileSystem& files, const fs::path& target) : std::ostream(nullptr), target_(target) {
  if (IsDevice(target)) {
    if (!device_.open(target, std::ios::out | std::ios::binary)) throw NotWritten(target, "it may not be opened");
    rdbuf(&device_);
    return;
  }
  if (fs::is_directory(target)) throw NotWritten(target, "it is a folder");
  try {
    file_ = files.Resolve(target);
    fs::path name = file_.parent_path() / ".";
    name += file_.filename();
    name += ".writing";
    pieces_.temporary = files.CreateTemporary(name, file_);
  } catch (const std::system_error& error) {
    throw NotWritten(target, error.code().message());
  }
  rdbuf(&pieces_);
}

OutputFile::~OutputFile() = default;

void OutputFile::Finish() {
  flush();
  if (device_.is_open()) {
    if (fail() || !device_.close()) throw NotWritten(target_, "it takes no more");
    return;
  }
  try {
    if (fail()) throw NotWritten(target_, pieces_.failure);
    pieces_.temporary->RenameOver(file_);
  } catch (const std::system_error& error) {
    throw NotWritten(target_, error.code().message());
  }
}

OutputFile::Pieces::int_type OutputFile::Pieces::overflow(int_type byte) {
  const char character = traits_type::to_char_type(byte);
  return xsputn(&character, 1) == 1 ? byte : traits_type::eof();
}

std::streamsize OutputFile::Pieces::xsputn(const char* bytes, std::streamsize count) {
  waiting_.append(bytes, static_cast<size_t>(count));
  return waiting_.size() < kPiece || sync() == 0 ? count : 0;
}

int OutputFile::Pieces::sync() {
  try {
    if (!waiting_.empty()) temporary->Write(waiting_);
    waiting_.clear();
    return 0;
  } catch (const std::system_error& error) {
    failure = error.code().message();
    return -1;
  }
}

}  // namespace vardo
