#include "platform/FileSystem.h"

#include <windows.h>

#include <algorithm>
#include <system_error>
#include <utility>

namespace vardo {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void ThrowLast() { throw std::system_error(static_cast<int>(GetLastError()), std::system_category()); }
[[noreturn]] void Throw(std::errc code) { throw std::system_error(std::make_error_code(code)); }

// Removes what a broken save left. A file that another save has open is not to be opened or removed.
void RemoveStale(const fs::path& name) {
  if (GetFileAttributesW(name.c_str()) == INVALID_FILE_ATTRIBUTES) return;
  SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_NORMAL);
  if (DeleteFileW(name.c_str()) || GetLastError() == ERROR_FILE_NOT_FOUND) return;
  if (GetLastError() == ERROR_SHARING_VIOLATION) Throw(std::errc::device_or_resource_busy);
  throw std::system_error(std::make_error_code(std::errc::file_exists), PathInWords(name) + " is in the way");
}

class Win32Temporary : public FileSystem::Temporary {
 public:
  // Opened for us alone, so a second save of the same target fails here.
  explicit Win32Temporary(fs::path name) : name_(std::move(name)) {
    RemoveStale(name_);
    file_ = CreateFileW(name_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file_ != INVALID_HANDLE_VALUE) return;
    if (GetLastError() == ERROR_SHARING_VIOLATION || GetLastError() == ERROR_FILE_EXISTS)
      Throw(std::errc::device_or_resource_busy);
    ThrowLast();
  }
  ~Win32Temporary() override {
    Close();
    if (!renamed_) DeleteFileW(name_.c_str());
  }

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
    renamed_ = true;
  }

 private:
  void Close() {
    if (file_ != INVALID_HANDLE_VALUE) CloseHandle(std::exchange(file_, INVALID_HANDLE_VALUE));
  }

  fs::path name_;
  HANDLE file_ = INVALID_HANDLE_VALUE;
  bool renamed_ = false;
};

class Win32Files : public FileSystem {
 public:
  fs::path Resolve(const fs::path& target) override { return FollowLinks(target); }

  std::unique_ptr<Temporary> CreateTemporary(const fs::path& name, const fs::path& target) override {
    const DWORD attributes = GetFileAttributesW(target.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_READONLY) Throw(std::errc::permission_denied);
    return std::make_unique<Win32Temporary>(name);
  }

  // The rename has written through already.
  void SyncDirectory(const fs::path&) override {}
};

}  // namespace

FileSystem& MachineFileSystem() {
  static Win32Files files;
  return files;
}

}  // namespace vardo
