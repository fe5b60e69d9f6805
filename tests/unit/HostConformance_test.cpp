#include "HostConformance.h"

#include "DrawingUser.h"
#include "Forwarding.h"

namespace vardo {
namespace {

// The same, seen through an observer.
class ObservedUser : public DrawingUser {
 public:
  IVApplicationPtr application() override { return observed_; }

 private:
  class : public HostCallObserver {
    void BeforeCall(std::string_view) override {}
  } observer_;
  IVApplicationPtr observed_ = ObserveHost(host_.application(), observer_);
};

INSTANTIATE_TEST_SUITE_P(Hosts, HostConformance,
                         testing::Values(HostUnderTest{"InMemory", [] { return std::make_unique<DrawingUser>(); }},
                                         HostUnderTest{"Observed", [] { return std::make_unique<ObservedUser>(); }}),
                         HostName);

// --- The observer itself

class CallLog : public HostCallObserver {
 public:
  void BeforeCall(std::string_view member) override { members.emplace_back(member); }
  std::vector<std::string> members;
};

TEST(ObservedHost, TellsEveryCallBeforeItIsMade) {
  DrawingHost host;
  CallLog log;
  const IVApplicationPtr app = ObserveHost(host.application(), log);
  EXPECT_THROW(app->ActivePage(), HostError) << "no drawing is open";
  host.New();
  host.Drop("Create", host.ActivePage().id(), 1, 1, std::nullopt);
  EXPECT_THAT(log.members, testing::ElementsAre("Application.ActivePage"));

  log.members.clear();
  const IVShapePtr shape = app->ActiveWindow()->Selection()->Item(1);
  shape->Cells("Prop.CreateName")->SetFormula("\"x\"");
  shape->ContainingPage()->PageSheet()->RowCount(kSectionProp);
  EXPECT_THAT(log.members, testing::ElementsAre("Application.ActiveWindow", "Window.Selection", "Selection.Item", "Shape.Cells",
                                                "Cell.SetFormula", "Shape.ContainingPage", "Page.PageSheet", "Shape.RowCount"));
}

TEST(ObservedHost, TellsWhatASinkDoesWithTheSubjectOfAnEvent) {
  DrawingHost host;
  host.New();
  CallLog log;
  const IVApplicationPtr app = ObserveHost(host.application(), log);
  const auto sink = std::make_shared<RecordingSink>([](const auto& event) { std::get<IVShapePtr>(event.subject)->Text(); });
  app->EventList()->AddAdvise(static_cast<std::int16_t>(kEventShapeAdded), sink, "", "");
  host.Drop("Create", host.ActivePage().id(), 1, 1, std::nullopt);
  EXPECT_THAT(log.members, testing::ElementsAre("Application.EventList", "EventList.AddAdvise", "Shape.Text"));
}

TEST(ObservedHost, HandsOnNothingForNothing) {
  DrawingHost host;
  host.New();
  CallLog log;
  const IVApplicationPtr app = ObserveHost(host.application(), log);
  EXPECT_FALSE(app->ActivePage()->PageSheet()->Master());
  EXPECT_FALSE(app->CustomMenus());
  EXPECT_THROW(app->EventList()->AddAdvise(1, nullptr, "", ""), HostError);
}

}  // namespace
}  // namespace vardo
