// The listener seen from the host's side: how it is registered, which codes it answers, and how it works off its queues.
#include "events/CEventSink.h"

#include "TestDrawings.h"
#include "TestFiles.h"
#include "TestPlatform.h"
#include "addin/Application.h"
#include "addin/Global_Variables.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "events/PageRegisters.h"
#include "memoryhost/DrawingHost.h"
#include "props/PropertyCells.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Log = std::vector<std::string>;

// Notes who is advised for what.
class NotedEventList : public IVEventList {
 public:
  NotedEventList(IVEventListPtr target, Log& log) : target_(std::move(target)), log_(log) {}
  IVEventPtr AddAdvise(std::int16_t code, const IVEventSinkPtr& sink, std::string_view iid, std::string_view args) override {
    log_.push_back(std::to_string(code) + " [" + std::string(iid) + "] " + std::string(args) +
                   (sink == eventSink ? "" : " for somebody else"));
    return target_->AddAdvise(code, sink, iid, args);
  }
  int Count() override { return target_->Count(); }
  IVEventPtr Item(int index) override { return target_->Item(index); }

 private:
  IVEventListPtr target_;
  Log& log_;
};

class NotedApplication : public IVApplication {
 public:
  NotedApplication(IVApplicationPtr target, Log& log) : target_(std::move(target)), log_(log) {}
  IVWindowPtr ActiveWindow() override { return target_->ActiveWindow(); }
  IVPagePtr ActivePage() override { return target_->ActivePage(); }
  IVDocumentPtr ActiveDocument() override { return target_->ActiveDocument(); }
  IVEventListPtr EventList() override { return std::make_shared<NotedEventList>(target_->EventList(), log_); }
  IVUIObjectPtr CustomMenus() override { return target_->CustomMenus(); }
  IVUIObjectPtr BuiltInMenus() override { return target_->BuiltInMenus(); }
  void SetCustomMenus(const IVUIObjectPtr& menus) override { target_->SetCustomMenus(menus); }
  bool IsUndoingOrRedoing() override { return isUndoing || target_->IsUndoingOrRedoing(); }
  int BeginUndoScope(std::string_view name) override { return target_->BeginUndoScope(name); }
  void EndUndoScope(int scope, bool keep) override { target_->EndUndoScope(scope, keep); }
  bool isUndoing = false;

 private:
  IVApplicationPtr target_;
  Log& log_;
};

class Switch : public IVEvent {
 public:
  explicit Switch(Log& log) : log_(log) {}
  void SetEnabled(bool enabled) override { log_.push_back(enabled ? "on" : "off"); }

 private:
  Log& log_;
};

// Hears of pages that go.
class Bystander : public IVEventSink {
 public:
  explicit Bystander(Log& log) : log_(log) {}
  void VisEventProc(std::int16_t, const IVApplicationPtr&, std::int32_t, std::int32_t, const EventSubject& subject,
                    std::string_view) override {
    log_.push_back("delete " + std::get<IVPagePtr>(subject)->Name());
  }

 private:
  Log& log_;
};

// A drawing that the sink under test does not listen to: it is called by hand.
class EventSink : public testing::Test {
 protected:
  EventSink() {
    host_.New();
    visApp = host_.application();
  }
  ~EventSink() override {
    visApp.reset();
    eventSink.reset();
  }

  void Call(std::uint16_t code, const EventSubject& subject = {}, std::string_view moreInfo = {}) {
    sink_.VisEventProc(static_cast<std::int16_t>(code), visApp, 1, 1, subject, moreInfo);
  }
  static IVPagePtr Page(IVApplication& host, std::string_view name) { return host.ActiveDocument()->Pages()->Item(name); }
  IVPagePtr Page(std::string_view name) { return Page(*visApp, name); }
  IVPagePtr AddPage(const char* name) { return host_.AddPage(name); }
  IVShapePtr Drop(std::string_view master) { return host_.Drop(master, host_.ActivePage().id(), 1, 1, std::nullopt); }
  Log PageNames() {
    Log names;
    for (int i = 1; i <= host_.drawing().PageCount(); ++i) names.push_back(host_.drawing().PageAt(i).Name());
    return names;
  }
  static int Rows(const IVPagePtr& page) { return page->PageSheet()->RowCount(kSectionProp); }

  // A code that makes it work off its queues and does nothing else.
  static constexpr std::uint16_t kNoneOfItsOwn = 0x2010;

  TestPlatform platform_;
  DrawingHost host_;
  CEventSink sink_;
};

TEST_F(EventSink, IsRegisteredOnceForNineEventsInTheirOrder) {
  Log log;
  const auto application = std::make_shared<NotedApplication>(host_.application(), log);
  Application().SetupEventSink(application);
  EXPECT_THAT(log, ElementsAre("1 [] Document Created....", "901 [] Before Selection Delete", "-32752 [] Add Page",
                               "16400 [] Delete Page", "-32704 [] Shape Added", "8208 [] Page Modified", "701 [] Window Changed",
                               "16386 [] Document Closed", "8320 [] Text Modified"));
  EXPECT_EQ(visApp, application);
  log.clear();
  Application().SetupEventSink(host_.application());
  EXPECT_THAT(log, IsEmpty());
  EXPECT_EQ(host_.AdviseCount(), 9);
  EXPECT_EQ(visApp, host_.application()) << "the host is remembered all the same";
}

TEST_F(EventSink, TheSubmodelCommandsUseTheirHostForThatCallOnly) {
  const IVShapePtr process = Drop("Process");
  const IVApplicationPtr known = visApp;
  for (const IVApplicationPtr& before : {IVApplicationPtr(), known}) {
    visApp = before;
    Log log;
    const auto application = std::make_shared<NotedApplication>(host_.application(), log);
    Application().Submodel(application, process);
    EXPECT_EQ(visApp, before);
    EXPECT_EQ(host_.ActivePage().Name(), "Process 1 (Submodel)");
    Application().CloseSubmodel(application, Page(*host_.application(), "Process 1 (Submodel)"));
    EXPECT_EQ(visApp, before);
    EXPECT_EQ(host_.ActivePage().Name(), "Page-1");
    const IVPagePtr gone = AddPage("Gone");
    gone->Delete(1);
    EXPECT_THROW(Application().CloseSubmodel(application, gone), HostError);
    EXPECT_EQ(visApp, before) << "also when the host refuses";
  }
}

// Whichever window a person turns to, without an event that tells of it.
TEST_F(EventSink, LooksAtTheRegistersOfEachDrawingWhenItIsFirstTheActiveOne) {
  const test::TempFolder folder;
  Drop("Create");
  SetPagePropList(visApp->ActivePage(), "Create", "5");
  host_.Save(folder / "unfit.vsdx");
  DrawingHost first, second;
  first.Open(folder / "unfit.vsdx");
  second.New();  // so that their drawings have not the same number
  second.Open(folder / "unfit.vsdx");
  const auto registered = [&](DrawingHost& active) {
    visApp = active.application();
    sink_.MendRegisters();
    return PropText(visApp->ActivePage()->PageSheet(), "Create");
  };
  const auto put = [](DrawingHost& host, std::string_view text) {
    SetPagePropList(host.application()->ActivePage(), "Create", text);
  };
  EXPECT_EQ(registered(first), "1");
  EXPECT_EQ(registered(second), "1");
  put(first, "7");
  EXPECT_EQ(registered(first), "7") << "what is done later stays";
  put(first, "5");
  EXPECT_EQ(registered(second), "1");
  EXPECT_EQ(registered(first), "1") << "but not that the counting is undone";
  put(first, "7");
  put(second, "7");
  Call(kEventDocumentClosed, second.application()->ActiveDocument());
  EXPECT_EQ(registered(first), "7");
  EXPECT_EQ(registered(second), "1") << "another with its number has been opened";
}

TEST_F(EventSink, AnswersItsCodesAndNoOthers) {
  const IVPagePtr bare = AddPage("Bare");
  for (int code = -32768; code <= 32767; ++code) {
    if (code == -32752) continue;
    const EventSubject subject = bare;
    sink_.VisEventProc(static_cast<std::int16_t>(code), visApp, 1, 1, subject, "");
  }
  ASSERT_EQ(Rows(bare), 0) << "a subject of another kind harms nothing";
  sink_.VisEventProc(-32752, visApp, 1, 1, bare, "");
  EXPECT_EQ(Rows(bare), 17);

  const IVShapePtr create = Drop("Create");
  sink_.VisEventProc(-32704, visApp, 1, 1, create, "");
  EXPECT_THAT(GetPagePropList(bare, "Create", ""), ElementsAre("1"));
  sink_.VisEventProc(901, visApp, 1, 1, visApp->ActiveWindow()->Selection(), "");
  EXPECT_THAT(GetPagePropList(bare, "Create", ""), ElementsAre(""));
}

TEST_F(EventSink, PicturesAndGuidesThatAMasterMadeAreNoModules) {
  const test::TempFolder folder;
  test::WriteFile(folder / "types.vsdx", test::ZipOf({.shapes = "<Shape ID='1' Type='Foreign' Master='2'/>"
                                                                "<Shape ID='2' Type='Group' Master='2'/>"
                                                                "<Shape ID='3' Type='Guide' Master='2'/>"
                                                                "<Shape ID='4' Type='Shape' Master='2'/>",
                                                      .masters = {{"Create", "<Shape ID='5' Type='Shape'/>"}}}));
  host_.Open(folder / "types.vsdx");
  const IVPagePtr page = visApp->ActivePage();
  for (int i = 1; i <= 4; ++i) Call(kEventShapeAdded, page->Shapes()->Item(i));
  EXPECT_THAT(GetPagePropList(page, "Create", ""), ElementsAre("2", "4"));
}

TEST_F(EventSink, SaysNothingWhenItCannotDoWhatItShould) {
  PagesToDelete = {"Page-1"};
  for (const char* moreInfo : {"", "no number", "/doc=1 /page=1 /shape=Sheet.99", "/shape=Sheet.", "a.99999999999999999999"}) {
    host_.Select({});
    Call(kEventTextChanged, {}, moreInfo);
  }
  EXPECT_THAT(platform_->messages, IsEmpty());
  EXPECT_THAT(PagesToDelete, IsEmpty());
  EXPECT_THAT(PageNames(), ElementsAre("Page-1")) << "a drawing keeps its last page";
}

TEST_F(EventSink, QueuedPagesGoWithTheEventOfTheirGoingSwitchedOff) {
  AddPage("A"), AddPage("B"), AddPage("Here");
  Log log;
  host_.application()->EventList()->AddAdvise(static_cast<std::int16_t>(kEventPageDeleted), std::make_shared<Bystander>(log), "",
                                              "");
  sink_.Advised(std::make_shared<Switch>(log), true);
  PagesToDelete = {"A", "Nowhere", "b", "B"};
  Call(kNoneOfItsOwn);
  EXPECT_THAT(log, ElementsAre("off", "delete A", "on", "off", "on", "off", "on", "off", "delete B", "on"))
      << "names are compared exactly";
  EXPECT_THAT(PagesToDelete, IsEmpty());
  EXPECT_THAT(PageNames(), ElementsAre("Page-1", "Here"));
  EXPECT_EQ(host_.ActivePage().Name(), "Here");
}

TEST_F(EventSink, TheWindowShowsThePageOfBeforeWhateverTurnedItMeanwhile) {
  class PageTurner : public IVEventSink {
   public:
    void VisEventProc(std::int16_t, const IVApplicationPtr& application, std::int32_t, std::int32_t, const EventSubject&,
                      std::string_view) override {
      application->ActiveWindow()->SetPage("Elsewhere");
    }
  };
  AddPage("A"), AddPage("B"), AddPage("Elsewhere"), AddPage("Here");
  host_.application()->EventList()->AddAdvise(static_cast<std::int16_t>(kEventPageDeleted), std::make_shared<PageTurner>(), "",
                                              "");
  PagesToDelete = {"A", "B"};
  Call(kNoneOfItsOwn);
  EXPECT_THAT(PageNames(), ElementsAre("Page-1", "Elsewhere", "Here"));
  EXPECT_EQ(host_.ActivePage().Name(), "Here");
}

TEST_F(EventSink, AQueuedPageThatIsShownGivesTheWindowToAnother) {
  AddPage("Shown");
  PagesToDelete = {"Shown"};
  Call(kNoneOfItsOwn);
  EXPECT_THAT(PageNames(), ElementsAre("Page-1"));
  EXPECT_EQ(host_.ActivePage().Name(), "Page-1");
}

TEST_F(EventSink, QueuedPagesAreInitialisedWhenTheyAreThere) {
  const IVPagePtr plain = AddPage("Plain"), other = AddPage("Other");
  PagesToInitialise = {"Plain", "Nowhere", "OTHER"};
  Call(kNoneOfItsOwn);
  EXPECT_THAT(PagesToInitialise, IsEmpty());
  EXPECT_EQ(Rows(plain), 17);
  EXPECT_EQ(Rows(other), 0);
}

TEST_F(EventSink, APageWhoseProcessIsBackByUndoBeforeTheNextEventStays) {
  AddPage("A"), AddPage("Here");
  Log log;
  const auto undoing = std::make_shared<NotedApplication>(host_.application(), log);
  visApp = undoing;
  PagesToDelete = {"A"};
  undoing->isUndoing = true;
  Call(kEventShapeAdded, Drop("Process"));
  undoing->isUndoing = false;
  Call(kNoneOfItsOwn);
  EXPECT_THAT(PageNames(), ElementsAre("Page-1", "A", "Here"));
}

TEST_F(EventSink, PagesAreDeletedBeforeOthersAreInitialisedAndBeforeTheEventIsAnswered) {
  const IVPagePtr gone = AddPage("Gone"), bare = AddPage("Bare");
  PagesToDelete = {"Gone"};
  PagesToInitialise = {"Gone", "Bare"};
  Call(kEventShapeAdded, Drop("Create"));
  EXPECT_THROW(gone->Name(), HostError);
  EXPECT_EQ(Rows(bare), 17);
  EXPECT_THAT(GetPagePropList(bare, "Create", ""), ElementsAre("1"));
}

TEST_F(EventSink, TheNextNewPageAloneGetsThePendingParent) {
  const IVPagePtr first = AddPage("First"), second = AddPage("Second");
  PendingParentPage = "Größe; 漢字";
  Call(kEventPageAdded, first);
  Call(kEventPageAdded, second);
  const auto formula = [](const IVPagePtr& page) { return page->PageSheet()->Cells("Prop.VardoParentPage")->Formula(); };
  EXPECT_EQ(formula(first), "\"Größe; 漢字\"");
  EXPECT_EQ(formula(second), "\"\"");
  EXPECT_EQ(PendingParentPage, "");
  for (short row = 0; row < 17; ++row)
    EXPECT_EQ(first->PageSheet()->CellsSRC(kSectionProp, row, kCellPropInvisible)->Formula(), "1") << row;
}

TEST_F(EventSink, CountModuleNamesWritesThePositionsAfterTheDeletion) {
  for (const char* master : {"Create", "Dynamic connector", "Variable", "Create", "Process", "Create"}) Drop(master);
  const struct {
    ShapeIndexes goingAway;
    const char *create, *process, *variable, *count, *why;
  } cases[] = {
      {{}, "1;4;6", "5", "3", "5", "nothing goes"},
      {{1}, "3;5", "4", "2", "4", "the first"},
      {{6}, "1;4", "5", "3", "4", "the last"},
      {{2}, "1;3;5", "4", "2", "5", "a connector"},
      {{1, 2, 4}, "3", "2", "1", "3", "some, in whatever order they were selected"},
      {{1, 2, 3, 4, 5, 6}, "", "", "", "0", "all"},
      {{7, 0, -1}, "1;4;6", "5", "3", "5", "positions that are not there"},
  };
  const IVPagePtr page = visApp->ActivePage();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    CountModuleNames(page, c.goingAway);
    const auto formula = [&](const char* cell) { return page->PageSheet()->Cells(cell)->Formula(); };
    EXPECT_EQ(formula("Prop.Create"), "\"" + std::string(c.create) + "\"");
    EXPECT_EQ(formula("Prop.Process"), "\"" + std::string(c.process) + "\"");
    EXPECT_EQ(formula("Prop.Variable"), "\"" + std::string(c.variable) + "\"");
    EXPECT_EQ(formula("Prop.Queue"), "\"\"");
    EXPECT_EQ(formula("Prop.Count"), "\"" + std::string(c.count) + "\"");
  }
}

TEST_F(EventSink, TheDrawingsIndexesOfAKindLeaveOutPagesThatHaveNone) {
  AddPage("None"), AddPage("Two");
  const IVPagePtr first = Page("Page-1"), two = Page("Two");
  EXPECT_EQ(DrawingKindShapeIndexes("Create"), "");
  EXPECT_EQ(KindShapeCount("Create"), 0);
  SetPagePropList(two, "Create", "2;7");
  EXPECT_EQ(DrawingKindShapeIndexes("Create"), "2;7");
  SetPagePropList(first, "Create", "3");
  EXPECT_EQ(DrawingKindShapeIndexes("Create"), "3;2;7");
  EXPECT_EQ(KindShapeCount("Create"), 3);
}

}  // namespace
}  // namespace vardo
