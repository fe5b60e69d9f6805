// The services of Windows where they go by what the machine holds: the registry, and how its user writes numbers.
#include "platform/win32/Win32Platform.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdlib>
#include <string>
#include <string_view>

namespace vardo {
namespace {

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

}  // namespace
}  // namespace vardo
