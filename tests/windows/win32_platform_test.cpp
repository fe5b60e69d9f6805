// The services of Windows where they go by what the machine holds: the registry, how its user writes numbers, and add-ons.
#include "platform/win32/Win32Platform.h"

#include "platform/win32/OwnModule.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace vardo {
namespace {

namespace fs = std::filesystem;

constexpr const char* kKey = "Software\\Registry test of Vardo";
constexpr const char* kValue = "Root";

// Of the current user; goes with all its values.
class RegistryKeyOfATest {
 public:
  RegistryKeyOfATest() { RegCreateKeyA(HKEY_CURRENT_USER, kKey, &key_); }
  ~RegistryKeyOfATest() {
    RegCloseKey(key_);
    RegDeleteKeyA(HKEY_CURRENT_USER, kKey);
  }
  RegistryKeyOfATest(const RegistryKeyOfATest&) = delete;
  RegistryKeyOfATest& operator=(const RegistryKeyOfATest&) = delete;

  void Set(DWORD type, std::string_view bytes) const {
    ASSERT_EQ(
        RegSetValueExA(key_, kValue, 0, type, reinterpret_cast<const BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size())),
        ERROR_SUCCESS);
  }

 private:
  HKEY key_ = nullptr;
};

TEST(Win32Platform, ReadsTextsOfTheRegistryAndNothingElse) {
  const RegistryKeyOfATest key;
  Win32Platform machine;
  EXPECT_EQ(machine.ReadRegistryString(kKey, kValue), "") << "a key without the value";
  const std::string longest(255, 'x');
  const struct {
    DWORD type;
    std::string bytes;
    std::string want;
    const char* why;
  } cases[] = {
      {REG_SZ, std::string("C:\\Engine\0", 10), "C:\\Engine", "a text without its closing zero"},
      {REG_SZ, std::string("C:\\Gr\xFC\xDF\x65\0", 9), "C:\\Gr\xC3\xBC\xC3\x9F\x65", "letters of the ANSI code page"},
      {REG_SZ, std::string(1, '\0'), "", "an empty text"},
      {REG_SZ, "", "", "not even that"},
      {REG_SZ, longest + '\0', longest, "as long as the buffer"},
      {REG_SZ, longest + "y" + '\0', "", "longer than the buffer"},
      {REG_EXPAND_SZ, std::string("%TEMP%\0", 7), "", "a text of another kind"},
      {REG_MULTI_SZ, std::string("a\0b\0\0", 5), "", "several texts"},
      {REG_DWORD, "abcd", "", "a number"},
      {REG_BINARY, "abcd", "", "bytes"},
  };
  for (const auto& [type, bytes, want, why] : cases) {
    key.Set(type, bytes);
    EXPECT_EQ(machine.ReadRegistryString(kKey, kValue), want) << why;
  }
}

TEST(Win32Platform, ReadsNumbersAsTheUserWritesThem) {
  const char* const other = std::getenv("VARDO_DECIMAL_SIGN");
  const std::string sign = other ? other : ".";
  Win32Platform machine;
  EXPECT_EQ(machine.ParseReal("1" + sign + "5"), 1.5);
  EXPECT_EQ(machine.ParseReal("-2" + sign + "25e1"), -22.5);
}

bool ComesTrue(const std::function<bool()>& condition) {
  for (int tries = 0; tries < 1000; ++tries) {
    if (condition()) return true;
    Sleep(10);
  }
  return false;
}

TEST(Win32Platform, StartsProgramsOfTheAddOnsFolderAlone) {
  const fs::path program = ModuleFile(nullptr);
  const fs::path folder = program.parent_path() / "addons";
  const fs::path report = folder / "report.xml";
  fs::create_directories(folder);
  fs::copy_file(program, folder / "XR Say.exe", fs::copy_options::overwrite_existing);
  // The copy of this program runs no test, and writes its report all the same.
  SetEnvironmentVariableW(L"GTEST_FILTER", L"-*");
  SetEnvironmentVariableW(L"GTEST_OUTPUT", (L"xml:" + report.native()).c_str());

  Win32Platform machine;
  const struct {
    std::string name;
    const char* why;
  } refused[] = {{"", "no name"},
                 {"XR Missing.exe", "none of that name"},
                 {program.filename().string(), "a program beside the folder"},
                 {"..\\" + program.filename().string(), "the same by its path"},
                 {"../" + program.filename().string(), "the same with the other slash"},
                 {"cmd.exe", "a program of the machine"},
                 {"C:\\windows\\system32\\cmd.exe", "the same by its path"},
                 {std::string("XR Say.exe\0x", 12), "a name cut short"},
                 {"XR Say.exe:x", "a part of a file"},
                 {"XR*.exe", "a pattern"}};
  for (const auto& [name, why] : refused) EXPECT_FALSE(machine.RunAddOn(name)) << why;
  EXPECT_FALSE(fs::exists(report));

  EXPECT_TRUE(machine.RunAddOn("XR Say.exe"));
  EXPECT_TRUE(ComesTrue([&] { return fs::exists(report); }));
  // Not while the program runs.
  EXPECT_TRUE(ComesTrue([&] {
    std::error_code failure;
    fs::remove_all(folder, failure);
    return !failure;
  }));
}

}  // namespace
}  // namespace vardo
