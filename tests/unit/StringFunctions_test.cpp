#include "props/StringFunctions.h"

#include "TestPlatform.h"
#include "base/Errors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace vardo {
namespace {

using testing::ElementsAre;

TEST(SplitList, YieldsOneItemMoreThanThereAreDelimiters) {
  const struct {
    std::string_view text;
    std::string_view delimiters;
    StringList want;
    const char* why;
  } cases[] = {
      {"", ";", {""}, "the empty text is one empty item"},
      {"a", ";", {"a"}, "no delimiter"},
      {"a;b", ";", {"a", "b"}, "one delimiter"},
      {"a;", ";", {"a", ""}, "an empty item at the end"},
      {";", ";", {"", ""}, "a lone delimiter"},
      {"a;;c", ";", {"a", "", "c"}, "an empty item in the middle"},
      {"a b", ";", {"a b"}, "only the delimiter splits"},
      {"Entity 1", " ,.!:;<>?", {"Entity", "1"}, "a default's words"},
      {"0.0", " ,.!:;<>?", {"0", "0"}, "a number in words"},
      {"a, b", " ,.!:;<>?", {"a", "", "b"}, "each delimiter counts by itself"},
      {".5", " ,.!:;<>?", {"", "5"}, "a delimiter at the start"},
      {"a!b:c;d<e>f?g", " ,.!:;<>?", {"a", "b", "c", "d", "e", "f", "g"}, "every one of them"},
      {"a;b", "", {"a;b"}, "without delimiters the text is one item"},
      {"aébéc", "é", {"a", "b", "c"}, "a delimiter of two bytes"},
      {"aéböc", "éö", {"a", "b", "c"}, "two of them"},
      {"\x80;\xFF", ";", {"\x80", "\xFF"}, "bytes that are no UTF-8 pass"},
      {"a;B", "b", {"a;B"}, "case counts"},
  };
  for (const auto& c : cases) EXPECT_EQ(SplitList(c.text, c.delimiters), c.want) << c.why;
}

TEST(SplitList, IsLinear) {
  constexpr int kItems = 1'000'000;
  std::string text(kItems - 1, ';');
  EXPECT_EQ(SplitList(text, ";").size(), kItems);
  EXPECT_EQ(SplitList(text, " ;").size(), kItems);
}

TEST(JoinList, IsTheReverseOfSplitList) {
  for (const std::string_view text : {"", "a", "a;b", ";", ";;x;"}) EXPECT_EQ(JoinList(SplitList(text, ";")), text);
}

TEST(GetListItem, FindsTheItemByItsNumber) {
  const struct {
    std::string_view text;
    int item;
    std::string_view delimiters;
    std::string_view want;
    const char* why;
  } cases[] = {
      {"a;b", 1, ";", "a", "the first"},
      {"a;b", 2, ";", "b", "the last"},
      {"a;b;c", 2, ";", "b", "one in the middle"},
      {"a;b", 3, ";", "", "just past the end"},
      {"a;b", 5, ";", "", "far past the end"},
      {"abc", 1, ";", "abc", "the only one"},
      {"abc", 3, ";", "abc", "text without a delimiter is every item"},
      {"", 2, ";", "", "so is the empty text"},
      {"a;", 2, ";", "", "an empty item at the end"},
      {";b", 1, ";", "", "an empty item at the start"},
      {"a,b c", 3, ", ", "c", "any of several delimiters"},
      {"a;b", 2, "", "a;b", "without delimiters the text is every item"},
      {"aéb", 2, "é", "b", "a delimiter of two bytes"},
  };
  for (const auto& c : cases) EXPECT_EQ(GetListItem(c.text, c.item, c.delimiters), c.want) << c.why;
}

TEST(GetListItem, RefusesNumbersBelowOne) {
  for (const int number : {0, -1}) {
    try {
      GetListItem("a;b", number, ";");
      ADD_FAILURE() << number;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), 5);
    }
  }
}

TEST(CountOccurrences, CountsWithoutOverlap) {
  const struct {
    std::string_view text;
    std::string_view search;
    int want;
  } cases[] = {{"a;b;c", ";", 2}, {"aaaa", "aa", 2}, {"aaa", "aa", 1}, {"abc", "", 0}, {"", "a", 0}, {"", "", 0}, {"aA", "a", 1}};
  for (const auto& c : cases) EXPECT_EQ(CountOccurrences(c.text, c.search), c.want) << c.text << " / " << c.search;
}

TEST(TranslateChars, ReplacesCharacterByCharacter) {
  const struct {
    std::string_view text;
    std::string_view from;
    std::string_view to;
    std::string_view want;
    const char* why;
  } cases[] = {
      {"a,b c", ", ", ";", "a;b;c", "the last replacement serves for the rest"},
      {"abc", "abc", "xy", "xyy", "also for the third"},
      {"abc", "b", "", "ac", "nothing to put there"},
      {"abc", "a", "xyz", "xbc", "replacements beyond are not used"},
      {"", "a", "b", "", "nothing to replace"},
      {"abc", "", "x", "abc", "nothing named"},
      {"aab", "aa", "xy", "xxb", "the first place counts"},
      {"aéb", "é", "ö", "aöb", "characters, not bytes"},
      {"aéb", "éb", "x", "axx", "of different lengths"},
      {"Ab", "a", "x", "Ab", "case counts"},
  };
  for (const auto& c : cases) EXPECT_EQ(TranslateChars(c.text, c.from, c.to), c.want) << c.why;
}

TEST(UnquoteFormula, DecodesAStringFormula) {
  const struct {
    std::string_view formula;
    std::string_view want;
    const char* why;
  } cases[] = {
      {R"("Create")", "Create", "the quotes go"},
      {"Create", "Create", "without quotes it stays"},
      {R"("Create)", "Create", "one at the start"},
      {R"(Create")", "Create", "one at the end"},
      {R"("a""b")", "a\"b", "a doubled quote is one"},
      {R"("a""""b")", "a\"\"b", "four are two"},
      {R"("a"""b")", "a\"\"b", "three are two"},
      {R"("")", "", "an empty string"},
      {R"(")", "", "a lone quote"},
      {R"(""")", "\"", "a quote at the end"},
      {"", "", "no formula"},
  };
  for (const auto& c : cases) EXPECT_EQ(UnquoteFormula(c.formula), c.want) << c.why;
}

// Notes what it makes keys of.
class KeyNoting : public ForwardingPlatform {
 public:
  using ForwardingPlatform::ForwardingPlatform;
  std::string CaseFoldKey(std::string_view text) override {
    asked.emplace_back(text);
    return ForwardingPlatform::CaseFoldKey(text);
  }
  StringList asked;
};

TEST(SoughtName, IsMadeAKeyOfOnce) {
  const auto native = MakeNativePlatform();
  KeyNoting noting(*native);
  Platform* const before = SetPlatform(&noting);
  EXPECT_TRUE(NameOccursAtLeast({"a", "\u00e4", "b", "C"}, "\u00c4", 1));
  SetPlatform(before);
  EXPECT_THAT(noting.asked, ElementsAre("\u00c4", "a", "\u00e4"));
}

TEST(NameOccursAtLeast, CountsNamesWithoutRegardToCase) {
  TestPlatform platform;
  const StringList queues = {"Queue 1", "queue 1"};
  const struct {
    StringList list;
    std::string_view name;
    int times;
    bool want;
    const char* why;
  } cases[] = {
      {queues, "QUEUE 1", 1, true, "more often than asked"},
      {queues, "QUEUE 1", 2, true, "just as often"},
      {queues, "QUEUE 1", 3, false, "less often"},
      {queues, "QUEUE 1", 0, false, "no count reaches nought"},
      {queues, "QUEUE 1", -1, false, "nor less"},
      {queues, "Queue", 1, false, "a part is not the name"},
      {{}, "", 1, false, "an empty list has no name"},
      {{""}, "", 1, true, "an empty name can occur"},
      {{"Größe"}, "grÖßE", 1, true, "letters with accents have cases"},
      {{"Grosse"}, "Größe", 1, false, "accents count"},
  };
  for (const auto& c : cases) EXPECT_EQ(NameOccursAtLeast(c.list, c.name, c.times), c.want) << c.why;
}

TEST(TrimBlanks, TakesBlanksOnly) {
  const struct {
    std::string_view text;
    std::string_view want;
  } cases[] = {{"  a b ", "a b"}, {"a", "a"}, {"   ", ""}, {"", ""}, {"\t a", "\t a"}, {"a\n", "a\n"}, {"\u00A0a", "\u00A0a"}};
  for (const auto& c : cases) EXPECT_EQ(TrimBlanks(c.text), c.want);
}

TEST(LeadingInteger, ReadsTheNumberATextBeginsWith) {
  const struct {
    std::string_view text;
    int want;
    const char* why;
  } cases[] = {
      {"12", 12, "a number"},
      {" 12", 12, "behind blanks"},
      {"12abc", 12, "before other text"},
      {"abc", 0, "no number"},
      {"", 0, "nothing"},
      {"-3", -3, "a sign"},
      {"+3", 3, "the other sign"},
      {"--3", 0, "two signs"},
      {"2.5", 2, "halves go to the even one"},
      {"3.5", 4, "up or down"},
      {"2.6", 3, "other fractions to the nearest"},
      {".9", 1, "no digit before the point"},
      {"1e3", 1000, "an exponent"},
      {"inf", 0, "words are none"},
      {"nan", 0, "nor is this one"},
      {"0x10", 0, "nor are other notations"},
      {"100000", 100000, "larger than 16 bits"},
  };
  for (const auto& c : cases) EXPECT_EQ(LeadingInteger(c.text), c.want) << c.why;
  EXPECT_THROW(LeadingInteger("99999999999"), RuntimeError);
  EXPECT_THROW(LeadingInteger("1e999"), RuntimeError);
}

}  // namespace
}  // namespace vardo
