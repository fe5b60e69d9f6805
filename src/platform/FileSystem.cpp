#include "platform/FileSystem.h"

#include "base/FileError.h"
#include "base/Text.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <system_error>
#include <utility>

namespace vardo {
namespace {

namespace fs = std::filesystem;

constexpr int kMostLinks = 40;
constexpr int kTemporaryNames = 8;
constexpr size_t kPieceSize = 64 * 1024;

// What a file is that a drawing can neither be read from nor saved to; null for a plain one, or none.
const char* ObstacleOf(const fs::path& path) {
  static constexpr std::pair<fs::file_type, const char*> kObstacles[] = {
      {fs::file_type::directory, "it is a folder"}, {fs::file_type::fifo, "it is a pipe"},
      {fs::file_type::character, "it is a device"}, {fs::file_type::block, "it is a device"},
      {fs::file_type::socket, "it is a socket"},
  };
  std::error_code error;
  const fs::file_type type = fs::status(path, error).type();
  for (const auto& [obstacle, words] : kObstacles)
    if (type == obstacle) return words;
  return nullptr;
}

// Hidden where a leading dot hides, and not longer than a file name may be. The first is for every save; the others are for when
// something that cannot be removed bears it.
fs::path TemporaryNameFor(const fs::path& target, int number) {
  constexpr size_t kLongest = 200;
  fs::path name = target.parent_path() / ".";
  name += target.filename().native().substr(0, kLongest);
  name += ".saving";
  if (number > 0) name += std::to_string(number);
  return name;
}

std::unique_ptr<FileSystem::Temporary> CreateTemporary(FileSystem& files, const fs::path& target) {
  for (int number = 0;; ++number) {
    try {
      return files.CreateTemporary(TemporaryNameFor(target, number), target);
    } catch (const std::system_error& error) {
      if (error.code() != std::errc::file_exists || number + 1 == kTemporaryNames) throw;
    }
  }
}

FileError NotRead(const fs::path& path, const std::string& reason) {
  return FileError(PathInWords(path) + " cannot be read (" + reason + "); check its name and your rights to it.");
}

std::ifstream OpenToRead(const fs::path& path, std::uint64_t& size) {
  if (const char* obstacle = ObstacleOf(path)) throw NotRead(path, obstacle);
  std::error_code error;
  size = fs::file_size(path, error);
  if (error) throw NotRead(path, error.message());
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) throw NotRead(path, "it may not be opened");
  return file;
}

FileError NotSaved(const fs::path& target, const std::string& reason) {
  return FileError(PathInWords(target) + " could not be saved (" + reason +
                   ") and is as it was; save the drawing in another place.");
}

}  // namespace

fs::path FollowLinks(fs::path path) {
  std::error_code error;
  for (int links = 0; fs::is_symlink(path, error); ++links) {
    if (links == kMostLinks) throw std::system_error(std::make_error_code(std::errc::too_many_symbolic_link_levels));
    const fs::path next = fs::read_symlink(path, error);
    if (error) throw std::system_error(error);
    path = path.parent_path() / next;
  }
  return path;
}

std::string PathInWords(const fs::path& path) {
  const std::u8string text = path.u8string();
  return InWords(std::string(text.begin(), text.end()));
}

std::string ReadWholeFile(const fs::path& path, std::uint64_t most) {
  std::uint64_t size = 0;
  std::ifstream file = OpenToRead(path, size);
  if (size > most) throw FileError::Unsafe(PathInWords(path), "it is larger than " + std::to_string(most >> 20) + " MiB");
  std::string bytes(size, '\0');
  if (!file.read(bytes.data(), static_cast<std::streamsize>(size))) throw NotRead(path, "it ends early");
  return bytes;
}

bool HoldsOtherBytes(const fs::path& path, std::string_view bytes) {
  std::error_code error;
  if (!fs::exists(path, error)) return false;
  std::uint64_t size = 0;
  std::ifstream file = OpenToRead(path, size);
  if (size != bytes.size()) return true;
  std::string piece(kPieceSize, '\0');
  for (; !bytes.empty(); bytes.remove_prefix(piece.size())) {
    piece.resize(std::min(kPieceSize, bytes.size()));
    if (!file.read(piece.data(), static_cast<std::streamsize>(piece.size())) || !bytes.starts_with(piece)) return true;
  }
  return false;
}

void WriteFileAtomically(FileSystem& files, const fs::path& target, std::string_view bytes) {
  if (const char* obstacle = ObstacleOf(target)) throw NotSaved(target, obstacle);
  try {
    const fs::path file = files.Resolve(target);
    const std::unique_ptr<FileSystem::Temporary> temporary = CreateTemporary(files, file);
    temporary->Write(bytes);
    temporary->Sync();
    temporary->RenameOver(file);
  } catch (const std::system_error& error) {
    throw NotSaved(target, error.what());
  }
}

void SyncNameOf(FileSystem& files, const fs::path& target) {
  try {
    files.SyncDirectory(files.Resolve(target).parent_path());
  } catch (const std::system_error& error) {
    throw FileError(PathInWords(target) + " was saved, but its folder could not be synced (" + error.code().message() +
                    "); save it again.");
  }
}

}  // namespace vardo
