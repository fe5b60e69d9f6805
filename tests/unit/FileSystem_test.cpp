#include "platform/FileSystem.h"

#include "TestFiles.h"
#include "base/FileError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <csignal>
#endif

namespace vardo {
namespace {

namespace fs = std::filesystem;
using test::ReadFile;
using test::TempFolder;
using test::WriteFile;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::string_view kTemporary = ".drawing.vsdx.saving";

void Save(const fs::path& target, std::string_view bytes = "new") { WriteFileAtomically(MachineFileSystem(), target, bytes); }

// What a sentence says when the operation is refused, or "done".
std::string Refusal(const std::function<void()>& operation) {
  try {
    operation();
    return "done";
  } catch (const FileError& error) {
    return error.what();
  }
}

TEST(FileSystem, MakesAFileOrReplacesIt) {
  const TempFolder folder;
  Save(folder / "drawing.vsdx", "first");
  EXPECT_EQ(ReadFile(folder / "drawing.vsdx"), "first");
  Save(folder / "drawing.vsdx", "second");
  EXPECT_EQ(ReadFile(folder / "drawing.vsdx"), "second");
  EXPECT_THAT(folder.Names(), ElementsAre("drawing.vsdx"));
}

TEST(FileSystem, AStaleTemporaryFileIsRemoved) {
  const TempFolder folder;
  WriteFile(folder / kTemporary, "left by a save that was killed");
  Save(folder / "drawing.vsdx");
  EXPECT_THAT(folder.Names(), ElementsAre("drawing.vsdx"));
}

TEST(FileSystem, AFolderInTheWayOfTheTemporaryFileStays) {
  const TempFolder folder;
  fs::create_directory(folder / kTemporary);
  WriteFile(folder / kTemporary / "mine", "kept");
  Save(folder / "drawing.vsdx");
  EXPECT_EQ(ReadFile(folder / "drawing.vsdx"), "new");
  EXPECT_EQ(ReadFile(folder / kTemporary / "mine"), "kept");
  EXPECT_THAT(folder.Names(), ElementsAre(kTemporary, "drawing.vsdx"));
}

TEST(FileSystem, TwoSavesOfOneFileDoNotMix) {
  const TempFolder folder;
  const auto other = MachineFileSystem().CreateTemporary(folder / kTemporary, folder / "drawing.vsdx");
  other->Write("other");
  EXPECT_THROW(Save(folder / "drawing.vsdx"), FileError);
  other->RenameOver(folder / "drawing.vsdx");
  EXPECT_EQ(ReadFile(folder / "drawing.vsdx"), "other");
}

TEST(FileSystem, CannotReplaceAFolderOrSaveIntoNone) {
  const TempFolder folder;
  const fs::path path = folder / "drawing.vsdx";
  fs::create_directory(path);
  EXPECT_EQ(Refusal([&] { Save(path); }),
            path.string() + " could not be saved (it is a folder) and is as it was; save the drawing in another place.");
  EXPECT_THROW(Save(folder / "none/drawing.vsdx"), FileError);
  EXPECT_THAT(folder.Names(), ElementsAre("drawing.vsdx"));
  EXPECT_EQ(Refusal([&] { ReadWholeFile(path, 1); }),
            path.string() + " cannot be read (it is a folder); check its name and your rights to it.");
}

#ifndef _WIN32

// What a file system may say of an open file: the truth, that nothing names it any more, or nothing.
enum class Fstat { Works, SaysUnlinked, Fails } fstatNow = Fstat::Works;

}  // namespace
}  // namespace vardo

// In the system's place for the whole program.
extern "C" int fstat(int file, struct stat* status) noexcept {
  const int result = static_cast<int>(syscall(SYS_fstat, file, status));
  if (vardo::fstatNow == vardo::Fstat::SaysUnlinked) status->st_nlink = 0;
  if (vardo::fstatNow != vardo::Fstat::Fails) return result;
  errno = EIO;
  return -1;
}

namespace vardo {
namespace {

TEST(FileSystem, AFileSystemThatLiesOrFailsEndsInASentence) {
  const TempFolder folder;
  WriteFile(folder / "drawing.vsdx", "old");
  for (const Fstat behaviour : {Fstat::SaysUnlinked, Fstat::Fails}) {
    fstatNow = behaviour;
    const std::string sentence = Refusal([&] { Save(folder / "drawing.vsdx"); });
    fstatNow = Fstat::Works;
    EXPECT_THAT(sentence, HasSubstr(" could not be saved (Device or resource busy) and is as it was; "));
    EXPECT_EQ(ReadFile(folder / "drawing.vsdx"), "old");
    EXPECT_THAT(folder.Names(), ElementsAre("drawing.vsdx"));
  }
}

TEST(FileSystem, LinksAndPipesInTheWayOfTheTemporaryFileAreRemoved) {
  const TempFolder folder;
  WriteFile(folder / "precious", "kept");
  fs::create_symlink("precious", folder / kTemporary);
  Save(folder / "drawing.vsdx", "1");
  fs::create_hard_link(folder / "precious", folder / kTemporary);
  Save(folder / "drawing.vsdx", "2");
  ASSERT_EQ(mkfifo((folder / kTemporary).c_str(), 0600), 0);
  Save(folder / "drawing.vsdx", "3");
  WriteFile(folder / kTemporary, "write-protected");
  fs::permissions(folder / kTemporary, fs::perms::none);
  Save(folder / "drawing.vsdx", "4");
  EXPECT_EQ(ReadFile(folder / "drawing.vsdx"), "4");
  EXPECT_EQ(ReadFile(folder / "precious"), "kept");
  EXPECT_THAT(folder.Names(), ElementsAre("drawing.vsdx", "precious"));
}

TEST(FileSystem, NothingStaysOfASaveThatTheDiskHasNoRoomFor) {
  const TempFolder folder;
  WriteFile(folder / "drawing.vsdx", "old");
  const pid_t child = fork();
  if (child == 0) {
    // A file may not grow beyond its limit; without the signal the write fails, as on a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{0, 0};
    setrlimit(RLIMIT_FSIZE, &limit);
    _exit(Refusal([&] { Save(folder / "drawing.vsdx"); }).find(" could not be saved ") == std::string::npos);
  }
  int status = 1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(ReadFile(folder / "drawing.vsdx"), "old");
  EXPECT_THAT(folder.Names(), ElementsAre("drawing.vsdx"));
}

TEST(FileSystem, LinksStayAndWhatTheyNameIsSaved) {
  const TempFolder folder;
  WriteFile(folder / "drawing.vsdx", "old");
  fs::create_symlink("drawing.vsdx", folder / "link");
  fs::create_symlink("link", folder / "link to link");
  fs::create_directory(folder / "elsewhere");
  fs::create_symlink("elsewhere/new.vsdx", folder / "dangling");
  fs::create_symlink("circle", folder / "circle");
  Save(folder / "link to link");
  Save(folder / "dangling");
  EXPECT_EQ(ReadFile(folder / "drawing.vsdx"), "new");
  EXPECT_EQ(ReadFile(folder / "elsewhere/new.vsdx"), "new") << "the file it names is made";
  EXPECT_THROW(Save(folder / "circle"), FileError);
  for (const char* link : {"link", "link to link", "dangling", "circle"}) EXPECT_TRUE(fs::is_symlink(folder / link)) << link;
}

TEST(FileSystem, PipesAndDevicesAreNoDrawings) {
  const TempFolder folder;
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  const struct {
    fs::path path;
    std::string what;
  } cases[] = {{folder / "pipe", "it is a pipe"}, {"/dev/null", "it is a device"}};
  for (const auto& c : cases) {
    EXPECT_THAT(Refusal([&] { Save(c.path); }), HasSubstr(" could not be saved (" + c.what + ") and is as it was; "));
    EXPECT_THAT(Refusal([&] { ReadWholeFile(c.path, 1); }), HasSubstr(" cannot be read (" + c.what + "); "));
  }
  EXPECT_THAT(folder.Names(), ElementsAre("pipe"));
}

TEST(FileSystem, KeepsModeAndGroup) {
  const TempFolder folder;
  const fs::path path = folder / "drawing.vsdx";
  WriteFile(path, "old");
  constexpr gid_t kGroup = 12345;
  const bool isRoot = geteuid() == 0;
  if (isRoot) {
    ASSERT_EQ(chown(path.c_str(), 23456, kGroup), 0);
  }
  ASSERT_EQ(chmod(path.c_str(), 0640), 0);
  Save(path);
  struct stat status;
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
  if (!isRoot) GTEST_SKIP() << "only root can give files away";
  EXPECT_EQ(status.st_uid, 23456u);
  EXPECT_EQ(status.st_gid, kGroup);
}

// Runs the operation in a process of another user, who is in no group of others; 0 when it returns true.
int AsNobody(const std::function<bool()>& operation) {
  const pid_t child = fork();
  if (child == 0) {
    constexpr uid_t kNobody = 65534;
    _exit(setgid(kNobody) != 0 || setuid(kNobody) != 0 || !operation());
  }
  int status = 1;
  waitpid(child, &status, 0);
  return status;
}

TEST(FileSystem, RefusesToTakeAFileFromItsGroup) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can act as another user";
  const TempFolder folder;
  const fs::path path = folder / "drawing.vsdx";
  WriteFile(path, "old");
  ASSERT_EQ(chmod((folder / "").c_str(), 0777), 0);
  ASSERT_EQ(chmod(path.c_str(), 0666), 0);
  const auto refusesForTheGroup = [&] {
    return Refusal([&] { Save(path); }).find("(its group cannot be kept: ") != std::string::npos;
  };
  EXPECT_EQ(AsNobody(refusesForTheGroup), 0);
  EXPECT_EQ(ReadFile(path), "old");
  EXPECT_THAT(folder.Names(), ElementsAre("drawing.vsdx"));
}

TEST(FileSystem, KeepsExtendedAttributes) {
  const TempFolder folder;
  const fs::path path = folder / "drawing.vsdx";
  WriteFile(path, "old");
  const std::string origin("from\0afar", 9);
  if (setxattr(path.c_str(), "user.origin", origin.data(), origin.size(), 0) != 0)
    GTEST_SKIP() << "this file system keeps no extended attributes";
  ASSERT_EQ(setxattr(path.c_str(), "user.empty", "", 0, 0), 0);
  Save(path);
  std::string kept(100, '\0');
  const ssize_t size = getxattr(path.c_str(), "user.origin", kept.data(), kept.size());
  ASSERT_GE(size, 0);
  EXPECT_EQ(kept.substr(0, static_cast<size_t>(size)), origin);
  EXPECT_EQ(getxattr(path.c_str(), "user.empty", nullptr, 0), 0);
}

// An access list as the system stores it: a version, then kind, rights and holder of each entry.
std::string AccessList(unsigned user) {
  struct Entry {
    std::uint16_t kind, rights;
    std::uint32_t holder;
  };
  constexpr std::uint32_t kNone = ~0u;
  const Entry entries[] = {{1, 6, kNone}, {2, 4, user}, {4, 4, kNone}, {16, 4, kNone}, {32, 0, kNone}};
  return std::string("\2\0\0\0", 4) + std::string(reinterpret_cast<const char*>(entries), sizeof entries);
}

std::string AccessListOf(const fs::path& path) {
  std::string list(1000, '\0');
  const ssize_t size = getxattr(path.c_str(), "system.posix_acl_access", list.data(), list.size());
  return size < 0 ? "none" : list.substr(0, static_cast<size_t>(size));
}

TEST(FileSystem, KeepsTheAccessListAndTakesNoneFromTheFolder) {
  const TempFolder folder;
  const fs::path listed = folder / "listed.vsdx", plain = folder / "plain.vsdx";
  WriteFile(listed, "old");
  WriteFile(plain, "old");
  const std::string own = AccessList(4711), handedDown = AccessList(4712);
  if (setxattr(listed.c_str(), "system.posix_acl_access", own.data(), own.size(), 0) != 0)
    GTEST_SKIP() << "this file system has no access lists";
  ASSERT_EQ(setxattr((folder / "").c_str(), "system.posix_acl_default", handedDown.data(), handedDown.size(), 0), 0);
  ASSERT_EQ(chmod(plain.c_str(), 0640), 0);
  Save(listed);
  Save(plain);
  Save(folder / "new.vsdx");
  EXPECT_EQ(AccessListOf(listed), own);
  EXPECT_EQ(AccessListOf(plain), "none");
  EXPECT_NE(AccessListOf(folder / "new.vsdx"), "none") << "a new file is what its folder wants";
  struct stat status;
  ASSERT_EQ(stat(plain.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
}

#endif

}  // namespace
}  // namespace vardo
