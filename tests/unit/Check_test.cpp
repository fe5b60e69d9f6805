// What is done with all that the rules find.
#include "check/Check.h"

#include "ModelDrawing.h"
#include "TestPlatform.h"
#include "report/FindingsReport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kSeveral = R"(
  Create Come
  Process Weld | ProcessDelayType=Expression | ProcessExpression=TRIA(1, 2 3)
  Dispose Go
  Come -> Weld -> Go
  Entity Entity 1
  page Second
  Decide Ask
  Resource Anna | ResourceBusy_Hour=1,5 | ResourcePerUse=many)";

class Checks : public testing::Test {
 protected:
  static std::vector<Finding> Find(const char* drawing, const std::string& ignore = "", CheckFor purpose = CheckFor::Itself) {
    SetupTexts options;
    if (!ignore.empty()) options[static_cast<size_t>(SetupItem::Ignore)] = ignore;
    return Examine(ModelDrawing(drawing).document(), options, {}, purpose).findings;
  }
  static std::vector<std::string_view> RulesOf(const std::vector<Finding>& findings) {
    std::vector<std::string_view> rules;
    for (const Finding& finding : findings) rules.push_back(finding.rule);
    return rules;
  }

 private:
  TestPlatform platform_;
};

TEST_F(Checks, FindingsStandInTheOrderOfTheDrawing) {
  EXPECT_THAT(RulesOf(Find(kSeveral)), ElementsAre("field/expression", "structure/unreachable", "names/resource-unused",
                                                   "field/decimal-comma", "field/not-a-number"));
}

TEST_F(Checks, IgnoredRulesAreLeftOutUnlessAnErrorStandsInTheWayOfARun) {
  const std::string ignored = "field/expression;structure/unreachable;field/decimal-comma";
  EXPECT_THAT(RulesOf(Find(kSeveral, ignored)), ElementsAre("names/resource-unused", "field/not-a-number"));
  EXPECT_THAT(RulesOf(Find(kSeveral, ignored, CheckFor::Run)),
              ElementsAre("field/expression", "names/resource-unused", "field/not-a-number", "run/no-end"));
  EXPECT_THAT(RulesOf(Find(kSeveral, "field/nothing")), testing::Contains("run/setup"));
}

TEST_F(Checks, LinesNameThePageTheModuleTheFieldAndThePlace) {
  std::ostringstream output;
  PrintFindings("bank.vsdx", Find(kSeveral), output);
  EXPECT_EQ(output.str(),
            "bank.vsdx: Page-1: Process \"Weld\", Expression: expected \",\" or \")\" before \"3\" at character 11. "
            "[field/expression]\n"
            "    TRIA(1, 2 3)\n"
            "              ^\n"
            "bank.vsdx: Second: No entity ever reaches Decide \"Ask\". [structure/unreachable]\n"
            "bank.vsdx: Second: Resource \"Anna\" is never used. [names/resource-unused]\n"
            "bank.vsdx: Second: Resource \"Anna\", Busy / Hour: \"1,5\" is read as 1.5. [field/decimal-comma]\n"
            "bank.vsdx: Second: Resource \"Anna\", Per Use: \"many\" is no number. [field/not-a-number]\n"
            "bank.vsdx: 2 errors, 2 warnings, 1 note\n");
}

TEST_F(Checks, ProgramsReadTheSame) {
  const nlohmann::ordered_json json = FindingsJson("bank.vsdx", Find(kSeveral));
  EXPECT_EQ(json["format"], "vardo-findings");
  EXPECT_EQ(json["file"], "bank.vsdx");
  EXPECT_EQ(json["errors"], 2);
  EXPECT_EQ(json["warnings"], 2);
  EXPECT_EQ(json["notes"], 1);
  const auto expected = nlohmann::ordered_json::parse(R"({
    "severity": "error", "rule": "field/expression", "page": "Page-1", "kind": "Process", "module": "Weld", "shape": 2,
    "field": "Expression", "property": "ProcessExpression", "position": 11, "length": 1,
    "message": "Process \"Weld\", Expression: expected \",\" or \")\" before \"3\" at character 11."})");
  EXPECT_EQ(json["findings"][0], expected);
  EXPECT_FALSE(FindingsJson("", Find(kSeveral)).contains("file"));
}

TEST_F(Checks, AModelThatIsAsItShouldBeIsLeftInPeace) {
  EXPECT_THAT(RulesOf(Find(R"(
    Create Customer arrives | CreateEntityType=Customer | CreateValue=3 | CreateUnits=Minutes
    Process Teller serves | ProcessAction=SDR | Process_RCount=1 | Process_RResourceName=Teller | ProcessDelayType=Expression | ProcessExpression=EXPO(.03)
    Decide Needs a loan? | DecidePercentTrue=10
    Process Loan | ProcessType=Submodel | VardoSubPage=Loan
    Record Served | RecordType=Interval | RecordAttributeName=Entity.CreateTime
    Dispose Customer leaves
    Entity Customer
    Resource Teller
    Queue Teller serves.Queue
    Customer arrives -> Teller serves -> Needs a loan? -true-> Loan -> Served -> Customer leaves
    Needs a loan? -false-> Served
    page Loan of Page-1
    Process Talk
    Process Sign
    Talk -> Sign ->)")),
              IsEmpty());
}

}  // namespace
}  // namespace vardo
