#include "platform/FileSystem.h"

#include "base/Text.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <map>
#include <optional>
#include <system_error>
#include <tuple>
#include <utility>

namespace vardo {
namespace {

namespace fs = std::filesystem;

constexpr int kAttempts = 10;

[[noreturn]] void ThrowLast() { throw std::system_error(errno, std::generic_category()); }
[[noreturn]] void Throw(std::errc code) { throw std::system_error(std::make_error_code(code)); }

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  int get() const { return number_; }
  bool isOpen() const { return number_ >= 0; }

 private:
  int number_;
};

struct stat StatusOf(const Descriptor& file) {
  struct stat status;
  if (fstat(file.get(), &status) != 0) ThrowLast();
  return status;
}

// ------------------------------------------------------------------------------------------------ extended attributes

using Attributes = std::map<std::string, std::string>;

// What the machine itself puts on files is its own to decide.
bool IsMachines(const std::string& attribute) { return attribute.starts_with("security."); }

// What `read` says of a file, which it says in two steps: how long it is, and it. None when it cannot be read.
template <class Read>
std::optional<std::string> ReadSized(const Read& read) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const ssize_t size = read(nullptr, 0);
    if (size < 0) return std::nullopt;
    std::string text(static_cast<size_t>(size), '\0');
    const ssize_t got = read(text.data(), text.size());
    if (got >= 0) return text.substr(0, static_cast<size_t>(got));
    if (errno != ERANGE) return std::nullopt;
  }
  return std::nullopt;
}

Attributes AttributesOf(const fs::path& file) {
  const auto names = ReadSized([&](char* out, size_t size) { return listxattr(file.c_str(), out, size); });
  if (!names && errno != ENOTSUP) ThrowLast();
  Attributes attributes;
  for (size_t at = 0; names && at < names->size();) {
    const std::string name = names->c_str() + at;
    at += name.size() + 1;
    const auto value = ReadSized([&](char* out, size_t size) { return getxattr(file.c_str(), name.c_str(), out, size); });
    if (value)
      attributes[name] = *value;
    else if (!IsMachines(name))
      ThrowLast();
  }
  return attributes;
}

// Gives `to` the attributes of `from`, no more and no fewer: its folder may have handed some down.
void KeepAttributes(const fs::path& from, const fs::path& to) {
  const Attributes wanted = AttributesOf(from), present = AttributesOf(to);
  const auto check = [](const std::string& name, int result) {
    if (result != 0 && !IsMachines(name))
      throw std::system_error(errno, std::generic_category(), "its attribute " + InWords(name) + " cannot be kept");
  };
  for (const auto& [name, value] : present)
    if (!wanted.contains(name)) check(name, removexattr(to.c_str(), name.c_str()));
  for (const auto& [name, value] : wanted) {
    const auto has = present.find(name);
    if (has == present.end() || has->second != value)
      check(name, setxattr(to.c_str(), name.c_str(), value.data(), value.size(), 0));
  }
}

// ----------------------------------------------------------------------------------------------------- temporary files

bool HasName(const Descriptor& file) {
  struct stat status;
  return fstat(file.get(), &status) == 0 && status.st_nlink > 0;
}

bool Lock(const Descriptor& file) { return flock(file.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK; }

// Removes what a broken save left, or whatever else bears the name, unless another save holds its lock.
void RemoveStale(const fs::path& name) {
  const Descriptor file(open(name.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
  if (file.isOpen() && !Lock(file)) Throw(std::errc::device_or_resource_busy);
  if (unlink(name.c_str()) != 0 && errno != ENOENT)
    throw std::system_error(std::make_error_code(std::errc::file_exists), PathInWords(name) + " is in the way");
}

// A new file, locked so that two saves of one target never share it. Between making and locking it another save may have taken
// it for a stale one and removed it; then it has no name any more.
Descriptor CreateLocked(const fs::path& name) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    Descriptor file(open(name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (!file.isOpen()) {
      if (errno != EEXIST) ThrowLast();
      RemoveStale(name);
    } else if (Lock(file) && HasName(file)) {
      return file;
    }
  }
  RemoveStale(name);
  Throw(std::errc::device_or_resource_busy);
}

class PosixTemporary : public FileSystem::Temporary {
 public:
  explicit PosixTemporary(const fs::path& name) : name_(name), file_(CreateLocked(name)) {}
  ~PosixTemporary() override {
    if (!renamed_) unlink(name_.c_str());
  }

  void TakeAfter(const fs::path& target, const struct stat& wanted) {
    const struct stat own = StatusOf(file_);
    // Only root may give files away; for others the file becomes their own, but stays its group's.
    if (own.st_uid != wanted.st_uid) std::ignore = fchown(file_.get(), wanted.st_uid, static_cast<gid_t>(-1));
    if (own.st_gid != wanted.st_gid && fchown(file_.get(), static_cast<uid_t>(-1), wanted.st_gid) != 0)
      throw std::system_error(errno, std::generic_category(), "its group cannot be kept");
    KeepAttributes(target, name_);
    if (fchmod(file_.get(), wanted.st_mode & 07777) != 0) ThrowLast();
  }
  void Write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t written = write(file_.get(), bytes.data(), bytes.size());
      if (written < 0 && errno != EINTR) ThrowLast();
      if (written > 0) bytes.remove_prefix(static_cast<size_t>(written));
    }
  }
  void Sync() override {
    if (fsync(file_.get()) != 0) ThrowLast();
  }
  void RenameOver(const fs::path& target) override {
    if (rename(name_.c_str(), target.c_str()) != 0) ThrowLast();
    renamed_ = true;
  }

 private:
  fs::path name_;
  Descriptor file_;
  bool renamed_ = false;
};

class PosixFiles : public FileSystem {
 public:
  fs::path Resolve(const fs::path& target) override { return FollowLinks(target); }

  std::unique_ptr<Temporary> CreateTemporary(const fs::path& name, const fs::path& target) override {
    struct stat found;
    const bool isThere = stat(target.c_str(), &found) == 0;
    if (isThere ? access(target.c_str(), W_OK) != 0 : errno != ENOENT) ThrowLast();
    auto temporary = std::make_unique<PosixTemporary>(name);
    if (isThere) temporary->TakeAfter(target, found);
    return temporary;
  }

  void SyncDirectory(const fs::path& directory) override {
    const Descriptor folder(open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen()) ThrowLast();
    // Some file systems cannot sync a folder, and need not.
    if (fsync(folder.get()) != 0 && errno != EINVAL) ThrowLast();
  }
};

}  // namespace

FileSystem& MachineFileSystem() {
  static PosixFiles files;
  return files;
}

}  // namespace vardo
