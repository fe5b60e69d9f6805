// The pages' registers against a plain recount, over long random mixes of what a person does.
#include "TestPlatform.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "props/ModuleKinds.h"
#include "props/PropertyCells.h"
#include "props/StringFunctions.h"
#include "script/AddinSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

namespace vardo {
namespace {

using Registers = std::map<std::string, std::string>;

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
  Person(AddinSession& session, unsigned seed) : host_(session.host()), random_(seed) {}

  // Does something; returns what.
  std::string Act() {
    switch (Pick(12)) {
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
      default:
        return Redo();
    }
  }

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
    const std::string& master = masters[static_cast<size_t>(Pick(14))];
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
    const std::vector<int> ids = SomeShapes(page, 5);
    host_.ShowPage(page.id());
    host_.Select(ids);
    host_.DeleteSelection();
    return "delete " + std::to_string(ids.size());
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
    if (host_.drawing().journal().CanUndo()) host_.Undo();
    return "undo";
  }
  std::string Redo() {
    if (host_.drawing().journal().CanRedo()) host_.Redo();
    return "redo";
  }

  DrawingHost& host_;
  std::mt19937 random_;
  int names_ = 0;
};

TEST(Registers, NameExactlyTheModulesThatAreThere) {
  TestPlatform platform;
  for (unsigned seed = 1; seed <= 20; ++seed) {
    AddinSession session(true);
    session.New();
    Person person(session, seed);
    std::string story;
    for (int step = 0; step < 120; ++step) {
      story += person.Act() + ", ";
      DrawingHost& host = session.host();
      const IVPagesPtr pages = host.application()->ActiveDocument()->Pages();
      for (int i = 1; i <= pages->Count(); ++i) {
        Registers stated = Stated(pages->Item(i));
        if (stated["Count"].empty()) stated["Count"] = "0";
        ASSERT_EQ(stated, Recounted(host, host.drawing().PageAt(i))) << "seed " << seed << ", page " << i << ": " << story;
      }
    }
  }
}

}  // namespace
}  // namespace vardo
