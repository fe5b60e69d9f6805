// All that the add-in does without a dialog, in a drawing host that refuses a call: the first, the second and so on until what
// was asked for is done without it, each time once and once for ever after. Then the host is well again and the next thing
// happens.
#include "FaultInjection.h"
#include "TestPlatform.h"
#include "addin/Application.h"
#include "addin/Global_Variables.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "catalog/NameCatalogues.h"
#include "events/CEventSink.h"
#include "events/SubmodelPages.h"
#include "memoryhost/DrawingHost.h"
#include "modules/ModuleKinds.h"
#include "props/PropertyCells.h"
#include "props/StringFunctions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSubsetOf;
using testing::StartsWith;
using Mode = FailingHost::Mode;
using Findings = std::set<std::string>;

struct Operation {
  const char* name;
  std::function<void()> prepare;
  std::function<void()> run;
  // What is so when the host has refused nothing and the next module has come.
  std::function<void()> done;
  // What is not in order yet when the operation ends, because it is put off to the next event.
  Findings putOff = {};
  // What may be left for good when the host has refused one call, or everything from some call on.
  Findings left = {};
};

// The sanitizers look at some of the calls: with them each takes ten times as long.
#ifdef __SANITIZE_ADDRESS__
constexpr int kStride = 7;
#else
constexpr int kStride = 1;
#endif

class EventFaults : public testing::Test {
 protected:
  EventFaults() { BuildNameCatalogues(); }
  ~EventFaults() override {
    PagesToDelete.clear();
    PagesToInitialise.clear();
    visApp.reset();
    eventSink.reset();
  }

  // A new drawing with a listener that has no past.
  void StartAnew() {
    faults_.SwitchOff();
    visApp.reset();
    eventSink.reset();
    PagesToDelete.clear();
    PagesToInitialise.clear();
    platform_->messages.clear();
    host_ = std::make_unique<DrawingHost>();
    app_ = ObserveHost(host_->application(), faults_);
    host_->New();
  }
  void StartAnewListening() {
    StartAnew();
    addin_.SetupEventSink(app_);
  }

  // --- What a person does.
  DrawingPage& PageNamed(std::string_view name) { return *host_->drawing().FindPage(name); }
  int PageId(int index) { return host_->drawing().PageAt(index).id(); }
  void Show(int page) { host_->ShowPage(PageId(page)); }
  SheetRef Ref(int index) { return host_->RefTo(host_->ActivePage(), host_->ActivePage().ShapeAt(index).id()); }
  // The shape's object as the host hands it to the add-in.
  IVShapePtr Object(int index) { return app_->ActivePage()->Shapes()->Item(index); }
  void Drop(std::string_view master) { host_->Drop(master, host_->ActivePage().id(), 1, 1, std::nullopt); }
  void Type(int index, std::string_view text) { host_->TypeText(Ref(index), text, false); }
  void Delete(const std::vector<int>& indexes) {
    std::vector<int> ids;
    for (const int index : indexes) ids.push_back(host_->ActivePage().ShapeAt(index).id());
    host_->Select(ids);
    host_->DeleteSelection();
  }
  void PasteAll() {
    std::vector<SheetRef> originals;
    for (int i = 1; i <= host_->ActivePage().ShapeCount(); ++i) originals.push_back(Ref(i));
    host_->Paste(originals, host_->ActivePage().id());
  }
  void Connect(std::string_view master, int from, int to) {
    host_->Connect(master, host_->ActivePage().id(), {.shape = Ref(from).shape}, {.shape = Ref(to).shape});
  }
  void OpenSubmodel(int index) {
    const IVShapePtr shape = Object(index);
    host_->RunCommand("Edit Submodel", [&] { addin_.Submodel(app_, shape); });
  }

  // --- What there is, asked of a host that refuses nothing.
  IVPagesPtr Pages() { return host_->application()->ActiveDocument()->Pages(); }
  std::vector<std::string> PageNames() {
    std::vector<std::string> names;
    for (int i = 1; i <= Pages()->Count(); ++i) names.push_back(Pages()->Item(i)->Name());
    return names;
  }
  IVShapePtr Shape(int index) { return host_->application()->ActivePage()->Shapes()->Item(index); }
  std::vector<std::string> Texts() {
    std::vector<std::string> texts;
    for (int i = 1; i <= host_->ActivePage().ShapeCount(); ++i) texts.push_back(Shape(i)->Text());
    return texts;
  }
  static std::string Prop(const IVShapePtr& shape, std::string_view field) { return GetPropList(shape, field, "").front(); }

  // What the drawing says of itself and what is not so. Nothing when registers and links are as they should be.
  Findings Wrong() {
    Findings wrong;
    std::map<std::string, std::string> processPages;  // of the submodel page that a Process names
    for (int i = 1; i <= Pages()->Count(); ++i) {
      const IVPagePtr page = Pages()->Item(i);
      std::map<std::string, std::string> counted;
      int count = 0;
      for (int j = 1; j <= page->Shapes()->Count(); ++j) {
        const IVShapePtr shape = page->Shapes()->Item(j);
        const IVMasterPtr master = shape->Master();
        if (!master || !IsModuleKind(master->Name())) continue;
        std::string& indexes = counted[master->Name()];
        indexes += (indexes.empty() ? "" : ";") + std::to_string(j);
        ++count;
        const std::string submodel = Prop(shape, "VardoSubPage");
        if (submodel.empty()) continue;
        if (!processPages.emplace(submodel, page->Name()).second) wrong.insert("two claim " + submodel);
      }
      for (const std::string_view kind : kModuleKinds)
        if (JoinList(GetPagePropList(page, kind, "")) != counted[std::string(kind)]) wrong.insert("register of " + page->Name());
      const std::string stated = GetPagePropList(page, "Count", "0").front();
      if ((stated.empty() ? "0" : stated) != std::to_string(count)) wrong.insert("count of " + page->Name());
    }
    const std::vector<std::string> pages = PageNames();
    for (const auto& [submodel, parent] : processPages) {
      if (std::find(pages.begin(), pages.end(), submodel) == pages.end()) {
        wrong.insert("no page " + submodel);
        continue;
      }
      const std::string stated = GetPagePropList(Pages()->Item(submodel), "VardoParentPage", "").front();
      if (stated != parent) wrong.insert("parent of " + submodel);
    }
    for (const std::string& name : pages)
      if (!GetPagePropList(Pages()->Item(name), "VardoParentPage", "").front().empty() && !processPages.contains(name))
        wrong.insert("no Process of " + name);
    return wrong;
  }

  // Runs it with call 1, 2, ... failing until it makes fewer calls than that. check is told whether the host refused something.
  void Sweep(const std::function<void()>& prepare, const std::function<void()>& run,
             const std::function<void(Mode, int failures)>& check, int step = 1) {
    for (const Mode mode : {Mode::Once, Mode::EverAfter}) {
      for (int call = 1;; call += step * kStride) {
        SCOPED_TRACE("call " + std::to_string(call) + (mode == Mode::Once ? " fails" : " and all behind it fail"));
        prepare();
        faults_.FailAt(call, mode);
        run();
        const int failures = faults_.failures();
        faults_.SwitchOff();
        check(mode, failures);
        if (failures == 0 || HasFailure()) break;
      }
    }
  }

  TestPlatform platform_;
  FailingHost faults_;
  std::unique_ptr<DrawingHost> host_;
  IVApplicationPtr app_;
  Application addin_;
};

TEST_F(EventFaults, ListenersEndSilentlyAndTheRegistersAndLinksAreRight) {
  const auto drop = [this](std::initializer_list<const char*> masters) {
    return [this, masters = std::vector<const char*>(masters)] {
      for (const char* master : masters) Drop(master);
    };
  };
  const Operation operations[] = {
      {"a page is added", [] {}, [&] { host_->AddPage(std::nullopt); }, [&] { EXPECT_EQ(PageNames().size(), 2u); }},
      {"a first module is dropped", [] {}, [&] { Drop("Create"); },
       [&] { EXPECT_THAT(Texts(), ElementsAre("Create 1", "Variable 1")); }},
      {"a module is dropped whose name is taken", drop({"Create", "Process"}), [&] { Drop("Create"); },
       [&] { EXPECT_THAT(Texts(), ElementsAre("Create 1", "Process 1", "Create2", "Variable 1")); }},
      {"a Process with a submodel is pasted",
       [&] {
         Drop("Process");
         OpenSubmodel(1);
         Show(1);
       },
       [&] { PasteAll(); },
       [&] {
         EXPECT_THAT(Texts(), ElementsAre("Process 1", "Process2", "Variable 1"));
         EXPECT_EQ(Prop(Shape(2), "VardoSubPage"), "");
         EXPECT_EQ(Prop(Shape(2), "ProcessName"), "Process2");
       },
       {},
       // The copy stays in everything what its original is.
       {"two claim Process 1 (Submodel)"}},
      {"a module and a connector are pasted", drop({"Create", "Dynamic connector"}), [&] { PasteAll(); },
       [&] { EXPECT_THAT(Texts(), ElementsAre("Create 1", "", "Create2", "", "Variable 1")); }},
      {"a text is typed", drop({"Create"}), [&] { Type(1, " Arrivals "); },
       [&] {
         EXPECT_THAT(Texts(), ElementsAre("Arrivals", "Variable 1"));
         EXPECT_EQ(Prop(Shape(1), "CreateName"), "Arrivals");
       }},
      {"a taken name is typed", drop({"Process", "Create"}), [&] { Type(2, "process 1"); },
       [&] {
         EXPECT_THAT(Texts(), ElementsAre("Process 1", "Create 1", "Variable 1"));
         EXPECT_EQ(platform_->messages.size(), 1u);
         EXPECT_EQ(platform_->messages.at(0).text, "Shape names must be unique.");
       }},
      {"a Process with a submodel is renamed",
       [&] {
         Drop("Process");
         OpenSubmodel(1);
         Show(1);
       },
       [&] { Type(1, "Serve"); },
       [&] {
         EXPECT_EQ(Prop(Shape(1), "VardoSubPage"), "Serve (Submodel)");
         EXPECT_THAT(PageNames(), ElementsAre("Page-1", "Serve (Submodel)"));
       },
       {},
       // The link is written before the page is renamed, and neither can be taken back.
       {"no page Serve (Submodel)", "no Process of Process 1 (Submodel)"}},
      {"a selection is deleted", drop({"Create", "Process", "Dynamic connector", "Create", "Dispose"}),
       [&] {
         Delete({1, 3});
       },
       [&] { EXPECT_THAT(Texts(), ElementsAre("Process 1", "Create2", "Dispose 1", "Variable 1")); }},
      {"a Process with a submodel is deleted",
       [&] {
         Drop("Create");
         Drop("Process");
         OpenSubmodel(2);
         Drop("Assign");
         Show(1);
       },
       [&] { Delete({2}); },
       [&] { EXPECT_THAT(PageNames(), ElementsAre("Page-1")); },
       {},
       // The inner pages go first, and the outer ones may then be refused.
       {"no Process of Process 1 (Submodel)", "no page Process2 (Submodel)", "no page Process3 (Submodel)"}},
      {"a Process with submodels within its submodel is deleted",
       [&] {
         Drop("Process");
         OpenSubmodel(1);
         Drop("Process");
         OpenSubmodel(1);
         Drop("Process");
         OpenSubmodel(1);
         Show(1);
       },
       [&] { Delete({1}); },
       [&] { EXPECT_THAT(PageNames(), ElementsAre("Page-1")); },
       {},
       // The inner pages go first, and the outer ones may then be refused.
       {"no Process of Process 1 (Submodel)", "no page Process2 (Submodel)", "no page Process3 (Submodel)"}},
      {"a page with two submodels is deleted",
       [&] {
         host_->AddPage("Model");
         Drop("Process");
         Drop("Process");
         OpenSubmodel(1);
         host_->ShowPage(PageNamed("Model").id());
         OpenSubmodel(2);
         Show(1);
       },
       [&] { host_->DeletePage(PageNamed("Model").id(), true); },
       [&] { EXPECT_THAT(PageNames(), ElementsAre("Page-1")); },
       {"no Process of Process 1 (Submodel)", "no Process of Process2 (Submodel)"},
       {"no Process of Process 1 (Submodel)", "no Process of Process2 (Submodel)"}},
      {"queued pages are deleted while another page is shown",
       [&] {
         Drop("Process");
         OpenSubmodel(1);
         host_->AddPage("Shown");
         PagesToDelete = {"Process 1 (Submodel)", "gone already"};
         SetPropList(Pages()->Item("Page-1")->Shapes()->Item(1), "VardoSubPage", "");
       },
       [&] { Drop("Create"); },
       [&] {
         EXPECT_THAT(PageNames(), ElementsAre("Page-1", "Shown"));
         EXPECT_EQ(host_->ActivePage().Name(), "Shown");
       },
       {"no Process of Process 1 (Submodel)"},
       {"no Process of Process 1 (Submodel)"}},
      {"a connector is drawn", drop({"Create", "Process"}), [&] { Connect("Dynamic connector", 1, 2); },
       [&] {
         EXPECT_EQ(Shape(3)->Cells("BeginY")->Formula(), "PAR(PNT(Create!Connections.X1, Create!Connections.Y1))");
         EXPECT_EQ(Shape(3)->Cells("EndY")->Formula(), "PAR(PNT(Process!Connections.X2, Process!Connections.Y2))");
         EXPECT_EQ(Shape(1)->RowCount(kSectionConnectionPts), 1);
         EXPECT_EQ(Shape(2)->RowCount(kSectionConnectionPts), 2);
       }},
  };
  for (const Operation& operation : operations) {
    SCOPED_TRACE(operation.name);
    const auto prepare = [&] {
      StartAnewListening();
      operation.prepare();
    };
    Sweep(
        prepare, [&] { EXPECT_NO_THROW(operation.run()); },
        [&](Mode, int failures) {
          if (failures == 0) {
            EXPECT_THAT(Wrong(), IsSubsetOf(operation.putOff)) << "when the command has ended";
          }
          Drop("Variable");
          EXPECT_THAT(Wrong(), IsSubsetOf(failures == 0 ? Findings() : operation.left)) << "when the next module has come";
          EXPECT_THAT(PagesToDelete, IsEmpty()) << "what was put off is done at the next event";
          EXPECT_EQ(PendingParentPage, "");
          if (failures == 0) operation.done();
        });
  }
}

TEST_F(EventFaults, TheEventThatIsSwitchedOffIsOnAgainAtTheNextEvent) {
  Sweep(
      [&] {
        StartAnewListening();
        Drop("Process");
        OpenSubmodel(1);
        Show(1);
        host_->Select({Ref(1).shape});
      },
      [&] { host_->DeleteSelection(); },
      [&](Mode, int) {
        host_->AddPage("Model");
        Drop("Process");
        Type(1, "hears");
        OpenSubmodel(1);
        host_->DeletePage(PageNamed("Model").id(), true);
        Show(1);
        Drop("Variable");
        EXPECT_EQ(host_->drawing().FindPage("hears (Submodel)"), nullptr);
      });
}

TEST_F(EventFaults, TenPastedModulesAreAllNumberedAndRegistered) {
  const auto prepare = [&] {
    StartAnewListening();
    for (int i = 0; i < 10; ++i) Drop(i % 2 == 0 ? "Create" : "Process");
  };
  // A step that is prime to the length of what is done for a module, so that in ten modules each call of it has its turn.
  constexpr int kStep = 7;
  Sweep(
      prepare, [&] { EXPECT_NO_THROW(PasteAll()); },
      [&](Mode mode, int failures) {
        if (failures == 0) {
          EXPECT_THAT(Wrong(), IsEmpty());
        }
        if (mode == Mode::Once || failures == 0) {
          std::vector<std::string> texts = Texts();
          std::sort(texts.begin(), texts.end());
          EXPECT_LE(texts.end() - std::unique(texts.begin(), texts.end()), failures)
              << "a number was given twice, besides to the one that the host refused to number";
        }
        Drop("Variable");
        EXPECT_THAT(Wrong(), IsEmpty());
      },
      kStep);
}

TEST_F(EventFaults, AConnectorIsGluedOrRefusedWithOneMessage) {
  const struct {
    const char *name, *connector, *from, *to;
    int exit;  // 0: refused
  } cases[] = {
      {"leaves a Create", "Dynamic connector", "Create", "Process", 1},
      {"enters a Dispose", "Dynamic connector", "Process", "Dispose", 1},
      {"leaves a Decide by its exit", "False Connector", "Decide", "Process", 3},
      {"leaves a Separate by its exit", "Duplicate Connector", "Separate", "Process", 3},
      {"leaves a Decide by none of its exits", "Dynamic connector", "Decide", "Process", 0},
      {"leaves a Separate by a Decide's exit", "True Connector", "Separate", "Process", 0},
      {"leaves a Create by a Decide's exit", "True Connector", "Create", "Process", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    int fromPoints = 0, toPoints = 0;
    Sweep(
        [&] {
          StartAnewListening();
          Drop(c.from);
          Drop(c.to);
          fromPoints = Shape(1)->RowCount(kSectionConnectionPts);
          toPoints = Shape(2)->RowCount(kSectionConnectionPts);
        },
        [&] { EXPECT_NO_THROW(Connect(c.connector, 1, 2)); },
        [&](Mode, int failures) {
          EXPECT_LE(platform_->messages.size(), c.exit == 0 ? 1u : 0u);
          EXPECT_THAT(Wrong(), IsEmpty());
          // What the host refuses leaves the connector as it was drawn, or with one end glued.
          if (failures > 0) return;
          ASSERT_EQ(host_->ActivePage().ShapeCount(), c.exit == 0 ? 2 : 3);
          if (c.exit == 0) {
            EXPECT_EQ(platform_->messages.size(), 1u);
            return;
          }
          const std::string from = Shape(1)->Name(), to = Shape(2)->Name();
          const std::string exit = std::to_string(c.exit), entry = to == "Dispose" ? "1" : "2";
          for (const char* cell : {"BeginX", "BeginY"})
            EXPECT_EQ(Shape(3)->Cells(cell)->Formula(),
                      "PAR(PNT(" + from + "!Connections.X" + exit + ", " + from + "!Connections.Y" + exit + "))");
          for (const char* cell : {"EndX", "EndY"})
            EXPECT_EQ(Shape(3)->Cells(cell)->Formula(),
                      "PAR(PNT(" + to + "!Connections.X" + entry + ", " + to + "!Connections.Y" + entry + "))");
          EXPECT_EQ(Shape(1)->RowCount(kSectionConnectionPts), fromPoints) << "the host's own point has gone again";
          EXPECT_EQ(Shape(2)->RowCount(kSectionConnectionPts), toPoints) << "the host's own point has gone again";
        });
  }
}

TEST_F(EventFaults, ASinkThatCouldNotListenToAllListensToTheRestAtTheNextCall) {
  Sweep([&] { StartAnew(); },
        [&] {
          try {
            addin_.SetupEventSink(app_);
          } catch (const HostError&) {
            EXPECT_GT(faults_.failures(), 0);
            return;
          }
          EXPECT_EQ(faults_.failures(), 0) << "the caller is told";
        },
        [&](Mode, int) {
          addin_.SetupEventSink(app_);
          EXPECT_EQ(host_->application()->EventList()->Count(), 9);
          EXPECT_EQ(visApp, app_);
          // Each once: a module is numbered and entered, a text taken, a page prepared, a submodel deleted with its page.
          host_->AddPage("Model");
          Drop("Process");
          Drop("Process");
          EXPECT_EQ(GetPagePropList(Pages()->Item("Model"), "Process", ""), (StringList{"1", "2"}));
          Type(1, "Serve");
          OpenSubmodel(1);
          EXPECT_THAT(PageNames(), ElementsAre("Page-1", "Model", "Serve (Submodel)"));
          EXPECT_THAT(Wrong(), IsEmpty());
          host_->DeletePage(PageNamed("Model").id(), true);
          Show(1);
          Drop("Create");
          EXPECT_THAT(PageNames(), ElementsAre("Page-1"));
        });
}

TEST_F(EventFaults, ASubmodelIsMadeWholeOrTheCallerIsToldAndNothingIsLeft) {
  bool told = false;
  int shownBefore = 0;
  const auto open = [&](int index) {
    const IVShapePtr shape = Object(index);
    return [&, shape] {
      told = false;
      host_->RunCommand("Edit Submodel", [&] {
        try {
          addin_.Submodel(app_, shape);
        } catch (const HostError&) {
          told = true;
        }
      });
    };
  };
  for (const bool again : {false, true}) {
    SCOPED_TRACE(again ? "it is there" : "the first time");
    std::function<void()> command;
    Sweep(
        [&] {
          StartAnewListening();
          Drop("Create");
          Drop("Process");
          if (again) {
            OpenSubmodel(2);
            Drop("Assign");
          }
          host_->AddPage("Last");
          Show(1);
          shownBefore = host_->ActivePage().id();
          command = open(2);
        },
        [&] { command(); },
        [&](Mode mode, int failures) {
          EXPECT_EQ(PendingParentPage, "") << "the next new page is nobody's child";
          EXPECT_THAT(platform_->messages, IsEmpty());
          if (told && (again || mode == Mode::Once)) {
            EXPECT_EQ(PageNames().size(), again ? 3u : 2u);
            EXPECT_EQ(host_->ActivePage().id(), shownBefore);
          }
          if (mode == Mode::Once || failures == 0) {
            EXPECT_THAT(Wrong(), IsEmpty());
          } else {
            // Of a page that could not be taken away again; under its name, that is never taken for the Process's.
            EXPECT_THAT(Wrong(), IsSubsetOf({"no Process of Page-3", "no Process of Process 1 (Submodel)"}));
          }
          if (!told) {
            EXPECT_EQ(host_->ActivePage().Name(), "Process 1 (Submodel)");
          }
          // A command that changed nothing is no step.
          if (host_->Undo() != "Edit Submodel") host_->Redo();
          EXPECT_THAT(Wrong(), IsEmpty()) << "all of it is undone";
          if (!again) {
            EXPECT_THAT(PageNames(), ElementsAre("Page-1", "Last"));
          }
        });
  }
}

TEST_F(EventFaults, ClosingASubmodelShowsTheParentOrTellsTheCaller) {
  Sweep(
      [&] {
        StartAnewListening();
        Drop("Process");
        OpenSubmodel(1);
      },
      [&] {
        bool told = false;
        try {
          addin_.CloseSubmodel(app_, app_->ActivePage());
        } catch (const HostError&) {
          told = true;
        }
        EXPECT_EQ(host_->ActivePage().Name(), told ? "Process 1 (Submodel)" : "Page-1");
        EXPECT_TRUE(!told || faults_.failures() > 0);
      },
      [&](Mode, int) { EXPECT_THAT(Wrong(), IsEmpty()); });
}

TEST_F(EventFaults, InitializingAPageIsOneMessageAndCanBeRepeated) {
  Sweep(
      [&] {
        StartAnewListening();
        for (const char* master : {"Create", "Process", "Dynamic connector"}) Drop(master);
      },
      [&] { host_->RunCommand("Initialize", [&] { EXPECT_NO_THROW(addin_.InitializePage()); }); },
      [&](Mode, int failures) {
        // An undo scope is not needed for any of it.
        ASSERT_LE(platform_->messages.size(), failures > 0 ? 1u : 0u);
        if (!platform_->messages.empty()) {
          EXPECT_EQ(platform_->messages[0].text, "Error in procedure InititalizePage");
          EXPECT_EQ(platform_->messages[0].title, "Quellis");
          EXPECT_EQ(platform_->messages[0].style, 48);
          // The registers are emptied first: modules that could not be deleted are in none of them until it is done again.
          addin_.InitializePage();
          EXPECT_EQ(platform_->messages.size(), 1u);
        }
        EXPECT_EQ(host_->ActivePage().ShapeCount(), 0);
        EXPECT_EQ(host_->drawing().MasterCount(), 0);
        EXPECT_THAT(Wrong(), IsEmpty());
      });
}

TEST_F(EventFaults, AMenuThatCouldNotBeAddedIsAddedOnceByTheNextCall) {
  Sweep([&] { StartAnewListening(); }, [&] { EXPECT_NO_THROW(addin_.AddVardoMenu()); },
        [&](Mode, int failures) {
          ASSERT_EQ(platform_->messages.size(), failures > 0 ? 1u : 0u);
          if (failures > 0) {
            EXPECT_THAT(platform_->messages[0].text, StartsWith("Error in AddVardoMenu\n"));
          }
          addin_.AddVardoMenu();
          addin_.AddVardoMenu();
          int simulate = 0;
          for (const MenuData& menu : host_->menus().Shown()) simulate += menu.caption == "&Simulate";
          EXPECT_EQ(simulate, 1);
        });
}

}  // namespace
}  // namespace vardo
