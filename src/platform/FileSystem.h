// The file operations of a save, few enough that a test can fail each of them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace vardo {

// Whether a save may replace what another program has meanwhile saved in the same place.
enum class Overwrite { Refuse, Allow };

// Every member throws std::system_error when the machine refuses, and has then changed nothing that its comment does not say.
class FileSystem {
 public:
  // A new file beside the target, open for this save alone. Destroyed before it has been renamed, it is removed.
  class Temporary {
   public:
    virtual ~Temporary() = default;
    // Appends; a failure may leave a part of the bytes written.
    virtual void Write(std::string_view bytes) = 0;
    // Returns once what was written is on the disk.
    virtual void Sync() = 0;
    // Gives the file the target's name in one step, over whatever had it. Nothing is written afterwards.
    virtual void RenameOver(const std::filesystem::path& target) = 0;
  };

  virtual ~FileSystem() = default;
  // Where links lead in the end, there or not; a path that is no link as it is.
  virtual std::filesystem::path Resolve(const std::filesystem::path& target) = 0;
  // An empty file of that name which is, apart from its bytes, what the target is, if there is one: its group, permissions and
  // extended attributes (access lists among them), and where we may give files away its owner. What a broken save left under the
  // name is removed. Errors among others: file_exists when that cannot be removed, device_or_resource_busy when another save is
  // writing it, permission_denied when the target is write-protected.
  virtual std::unique_ptr<Temporary> CreateTemporary(const std::filesystem::path& name, const std::filesystem::path& target) = 0;
  // Returns once the names in the folder are on the disk.
  virtual void SyncDirectory(const std::filesystem::path& directory) = 0;
};

// The machine's own. On Windows the new file has the attributes and the access list that its folder hands down.
FileSystem& MachineFileSystem();

// Follows links one by one, to a file that need not be there. Throws std::system_error when they lead in a circle.
std::filesystem::path FollowLinks(std::filesystem::path path);

// As a sentence speaks of the file, in UTF-8.
std::string PathInWords(const std::filesystem::path& path);

// The whole file. Throws FileError when it cannot be read, is no plain file or is larger than that.
std::string ReadWholeFile(const std::filesystem::path& path, std::uint64_t most);

// Whether a file is there that holds other bytes than these. Throws FileError when it cannot be read.
bool HoldsOtherBytes(const std::filesystem::path& path, std::string_view bytes);

// Makes `bytes` the whole content of the target: a temporary file beside it is written, synced and renamed over it. At any
// failure or kill the target holds the old bytes or the new ones, whole. Throws FileError, also when the target is a folder, a
// pipe or a device; the target is then as it was.
void WriteFileAtomically(FileSystem& files, const std::filesystem::path& target, std::string_view bytes);

// Returns once a file written so will be found under its name whatever happens. Throws FileError, which says that the file was
// saved.
void SyncNameOf(FileSystem& files, const std::filesystem::path& target);

}  // namespace vardo
