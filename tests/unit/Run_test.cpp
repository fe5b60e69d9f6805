// A drawing run as somebody asks for it: its set-up, what stands in the way, and how a run fails.
#include "ModelDrawing.h"
#include "TestPlatform.h"
#include "model/ModelSource.h"
#include "run/PreparedRun.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// Somebody comes every hour and is served for a while.
constexpr const char* kShop =
    "Create Come | CreateType=Constant | CreateValue=1\n"
    "Process Serve | ProcessAction=SDR | ProcessDelayType=Expression | ProcessExpression=.5 | Process_RCount=1 | "
    "Process_RResourceName=Clerk\n"
    "Dispose Go\nResource Clerk\nEntity Entity 1\nCome -> Serve -> Go\n";

class PreparedRuns : public testing::Test {
 protected:
  static SetupTexts Texts(const std::vector<std::pair<SetupItem, std::string>>& given) {
    SetupTexts texts;
    for (const auto& [item, text] : given) texts[static_cast<size_t>(item)] = text;
    return texts;
  }
  static PreparedRun Prepare(ModelDrawing& drawing, const RunOrder& order) {
    return PrepareRun(drawing.document(), order, "shop");
  }
  // "rule: message" of each error.
  static std::vector<std::string> ErrorsOf(const RunOrder& order) {
    ModelDrawing drawing(kShop);
    const PreparedRun run = Prepare(drawing, order);
    std::vector<std::string> errors;
    for (const Finding& finding : run.findings)
      if (finding.severity == Severity::Error) errors.push_back(std::string(finding.rule) + ": " + finding.message);
    EXPECT_EQ(run.program == nullptr, !errors.empty());
    return errors;
  }
  static double MeanOf(ModelDrawing& drawing, const RunOrder& order, const char* output) {
    const PreparedRun run = Prepare(drawing, order);
    Progress progress;
    const RunResults results = Simulate(*run.program, run.setup, {}, progress);
    return results.summary.Of(FindOutput(*run.program, output).value()).mean;
  }
  static std::string FailureOf(const std::string& expression, const RunOrder& order, const RunOptions& options = {}) {
    ModelDrawing drawing(kShop);
    RunOrder with = order;
    with.settings.push_back("Serve, Expression=" + expression);
    const PreparedRun run = Prepare(drawing, with);
    Progress progress;
    try {
      Simulate(*run.program, run.setup, options, progress);
    } catch (const RunError& error) {
      return error.what();
    }
    return "";
  }
  static inline const RunOrder kDay{.setup = Texts({{SetupItem::Length, "24"}, {SetupItem::Replications, "2"}})};

  TestPlatform platform_;
};

TEST_F(PreparedRuns, TakeTheirSetUpFromTheDrawingAndBeforeThatFromTheOptions) {
  ModelDrawing drawing(std::string(kShop) + "cell TheDoc User.VardoRunLength=\"10h\"\ncell TheDoc User.VardoRunSeed=\"7\"\n");
  const PreparedRun run = Prepare(drawing, {.setup = Texts({{SetupItem::Seed, "8"}})});
  EXPECT_EQ(run.setup.length, 36000);
  EXPECT_EQ(run.setup.seed, 8u);
  EXPECT_EQ(run.setup.lastReplication, 20);
}

TEST_F(PreparedRuns, SetUpIsKeptInTheDrawing) {
  ModelDrawing drawing(std::string(kShop) + "cell TheDoc User.VardoRunLength=\"10h\"\n");
  KeepSetup(drawing.document(), Texts({{SetupItem::Length, "8h"}, {SetupItem::Until, "Left(Go) > 3"}}));
  const SetupTexts kept = ReadDrawing(drawing.document()).setup;
  EXPECT_EQ(kept, Texts({{SetupItem::Length, "8h"}, {SetupItem::Until, "Left(Go) > 3"}}));
}

TEST_F(PreparedRuns, AreRefusedForASetUpThatCannotBe) {
  const auto with = [](const std::vector<std::pair<SetupItem, std::string>>& given,
                       const std::vector<std::string>& settings = {}) {
    std::vector<std::pair<SetupItem, std::string>> all = {{SetupItem::Length, "8h"}};
    all.insert(all.end(), given.begin(), given.end());
    return ErrorsOf({Texts(all), settings});
  };
  EXPECT_THAT(ErrorsOf({}), ElementsAre(HasSubstr("run/no-end: ")));
  EXPECT_THAT(with({{SetupItem::Length, "two days"}}), testing::Contains(HasSubstr("run/setup: --length: \"two days\"")));
  EXPECT_THAT(with({{SetupItem::WarmUp, "8h"}}), ElementsAre("run/warm-up-too-long: The warm-up is as long as the run."));
  EXPECT_THAT(with({{SetupItem::Precision, "2%"}}),
              ElementsAre(HasSubstr("run/setup: A precision is asked for, but not of what")));
  EXPECT_THAT(with({{SetupItem::Precision, "2%"}, {SetupItem::PrecisionOf, "Queue/x"}}),
              ElementsAre(HasSubstr("run/setup: There is no output \"Queue/x\"")));
  EXPECT_THAT(ErrorsOf({.setup = Texts({{SetupItem::Until, "Left(Go) > 3"}, {SetupItem::WarmUp, "auto"}})}),
              ElementsAre(HasSubstr("run/setup: A warm-up can be proposed for runs of a length alone")));
  EXPECT_THAT(with({}, {"Clerk"}), ElementsAre(HasSubstr("run/setup: --set: \"Clerk\" is no setting")));
  EXPECT_THAT(with({}, {"Clerk=3"}), ElementsAre(HasSubstr("run/setup: --set: no Variable module is called \"Clerk\"")));
  EXPECT_THAT(with({}, {"Clerk, Capacity=2"}), IsEmpty());
}

TEST_F(PreparedRuns, HaveTheValuesThatAreSetForThem) {
  ModelDrawing drawing(kShop);
  EXPECT_DOUBLE_EQ(MeanOf(drawing, kDay, "Resource/Clerk/Utilisation"), .5);
  RunOrder order = kDay;
  order.settings = {"serve, expression=1/4"};
  EXPECT_DOUBLE_EQ(MeanOf(drawing, order, "Resource/Clerk/Utilisation"), .25);
}

TEST_F(PreparedRuns, FailNamingReplicationTimePageModuleFieldAndPosition) {
  EXPECT_EQ(FailureOf("1 + SQRT(-Now())", kDay),
            "Replication 1 at 1 h: Page-1: Process \"Serve\", Expression: square root of -1 at character 5.");
  EXPECT_EQ(FailureOf("2 * (1 / (Now() - 3))", {.setup = Texts({{SetupItem::Length, "24"}, {SetupItem::Replications, "3..4"}})},
                      {.threads = 2}),
            "Replication 3 at 3 h: Page-1: Process \"Serve\", Expression: division by zero at character 6.");
  EXPECT_EQ(
      FailureOf("EXPO(0 - Now() * 2)", {.setup = Texts({{SetupItem::Length, "24h"}, {SetupItem::TimeUnit, "Minutes"}})}),
      "Replication 1 at 60 min: Page-1: Process \"Serve\", Expression: EXPO wants a mean that is not negative at character 1.");
  EXPECT_EQ(FailureOf("5", kDay, {.mostEntities = 3}),
            "Replication 1 at 3 h: more than 3 entities are in the model at once: \"Serve.Queue\" holds 2.");
}

TEST_F(PreparedRuns, OfOnePartHaveItsReplications) {
  RunSetup setup;
  TakePart({3, 6, ""}, setup);
  EXPECT_EQ(setup.firstReplication, 7);
  EXPECT_EQ(setup.lastReplication, 10);
  EXPECT_THROW(TakePart({1, 30, ""}, setup), std::runtime_error);
  setup.precision = 2;
  EXPECT_THROW(TakePart({1, 2, ""}, setup), std::runtime_error);
}

TEST_F(PreparedRuns, ThatAreStoppedTellWhatIsComplete) {
  ModelDrawing drawing(kShop);
  const PreparedRun run = Prepare(drawing, {.setup = Texts({{SetupItem::Length, "24"}, {SetupItem::Replications, "50"}})});
  Progress progress;
  RunOptions options{.threads = 1};
  options.finished = [&](const ReplicationRecord& record) { progress.stop = record.number == 4; };
  const RunResults results = Simulate(*run.program, run.setup, options, progress);
  EXPECT_TRUE(results.isStopped);
  EXPECT_EQ(results.summary.replications(), 4u);
  EXPECT_DOUBLE_EQ(progress.work, 4);
  EXPECT_EQ(progress.events, results.summary.events());

  Progress stopped;
  stopped.stop = true;
  EXPECT_THROW(Simulate(*run.program, run.setup, {}, stopped), RunStopped);
}

}  // namespace
}  // namespace vardo
