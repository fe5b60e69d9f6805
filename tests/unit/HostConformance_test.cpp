#include "HostConformance.h"
#include "TestDrawings.h"

#include "addin/host/Forwarding.h"
#include "drawing/DrawingHost.h"

#include <unistd.h>
#include <filesystem>

namespace vardo {
namespace {

// A person at the in-memory host.
class DrawingUser : public HostUser {
 public:
  IVApplicationPtr application() override { return host_.application(); }
  void NewDrawing() override { host_.New(); }
  void SaveAndReopen() override {
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / ("conformance-" + std::to_string(getpid()) + ".vsdx");
    host_.Save(file);
    host_.Open(file);
    std::filesystem::remove(file);
  }
  void OpenDrawingOfABarePage() override {
    const test::TempFolder folder;
    test::WriteFile(folder / "bare.vsdx", test::ZipOf({.shapes = "", .pageSheet = ""}));
    host_.Open(folder / "bare.vsdx");
  }
  IVShapePtr Drop(std::string_view master) override {
    host_.Drop(master, host_.ActivePage().id(), 1, 1, std::nullopt);
    return host_.selection().empty() ? nullptr : application()->ActivePage()->Shapes()->ItemFromID(host_.selection().front());
  }
  void Select(const std::vector<IVShapePtr>& shapes) override {
    std::vector<int> ids;
    for (const IVShapePtr& shape : shapes) ids.push_back(shape->ID());
    host_.Select(ids);
  }
  void DeleteSelection() override { host_.DeleteSelection(); }
  void Type(const IVShapePtr& shape, std::string_view text) override {
    const DrawingPage& page = *host_.drawing().FindPage(shape->ContainingPage()->Name());
    host_.TypeText(host_.RefTo(page, shape->ID()), text, false);
  }
  void RunCommand(const std::function<void()>& command) override { host_.RunCommand("Command", command); }
  void Undo() override { host_.Undo(); }
  void Redo() override { host_.Redo(); }

 protected:
  DrawingHost host_;
};

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
