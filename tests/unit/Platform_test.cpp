#include "platform/Platform.h"

#include "TestPlatform.h"
#include "base/Characters.h"
#include "base/Text.h"
#include "base/Utf16.h"
#ifndef _WIN32
#include "platform/posix/PosixPlatform.h"

#include <unistd.h>
#endif

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {
namespace {

using testing::ElementsAre;

class PlatformTest : public testing::Test {
 protected:
  std::unique_ptr<Platform> native = MakeNativePlatform();
};

TEST_F(PlatformTest, CaseDoesNotCountInComparisons) {
  const struct {
    std::string_view a;
    std::string_view b;
    bool want;
    const char* why;
  } cases[] = {
      {"", "", true, "nothing equals nothing"},
      {"Queue 1", "queue 1", true, "ASCII letters"},
      {"Queue 1", "Queue 2", false, "another digit"},
      {"a", "", false, "something is not nothing"},
      {"Queue 1", "Queue  1", false, "blanks count"},
      {"a-b", "ab", false, "hyphens count"},
      {"it's", "its", false, "apostrophes count"},
      {"a_b", "a b", false, "so does any other character"},
      {"ÄRGER", "ärger", true, "letters with accents"},
      {"Ärger", "Arger", false, "accents count"},
      {"ЖУК", "жук", true, "letters of other scripts"},
      {"ａｂｃ", "ABC", true, "so do letters of full width"},
      {"e\u0301", "É", true, "an accent written by itself"},
      {"I", "ı", false, "no language's own rules"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(native->EqualTextIgnoringCase(c.a, c.b), c.want) << c.why;
    EXPECT_EQ(native->EqualTextIgnoringCase(c.b, c.a), c.want) << c.why;
  }
}

TEST_F(PlatformTest, KeysAgreeWithComparisons) {
  std::vector<std::string> texts;
  for (char character = ' '; character <= '~'; ++character) texts.emplace_back(1, character);
  for (const char* text : {"",  "ab", "AB", "a b", "é", "É",  "e\u0301", "Ａ",  "ａｂ", "ß", "ss",
                           "æ", "ae", "ﬁ",  "fi",  "№", "no", "½",       "1/2", "я",    "Я"}) {
    texts.emplace_back(text);
  }
  for (const auto& a : texts) {
    for (const auto& b : texts) {
      EXPECT_EQ(native->CaseFoldKey(a) == native->CaseFoldKey(b), native->EqualTextIgnoringCase(a, b)) << a << " / " << b;
    }
  }
}

TEST_F(PlatformTest, PrintableAsciiDiffersByMoreThanCase) {
  for (char a = ' '; a <= '~'; ++a) {
    for (char b = ' '; b <= '~'; ++b) {
      const std::string_view first(&a, 1), second(&b, 1);
      EXPECT_EQ(native->CaseFoldKey(first) == native->CaseFoldKey(second), LowerAscii(first) == LowerAscii(second)) << a << b;
    }
  }
}

TEST_F(PlatformTest, LettersAndDigitsAreThoseOfTheAnsiCodePage) {
  const struct {
    std::string_view character;
    bool alpha;
    bool alphaNumeric;
    const char* why;
  } cases[] = {
      {"a", true, true, "a letter"},
      {"Z", true, true, "a capital"},
      {"0", false, true, "a digit"},
      {"_", false, false, "punctuation"},
      {" ", false, false, "a blank"},
      {"[", false, false, "behind the capitals"},
      {"é", true, true, "an accented letter"},
      {"ÿ", true, true, "the last of Latin-1"},
      {"×", false, false, "signs between the letters"},
      {"÷", false, false, "signs between the letters"},
      {"Š", true, true, "a letter outside Latin-1"},
      {"€", false, false, "a sign outside Latin-1"},
      {"ª", true, true, "an ordinal is a letter"},
      {"²", false, true, "a raised digit is a digit"},
      {"½", false, false, "a fraction is none"},
      {"Ж", false, false, "not in the code page"},
      {"Ａ", false, false, "nor is this, however like an A it looks"},
      {"😀", false, false, "nor this"},
      {"", false, false, "no character"},
      {"ab", false, false, "two characters"},
      {"\xE9", false, false, "a byte that is no UTF-8"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(native->IsAnsiAlpha(c.character), c.alpha) << c.character << ": " << c.why;
    EXPECT_EQ(native->IsAnsiAlphaNumeric(c.character), c.alphaNumeric) << c.character << ": " << c.why;
  }
}

TEST_F(PlatformTest, ParsesNumbers) {
  const struct {
    std::string_view text;
    std::optional<double> want;
  } cases[] = {
      {"0", 0},        {"1.5", 1.5},   {"-2", -2},     {"+2", 2},        {" 2 ", 2},  {"\t2", 2},
      {"1.5e3", 1500}, {"1E-2", 0.01}, {"2e+1", 20},   {".5", 0.5},      {"5.", 5},   {"007", 7},
      {"", {}},        {" ", {}},      {".", {}},      {"-", {}},        {"abc", {}}, {"1x", {}},
      {"1 2", {}},     {"--1", {}},    {"1.2.3", {}},  {"e5", {}},       {"inf", {}}, {"nan", {}},
      {"0x10", {}},    {"1e999", {}},  {"-1e999", {}}, {"infinity", {}}, {"٣", {}},   {"1e-999", 0},
  };
  for (const auto& c : cases) EXPECT_EQ(native->ParseReal(c.text), c.want) << c.text;
}

TEST_F(PlatformTest, AMissingRegistryValueIsEmpty) {
  EXPECT_EQ(native->ReadRegistryString("Software\\No such maker of anything", "Value"), "");
}

TEST_F(PlatformTest, TheScreenHasASize) {
  const auto size = native->ScreenSize();
  EXPECT_GE(size.width, 640 * 15);
  EXPECT_GE(size.height, 480 * 15);
}

TEST_F(PlatformTest, ARecordingPlatformKeepsWhatItWouldShowOrStartAndForwardsTheRest) {
  TestPlatform platform;
  ThePlatform().ShowMessage("text", kProductTitle, kStyleExclamation);
  ThePlatform().ShowHelp(kHelpFile, "Create_.htm");
  EXPECT_THAT(platform->messages, ElementsAre(RecordingPlatform::Message{"text", "Quellis", 48}));
  EXPECT_THAT(platform->helpCalls, ElementsAre(RecordingPlatform::HelpCall{"Quellis.chm", "Create_.htm"}));
  platform->installedAddOns = {"Mine.exe"};
  EXPECT_TRUE(ThePlatform().RunAddOn("Mine.exe"));
  EXPECT_FALSE(ThePlatform().RunAddOn("Theirs.exe"));
  EXPECT_THAT(platform->addOnCalls, ElementsAre("Mine.exe", "Theirs.exe"));
  EXPECT_EQ(ThePlatform().ParseReal("2"), 2);
}

TEST(Characters, FirstAndLast) {
  const struct {
    std::string_view text;
    std::string_view first;
    std::string_view last;
    const char* why;
  } cases[] = {
      {"a", "a", "a", "one byte"},
      {"aéb", "a", "b", "ASCII at the ends"},
      {"éa€", "é", "€", "two and three bytes"},
      {"😀é", "😀", "é", "four bytes"},
      {"\x80\x80", "\x80", "\x80", "bytes without a lead stand alone"},
      {"\xC3", "\xC3", "\xC3", "so does a lead without the rest"},
      {"a\xE2\x82", "a", "\x82", "also at the end"},
      {"\xE2"
       "ab",
       "\xE2", "b", "or before other text"},
      {"\xFF", "\xFF", "\xFF", "and what is never UTF-8"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(FirstCharacter(c.text), c.first) << c.why;
    EXPECT_EQ(LastCharacter(c.text), c.last) << c.why;
  }
}

TEST(Utf16, EveryUnitComesBack) {
  for (int code = 0; code < 0x10000; ++code) {
    const std::u16string units(1, static_cast<char16_t>(code));
    ASSERT_EQ(ToUtf16(ToUtf8(units)), units) << code;
  }
}

TEST(Utf16, PairsAndStrayHalvesComeBack) {
  const std::u16string cases[] = {u"\xD83D\xDE00", u"a\xD83D", u"\xDE00\xD83D", u"\xD83D\xD83D\xDE00", u"", u"\xDBFF\xDFFF"};
  for (const auto& units : cases) EXPECT_EQ(ToUtf16(ToUtf8(units)), units);
  EXPECT_EQ(ToUtf8(u"\xD83D\xDE00"), "😀");
  EXPECT_EQ(ToUtf16("a😀€"), u"a😀€");
}

TEST(Utf16, WhatIsNoUtf8BecomesTheReplacementCharacter) {
  for (const std::string_view bytes : {"\x80", "\xFF", "\xC0\x80", "\xF4\x90\x80\x80"}) EXPECT_EQ(ToUtf16(bytes), u"\xFFFD");
}

#ifndef _WIN32
TEST(PosixPlatform, TakesTheMarksOfTheUsersLocale) {
  const NumberMarks plain = {".", ""}, german = {",", "."}, french = {",", "\u202F"}, arabic = {"٫", "٬"};
  const struct {
    const NumberMarks& marks;
    std::string_view text;
    std::optional<double> want;
    const char* why;
  } cases[] = {
      {german, "1,5e1", 15, "a decimal comma"},
      {german, "1.234.567,5", 1234567.5, "groups of thousands"},
      {german, "12.34", 1234, "groups are not measured"},
      {german, "1..2", 12, "nor counted"},
      {german, "-1.000", -1000, "groups behind a sign"},
      {german, "1.", 1, "a mark with nothing behind it"},
      {german, ".5", {}, "no group begins with its mark"},
      {german, "1,5.0", {}, "fractions have no groups"},
      {german, "1e1.0", {}, "exponents neither"},
      {german, "1,5,0", {}, "two decimal commas"},
      {german, "1 000", {}, "blanks are not this locale's marks"},
      {french, "1\u202F000,5", 1000.5, "a narrow blank between groups"},
      {french, "1 000,5", 1000.5, "as it is typed"},
      {french, " 1 000 ", 1000, "not those around the number"},
      {arabic, "1٬000٫5", 1000.5, "marks of several bytes"},
      {plain, "1,000", {}, "no groups in this locale"},
      {{"", ""}, "15", 15, "no marks at all"},
  };
  for (const auto& c : cases) EXPECT_EQ(ParseRealWith(c.marks, c.text), c.want) << c.text << ": " << c.why;
}

TEST(PosixPlatform, ReadsTheRegistryFile) {
  const auto folder = std::filesystem::path(testing::TempDir()) / "vardo-platform-test";
  std::filesystem::create_directories(folder / "vardo");
  const std::string most(255, 'x');
  std::ofstream(folder / "vardo" / "registry.ini") << "Root=outside\n"
                                                      "[Software\\Other]\nRoot=other\n"
                                                      "; a remark\n"
                                                      "[Software\\Brennick Software]\r\n Root = C:\\Programs = here \r\nEmpty=\n"
                                                      "Most="
                                                   << most << "\nTooLong=x" << most << "\n";
  const char* before = std::getenv("XDG_CONFIG_HOME");
  const std::optional<std::string> saved = before ? std::optional<std::string>(before) : std::nullopt;
  setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
  const auto native = MakeNativePlatform();
  const struct {
    std::string_view key;
    std::string_view name;
    std::string want;
    const char* why;
  } cases[] = {
      {"Software\\Brennick Software", "Root", "C:\\Programs = here", "the value behind the first equals sign"},
      {"software\\BRENNICK software", "rOOT", "C:\\Programs = here", "case does not count"},
      {"Software\\Other", "Root", "other", "another key"},
      {"Software\\Brennick Software", "Empty", "", "an empty value"},
      {"Software\\Brennick Software", "Missing", "", "no such value"},
      {"Software\\Missing", "Root", "", "no such key"},
      {"Software\\Brennick Software", "Most", most, "the longest"},
      {"Software\\Brennick Software", "TooLong", "", "one longer than that"},
  };
  for (const auto& c : cases) EXPECT_EQ(native->ReadRegistryString(c.key, c.name), c.want) << c.why;
  if (saved) {
    setenv("XDG_CONFIG_HOME", saved->c_str(), 1);
  } else {
    unsetenv("XDG_CONFIG_HOME");
  }
  std::filesystem::remove_all(folder);
}

TEST(PosixPlatform, PrintsMessagesToStandardError) {
  testing::internal::CaptureStderr();
  MakeNativePlatform()->ShowMessage("Invalid real.", "Quellis", kStyleCritical);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Quellis: Invalid real.\n");
}

TEST(PosixPlatform, AnAddOnIsAProgramOfTheFolderOfAddOnsAndNoOther) {
  namespace fs = std::filesystem;
  const fs::path folder = fs::temp_directory_path() / ("vardo-addons-" + std::to_string(getpid()));
  const fs::path ran = folder / "ran with blanks.txt";
  fs::create_directories(folder / "a folder");
  for (const char* name : {"XR Say.exe", "plain.txt"})
    std::ofstream(folder / name) << "#!/bin/sh\necho $# > '" << ran.string() << "'\n";
  fs::permissions(folder / "XR Say.exe", fs::perms::owner_all);
  const struct {
    std::string name;
    const char* why;
  } refused[] = {{"", "no name"},
                 {"Nothing.exe", "not there"},
                 {"plain.txt", "not executable"},
                 {"a folder", "no program"},
                 {".", "the folder itself"},
                 {"../" + folder.filename().string() + "/XR Say.exe", "a path"},
                 {"/bin/sh", "a program of the machine"},
                 {"sh", "a program of the machine"},
                 {std::string("XR Say.exe\0x", 12), "a name cut short"}};
  for (const auto& c : refused) EXPECT_FALSE(RunProgramOf(folder, c.name)) << c.why;
  EXPECT_FALSE(MakeNativePlatform()->RunAddOn("sh")) << "none is installed with the tests";
  EXPECT_FALSE(fs::exists(ran));

  EXPECT_TRUE(RunProgramOf(folder, "XR Say.exe"));
  std::string arguments;
  for (int tries = 0; tries < 1000 && !(std::ifstream(ran) >> arguments); ++tries) usleep(10'000);
  EXPECT_EQ(arguments, "0");
  fs::remove_all(folder);
}

TEST(PosixPlatform, ATopicThatIsNotInstalledIsNoFailure) { MakeNativePlatform()->ShowHelp(kHelpFile, "No_such_topic.htm"); }
#endif

}  // namespace
}  // namespace vardo
