// The file operations of a save, few enough that a test can fail each of them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace vardo {

// Every member throws std::system_error when the machine refuses, and has then changed nothing that its comment does not say.
class FileSystem {
 public:
  // A new file beside the target. Destroying it closes it and leaves it where it is.
  class Temporary {
   public:
    virtual ~Temporary() = default;
    // Appends; a failure may leave a part of the bytes written.
    virtual void Write(std::string_view bytes) = 0;
    // Returns once what was written is on the disk.
    virtual void Sync() = 0;
    // Gives the file the target's name in one step, over whatever had it. Nothing is written afterwards.
    virtual void RenameOver(const std::filesystem::path& target) = 0;
    virtual void Remove() = 0;
  };

  virtual ~FileSystem() = default;
  // The file itself when the path is a link to it, else the path.
  virtual std::filesystem::path Resolve(const std::filesystem::path& target) = 0;
  // An empty file of that name, with the permissions and, where we may, the owner of the target if there is one. A file of that
  // name which a broken save left behind is emptied and used again; one that another save is writing is an error
  // (device_or_resource_busy), a write-protected target too (permission_denied).
  virtual std::unique_ptr<Temporary> CreateTemporary(const std::filesystem::path& name, const std::filesystem::path& target) = 0;
  // Returns once the names in the folder are on the disk.
  virtual void SyncDirectory(const std::filesystem::path& directory) = 0;
};

// The machine's own. On Windows the target's access list is the one that its folder hands down.
FileSystem& MachineFileSystem();

// As a sentence speaks of the file, in UTF-8.
std::string PathInWords(const std::filesystem::path& path);

// The whole file. Throws FileError when it cannot be read or is larger than that.
std::string ReadWholeFile(const std::filesystem::path& path, std::uint64_t most);

// Makes `bytes` the whole content of the target: a temporary file beside it is written, synced and renamed over it. At any
// failure or kill the target holds the old bytes or the new ones, whole. Throws FileError; the target is then as it was, unless
// only the last step failed, syncing the folder: the sentence says that it was saved.
void WriteFileAtomically(FileSystem& files, const std::filesystem::path& target, std::string_view bytes);

}  // namespace vardo
