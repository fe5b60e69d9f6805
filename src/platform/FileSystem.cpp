#include "platform/FileSystem.h"

#include "base/FileError.h"
#include "base/Text.h"

#include <algorithm>
#include <fstream>
#include <system_error>
#include <utility>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace vardo {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Throw(std::errc code) { throw std::system_error(std::make_error_code(code)); }

void Discard(FileSystem::Temporary& temporary) {
  try {
    temporary.Remove();
  } catch (const std::system_error&) {  // the next save of this target uses it again
  }
}

#ifdef _WIN32

[[noreturn]] void ThrowLast() { throw std::system_error(static_cast<int>(GetLastError()), std::system_category()); }

class MachineTemporary : public FileSystem::Temporary {
 public:
  // Opened for us alone, so a second save of the same target fails here.
  explicit MachineTemporary(fs::path name)
      : name_(std::move(name)),
        file_(CreateFileW(name_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)) {
    if (file_ != INVALID_HANDLE_VALUE) return;
    if (GetLastError() == ERROR_SHARING_VIOLATION) Throw(std::errc::device_or_resource_busy);
    ThrowLast();
  }
  ~MachineTemporary() override { Close(); }

  void Write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const DWORD piece = static_cast<DWORD>(std::min<size_t>(bytes.size(), 1u << 30));
      DWORD written = 0;
      if (!WriteFile(file_, bytes.data(), piece, &written, nullptr)) ThrowLast();
      bytes.remove_prefix(written);
    }
  }
  void Sync() override {
    if (!FlushFileBuffers(file_)) ThrowLast();
  }
  void RenameOver(const fs::path& target) override {
    Close();
    if (!MoveFileExW(name_.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) ThrowLast();
  }
  void Remove() override {
    Close();
    if (!DeleteFileW(name_.c_str())) ThrowLast();
  }

 private:
  void Close() {
    if (file_ != INVALID_HANDLE_VALUE) CloseHandle(std::exchange(file_, INVALID_HANDLE_VALUE));
  }

  fs::path name_;
  HANDLE file_;
};

void CheckWritable(const fs::path& target) {
  const DWORD attributes = GetFileAttributesW(target.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_READONLY) Throw(std::errc::permission_denied);
}

std::unique_ptr<MachineTemporary> OpenTemporary(const fs::path& name, const fs::path&) {
  return std::make_unique<MachineTemporary>(name);
}

// The rename has written through already.
void SyncNames(const fs::path&) {}

#else

[[noreturn]] void ThrowLast() { throw std::system_error(errno, std::generic_category()); }

// Holds a lock on the file until it has its final name, so that two saves of one target never share a temporary file.
class MachineTemporary : public FileSystem::Temporary {
 public:
  explicit MachineTemporary(fs::path name) : name_(std::move(name)) {
    do {
      Close();
      file_ = open(name_.c_str(), O_CREAT | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, 0666);
      if (file_ < 0) ThrowLast();
      if (flock(file_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        Close();
        Throw(std::errc::device_or_resource_busy);
      }
    } while (!IsOurs());
    if (ftruncate(file_, 0) != 0) CloseAndThrow();
  }
  ~MachineTemporary() override { Close(); }

  void TakeAfter(const struct stat& target) {
    // Only root may give files away; for others the file stays their own.
    [[maybe_unused]] const int given = fchown(file_, target.st_uid, target.st_gid);
    if (fchmod(file_, target.st_mode & 07777) != 0) ThrowLast();
  }
  void Write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t written = write(file_, bytes.data(), bytes.size());
      if (written < 0 && errno != EINTR) ThrowLast();
      if (written > 0) bytes.remove_prefix(static_cast<size_t>(written));
    }
  }
  void Sync() override {
    if (fsync(file_) != 0) ThrowLast();
  }
  void RenameOver(const fs::path& target) override {
    if (rename(name_.c_str(), target.c_str()) != 0) ThrowLast();
  }
  void Remove() override {
    if (unlink(name_.c_str()) != 0) ThrowLast();
  }

 private:
  // Between opening and locking, another save may have renamed the file; and a further name it has is not for us to empty.
  bool IsOurs() {
    struct stat opened, named;
    if (fstat(file_, &opened) != 0) CloseAndThrow();
    if (lstat(name_.c_str(), &named) != 0 || opened.st_ino != named.st_ino || opened.st_dev != named.st_dev) return false;
    if (opened.st_nlink == 1) return true;
    if (unlink(name_.c_str()) != 0) CloseAndThrow();
    return false;
  }
  void Close() {
    if (file_ >= 0) close(std::exchange(file_, -1));
  }
  [[noreturn]] void CloseAndThrow() {
    const int error = errno;
    Close();
    throw std::system_error(error, std::generic_category());
  }

  fs::path name_;
  int file_ = -1;
};

void CheckWritable(const fs::path& target) {
  if (access(target.c_str(), W_OK) != 0 && errno != ENOENT) ThrowLast();
}

std::unique_ptr<MachineTemporary> OpenTemporary(const fs::path& name, const fs::path& target) {
  auto temporary = std::make_unique<MachineTemporary>(name);
  struct stat found;
  if (stat(target.c_str(), &found) != 0) return temporary;
  try {
    temporary->TakeAfter(found);
  } catch (const std::system_error&) {
    Discard(*temporary);
    throw;
  }
  return temporary;
}

void SyncNames(const fs::path& directory) {
  const int folder = open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder < 0) ThrowLast();
  const bool synced = fsync(folder) == 0 || errno == EINVAL;  // some file systems cannot sync a folder, and need not
  const int error = errno;
  close(folder);
  if (!synced) throw std::system_error(error, std::generic_category());
}

#endif

class Machine : public FileSystem {
 public:
  fs::path Resolve(const fs::path& target) override { return fs::is_symlink(target) ? fs::weakly_canonical(target) : target; }
  std::unique_ptr<Temporary> CreateTemporary(const fs::path& name, const fs::path& target) override {
    if (fs::is_directory(target)) Throw(std::errc::is_a_directory);
    CheckWritable(target);
    return OpenTemporary(name, target);
  }
  void SyncDirectory(const fs::path& directory) override { SyncNames(directory); }
};

// Hidden where a leading dot hides, and not longer than a file name may be.
fs::path TemporaryNameFor(const fs::path& target) {
  constexpr size_t kLongest = 200;
  fs::path name = target.parent_path() / ".";
  name += target.filename().native().substr(0, kLongest);
  name += ".saving";
  return name;
}

FileError NotSaved(const fs::path& target, const std::system_error& error) {
  return FileError(PathInWords(target) + " could not be saved (" + error.code().message() +
                   ") and is as it was; save the drawing in another place.");
}

void WriteAndRename(FileSystem::Temporary& temporary, const fs::path& target, std::string_view bytes) {
  try {
    temporary.Write(bytes);
    temporary.Sync();
    temporary.RenameOver(target);
  } catch (const std::system_error&) {
    Discard(temporary);
    throw;
  }
}

}  // namespace

FileSystem& MachineFileSystem() {
  static Machine machine;
  return machine;
}

std::string PathInWords(const fs::path& path) {
  const std::u8string text = path.u8string();
  return InWords(std::string(text.begin(), text.end()));
}

std::string ReadWholeFile(const fs::path& path, std::uint64_t most) {
  const auto unreadable = [&](const std::string& why) {
    return FileError(PathInWords(path) + " cannot be read (" + why + "); check its name and your rights to it.");
  };
  std::error_code error;
  if (fs::is_directory(path, error)) throw unreadable("it is a folder");
  const std::uintmax_t size = fs::file_size(path, error);
  if (error) throw unreadable(error.message());
  if (size > most) throw FileError::Unsafe(PathInWords(path), "it is larger than " + std::to_string(most >> 20) + " MiB");
  std::string bytes(size, '\0');
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) throw unreadable("it may not be opened");
  if (!file.read(bytes.data(), static_cast<std::streamsize>(size))) throw unreadable("it ends early");
  return bytes;
}

void WriteFileAtomically(FileSystem& files, const fs::path& target, std::string_view bytes) {
  fs::path file = target;
  try {
    file = files.Resolve(target);
    WriteAndRename(*files.CreateTemporary(TemporaryNameFor(file), file), file, bytes);
  } catch (const std::system_error& error) {
    throw NotSaved(target, error);
  }
  try {
    files.SyncDirectory(file.parent_path());
  } catch (const std::system_error& error) {
    throw FileError(PathInWords(target) + " was saved, but its folder could not be synced (" + error.code().message() +
                    "); save it again.");
  }
}

}  // namespace vardo
