#include "props/DrawingLists.h"

#include "FakeHost.h"
#include "TestPlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace vardo {
namespace {

using testing::ElementsAre;

class DrawingLists : public testing::Test {
 protected:
  std::string Collect(const std::string& field = "CreateName") {
    StringList values;
    CollectPageValues(drawing.pagePtr(), "Create", "Prop." + field, values);
    std::string joined;
    for (const std::string& value : values) joined += "|" + value;
    return joined;
  }

  TestPlatform platform;
  fake::Drawing drawing;
};

TEST_F(DrawingLists, SplitToUniqueListLeavesOutRepeats) {
  const struct {
    std::string_view text;
    StringList want;
    const char* why;
  } cases[] = {
      {"Truck;truck;Car", {"Truck", "Car"}, "case does not count before the last item"},
      {"Truck;truck", {"Truck", "truck"}, "it does for the last item"},
      {"A;a;A", {"A"}, "the last repeats one that was kept"},
      {"A;a;a", {"A", "a"}, "the last repeats only one that was left out"},
      {"a;b;a;B;c", {"a", "b", "c"}, "the first of each stays where it is"},
      {"", {""}, "the empty text is one empty item"},
      {";", {""}, "empty items repeat too"},
      {";;a", {"", "a"}, "wherever they are"},
      {"É;é;x", {"É", "x"}, "accented letters have cases"},
      {"E;é;x", {"E", "é", "x"}, "but an accent is a difference"},
  };
  for (const auto& c : cases) EXPECT_EQ(SplitToUniqueList(c.text, ";", true), c.want) << c.why;
}

TEST_F(DrawingLists, SplitToUniqueListKeepsRepeatsWhenAsked) {
  EXPECT_THAT(SplitToUniqueList("b;;A;a;;b", ";", false), ElementsAre("b", "", "A", "a", "", "b"));
}

TEST_F(DrawingLists, SplitToUniqueListIsLinear) {
  constexpr int kNames = 200'000;
  std::string text;
  for (int i = 0; i < 2 * kNames; ++i) text += "Process " + std::to_string(i % kNames) + ";";
  EXPECT_EQ(SplitToUniqueList(text + "last", ";", true).size(), kNames + 1u);
}

TEST_F(DrawingLists, CollectPageValuesVisitsTheRegisteredShapes) {
  for (const char* name : {"A", "B", "C"}) drawing.page().Drop("Create", {{"CreateName", name}});
  const struct {
    std::string_view registered;
    std::string_view want;
    const char* why;
  } cases[] = {
      {"", "", "nothing registered"},
      {"2", "|B", "one shape"},
      {"3;1", "|C|A", "in the register's order"},
      {"1;0;x;3", "|A|C", "what is no number or 0 is passed over"},
      {"1;;3", "|A|C", "so is an empty entry"},
      {";1", "", "an empty first entry ends it"},
      {"2 shapes", "|B", "the number it begins with"},
      {"1.6", "|B", "rounded"},
  };
  for (const auto& c : cases) {
    drawing.page().Register("Create", std::string(c.registered));
    EXPECT_EQ(Collect(), c.want) << c.why;
  }
}

TEST_F(DrawingLists, CollectPageValuesAppends) {
  drawing.page().Drop("Create", {{"CreateName", "A"}});
  drawing.page().Register("Create", "1");
  StringList values = {"before"};
  CollectPageValues(drawing.pagePtr(), "Create", "Prop.CreateName", values);
  EXPECT_THAT(values, ElementsAre("before", "A"));
}

TEST_F(DrawingLists, APageWithoutTheRegisterHasNoShapes) {
  drawing.page().Drop("Create", {{"CreateName", "A"}});
  EXPECT_EQ(Collect(), "");
  EXPECT_EQ(drawing.page().sheet->CellCount(), 0u) << "and gets none";
}

TEST_F(DrawingLists, AMissingPropertyIsCreatedEmptyAndHidden) {
  const auto shape = drawing.page().Drop("Create");
  drawing.page().Register("Create", "1");
  EXPECT_EQ(Collect(), "|");
  EXPECT_EQ(shape->Find("Prop.CreateName"), R"("")");
  EXPECT_EQ(shape->Find("Prop.CreateName.Invisible"), "1");
  EXPECT_EQ(Collect(), "|");
  EXPECT_THAT(shape->rowsAdded, ElementsAre("CreateName")) << "once";
}

TEST_F(DrawingLists, AFormulaTooShortForQuotesCountsAsEmptyAndStays) {
  const auto shape = drawing.page().Drop("Create");
  drawing.page().Register("Create", "1");
  for (const char* formula : {"", "0"}) {
    shape->Put("Prop.CreateName", formula);
    EXPECT_EQ(Collect(), "|");
    EXPECT_EQ(shape->Find("Prop.CreateName"), formula);
  }
}

TEST_F(DrawingLists, ANumberThatNamesNoShapeGoesToTheCaller) {
  drawing.page().Drop("Create", {{"CreateName", "A"}});
  for (const char* number : {"2", "-1", "70000"}) {
    drawing.page().Register("Create", number);
    EXPECT_THROW(Collect(), HostError) << number;
  }
}

TEST_F(DrawingLists, FillComboFromDrawingGoesByPageThenRequestThenRegister) {
  for (int number = 1; number <= 2; ++number) {
    if (number == 2) drawing.AddPage();
    auto& page = drawing.page(number);
    const auto suffix = std::to_string(number);
    page.Drop("Create", {{"CreateName", "c" + suffix}});
    page.Drop("Set", {{"SetEntityMembers", "m" + suffix + ";n"}});
    page.Drop("Create", {{"CreateName", "d" + suffix}});
    page.Register("Create", "3;1");
    page.Register("Set", "2");
  }
  const StringList registers = {"Set", "Create"};
  const StringList fields = {"SetEntityMembers", "CreateName"};
  EXPECT_THAT(FillComboFromDrawing(registers, fields, false), ElementsAre("m1", "n", "d1", "c1", "m2", "n", "d2", "c2"));
  EXPECT_THAT(FillComboFromDrawing(registers, fields, true), ElementsAre("m1", "n", "d1", "c1", "m2", "d2", "c2"));
}

TEST_F(DrawingLists, NothingRegisteredGivesOneEmptyItem) {
  for (const bool unique : {false, true}) {
    EXPECT_THAT(FillComboFromDrawing({"Create"}, {"CreateName"}, unique), ElementsAre(""));
    EXPECT_THAT(FillComboFromDrawing({}, {}, unique), ElementsAre(""));
  }
}

TEST_F(DrawingLists, AFirstEmptyValueIsKept) {
  drawing.page().Drop("Create");
  drawing.page().Drop("Create", {{"CreateName", "A"}});
  drawing.page().Register("Create", "1;2");
  EXPECT_THAT(FillComboFromDrawing({"Create"}, {"CreateName"}, false), ElementsAre("", "A"));
}

TEST_F(DrawingLists, GatheringCostsThreeCallsAShape) {
  constexpr int kShapes = 1000;
  StringList indexes;
  for (int i = 1; i <= kShapes; ++i) {
    drawing.page().Drop("Create", {{"CreateName", "Create " + std::to_string(i)}});
    indexes.push_back(std::to_string(i));
  }
  drawing.page().Register("Create", JoinList(indexes));
  fake::hostCalls = 0;
  EXPECT_EQ(FillComboFromDrawing({"Create"}, {"CreateName"}, true).size(), kShapes);
  EXPECT_LE(fake::hostCalls, 3 * kShapes + 10);
}

}  // namespace
}  // namespace vardo
