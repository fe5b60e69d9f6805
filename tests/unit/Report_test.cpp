// What a run leaves for people and for other programs.
#include "DrawnModel.h"
#include "TestFiles.h"
#include "TestPlatform.h"
#include "base/FileError.h"
#include "platform/OutputFile.h"
#include "report/ProgressText.h"
#include "report/ResultsCsv.h"
#include "report/ResultsHtml.h"
#include "report/ResultsReport.h"
#include "report/Svg.h"
#include "report/TraceText.h"

#include <gmock/gmock.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

namespace vardo {
namespace {

using test::DrawnModel;
using testing::HasSubstr;
using testing::Not;

class Reports : public testing::Test {
 protected:
  // One comes at 0 and one at 1 h; each takes the clerk for 2 h.
  static DrawnModel Shop() {
    DrawnModel model;
    model.Add("Create", "Come", {{"CreateType", "Constant"}, {"CreateValue", "1"}, {"CreateMaxBatches", "2"}});
    model.Add("Assign", "Mark",
              {{"AssignCount", "1"}, {"AssignType", "Attribute"}, {"AssignAttributeName", "Size"}, {"AssignNewValue", "3"}});
    model.Add("Process", "Serve, \"well\"",
              {{"ProcessAction", "SDR"},
               {"ProcessDelayType", "Constant"},
               {"ProcessValue", "2"},
               {"Process_RCount", "1"},
               {"Process_RResourceName", "Clerk"}});
    model.Add("Dispose", "Go").Add("Resource", "Clerk");
    return model.Chain({"Come", "Mark", "Serve, \"well\"", "Go"});
  }
  static RunSetup Setup(int replications) {
    RunSetup setup;
    setup.lastReplication = replications;
    return setup;
  }
  RunResults Run(const RunSetup& setup, RunOptions options = {}) {
    program_ = Shop().Compile(setup);
    Progress progress;
    return Simulate(*program_, setup, options, progress);
  }
  std::string TableOf(const RunSetup& setup, const TableOptions& options) {
    std::ostringstream text;
    const RunResults results = Run(setup);
    PrintResults(*program_, setup, results, options, text);
    return text.str();
  }

  TestPlatform platform_;
  std::shared_ptr<const Program> program_;
};

TEST_F(Reports, ShowALineAnOutputUnderItsCategory) {
  const std::string text = TableOf(Setup(3), {});
  EXPECT_THAT(text, HasSubstr("3 replications, seed 1; times in hours, 95 % half-widths of each number alone"));
  EXPECT_THAT(text, HasSubstr("\nQueues\n  Serve, \"well\".Queue\n"
                              "    waiting time                           0.5             0           0.5           0.5\n"));
  EXPECT_THAT(text, HasSubstr("Each replication ended when nothing was left to happen.\n"));
  EXPECT_THAT(text, Not(HasSubstr("NVA time")));
  EXPECT_THAT(text, Not(HasSubstr(" s.\n")));
  EXPECT_THAT(TableOf(Setup(3), {.seconds = 1.25}), HasSubstr(" events in 1.2 s.\n"));
}

TEST_F(Reports, ShowAllLinesAndObservationsWhenAsked) {
  const std::string text = TableOf(Setup(3), {.all = true});
  EXPECT_THAT(text, HasSubstr("NVA time"));
  EXPECT_THAT(text, HasSubstr("    waiting time                             6           0.5             0             1"));
}

TEST_F(Reports, NameTheHalfWidthThatOneReplicationHasNot) {
  EXPECT_THAT(TableOf(Setup(1), {}), HasSubstr("    waiting time                           0.5           n/a"));
}

TEST_F(Reports, GoIntoSpreadsheets) {
  const RunResults results = Run(Setup(2), {.threads = 1});
  std::ostringstream summary;
  WriteSummaryCsv(*program_, results.summary, summary);
  EXPECT_THAT(summary.str(), testing::StartsWith("category,of,statistic,unit,replications,mean,half_width,minimum,maximum,"));
  EXPECT_THAT(summary.str(),
              HasSubstr("\r\nQueue,\"Serve, \"\"well\"\".Queue\",Waiting time,Hours,2,0.5,0,0.5,0.5,4,0.5,0,1,0,"));
  std::ostringstream replications;
  WriteReplicationsHead(replications);
  Run(Setup(2), {.finished = [&](const ReplicationRecord& record) { WriteReplicationCsv(*program_, record, replications); }});
  EXPECT_THAT(replications.str(), testing::StartsWith("replication,category,of,statistic,value\r\n1,Entity,Entity 1,In,2\r\n"));
  EXPECT_THAT(replications.str(), HasSubstr("\r\n2,Resource,Clerk,Utilisation,1\r\n"));
}

TEST_F(Reports, TellStepByStepWhatHappens) {
  std::ostringstream text;
  program_ = Shop().Compile(Setup(3));
  TraceWriter trace(*program_, text);
  Progress progress;
  Simulate(*program_, Setup(3), {.trace = &trace, .traceReplication = 2}, progress);
  EXPECT_EQ(text.str(), R"({"t":0.0,"does":"capacity","resource":"Clerk","units":1.0}
{"t":0.0,"entity":1,"type":"Entity 1","at":"Come","does":"create"}
{"t":0.0,"entity":1,"type":"Entity 1","at":"Mark","does":"assign","of":"Size","value":3.0}
{"t":0.0,"entity":1,"type":"Entity 1","at":"Serve, \"well\"","does":"enter"}
{"t":0.0,"entity":1,"type":"Entity 1","at":"Serve, \"well\"","does":"seize","resource":"Clerk","units":1.0}
{"t":0.0,"entity":1,"type":"Entity 1","at":"Serve, \"well\"","does":"delay","for":2.0}
{"t":1.0,"entity":2,"type":"Entity 1","at":"Come","does":"create"}
{"t":1.0,"entity":2,"type":"Entity 1","at":"Mark","does":"assign","of":"Size","value":3.0}
{"t":1.0,"entity":2,"type":"Entity 1","at":"Serve, \"well\"","does":"enter"}
{"t":1.0,"entity":2,"type":"Entity 1","at":"Serve, \"well\"","does":"queue"}
{"t":2.0,"entity":1,"type":"Entity 1","at":"Serve, \"well\"","does":"release","resource":"Clerk","units":1.0}
{"t":2.0,"entity":2,"type":"Entity 1","at":"Serve, \"well\"","does":"seize","resource":"Clerk","units":1.0}
{"t":2.0,"entity":1,"type":"Entity 1","at":"Serve, \"well\"","does":"leave"}
{"t":2.0,"entity":1,"type":"Entity 1","at":"Go","does":"dispose"}
{"t":2.0,"entity":2,"type":"Entity 1","at":"Serve, \"well\"","does":"delay","for":2.0}
{"t":4.0,"entity":2,"type":"Entity 1","at":"Serve, \"well\"","does":"release","resource":"Clerk","units":1.0}
{"t":4.0,"entity":2,"type":"Entity 1","at":"Serve, \"well\"","does":"leave"}
{"t":4.0,"entity":2,"type":"Entity 1","at":"Go","does":"dispose"}
{"t":4.0,"does":"end"}
)");
}

TEST_F(Reports, AreAPageThatNeedsNothingElse) {
  RunSetup setup = Setup(3);
  setup.length = 5 * 3600;
  setup.warmUp = 1800;
  program_ = Shop().Compile(setup);
  SeriesSeen series(*program_);
  Progress progress;
  const RunResults results =
      Simulate(*program_, setup, {.finished = [&](const ReplicationRecord& record) { series.Add(record); }}, progress);
  const std::vector<Finding> findings = {
      {.severity = Severity::Note, .rule = "a/rule", .page = "A & B", .message = "It is <so>."}};
  std::ostringstream page;
  WriteHtml({*program_, setup, results, series, findings}, page);
  const std::string html = page.str();
  EXPECT_THAT(html, testing::StartsWith("<!DOCTYPE html>\n"));
  EXPECT_THAT(html, HasSubstr("<p>3 replications of 5 h, warm-up 30 min, seed 1; times in hours.</p>"));
  EXPECT_THAT(html, HasSubstr("<li>note: A &amp; B: It is &lt;so&gt;. <span class=\"soft\">[a/rule]</span></li>"));
  EXPECT_THAT(html,
              HasSubstr("The longest waits are in \u201cServe, &quot;well&quot;.Queue\u201d: 1 \u00b1 0 hours on the average"));
  EXPECT_THAT(html, HasSubstr("The busiest resource is \u201cClerk\u201d"));
  EXPECT_THAT(html, HasSubstr(">warm-up</text>"));
  EXPECT_THAT(html, HasSubstr("<figcaption>Serve, &quot;well&quot;.Queue: length</figcaption>"));
  for (const char* outside : {"http", "<script", "src=", "nan", "inf\""}) EXPECT_THAT(html, Not(HasSubstr(outside))) << outside;
}

TEST(Plots, HaveRoundTicks) {
  EXPECT_EQ(RoundTicks({0, 31}, 5), (std::vector<double>{0, 10, 20, 30}));
  EXPECT_EQ(RoundTicks({0, 1}, 5), (std::vector<double>{0, .5, 1}));
  EXPECT_EQ(RoundTicks({-3, 4}, 5), (std::vector<double>{-2, 0, 2, 4}));
  EXPECT_EQ(RoundTicks({0, 28800}, 6), (std::vector<double>{0, 5000, 10000, 15000, 20000, 25000}));
  EXPECT_EQ(RoundTicks({7, 7}, 5), (std::vector<double>{7}));
  EXPECT_EQ(PlotNumber(25000), "25000");
}

TEST(Plots, AreDrawnAsLinesAndBars) {
  Plot plot({"A <title>", "words", "x", "y"}, {0, 10}, {0, 4});
  plot.Line({0, 5, 10}, {0, NAN, 4});
  plot.Bar({0, 5}, 2);
  const std::string text = plot.Text();
  EXPECT_THAT(text, HasSubstr("aria-label=\"A &lt;title&gt;. words\""));
  EXPECT_THAT(text, HasSubstr("<polyline class=\"line\" points=\"52.0,200.0 408.0,12.0 \"/>"));
  EXPECT_THAT(text, HasSubstr("<rect class=\"c0\" x=\"52.0\" y=\"106.0\" width=\"177.4\" height=\"94.0\"></rect>"));
}

TEST(Progresses, SayHowFarARunIsAndHowLongItTakesYet) {
  EXPECT_EQ(ProgressText({37, 100, 37.42, 27'000'000, 2.5}),
            "37 of 100 replications, 0.42 of the next, 10.8 M events/s, 5 s left");
  EXPECT_EQ(ProgressText({0, 20, 0, 0, 0.5}), "0 of 20 replications, 0.0 k events/s");
  EXPECT_EQ(ProgressText({1, 20, 1, 40'000, 10}), "1 of 20 replications, 4.0 k events/s, 4 min left");
  EXPECT_EQ(ProgressText({12, 0, 12, 4'000'000, 2}), "12 replications, 2.0 M events/s");
}

TEST(OutputFiles, AppearWholeOrNotAtAll) {
  const test::TempFolder folder;
  test::WriteFile(folder / "old", "old");
  {
    OutputFile broken(MachineFileSystem(), folder / "old");
    broken << std::string(200'000, 'x');
  }
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"old"});
  EXPECT_EQ(test::ReadFile(folder / "old"), "old");
  OutputFile whole(MachineFileSystem(), folder / "old");
  whole << std::string(200'000, 'x') << "end";
  whole.Finish();
  EXPECT_EQ(test::ReadFile(folder / "old"), std::string(200'000, 'x') + "end");
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"old"});
}

TEST(OutputFiles, ThatCannotBeBegunAreRefusedAtOnce) {
  const test::TempFolder folder;
  EXPECT_THROW(OutputFile(MachineFileSystem(), folder / "nowhere" / "file"), FileError);
  EXPECT_THROW(OutputFile(MachineFileSystem(), folder / ""), FileError);
}

}  // namespace
}  // namespace vardo
