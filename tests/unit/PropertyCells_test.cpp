#include "props/PropertyCells.h"

#include "FakeHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

namespace vardo {
namespace {

using testing::ElementsAre;

std::shared_ptr<fake::Shape> ShapeWith(std::string_view formula) {
  auto shape = std::make_shared<fake::Shape>();
  shape->Put("Prop.Foo", formula);
  return shape;
}

TEST(GetPropList, SplitsTheTextBetweenTheFirstAndTheLastCharacter) {
  const struct {
    std::string_view formula;
    StringList want;
    const char* why;
  } cases[] = {
      {R"("a")", {"a"}, "one item"},
      {R"("a;b")", {"a", "b"}, "two"},
      {R"("a;;c")", {"a", "", "c"}, "an empty one between"},
      {R"("")", {""}, "an empty string is one empty item"},
      {R"("Entity 1")", {"Entity 1"}, "blanks do not split what is stored"},
      {"123", {"2"}, "the ends are not looked at"},
      {"12", {""}, "two characters have nothing between them"},
      {"äbö", {"b"}, "ends of several bytes"},
      {R"("say ""hi""")", {R"(say ""hi"")"}, "quotes are not decoded"},
      {"7", {"some", "words"}, "one character is too short"},
      {"ä", {"some", "words"}, "also one of two bytes"},
      {"", {"some", "words"}, "no formula"},
  };
  for (const auto& c : cases) EXPECT_EQ(GetPropList(ShapeWith(c.formula), "Foo", "some words"), c.want) << c.why;
}

TEST(GetPropList, FindsTheCellWithoutRegardToCase) { EXPECT_THAT(GetPropList(ShapeWith(R"("x")"), "fOO", ""), ElementsAre("x")); }

TEST(GetPropList, AMissingCellReadsAsTheWordsOfTheDefault) {
  const struct {
    std::string_view defaultText;
    StringList want;
  } cases[] = {
      {"Attribute 1", {"Attribute", "1"}},
      {"Picture.Report", {"Picture", "Report"}},
      {"0.0", {"0", "0"}},
      {"", {""}},
      {".5", {"", "5"}},
      {"Yes", {"Yes"}},
  };
  const auto shape = std::make_shared<fake::Shape>();
  fake::Drawing drawing;
  for (const auto& c : cases) {
    EXPECT_EQ(GetPropList(shape, "Foo", c.defaultText), c.want) << c.defaultText;
    EXPECT_EQ(GetPagePropList(drawing.pagePtr(), "Foo", c.defaultText), c.want) << c.defaultText;
  }
  EXPECT_EQ(shape->CellCount(), 0u) << "reading creates nothing";
}

TEST(GetPagePropList, ReadsThePageSheet) {
  fake::Drawing drawing;
  drawing.page().Register("Create", "1;2");
  EXPECT_THAT(GetPagePropList(drawing.pagePtr(), "Create", ""), ElementsAre("1", "2"));
}

TEST(GetPagePropList, APageThatIsGoneReadsAsTheDefault) {
  fake::Drawing drawing;
  drawing.page().hasSheet = false;
  EXPECT_THAT(GetPagePropList(drawing.pagePtr(), "Create", "none"), ElementsAre("none"));
}

TEST(SetPropList, WritesQuotedText) {
  const auto shape = ShapeWith("");
  SetPropList(shape, "Foo", "3");
  EXPECT_EQ(shape->Find("Prop.Foo"), R"("3")");
  SetPropList(shape, "Foo", "");
  EXPECT_EQ(shape->Find("Prop.Foo"), R"("")");
  SetPropList(shape, "Foo", "a\"b");
  EXPECT_EQ(shape->Find("Prop.Foo"), "\"a\"b\"") << "quotes are not doubled";
  EXPECT_TRUE(shape->rowsAdded.empty());
}

TEST(SetPropList, JoinsTheItemsOfAList) {
  const auto shape = ShapeWith("");
  const struct {
    StringList list;
    std::string_view want;
  } cases[] = {{{"a"}, R"("a")"}, {{"a", "b"}, R"("a;b")"}, {{"a", "", "c"}, R"("a;;c")"}, {{"", ""}, R"(";")"}, {{""}, R"("")"}};
  for (const auto& c : cases) {
    SetPropList(shape, "Foo", c.list);
    EXPECT_EQ(shape->Find("Prop.Foo"), c.want);
    EXPECT_EQ(GetPropList(shape, "Foo", ""), c.list);
  }
}

TEST(SetPropList, ASingleValueWithADelimiterReadsBackAsSeveralItems) {
  const auto shape = ShapeWith("");
  SetPropList(shape, "Foo", "a;b");
  EXPECT_THAT(GetPropList(shape, "Foo", ""), ElementsAre("a", "b"));
}

TEST(SetPropList, EveryByteButTheDelimiterComesBack) {
  const auto shape = ShapeWith("");
  for (int byte = 0; byte < 256; ++byte) {
    if (byte == ';') continue;
    const std::string value(1, static_cast<char>(byte));
    SetPropList(shape, "Foo", value);
    EXPECT_THAT(GetPropList(shape, "Foo", "lost"), ElementsAre(value)) << byte;
  }
}

TEST(SetPropList, CreatesAMissingPropertyHidden) {
  const auto shape = std::make_shared<fake::Shape>();
  SetPropList(shape, "Foo", "bar");
  EXPECT_THAT(shape->rowsAdded, ElementsAre("Foo"));
  const std::pair<const char*, const char*> cells[] = {
      {"Prop.Foo", R"("bar")"},      {"Prop.Foo.Label", R"("Foo")"}, {"Prop.Foo.Prompt", R"("")"}, {"Prop.Foo.Type", "0"},
      {"Prop.Foo.SortKey", R"("")"}, {"Prop.Foo.Format", R"("@")"},  {"Prop.Foo.Invisible", "1"},  {"Prop.Foo.Verify", "0"},
  };
  for (const auto& [cell, formula] : cells) EXPECT_EQ(shape->Find(cell), formula) << cell;
  EXPECT_THAT(shape->written, ElementsAre("Prop.Foo.Label", "Prop.Foo.Prompt", "Prop.Foo.Type", "Prop.Foo.SortKey",
                                          "Prop.Foo.Format", "Prop.Foo.Invisible", "Prop.Foo.Verify", "Prop.Foo"))
      << "a host that takes no more of it leaves a row that is known by its label";
}

TEST(SetPagePropList, CreatesAMissingPropertyHidden) {
  fake::Drawing drawing;
  SetPagePropList(drawing.pagePtr(), "Foo", StringList{"1", "2"});
  const auto& sheet = *drawing.page().sheet;
  EXPECT_EQ(sheet.Find("Prop.Foo"), R"("1;2")");
  EXPECT_EQ(sheet.Find("Prop.Foo.Invisible"), "1");
  EXPECT_EQ(sheet.Find("Prop.Foo.Label"), "") << "a page's row gets no label";
}

TEST(SetPropList, AnEmptyListIsRefusedBeforeAnythingIsTouched) {
  const auto shape = std::make_shared<fake::Shape>();
  fake::Drawing drawing;
  EXPECT_THROW(SetPropList(shape, "Foo", StringList()), RuntimeError);
  EXPECT_THROW(SetPagePropList(drawing.pagePtr(), "Foo", StringList()), RuntimeError);
  EXPECT_EQ(shape->CellCount(), 0u);
  EXPECT_EQ(drawing.page().sheet->CellCount(), 0u);
}

TEST(SetPropList, ARefusedRowNameGoesToTheCaller) {
  fake::Drawing drawing;
  EXPECT_THROW(SetPropList(std::make_shared<fake::Shape>(), "not a name", "x"), HostError);
  EXPECT_THROW(SetPagePropList(drawing.pagePtr(), "not a name", "x"), HostError);
}

TEST(IncrementPageCount, AppendsTheShapeToItsRegister) {
  const struct {
    std::optional<std::string> before;
    std::string want;
    const char* why;
  } cases[] = {
      {std::nullopt, R"("2")", "a page without the register gets one"},
      {R"("")", R"("2")", "the first entry"},
      {R"("1")", R"("1;2")", "the second"},
      {R"("4;1")", R"("4;1;2")", "in drop order, not by size"},
      {R"(";1")", R"(";1;2")", "what is there is kept"},
  };
  for (const auto& c : cases) {
    fake::Drawing drawing;
    drawing.page().Drop("Decide");
    const auto shape = drawing.page().Drop("Create");
    if (c.before) drawing.page().sheet->Put("Prop.Create", *c.before);
    IncrementPageCount(shape);
    EXPECT_EQ(drawing.page().sheet->Find("Prop.Create"), c.want) << c.why;
  }
}

TEST(IncrementPageCount, CountsTheModulesOfThePage) {
  const struct {
    std::optional<std::string> before;
    std::string want;
    const char* why;
  } cases[] = {
      {std::nullopt, R"("1")", "a page without a count"},
      {"0", R"("1")", "the bare 0 of a new page"},
      {R"("7")", R"("8")", "a count"},
      {R"("")", R"("1")", "a page that was cleared"},
      {R"("32767")", R"("32768")", "more than 16 bits"},
  };
  for (const auto& c : cases) {
    fake::Drawing drawing;
    const auto shape = drawing.page().Drop("Create");
    if (c.before) drawing.page().sheet->Put("Prop.Count", *c.before);
    IncrementPageCount(shape);
    EXPECT_EQ(drawing.page().sheet->Find("Prop.Count"), c.want) << c.why;
  }
}

}  // namespace
}  // namespace vardo
