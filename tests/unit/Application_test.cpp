// What the host calls: the menu and the names that come with it, the page that is initialised, the shape that is edited.
#include "addin/Application.h"

#include "Forwarding.h"
#include "TestPlatform.h"
#include "addin/Global_Variables.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVMenus.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "catalog/NameCatalogues.h"
#include "events/CEventSink.h"
#include "forms/Forms.h"
#include "forms/headless/HeadlessPresenter.h"
#include "memoryhost/DrawingHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ApplicationTest : public testing::Test {
 protected:
  ApplicationTest() {
    host_.New();
    addin_.SetupEventSink(host_.application());
    SetFormPresenter(&presenter_);
  }
  ~ApplicationTest() override {
    UnloadAllForms();
    SetFormPresenter(nullptr);
    visApp.reset();
    eventSink.reset();
  }
  IVShapePtr Drop(std::string_view master) { return host_.Drop(master, host_.ActivePage().id(), 1, 1, std::nullopt); }

  TestPlatform platform_;
  DrawingHost host_;
  Application addin_;
  std::vector<std::string> shown_;
  HeadlessPresenter presenter_{[this](Form& form) {
    shown_.emplace_back(form.name());
    presenter_.Key(form, "Escape");
  }};
};

class NoMenus : public HostCallObserver {
  void BeforeCall(std::string_view member) override {
    if (member == "Application.SetCustomMenus") throw HostError(kHostNotAllowed, "no menus");
  }
};

// The first test of this program: the catalogues last as long as the program does.
TEST_F(ApplicationTest, NamesAreLookedForOnceTheMenuIsThere) {
  Drop("Create");
  const auto names = [] { return GatherNames(NameList::AllModules, false); };
  NoMenus refusing;
  visApp = ObserveHost(host_.application(), refusing);
  addin_.AddVardoMenu();
  EXPECT_EQ(platform_->messages.size(), 1u);
  EXPECT_THAT(names(), ElementsAre("")) << "not when the menu was refused";

  visApp = host_.application();
  const IVUIObjectPtr menus = visApp->BuiltInMenus();
  menus->MenuSets()->ItemAtID(kMenuSetDrawing)->Menus()->AddAt(6)->SetCaption("&Simulate");
  visApp->SetCustomMenus(menus);
  addin_.AddVardoMenu();
  EXPECT_THAT(names(), ElementsAre("")) << "not when it was there before";

  visApp->SetCustomMenus(visApp->BuiltInMenus());
  addin_.AddVardoMenu();
  EXPECT_THAT(names(), ElementsAre("Create 1"));
}

TEST_F(ApplicationTest, AnInitialisedPageLosesGuardedPropertiesToo) {
  const IVShapePtr sheet = visApp->ActivePage()->PageSheet();
  sheet->Cells("Prop.Create")->SetFormula("GUARD(\"1;2\")");
  addin_.InitializePage();
  EXPECT_EQ(sheet->Cells("Prop.Create")->Formula(), "\"\"");
}

TEST_F(ApplicationTest, AClassNameNeedsNoQuotes) {
  const IVShapePtr shape = Drop("Create");
  for (const char* formula : {"\"Create\"", "Create"}) {
    shape->Cells("User.ClassName")->SetFormula(formula);
    addin_.ShowEditor(host_.application(), shape);
    EXPECT_THAT(shown_, ElementsAre("frmCreate")) << formula;
    shown_.clear();
  }
  shape->Cells("User.ClassName")->SetFormula("xCreatex");
  addin_.ShowEditor(host_.application(), shape);
  EXPECT_THAT(shown_, IsEmpty());
}

}  // namespace
}  // namespace vardo
