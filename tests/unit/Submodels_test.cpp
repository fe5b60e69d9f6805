// The submodel pages of Processes that stand in groups, which are in no register; and what submodel pages are called.
#include "TestDrawings.h"
#include "TestPlatform.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "events/SubmodelPages.h"
#include "props/PropertyCells.h"
#include "script/AddinSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vardo {
namespace {

using testing::ElementsAre;

std::string Process(const std::string& id, const std::string& name) {
  return "<Shape ID='" + id + "' Type='Shape' Master='2'><Section N='Property'><Row N='ProcessName'><Cell N='Value' V='" + name +
         "' U='STR'/></Row></Section><Text>" + name + "\n</Text></Shape>";
}
std::string Group(const std::string& id, const std::string& inside) {
  return "<Shape ID='" + id + "' Type='Group'><Shapes>" + inside + "</Shapes></Shape>";
}

// A page with a Process in a group within a group, and one beside it, each with its submodel's page; and another page.
class GroupedProcesses : public testing::Test {
 protected:
  GroupedProcesses() {
    const test::TempFolder folder;
    test::WriteFile(folder / "groups.vsdx",
                    test::ZipOf({.shapes = Group("1", "<Shape ID='2' Type='Shape'/>" + Group("3", Process("4", "Serve"))) +
                                           Process("5", "Fetch"),
                                 .masters = {{"Process", "<Shape ID='6' Type='Shape'/>"}},
                                 .pageSheet = "<PageSheet><Section N='Property'><Row N='Process'>"
                                              "<Cell N='Value' V='2' U='STR'/></Row></Section></PageSheet>"}));
    session_.Open(folder / "groups.vsdx");
    first_ = host().ActivePage().id();
    for (const int process : {4, 5}) session_.Submodel({host().serial(), first_, process});
    other_ = host().drawing().FindPage(host().AddPage("Other")->Name())->id();
    host().ShowPage(first_);
  }
  DrawingHost& host() { return session_.host(); }
  std::vector<std::string> Pages() {
    std::vector<std::string> names;
    for (int i = 1; i <= host().drawing().PageCount(); ++i) names.push_back(host().drawing().PageAt(i).Name());
    return names;
  }
  void Delete(std::vector<int> ids) {
    host().Select(ids);
    host().DeleteSelection();
  }
  std::string LinkOf(const IVShapePtr& shape) { return PropText(shape, "VardoSubPage"); }
  IVShapePtr Shape(int id) { return host().application()->ActivePage()->Shapes()->ItemFromID(id); }

  TestPlatform platform_;
  AddinSession session_{true};
  int first_ = 0, other_ = 0;
};

TEST_F(GroupedProcesses, TheirPagesGoWithTheGroup) {
  ASSERT_THAT(Pages(), ElementsAre("Page-1", "Serve (Submodel)", "Fetch (Submodel)", "Other"));
  Delete({1});
  EXPECT_THAT(Pages(), ElementsAre("Page-1", "Fetch (Submodel)", "Other"));
  host().Undo();
  EXPECT_THAT(Pages(), ElementsAre("Page-1", "Serve (Submodel)", "Fetch (Submodel)", "Other"));
}

TEST_F(GroupedProcesses, TheirPagesGoWithThePageOfTheGroup) {
  host().DeletePage(first_, true);
  EXPECT_THAT(Pages(), ElementsAre("Other"));
}

TEST_F(GroupedProcesses, TheirPagesGoWithTheSubmodelThatHoldsTheGroup) {
  const int inside = host().drawing().FindPage("Fetch (Submodel)")->id();
  const IVShapePtr copy = host().Paste({{host().serial(), first_, 1}}, inside).at(0);
  const IVShapePtr process = copy->Shapes()->Item(2)->Shapes()->Item(1);
  session_.Submodel({host().serial(), inside, process->ID()});
  ASSERT_EQ(Pages().size(), 4u) << "it is called as its original is, whose page is shown";
  process->SetText("Carry");
  session_.Submodel({host().serial(), inside, process->ID()});
  ASSERT_THAT(Pages(), testing::Contains("Carry (Submodel)"));
  host().ShowPage(first_);
  Delete({5});
  EXPECT_THAT(Pages(), ElementsAre("Page-1", "Serve (Submodel)", "Other"));
}

TEST_F(GroupedProcesses, ACopiedGroupClaimsNoPage) {
  const IVShapePtr copy = host().Paste({{host().serial(), first_, 1}}, first_).at(0);
  EXPECT_EQ(LinkOf(copy->Shapes()->Item(2)->Shapes()->Item(1)), "");
  EXPECT_EQ(LinkOf(Shape(4)), "Serve (Submodel)");
  Delete({copy->ID()});
  EXPECT_THAT(Pages(), ElementsAre("Page-1", "Serve (Submodel)", "Fetch (Submodel)", "Other"));
}

TEST_F(GroupedProcesses, ACopyWithoutTextClaimsNoPageEither) {
  // It is not numbered.
  host().drawing().FindPage(first_)->FindShape(5)->SetText(host().drawing().editor(), "");
  const IVShapePtr copy = host().Paste({{host().serial(), first_, 5}}, other_).at(0);
  EXPECT_EQ(LinkOf(copy), "");
  host().ShowPage(first_);
  EXPECT_EQ(LinkOf(Shape(5)), "Fetch (Submodel)");
}

TEST_F(GroupedProcesses, APageOfTheirsLeadsBackWhenItsParentWasRenamed) {
  host().RenamePage(first_, "Office");
  session_.CloseSubmodel(host().drawing().FindPage("Serve (Submodel)")->id());
  EXPECT_EQ(host().ActivePage().Name(), "Office");
}

// --- The names of their pages.

class SubmodelPageNames : public testing::Test {
 protected:
  SubmodelPageNames() {
    session_.New();
    for (const char* page : {"THE QUITE LONG NAME 0_X", "the quite long name of a page", "The quite long nam"})
      session_.host().AddPage(page);
  }

  TestPlatform platform_;
  AddinSession session_{true};
};

TEST_F(SubmodelPageNames, PagesThatStartAlikeCountWhateverTheirCase) {
  EXPECT_EQ(SubmodelPageName("The quite long name of all", ""), "The quite long nam3 (Submodel)");
}

TEST_F(SubmodelPageNames, ThePageThatTheProcessHasIsFoundWhateverItsCase) {
  EXPECT_EQ(SubmodelPageName("The quite long name of all", "The Quite Long Name 0_x"), "The Quite Long Name 0_x");
}

}  // namespace
}  // namespace vardo
