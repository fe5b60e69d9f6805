#include "validate/CheckDataType.h"

#include "TestPlatform.h"
#include "base/Errors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Message = RecordingPlatform::Message;

constexpr std::string_view kSymbolNameMessage =
    "Invalid symbol name. Symbol names can be alphanumeric strings containing letters, numbers, embedded spaces, and the special "
    "characters: @,_,%,?,#, and <period>. Symbol names may not contain any other punctuation characters such as <comma> or "
    "<colon> and "
    "they must not be reserved words such as COUNT.";

class CheckDataType : public testing::Test {
 protected:
  TestPlatform platform;
};

struct Field : FieldView {
  Field(bool isVisible, std::string_view shownText) : visible(isVisible), text(shownText) {}
  bool Visible() const override { return visible; }
  std::string Text() const override { return text; }
  void SetFocus() override { ++focused; }

  bool visible;
  std::string text;
  int focused = 0;
};

TEST_F(CheckDataType, SymbolNames) {
  const struct {
    std::string_view text;
    bool want;
    const char* why;
  } cases[] = {
      {"", true, "nothing typed"},
      {"Queue 1", true, "letters, a blank, a digit"},
      {"Entity.Type", true, "a period"},
      {"#5", true, "a special character makes it a name"},
      {"_", true, "alone too"},
      {"@", true, "each of them"},
      {"%", true, "each of them"},
      {"?", true, "each of them"},
      {"1E3", true, "a capital E is a name character"},
      {"Größe", true, "letters of the code page"},
      {"Ÿ", true, "also those outside Latin-1"},
      {"COUNT", true, "reserved words are not looked up"},
      {"12", false, "a number"},
      {"1.5", false, "a fraction"},
      {"3 4", false, "two numbers"},
      {"1e3", false, "an exponent"},
      {"1e5", false, "an exponent"},
      {" ", false, "a blank"},
      {".", false, "a period"},
      {" e", false, "the letter e behind a blank"},
      {"a,b", false, "a comma"},
      {"a:b", false, "a colon"},
      {"a;b", false, "the list delimiter"},
      {"a\"b", false, "a quote"},
      {"a-b", false, "a hyphen"},
      {"a\tb", false, "a tab"},
      {"aЖ", false, "a letter that the code page has not"},
      {"a€", false, "a character of it that is no letter"},
      {"²", false, "a raised digit is a digit"},
      {"a²", true, "and may stand in a name"},
      {"a×b", false, "a sign among the letters"},
      {"e1", true, "what begins with e passes"},
      {"e:", true, "whatever follows"},
      {"e;x", true, "even the list delimiter"},
      {"e", true, "or nothing"},
      {"E;x", false, "only the small letter does that"},
  };
  for (const auto& c : cases) EXPECT_EQ(IsSymbolName(c.text), c.want) << c.text << ": " << c.why;
}

TEST_F(CheckDataType, Integers) {
  const struct {
    std::string_view text;
    std::optional<double> maximum;
    bool want;
    const char* why;
  } cases[] = {
      {"", {}, true, "nothing typed"},
      {"", 3, true, "nothing typed, with a maximum"},
      {"007", {}, true, "leading noughts"},
      {"99999999999999999999", {}, true, "any length without a maximum"},
      {"-1", {}, false, "a sign"},
      {" 1", {}, false, "a blank"},
      {"1.0", {}, false, "a point"},
      {"1e3", {}, false, "an exponent"},
      {"٣", {}, false, "a digit of another script"},
      {"5", 3, false, "above the maximum"},
      {"3", 3, true, "the maximum itself"},
      {"3", 2.5, false, "above a fraction"},
      {"0002", 3, true, "leading noughts do not count"},
      {"2147483647", 3e9, true, "the largest of 32 bits"},
      {"x", 3, false, "not digits, whatever the maximum"},
  };
  for (const auto& c : cases) EXPECT_EQ(IsIntegerText(c.text, c.maximum), c.want) << c.text << ": " << c.why;
}

TEST_F(CheckDataType, AnIntegerBeyond32BitsOverflowsWhenThereIsAMaximum) {
  Field field(true, "2147483648");
  try {
    ValidateField(field, kInteger, 5);
    ADD_FAILURE() << "no error";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 6);
  }
  EXPECT_THAT(platform->messages, IsEmpty());
  EXPECT_TRUE(ValidateField(field, kInteger));
}

TEST_F(CheckDataType, Reals) {
  const struct {
    std::string_view text;
    std::optional<double> maximum;
    bool want;
  } cases[] = {
      {"", {}, true},     {"", 1, true},     {"1.5e3", {}, true}, {"-2", {}, true}, {" 2 ", {}, true},   {"abc", {}, false},
      {"1 x", {}, false}, {"2", 1.5, false}, {"1.5", 1.5, true},  {"-9", 0, true},  {"1e3", 999, false}, {" ", {}, false},
  };
  for (const auto& c : cases) EXPECT_EQ(IsRealText(c.text, c.maximum), c.want) << c.text;
}

TEST_F(CheckDataType, Expressions) {
  const struct {
    std::string_view text;
    bool want;
  } cases[] = {{"", true},   {"1+2", true}, {"((a)", false}, {"(a))(", true},
               {")(", true}, {"(", false},  {"a)", false},   {"[(])", true}};
  for (const auto& c : cases) EXPECT_EQ(IsBalancedExpression(c.text), c.want) << c.text;
}

TEST_F(CheckDataType, CharacterClasses) {
  EXPECT_TRUE(IsAlphaChar("q"));
  EXPECT_FALSE(IsAlphaChar("1"));
  EXPECT_TRUE(IsAlphaNumericChar("1"));
  EXPECT_FALSE(IsAlphaNumericChar("_"));
}

TEST_F(CheckDataType, ARefusedFieldShowsItsMessageAndGetsTheFocus) {
  const struct {
    std::string_view text;
    std::string_view kind;
    std::string_view message;
  } cases[] = {
      {"1", "symbol name", kSymbolNameMessage},
      {"1", "Symbol Name", kSymbolNameMessage},
      {"x", "integer", "Invalid integer."},
      {"x", "real", "Invalid real."},
      {"(", "expression", "Parentheses in expression are not balanced."},
      {"x", "number", ""},
      {"x", "", ""},
      {"x", "1", "Shape names must be unique."},
  };
  for (const auto& c : cases) {
    Field field(true, c.text);
    platform->messages.clear();
    EXPECT_FALSE(ValidateField(field, c.kind)) << c.kind;
    EXPECT_THAT(platform->messages, ElementsAre(Message{std::string(c.message), "Quellis", 16})) << c.kind;
    EXPECT_EQ(field.focused, 1) << c.kind;
  }
}

TEST_F(CheckDataType, AnAcceptedFieldIsLeftAlone) {
  for (const auto kind : {kSymbolName, kInteger, kReal, kExpression}) {
    Field empty(true, "");
    EXPECT_TRUE(ValidateField(empty, kind)) << kind;
    EXPECT_EQ(empty.focused, 0) << kind;
  }
  Field upper(true, "12");
  EXPECT_TRUE(ValidateField(upper, "INTEGER", 12));
  EXPECT_THAT(platform->messages, IsEmpty());
}

TEST_F(CheckDataType, TheMaximumReachesIntegersAndReals) {
  for (const auto kind : {kInteger, kReal}) {
    Field field(true, "5");
    EXPECT_FALSE(ValidateField(field, kind, 3)) << kind;
    EXPECT_TRUE(ValidateField(field, kind, 5)) << kind;
  }
}

TEST_F(CheckDataType, AHiddenFieldPasses) {
  for (const std::string_view kind : {"integer", "symbol name", "no kind"}) {
    Field hidden(false, ":");
    EXPECT_TRUE(ValidateField(hidden, kind)) << kind;
    EXPECT_EQ(hidden.focused, 0) << kind;
  }
  EXPECT_THAT(platform->messages, IsEmpty());
}

TEST_F(CheckDataType, ADuplicateNameHasAMessageByNumberAndByText) {
  ShowFieldError(kDuplicateName);
  ShowFieldError("1");
  ShowFieldError(2);
  EXPECT_THAT(platform->messages, ElementsAre(Message{"Shape names must be unique.", "Quellis", 16},
                                              Message{"Shape names must be unique.", "Quellis", 16}, Message{"", "Quellis", 16}));
}

}  // namespace
}  // namespace vardo
