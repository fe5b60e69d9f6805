#include "platform/FileSystem.h"

#include "base/FileError.h"

#include <fstream>
#include <optional>
#include <system_error>
#include <utility>

namespace vardo {
namespace {

namespace fs = std::filesystem;

constexpr int kMostLinks = 40;
constexpr int kTemporaryNames = 8;

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
  return {text.begin(), text.end()};
}

std::string ReadWholeFile(const fs::path& path, std::uint64_t most) {
  const auto unreadable = [&](const std::string& why) {
    return FileError(PathInWords(path) + " cannot be read (" + why + "); check its name and your rights to it.");
  };
  if (const char* obstacle = ObstacleOf(path)) throw unreadable(obstacle);
  std::error_code error;
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
  if (const char* obstacle = ObstacleOf(target)) throw NotSaved(target, obstacle);
  fs::path file = target;
  try {
    file = files.Resolve(target);
    const std::unique_ptr<FileSystem::Temporary> temporary = CreateTemporary(files, file);
    temporary->Write(bytes);
    temporary->Sync();
    temporary->RenameOver(file);
  } catch (const std::system_error& error) {
    throw NotSaved(target, error.what());
  }
  try {
    files.SyncDirectory(file.parent_path());
  } catch (const std::system_error& error) {
    throw FileError(PathInWords(target) + " was saved, but its folder could not be synced (" + error.code().message() +
                    "); save it again.");
  }
}

}  // namespace vardo
