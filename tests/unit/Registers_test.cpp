// The pages' registers against a plain recount, over long random mixes of what a person does; and what they leave uncounted.
#include "TestDrawings.h"
#include "TestPlatform.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "modules/ModuleKinds.h"
#include "props/PropertyCells.h"
#include "props/StringFunctions.h"
#include "script/AddinSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace vardo {
namespace {

using Registers = std::map<std::string, std::string>;

// A shape as the file has it; "a module" with its name and text, "a group" with what is inside.
std::string Module(const std::string& id, const std::string& master) {
  return "<Shape ID='" + id + "' Type='Shape' Master='" + master + "'/>";
}
std::string Group(const std::string& id, const std::string& inside) {
  return "<Shape ID='" + id + "' Type='Group'><Shapes>" + inside + "</Shapes></Shape>";
}
std::string MasterOf(const std::string& kind, const std::string& type, const std::string& inside) {
  return "<Shape ID='5' Type='" + type + "'><Section N='Property'><Row N='" + kind + "Name'><Cell N='Value' V='" + kind +
         " 1' U='STR'/></Row></Section><Text>" + kind + " 1\n</Text>" + inside + "</Shape>";
}

// A drawing made elsewhere, its page without registers: modules inside groups, groups inside groups, a module that is itself a
// group, and a master that is a group of anything.
const std::vector<test::DrawingText::Master> kMasters = {
    {"Create", MasterOf("Create", "Shape", "")},
    {"Batch", MasterOf("Batch", "Group", "<Shapes><Shape ID='6' Type='Shape'/><Shape ID='7' Type='Shape'/></Shapes>")},
    {"Box", "<Shape ID='5' Type='Group'><Shapes><Shape ID='6' Type='Shape'/></Shapes></Shape>"},
};
const std::string kCreate = "2", kBatch = "3", kBox = "4";

void OpenDrawing(AddinSession& session, const test::DrawingText& text) {
  const test::TempFolder folder;
  test::WriteFile(folder / "elsewhere.vsdx", test::ZipOf(text));
  session.Open(folder / "elsewhere.vsdx");
}

test::DrawingText DrawingWithGroups() {
  return {.shapes = Group("1", Module("2", kCreate) + "<Shape ID='3' Type='Shape'/>") +
                    Group("10", Group("11", Module("12", kCreate)) + Module("13", kBatch)),
          .masters = kMasters};
}

// What the page says of itself.
Registers Stated(const IVPagePtr& page) {
  Registers registers;
  for (const std::string_view kind : kModuleKinds) registers[std::string(kind)] = JoinList(GetPagePropList(page, kind, ""));
  registers["Count"] = GetPagePropList(page, "Count", "0").front();
  return registers;
}

// What there is. A count that has never been written is a number, not a text, and reads as nothing.
Registers Recounted(DrawingHost& host, DrawingPage& page) {
  Registers registers;
  for (const std::string_view kind : kModuleKinds) registers[std::string(kind)];
  int count = 0;
  for (int i = 1; i <= page.ShapeCount(); ++i) {
    const DrawingMaster* master = host.drawing().FindMaster(page.ShapeAt(i).MasterId());
    if (!master || !IsModuleKind(master->Name())) continue;
    std::string& indexes = registers[master->Name()];
    indexes += (indexes.empty() ? "" : ";") + std::to_string(i);
    ++count;
  }
  registers["Count"] = std::to_string(count);
  return registers;
}

// A person with a free hand and a seed.
class Person {
 public:
  Person(AddinSession& session, unsigned seed) : session_(session), host_(session.host()), random_(seed) {}

  // Does something; returns what.
  std::string Act() {
    switch (Pick(14)) {
      case 0:
      case 1:
      case 2:
      case 3:
        return Drop();
      case 4:
        return Paste();
      case 5:
      case 6:
        return Delete();
      case 7:
        return Type();
      case 8:
        return Page();
      case 9:
        return Connect();
      case 10:
        return Undo();
      case 11:
        return DeleteGroup();
      case 12:
        return Submodel();
      default:
        return Redo();
    }
  }

  // How often a group was deleted by itself, and together with other shapes.
  int groupsDeleted = 0, groupsDeletedWithOthers = 0;

 private:
  int Pick(int choices) { return std::uniform_int_distribution<int>(0, choices - 1)(random_); }
  DrawingPage& AnyPage() { return host_.drawing().PageAt(1 + Pick(host_.drawing().PageCount())); }
  std::vector<int> SomeShapes(DrawingPage& page, int most) {
    std::vector<int> ids;
    for (int i = 1; i <= page.ShapeCount() && static_cast<int>(ids.size()) < most; ++i)
      if (Pick(3) == 0) ids.push_back(page.ShapeAt(i).id());
    return ids;
  }

  std::string Drop() {
    const std::vector<std::string> masters = host_.MasterNames();
    const std::string& master = masters[static_cast<size_t>(Pick(static_cast<int>(masters.size())))];
    host_.Drop(master, AnyPage().id(), Pick(8), Pick(8), std::nullopt);
    return "drop " + master;
  }
  std::string Paste() {
    DrawingPage& from = AnyPage();
    std::vector<SheetRef> originals;
    for (const int id : SomeShapes(from, 4)) originals.push_back(host_.RefTo(from, id));
    if (!originals.empty()) host_.Paste(originals, AnyPage().id());
    return "paste " + std::to_string(originals.size());
  }
  std::string Delete() {
    DrawingPage& page = AnyPage();
    return DeleteShapes(page, SomeShapes(page, 5));
  }
  std::string DeleteShapes(DrawingPage& page, const std::vector<int>& ids) {
    const auto isGroup = [&](int id) { return page.FindShape(id)->Type() == kShapeTypeGroup; };
    if (std::any_of(ids.begin(), ids.end(), isGroup)) ++(ids.size() == 1 ? groupsDeleted : groupsDeletedWithOthers);
    host_.ShowPage(page.id());
    host_.Select(ids);
    host_.DeleteSelection();
    return "delete " + std::to_string(ids.size());
  }
  std::string DeleteGroup() {
    std::vector<SheetRef> groups;
    for (int i = 1; i <= host_.drawing().PageCount(); ++i) {
      DrawingPage& page = host_.drawing().PageAt(i);
      for (int j = 1; j <= page.ShapeCount(); ++j)
        if (page.ShapeAt(j).Type() == kShapeTypeGroup) groups.push_back(host_.RefTo(page, page.ShapeAt(j).id()));
    }
    if (groups.empty()) return "delete no group";
    const SheetRef group = groups[static_cast<size_t>(Pick(static_cast<int>(groups.size())))];
    std::vector<int> going;
    if (Pick(2) == 0) going = SomeShapes(host_.ResolvePage(group.drawing, group.page), 4);
    std::erase(going, group.shape);
    going.insert(going.begin() + Pick(static_cast<int>(going.size()) + 1), group.shape);
    return DeleteShapes(host_.ResolvePage(group.drawing, group.page), going);
  }
  std::string Submodel() {
    DrawingPage& page = AnyPage();
    for (int i = 1; i <= page.ShapeCount() && host_.drawing().PageCount() < 6; ++i) {
      const DrawingMaster* master = host_.drawing().FindMaster(page.ShapeAt(i).MasterId());
      if (!master || master->Name() != "Process") continue;
      session_.Submodel(host_.RefTo(page, page.ShapeAt(i).id()));
      return "submodel";
    }
    return "no submodel";
  }
  std::string Type() {
    DrawingPage& page = AnyPage();
    const std::vector<int> ids = SomeShapes(page, 1);
    if (ids.empty()) return "type nothing";
    host_.ShowPage(page.id());
    host_.TypeText(host_.RefTo(page, ids[0]), "Name " + std::to_string(Pick(20)), false);
    return "type";
  }
  std::string Page() {
    if (host_.drawing().PageCount() < 4) {
      host_.AddPage(std::nullopt);
      return "add page";
    }
    if (Pick(2) == 0) {
      host_.RenamePage(AnyPage().id(), "Sheet of paper " + std::to_string(++names_));
      return "rename page";
    }
    host_.DeletePage(AnyPage().id(), true);
    return "delete page";
  }
  std::string Connect() {
    DrawingPage& page = AnyPage();
    const std::vector<int> ids = SomeShapes(page, 2);
    if (ids.size() == 2) host_.Connect("Dynamic connector", page.id(), {.shape = ids[0]}, {.shape = ids[1]});
    return "connect";
  }
  std::string Undo() {
    if (host_.drawing().log().CanUndo()) host_.Undo();
    return "undo";
  }
  std::string Redo() {
    if (host_.drawing().log().CanRedo()) host_.Redo();
    return "redo";
  }

  AddinSession& session_;
  DrawingHost& host_;
  std::mt19937 random_;
  int names_ = 0;
};

// Every page's registers, as they are to be.
testing::AssertionResult AllAgree(DrawingHost& host) {
  const IVPagesPtr pages = host.application()->ActiveDocument()->Pages();
  for (int i = 1; i <= pages->Count(); ++i) {
    Registers stated = Stated(pages->Item(i));
    if (stated["Count"].empty()) stated["Count"] = "0";
    const Registers counted = Recounted(host, host.drawing().PageAt(i));
    if (stated != counted)
      return testing::AssertionFailure() << pages->Item(i)->Name() << " says " << testing::PrintToString(stated) << " and has "
                                         << testing::PrintToString(counted);
  }
  return testing::AssertionSuccess();
}

TEST(Registers, NameExactlyTheModulesThatAreThere) {
  TestPlatform platform;
  int groupsDeleted = 0, groupsDeletedWithOthers = 0;
  for (unsigned seed = 1; seed <= 20; ++seed) {
    AddinSession session(true);
    if (seed % 2 == 0)
      session.New();
    else
      OpenDrawing(session, DrawingWithGroups());
    Person person(session, seed);
    std::string story;
    for (int step = 0; step < 120; ++step) {
      story += person.Act() + ", ";
      ASSERT_TRUE(AllAgree(session.host())) << "seed " << seed << ": " << story;
    }
    groupsDeleted += person.groupsDeleted;
    groupsDeletedWithOthers += person.groupsDeletedWithOthers;
  }
  EXPECT_GT(groupsDeleted, 20);
  EXPECT_GT(groupsDeletedWithOthers, 20);
}

// What the registers leave uncounted, and until when.
class Uncounted : public testing::Test {
 protected:
  void Open(const std::string& shapes, const std::string& pageSheet = "<PageSheet/>") {
    OpenDrawing(session_, {.shapes = shapes, .masters = kMasters, .pageSheet = pageSheet});
  }
  DrawingPage& Page() { return host().ActivePage(); }
  IVShapePtr Drop(std::string_view master) { return host().Drop(master, Page().id(), 1, 1, std::nullopt); }
  void Delete(std::vector<int> ids) {
    host().Select(ids);
    host().DeleteSelection();
  }
  std::string Register(std::string_view name) { return JoinList(GetPagePropList(host().application()->ActivePage(), name, "")); }
  DrawingHost& host() { return session_.host(); }

  TestPlatform platform_;
  AddinSession session_{true};
};

TEST_F(Uncounted, ModulesInsideGroupsHaveNoPositionOnThePageAndAreNeverCounted) {
  OpenDrawing(session_, DrawingWithGroups());
  const int create = Drop("Create")->ID();
  EXPECT_EQ(Register("Create"), "3") << "behind the two groups";
  EXPECT_EQ(Register("Batch"), "");
  EXPECT_EQ(Register("Count"), "1");
  Delete({1});
  EXPECT_EQ(Register("Create"), "2");
  EXPECT_EQ(Register("Count"), "1");
  host().Paste({host().RefTo(Page(), 10), host().RefTo(Page(), create)}, Page().id());
  EXPECT_EQ(Register("Create"), "2;4");
  EXPECT_EQ(Register("Batch"), "");
  EXPECT_EQ(Register("Count"), "2");
}

TEST_F(Uncounted, ModulesFromBeforeTheListenerCameAreCountedAtTheirPagesFirstDeletion) {
  Open(Module("1", kCreate) + Module("2", kBatch) + Module("3", kCreate));
  EXPECT_EQ(Register("Create"), "");
  EXPECT_EQ(Register("Count"), "");
  const int box = Drop("Box")->ID();
  Drop("Create");
  EXPECT_EQ(Register("Create"), "5");
  EXPECT_EQ(Register("Count"), "1");
  Delete({box});
  EXPECT_EQ(Register("Create"), "1;3;4");
  EXPECT_EQ(Register("Batch"), "2");
  EXPECT_EQ(Register("Count"), "4");
}

TEST_F(Uncounted, APageWithoutASheetOfItsOwnGetsOneWithItsFirstRegister) {
  Open("", "");
  EXPECT_EQ(Register("Create"), "");
  Drop("Create");
  Drop("Create");
  EXPECT_EQ(Register("Create"), "1;2");
  EXPECT_EQ(Register("Count"), "2");
  host().Undo();
  host().Undo();
  EXPECT_EQ(Register("Create"), "");
  host().Redo();
  host().Redo();
  const test::TempFolder folder;
  host().Save(folder / "saved.vsdx");
  session_.Open(folder / "saved.vsdx");
  EXPECT_EQ(Register("Create"), "1;2");
}

TEST_F(Uncounted, AnOrderThatWasChangedBeforeTheDrawingWasOpenedIsFoundAtTheFirstEvent) {
  const auto row = [](const char* name, const char* value) {
    return "<Row N='" + std::string(name) + "'><Cell N='Value' V='" + value + "' U='STR'/></Row>";
  };
  // As it was registered before somebody sent the Batch to the back.
  Open(Module("2", kBatch) + Module("1", kCreate), "<PageSheet><Section N='Property'>" + row("Create", "1") + row("Batch", "2") +
                                                       row("Count", "2") + "</Section></PageSheet>");
  const int box = Drop("Box")->ID();
  Drop("Create");
  EXPECT_EQ(Register("Create"), "2;4");
  EXPECT_EQ(Register("Batch"), "1");
  Delete({box});
  EXPECT_EQ(Register("Create"), "2;3");
  EXPECT_EQ(Register("Batch"), "1");
  EXPECT_EQ(Register("Count"), "3");
}

TEST_F(Uncounted, AShapeThatAProgramDeletesIsNoSelectionAndIsMissedAtThePagesNextDeletion) {
  session_.New();
  const IVShapePtr first = Drop("Create"), second = Drop("Create"), third = Drop("Create"), box = Drop("Dynamic connector");
  first->Delete();
  EXPECT_EQ(Register("Create"), "1;2;3");
  EXPECT_EQ(Register("Count"), "3");
  Delete({box->ID()});
  EXPECT_EQ(Register("Create"), "1;2");
  EXPECT_EQ(Register("Count"), "2");
}

}  // namespace
}  // namespace vardo
