// What every drawing host has to do for the add-in, as one suite that any host can be put through:
//
//   INSTANTIATE_TEST_SUITE_P(MyHost, HostConformance, testing::Values(HostUnderTest{"Mine", [] { return
//   std::make_unique<MyUser>(); }}),
//                            HostName);
#pragma once

#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVEventList.h"
#include "addin/host/IVMenus.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace vardo {

// What a person does in the drawing program. Shapes and pages are the host's own objects.
class HostUser {
 public:
  virtual ~HostUser() = default;
  virtual IVApplicationPtr application() = 0;
  // Closes the drawing that is open, if there is one, and starts an empty one with the fourteen modules and the connectors at
  // hand.
  virtual void NewDrawing() = 0;
  virtual void SaveAndReopen() = 0;
  // Closes the drawing that is open and opens a file of one page "Page-1", of which it says nothing but these Shape elements.
  virtual void OpenDrawingOf(const std::string& shapes) = 0;
  // On the page shown; null when a listener has taken the shape away again.
  virtual IVShapePtr Drop(std::string_view master) = 0;
  virtual void Select(const std::vector<IVShapePtr>& shapes) = 0;
  virtual void DeleteSelection() = 0;
  virtual void Type(const IVShapePtr& shape, std::string_view text) = 0;
  // All that happens inside is one command.
  virtual void RunCommand(const std::function<void()>& command) = 0;
  virtual void Undo() = 0;
  virtual void Redo() = 0;
};

struct HostUnderTest {
  const char* name;
  std::function<std::unique_ptr<HostUser>()> make;  // without a drawing
};
inline void PrintTo(const HostUnderTest& host, std::ostream* out) { *out << host.name; }
inline std::string HostName(const testing::TestParamInfo<HostUnderTest>& info) { return info.param.name; }

// The number of the HostError that an action ends with; 0 when it ends well.
template <class Action>
std::int32_t ErrorOf(const Action& action) {
  try {
    action();
  } catch (const HostError& error) {
    return error.number();
  }
  return 0;
}

// Remembers what it is told, and looks at the drawing while it is told.
class RecordingSink : public IVEventSink {
 public:
  struct Event {
    std::int16_t code;
    std::int32_t id, sequence;
    EventSubject subject;
    std::string moreInfo;
  };
  using Look = std::function<void(const Event&)>;
  explicit RecordingSink(Look look = {}) : look_(std::move(look)) {}

  void VisEventProc(std::int16_t code, const IVApplicationPtr& source, std::int32_t id, std::int32_t sequence,
                    const EventSubject& subject, std::string_view moreInfo) override {
    EXPECT_TRUE(source);
    events.push_back({code, id, sequence, subject, std::string(moreInfo)});
    const Event event = events.back();
    if (look_) look_(event);
  }
  std::vector<std::uint16_t> Codes() const {
    std::vector<std::uint16_t> codes;
    for (const Event& event : events) codes.push_back(static_cast<std::uint16_t>(event.code));
    return codes;
  }
  std::vector<Event> events;

 private:
  Look look_;
};

class HostConformance : public testing::TestWithParam<HostUnderTest> {
 protected:
  HostConformance() : user_(GetParam().make()) { user_->NewDrawing(); }

  HostUser& user() { return *user_; }
  IVApplicationPtr app() { return user_->application(); }
  IVPagesPtr Pages() { return app()->ActiveDocument()->Pages(); }
  IVPagePtr Page() { return app()->ActivePage(); }
  IVShapesPtr Shapes() { return Page()->Shapes(); }
  IVShapePtr Drop(std::string_view master = "Create") { return user_->Drop(master); }
  // A sheet that inherits nothing and has neither connection points nor actions.
  IVShapePtr PlainSheet() { return Page()->PageSheet(); }
  static std::string Formula(const IVShapePtr& shape, std::string_view cell) { return shape->Cells(cell)->Formula(); }
  static void Write(const IVShapePtr& shape, std::string_view cell, std::string_view formula) {
    shape->Cells(cell)->SetFormula(formula);
  }
  // The position of a row among the custom properties; -1 when there is none.
  static int PropRow(const IVShapePtr& shape, std::string_view name) {
    constexpr std::string_view kProbe = "\"probe\"";
    const std::string cell = "Prop." + std::string(name);
    if (!shape->CellExists(cell, kExistsAnywhere)) return -1;
    const std::string before = Formula(shape, cell);
    Write(shape, cell, kProbe);
    int row = 0;
    while (shape->CellsSRC(kSectionProp, static_cast<short>(row), kCellPropValue)->Formula() != kProbe) ++row;
    Write(shape, cell, before);
    return row;
  }
  std::vector<std::string> Selected() {
    std::vector<std::string> names;
    const IVSelectionPtr selection = app()->ActiveWindow()->Selection();
    for (int i = 1; i <= selection->Count(); ++i) names.push_back(selection->Item(i)->Name());
    return names;
  }
  std::vector<std::string> PageNames() {
    std::vector<std::string> names;
    for (int i = 1; i <= Pages()->Count(); ++i) names.push_back(Pages()->Item(i)->Name());
    return names;
  }
  IVEventPtr Advise(const IVEventSinkPtr& sink, std::uint16_t code) {
    return app()->EventList()->AddAdvise(static_cast<std::int16_t>(code), sink, "", "");
  }
  std::shared_ptr<RecordingSink> Listen(const std::vector<std::uint16_t>& codes, RecordingSink::Look look = {}) {
    auto sink = std::make_shared<RecordingSink>(std::move(look));
    for (const std::uint16_t code : codes) Advise(sink, code);
    return sink;
  }
  static const std::vector<std::uint16_t>& AllCodes() {
    static const std::vector<std::uint16_t> codes = {
        kEventDocumentCreated, kEventBeforeSelectionDelete, kEventPageAdded,      kEventPageDeleted, kEventShapeAdded,
        kEventPageChanged,     kEventWindowChanged,         kEventDocumentClosed, kEventTextChanged};
    return codes;
  }
  IVMenusPtr DrawingMenus(const IVUIObjectPtr& menus) { return menus->MenuSets()->ItemAtID(kMenuSetDrawing)->Menus(); }

 private:
  std::unique_ptr<HostUser> user_;
};

using testing::ElementsAre;
using testing::IsEmpty;

// --- Without a drawing

TEST_P(HostConformance, WithoutADrawingNothingIsActive) {
  const std::unique_ptr<HostUser> user = GetParam().make();
  const IVApplicationPtr app = user->application();
  EXPECT_EQ(ErrorOf([&] { app->ActiveWindow(); }), kHostNotAllowed);
  EXPECT_EQ(ErrorOf([&] { app->ActivePage(); }), kHostNotAllowed);
  EXPECT_EQ(ErrorOf([&] { app->ActiveDocument(); }), kHostNotAllowed);
  EXPECT_EQ(app->EventList()->Count(), 0);
}

// --- Collections

TEST_P(HostConformance, CollectionsCountFromOne) {
  const IVShapePtr first = Drop(), second = Drop();
  EXPECT_EQ(Shapes()->Count(), 2);
  EXPECT_EQ(Shapes()->Item(1)->ID(), first->ID());
  EXPECT_EQ(Shapes()->Item(2)->ID(), second->ID());
  EXPECT_EQ(Pages()->Count(), 1);
  EXPECT_EQ(Pages()->Item(1)->Name(), "Page-1");
  const IVMastersPtr masters = app()->ActiveDocument()->Masters();
  ASSERT_GE(masters->Count(), 1);
  EXPECT_NE(masters->Item(1)->Name(), "");
  EXPECT_NE(masters->Item(masters->Count())->Name(), "");
}

TEST_P(HostConformance, WhatIsNotInACollectionIsABadIndex) {
  Drop();
  const IVMastersPtr masters = app()->ActiveDocument()->Masters();
  const IVSelectionPtr selection = app()->ActiveWindow()->Selection();
  const IVEventListPtr events = app()->EventList();
  ASSERT_EQ(selection->Count(), 1);
  for (const int index : {0, -1, 2}) {
    EXPECT_EQ(ErrorOf([&] { Pages()->Item(index); }), kHostBadIndex) << index;
    EXPECT_EQ(ErrorOf([&] { Shapes()->Item(index); }), kHostBadIndex) << index;
    EXPECT_EQ(ErrorOf([&] { selection->Item(index); }), kHostBadIndex) << index;
    EXPECT_EQ(ErrorOf([&] { events->Item(index); }), kHostBadIndex) << index;
  }
  EXPECT_EQ(ErrorOf([&] { masters->Item(0); }), kHostBadIndex);
  EXPECT_EQ(ErrorOf([&] { masters->Item(masters->Count() + 1); }), kHostBadIndex);
  EXPECT_EQ(ErrorOf([&] { Pages()->Item("Page-9"); }), kHostBadIndex);
  EXPECT_EQ(ErrorOf([&] { Shapes()->Item("Nobody"); }), kHostBadIndex);
  EXPECT_EQ(ErrorOf([&] { Shapes()->ItemFromID(99); }), kHostBadIndex);
}

TEST_P(HostConformance, ShapesAreFoundByPositionNameAndID) {
  Drop();
  const IVShapePtr shape = Drop("Process");
  EXPECT_EQ(Shapes()->Item(2)->Name(), "Process");
  EXPECT_EQ(Shapes()->Item("Process")->ID(), shape->ID());
  EXPECT_EQ(Shapes()->ItemFromID(shape->ID())->Index(), 2);
}

TEST_P(HostConformance, IndexDropsByOneWhenAnEarlierShapeGoes) {
  const IVShapePtr first = Drop(), second = Drop(), third = Drop();
  EXPECT_EQ(third->Index(), 3);
  first->Delete();
  EXPECT_EQ(second->Index(), 1);
  EXPECT_EQ(third->Index(), 2);
  EXPECT_EQ(Drop()->Index(), 3);
  third->Delete();
  EXPECT_EQ(second->Index(), 1) << "a later shape has gone";
}

// --- Shapes

TEST_P(HostConformance, TheFirstInstanceBearsItsMastersNameFurtherOnesTheIDToo) {
  EXPECT_EQ(Drop()->Name(), "Create");
  const IVShapePtr second = Drop(), third = Drop();
  EXPECT_EQ(second->Name(), "Create." + std::to_string(second->ID()));
  EXPECT_EQ(third->Name(), "Create." + std::to_string(third->ID()));
  EXPECT_EQ(Drop("Process")->Name(), "Process");
  Pages()->Add();
  EXPECT_EQ(Drop()->Name(), "Create") << "each page has names of its own";
}

TEST_P(HostConformance, IDsAreNeverGivenTwice) {
  const int first = Drop()->ID();
  const IVShapePtr second = Drop();
  const int secondId = second->ID();
  second->Delete();
  const int third = Drop()->ID();
  user().Undo();
  const int fourth = Drop()->ID();
  std::vector<int> ids = {first, secondId, third, fourth};
  std::sort(ids.begin(), ids.end());
  EXPECT_EQ(std::unique(ids.begin(), ids.end()), ids.end());
}

TEST_P(HostConformance, AShapeKnowsItsTypeMasterAndPage) {
  const IVShapePtr shape = Drop();
  EXPECT_EQ(shape->Type(), kShapeTypeShape);
  ASSERT_TRUE(shape->Master());
  EXPECT_EQ(shape->Master()->Name(), "Create");
  EXPECT_EQ(shape->ContainingPage()->Name(), "Page-1");
}

TEST_P(HostConformance, ADrawingKnowsTheFolderOfItsFile) {
  const auto path = [&] { return app()->ActiveDocument()->Path(); };
  EXPECT_EQ(path(), "");
  user().SaveAndReopen();
  EXPECT_NE(path(), "");
  user().NewDrawing();
  EXPECT_EQ(path(), "");
}

TEST_P(HostConformance, AGroupHasItsShapesByPositionNameAndID) {
  user().OpenDrawingOf(
      "<Shape ID='1' Type='Group'><Shapes><Shape ID='2' Type='Shape'/>"
      "<Shape ID='3' Type='Group'><Shapes><Shape ID='4' Type='Shape'/></Shapes></Shape></Shapes></Shape>"
      "<Shape ID='5' Type='Shape'/>");
  ASSERT_EQ(Shapes()->Count(), 2);
  const IVShapePtr group = Shapes()->Item(1);
  EXPECT_EQ(group->Type(), kShapeTypeGroup);
  const IVShapesPtr inside = group->Shapes();
  ASSERT_EQ(inside->Count(), 2) << "those in the group within count there";
  EXPECT_EQ(inside->Item(1)->ID(), 2);
  EXPECT_EQ(inside->Item("Sheet.3")->ID(), 3);
  EXPECT_EQ(inside->Item(2)->Shapes()->ItemFromID(4)->Type(), kShapeTypeShape);
  for (const int index : {0, 3}) EXPECT_EQ(ErrorOf([&] { inside->Item(index); }), kHostBadIndex) << index;
  EXPECT_EQ(ErrorOf([&] { inside->Item("Sheet.4"); }), kHostBadIndex);
  EXPECT_EQ(ErrorOf([&] { inside->ItemFromID(5); }), kHostBadIndex);
  EXPECT_EQ(Shapes()->Item(2)->Shapes()->Count(), 0);
  EXPECT_EQ(Page()->PageSheet()->Shapes()->Count(), 0);
}

TEST_P(HostConformance, APageSheetIsReadAndWrittenLikeAShape) {
  const IVShapePtr sheet = Page()->PageSheet();
  EXPECT_EQ(sheet->Type(), kShapeTypePage);
  EXPECT_EQ(sheet->Index(), 0);
  EXPECT_FALSE(sheet->Master());
  EXPECT_EQ(sheet->ContainingPage()->Name(), "Page-1");
  EXPECT_EQ(ErrorOf([&] { sheet->Delete(); }), kHostNotAllowed);
  sheet->AddNamedRow(kSectionProp, "Probe", kTagDefault);
  Write(sheet, "Prop.Probe", "\"1;2\"");
  EXPECT_EQ(Formula(Page()->PageSheet(), "Prop.Probe"), "\"1;2\"");
  EXPECT_EQ(Shapes()->Count(), 0);
}

TEST_P(HostConformance, APageSheetThatTheFileDoesNotHaveIsMadeByTheFirstWrite) {
  const std::pair<const char*, std::function<void(const IVShapePtr&)>> writes[] = {
      {"a cell", [](const IVShapePtr& sheet) { Write(sheet, "Width", "3"); }},
      {"a row", [](const IVShapePtr& sheet) { sheet->AddNamedRow(kSectionProp, "Probe", kTagDefault); }},
      {"a numbered row", [](const IVShapePtr& sheet) { sheet->AddRow(kSectionConnectionPts, 0, kTagDefault); }},
      {"a section", [](const IVShapePtr& sheet) { sheet->AddSection(kSectionAction); }},
  };
  for (const auto& [what, write] : writes) {
    SCOPED_TRACE(what);
    user().OpenDrawingOf("");
    const IVShapePtr sheet = Page()->PageSheet();
    EXPECT_EQ(sheet->RowCount(kSectionProp), 0);
    EXPECT_EQ(ErrorOf([&] { sheet->Cells("Prop.Probe"); }), kHostNoSuchCell);
    for (int round = 0; round < 2; ++round) {
      user().RunCommand([&] {
        write(sheet);
        sheet->AddNamedRow(kSectionUser, "Mine", kTagDefault);
        Write(sheet, "User.Mine", "\"kept\"");
      });
      EXPECT_EQ(Formula(Page()->PageSheet(), "User.Mine"), "\"kept\"");
      if (round == 1) break;
      user().Undo();
      EXPECT_FALSE(sheet->CellExists("User.Mine", kExistsAnywhere)) << "undone";
    }
    user().SaveAndReopen();
    EXPECT_EQ(Formula(Page()->PageSheet(), "User.Mine"), "\"kept\"") << "after saving and opening";
    EXPECT_EQ(PageNames(), std::vector<std::string>{"Page-1"});
  }
}

TEST_P(HostConformance, TheDrawingHasASheetOfItsOwn) {
  const IVShapePtr sheet = app()->ActiveDocument()->DocumentSheet();
  EXPECT_EQ(sheet->Type(), kShapeTypeDocument);
  EXPECT_EQ(sheet->Name(), "TheDoc");
  EXPECT_EQ(sheet->Index(), 0);
  EXPECT_FALSE(sheet->Master());
  EXPECT_EQ(ErrorOf([&] { sheet->ContainingPage(); }), kHostNotAllowed);
  EXPECT_EQ(ErrorOf([&] { sheet->Delete(); }), kHostNotAllowed);
  EXPECT_EQ(ErrorOf([&] { sheet->Cells("User.Mine"); }), kHostNoSuchCell);
  user().RunCommand([&] {
    sheet->AddNamedRow(kSectionUser, "Mine", kTagDefault);
    Write(sheet, "User.Mine", "\"kept\"");
  });
  EXPECT_EQ(Formula(app()->ActiveDocument()->DocumentSheet(), "User.Mine"), "\"kept\"");
  user().Undo();
  EXPECT_FALSE(sheet->CellExists("User.Mine", kExistsAnywhere)) << "undone";
  user().Redo();
  user().SaveAndReopen();
  EXPECT_EQ(Formula(app()->ActiveDocument()->DocumentSheet(), "User.Mine"), "\"kept\"") << "after saving and opening";
}

TEST_P(HostConformance, ADrawingsSheetThatTheFileDoesNotHaveIsMadeByTheFirstWrite) {
  user().OpenDrawingOf("");
  const IVShapePtr sheet = app()->ActiveDocument()->DocumentSheet();
  EXPECT_EQ(sheet->RowCount(kSectionUser), 0);
  for (int round = 0; round < 2; ++round) {
    user().RunCommand([&] {
      sheet->AddNamedRow(kSectionUser, "Mine", kTagDefault);
      Write(sheet, "User.Mine", "\"kept\"");
    });
    EXPECT_EQ(Formula(sheet, "User.Mine"), "\"kept\"");
    if (round == 1) break;
    user().Undo();
    EXPECT_FALSE(sheet->CellExists("User.Mine", kExistsAnywhere)) << "undone";
  }
  user().SaveAndReopen();
  EXPECT_EQ(Formula(app()->ActiveDocument()->DocumentSheet(), "User.Mine"), "\"kept\"") << "after saving and opening";
}

TEST_P(HostConformance, PagesHaveNumbersThatTheFileKeeps) {
  Pages()->Add();
  Pages()->Add();
  const auto numbers = [&] {
    std::vector<int> ids;
    for (int i = 1; i <= Pages()->Count(); ++i) ids.push_back(Pages()->Item(i)->ID());
    return ids;
  };
  const std::vector<int> before = numbers();
  EXPECT_EQ(before.size(), 3u);
  EXPECT_EQ(std::set<int>(before.begin(), before.end()).size(), 3u);
  Pages()->Item(2)->Delete(1);
  EXPECT_THAT(numbers(), ElementsAre(before[0], before[2])) << "another page has gone";
  user().SaveAndReopen();
  EXPECT_THAT(numbers(), ElementsAre(before[0], before[2])) << "after saving and opening";
}

TEST_P(HostConformance, AnInstanceInheritsItsMastersText) { EXPECT_EQ(Drop()->Text(), "Create 1"); }

TEST_P(HostConformance, TextIsKeptAsWritten) {
  const struct {
    std::string text;
    const char* why;
  } cases[] = {
      {"Create 2", "one line"},
      {"", "empty"},
      {"first\nsecond\n\nfourth", "several lines, one of them empty"},
      {"ends with a line end\n", "only the text block's own closing line end is left out"},
      {"\n", "an empty line"},
      {"  blanks around  ", "blanks count"},
      {"   ", "blanks only"},
      {"\tindented", "tabs count"},
      {"Gr\xc3\xbc\xc3\x9f"
       "e \xe6\xbc\xa2\xe5\xad\x97 \xf0\x9f\x98\x80",
       "characters of two, three and four bytes"},
      {"<b> & \"quoted\" 'text' ]]>", "characters that mean something in a file"},
      {std::string(10000, 'x'), "10 000 characters"},
  };
  for (const auto& [text, why] : cases) {
    user().NewDrawing();
    const IVShapePtr shape = Drop(), other = Drop();
    shape->SetText(text);
    EXPECT_EQ(shape->Text(), text) << why;
    EXPECT_EQ(other->Text(), "Create 1") << "another instance is left alone: " << why;
    user().SaveAndReopen();
    EXPECT_EQ(Shapes()->Item(1)->Text(), text) << "after saving and opening: " << why;
  }
}

// --- Cells

TEST_P(HostConformance, CellNamesAreFoundWithoutRegardToCase) {
  const IVShapePtr shape = Drop();
  for (const char* name :
       {"Prop.CreateName", "prop.createname", "PROP.CREATENAME", "Prop.CreateName.Value", "prop.createName.VALUE"})
    EXPECT_EQ(Formula(shape, name), "\"Create 1\"") << name;
  EXPECT_EQ(Formula(shape, "user.CLASSNAME"), "\"Create\"");
  EXPECT_EQ(Formula(shape, "prop.createNAME.LABEL"), Formula(shape, "Prop.CreateName.Label"));
  EXPECT_TRUE(shape->CellExists("PINX", kExistsAnywhere));
  EXPECT_TRUE(shape->CellExists("prop.createtype", kExistsAnywhere));
}

TEST_P(HostConformance, AMissingCellIsRefused) {
  const IVShapePtr shape = Drop();
  for (const char* name : {"Prop.Nothing", "User.Nothing", "Prop.CreateName.Nothing", "Nothing", "Nothing.CreateName", "Prop.",
                           "", ".", "BeginX", "Connections.X99", "Connections.X0"}) {
    EXPECT_EQ(ErrorOf([&] { shape->Cells(name); }), kHostNoSuchCell) << name;
    EXPECT_FALSE(shape->CellExists(name, kExistsAnywhere)) << name;
    EXPECT_FALSE(shape->CellExists(name, kExistsLocally)) << name;
  }
}

TEST_P(HostConformance, CellsHaveTheNumbersOfTheReference) {
  const IVShapePtr shape = Drop();
  const short prop = shape->AddNamedRow(kSectionProp, "Probe", kTagDefault);
  const short user = shape->AddNamedRow(kSectionUser, "Probe", kTagDefault);
  const struct {
    short section, row, column;
    const char* name;
  } cases[] = {
      {243, prop, 0, "Prop.Probe"},
      {243, prop, 1, "Prop.Probe.Prompt"},
      {243, prop, 2, "Prop.Probe.Label"},
      {243, prop, 3, "Prop.Probe.Format"},
      {243, prop, 4, "Prop.Probe.SortKey"},
      {243, prop, 5, "Prop.Probe.Type"},
      {243, prop, 6, "Prop.Probe.Invisible"},
      {243, prop, 7, "Prop.Probe.Verify"},
      {242, user, 0, "User.Probe"},
      {242, user, 1, "User.Probe.Prompt"},
      {240, 0, 0, "Actions.Edit.Menu"},
      {240, 0, 3, "Actions.Edit.Action"},
      {7, 0, 0, "Connections.X1"},
      {7, 0, 1, "Connections.Y1"},
      {1, 1, 0, "PinX"},
      {1, 1, 1, "PinY"},
      {1, 1, 2, "Width"},
      {1, 5, 2, "EventDblClick"},
      {1, 17, 0, "NoObjHandles"},
  };
  int number = 1000;
  for (const auto& [section, row, column, name] : cases) {
    const std::string formula = std::to_string(++number);
    shape->CellsSRC(section, row, column)->SetFormula(formula);
    EXPECT_EQ(Formula(shape, name), formula) << name;
  }
  EXPECT_EQ(ErrorOf([&] { shape->CellsSRC(kSectionProp, 999, 0); }), kHostNoSuchCell);
  EXPECT_EQ(ErrorOf([&] { shape->CellsSRC(kSectionProp, -1, 0); }), kHostNoSuchCell);
  EXPECT_EQ(ErrorOf([&] { shape->CellsSRC(kSectionProp, prop, 99); }), kHostNoSuchCell);
  EXPECT_EQ(ErrorOf([&] { shape->CellsSRC(99, 0, 0); }), kHostNoSuchCell);
  EXPECT_EQ(ErrorOf([&] { shape->CellsSRC(kSectionObject, kRowXForm1D, kCell1DBeginX); }), kHostNoSuchCell) << "no connector";
}

TEST_P(HostConformance, ANamedCellTellsItsRowsNumber) {
  const IVShapePtr shape = Drop();
  for (const char* row : {"CreateName", "CreateUnits"}) {
    const auto number = static_cast<short>(PropRow(shape, row));
    EXPECT_EQ(shape->CellsRowIndex(std::string("Prop.") + row), number);
    EXPECT_EQ(shape->CellsRowIndex(std::string("prop.") + row + ".Label"), number);
  }
  EXPECT_EQ(shape->CellsRowIndex("PinX"), kRowXFormOut);
  EXPECT_EQ(ErrorOf([&] { shape->CellsRowIndex("Prop.Nothing"); }), kHostNoSuchCell);
}

// Every shape has its rows to itself: here they stand elsewhere, are missing, and have others' labels.
TEST_P(HostConformance, PropertiesReadInBulkAreEachShapesOwn) {
  const auto setApart = [](const IVShapePtr& shape, int i) {
    const std::string value = '"' + std::to_string(i) + '"';
    const auto deleteRow = [&](const char* name) { shape->DeleteRow(kSectionProp, static_cast<short>(PropRow(shape, name))); };
    if (i % 10 == 2) deleteRow("CreateName");
    if (i % 10 == 3) deleteRow("CreateValue");
    if (i % 10 == 4) {
      deleteRow("CreateValue");
      shape->AddNamedRow(kSectionProp, "CreateValue", kTagDefault);
    }
    if (i % 10 == 5) deleteRow("CreateEntityType");
    if (i % 10 == 6) Write(shape, "Prop.CreateValue.Label", "\"Other\"");
    if (i % 10 == 7)
      while (shape->RowCount(kSectionProp) > 1) shape->DeleteRow(kSectionProp, 0);
    if (shape->CellExists("Prop.CreateValue", kExistsAnywhere)) Write(shape, "Prop.CreateValue", value);
  };
  std::vector<int> positions;
  for (int i = 1; i <= 30; ++i) {
    setApart(Drop(i == 1 ? "Dispose" : "Create"), i);
    positions.insert(positions.begin(), i);
  }
  const IVPagePtr page = Page();
  const auto expectOwn = [&] {
    const BulkTexts read = page->PropertyFormulas(positions, "CreateValue");
    ASSERT_EQ(read.texts().size(), positions.size());
    for (size_t i = 0; i < positions.size(); ++i)
      EXPECT_EQ(read.texts()[i], FormulaIfThere(*Shapes()->Item(positions[i]), "Prop.CreateValue")) << positions[i];
  };
  expectOwn();
  Shapes()->Item(9)->Delete();
  for (int& position : positions) position = std::min(position, 29);
  expectOwn();
  positions.push_back(30);
  EXPECT_EQ(ErrorOf([&] { page->PropertyFormulas(positions, "CreateValue"); }), kHostBadIndex);
  EXPECT_TRUE(page->PropertyFormulas({}, "CreateValue").texts().empty());
}

TEST_P(HostConformance, MastersReadInBulkAreEachShapesOwn) {
  for (const char* master : {"Create", "Process", "Dynamic connector", "Create", "Batch", "Batch"}) Drop(master);
  const IVMastersPtr masters = app()->ActiveDocument()->Masters();
  for (int i = masters->Count(); i >= 1; --i)
    if (masters->Item(i)->Name() == "Batch") masters->Item(i)->Delete();
  const BulkTexts names = Page()->MasterNames();
  const std::vector<std::optional<std::string_view>> wanted = {"Create", "Process", "Dynamic connector", "Create", {}, {}};
  EXPECT_EQ(names.texts(), wanted);
}

TEST_P(HostConformance, OnlyAConnectorHasEndPoints) {
  const IVShapePtr module = Drop(), connector = Drop("Dynamic connector");
  EXPECT_FALSE(module->RowExists(kSectionObject, kRowXForm1D, kExistsAnywhere));
  EXPECT_TRUE(connector->RowExists(kSectionObject, kRowXForm1D, kExistsAnywhere));
  EXPECT_FALSE(PlainSheet()->RowExists(kSectionObject, kRowXForm1D, kExistsAnywhere));
  const struct {
    short column;
    const char* name;
  } ends[] = {{kCell1DBeginX, "BeginX"}, {kCell1DBeginY, "BeginY"}, {kCell1DEndX, "EndX"}, {kCell1DEndY, "EndY"}};
  for (const auto& [column, name] : ends) {
    connector->CellsSRC(kSectionObject, kRowXForm1D, column)->SetFormula("3.25");
    EXPECT_EQ(Formula(connector, name), "3.25") << name;
  }
}

TEST_P(HostConformance, WritingAnInheritedCellMakesALocalOne) {
  const IVShapePtr shape = Drop(), other = Drop();
  EXPECT_TRUE(shape->CellExists("Prop.CreateValue", kExistsAnywhere));
  EXPECT_FALSE(shape->CellExists("Prop.CreateValue", kExistsLocally));

  Write(shape, "prop.createvalue", "\"7\"");
  EXPECT_EQ(Formula(shape, "Prop.CreateValue"), "\"7\"");
  EXPECT_TRUE(shape->CellExists("Prop.CreateValue", kExistsLocally));
  EXPECT_FALSE(shape->CellExists("Prop.CreateValue.Label", kExistsLocally)) << "the row's other cells are inherited still";
  EXPECT_FALSE(shape->CellExists("Prop.CreateUnits", kExistsLocally));

  EXPECT_EQ(Formula(other, "Prop.CreateValue"), "\"1\"");
  EXPECT_FALSE(other->CellExists("Prop.CreateValue", kExistsLocally));
  EXPECT_EQ(Formula(Drop(), "Prop.CreateValue"), "\"1\"") << "the master is as it was";
}

TEST_P(HostConformance, ANewRowIsTheShapesOwn) {
  const IVShapePtr shape = Drop();
  shape->AddNamedRow(kSectionProp, "Mine", kTagDefault);
  for (const char* cell : {"Prop.Mine", "Prop.Mine.Label", "Prop.Mine.Invisible"}) {
    EXPECT_TRUE(shape->CellExists(cell, kExistsAnywhere)) << cell;
    EXPECT_TRUE(shape->CellExists(cell, kExistsLocally)) << cell;
  }
}

TEST_P(HostConformance, AFormulaIsKeptAsWritten) {
  const struct {
    std::string formula;
    const char* why;
  } cases[] = {
      {"\"Create 1\"", "a text"},
      {"\"\"", "an empty text"},
      {"", "no formula"},
      {"\"say \"\"hello\"\"\"", "a text with doubled quotes"},
      {"\"say \"hello\"\"", "inner quotes that are not doubled"},
      {"\"\"\"", "a lone quote in quotes"},
      {"\"\"\"\"", "a doubled quote in quotes"},
      {"\"open", "a quote that is not closed"},
      {"close\"", "a quote that was not opened"},
      {"\"", "nothing but a quote"},
      {"\"a;b;;c;\"", "a list"},
      {"a;b", "separators outside a text"},
      {"\"first\nsecond\"", "a line break"},
      {"\"first\r\nsecond\rthird\"", "the other line breaks"},
      {"\"\ttab\"", "a tab"},
      {"\"  blanks  \"", "blanks inside"},
      {"\"   \"", "nothing but blanks"},
      {" 1 ", "blanks around a number"},
      {"\"" + std::string(10000, 'x') + "\"", "10 000 characters"},
      {"\"Gr\xc3\xbc\xc3\x9f"
       "e \xe6\xbc\xa2\xe5\xad\x97 \xf0\x9f\x98\x80\"",
       "characters of two, three and four bytes"},
      {"\"<b> & 'x' ]]>\"", "characters that mean something in a file"},
      {"0", "zero"},
      {"007", "leading zeros"},
      {"1.50", "a trailing zero"},
      {"-2", "a negative number"},
      {"1E+05", "an exponent"},
      {"0.1234567890123456789", "more digits than a number holds"},
      {"1 in", "a number with a unit"},
      {"1.50 in", "a trailing zero before a unit"},
      {"25.4mm", "a unit without a blank"},
      {"50%", "per cent"},
      {"TRUE", "a truth value"},
      {"true", "one in small letters"},
      {"1+2*3", "arithmetic"},
      {"GUARD(Width*0.5)", "a function of another cell"},
      {"Sheet.99999!Nowhere+1", "a shape that is not there"},
      {"NOSUCHFUNCTION(1,2", "no formula at all"},
      {"1/0", "a division by zero"},
  };
  for (const char* cell : {"Prop.CreateName", "Prop.CreateName.Label", "User.ClassName", "Width"}) {
    for (const auto& [formula, why] : cases) {
      const IVShapePtr shape = Drop();
      Write(shape, cell, formula);
      EXPECT_EQ(Formula(shape, cell), formula) << cell << ": " << why;
    }
  }
  std::vector<std::string> before, after;
  for (int i = 1; i <= Shapes()->Count(); ++i)
    for (const char* cell : {"Prop.CreateName", "Prop.CreateName.Label", "User.ClassName"})
      before.push_back(Formula(Shapes()->Item(i), cell));
  user().SaveAndReopen();
  for (int i = 1; i <= Shapes()->Count(); ++i)
    for (const char* cell : {"Prop.CreateName", "Prop.CreateName.Label", "User.ClassName"})
      after.push_back(Formula(Shapes()->Item(i), cell));
  EXPECT_EQ(before, after) << "after saving and opening";
}

TEST_P(HostConformance, AResultIsWrittenAsANumber) {
  const IVShapePtr shape = Drop("Process");
  for (const auto& [result, formula] :
       std::vector<std::pair<double, std::string>>{{2, "2"}, {-0.5, "-0.5"}, {0.1, "0.1"}, {0, "0"}}) {
    shape->Cells("User.menuid")->SetResult(result);
    EXPECT_EQ(Formula(shape, "User.menuid"), formula);
  }
}

TEST_P(HostConformance, ACellStaysGoodUntilItsRowGoes) {
  const IVShapePtr shape = Drop();
  shape->AddNamedRow(kSectionProp, "First", kTagDefault);
  shape->AddNamedRow(kSectionProp, "Second", kTagDefault);
  const IVCellPtr first = shape->Cells("Prop.First"), second = shape->Cells("Prop.Second");
  shape->DeleteRow(kSectionProp, static_cast<short>(PropRow(shape, "First")));
  second->SetFormula("\"2\"");
  EXPECT_EQ(Formula(shape, "Prop.Second"), "\"2\"");
  EXPECT_EQ(ErrorOf([&] { first->Formula(); }), kHostObjectGone);
  EXPECT_EQ(ErrorOf([&] { first->SetFormula("1"); }), kHostObjectGone);
}

TEST_P(HostConformance, ACellOfANumberedRowFollowsItsRow) {
  constexpr short kPoints = kSectionConnectionPts;
  const std::pair<const char*, IVShapePtr> sheets[] = {{"rows of its own", PlainSheet()},
                                                       {"behind inherited rows", Drop("Process")}};
  for (const auto& [which, sheet] : sheets) {
    SCOPED_TRACE(which);
    const auto first = static_cast<short>(sheet->RowCount(kPoints));
    const auto at = [&](int row) { return static_cast<short>(first + row); };
    std::vector<IVCellPtr> held;
    for (int row = 0; row < 3; ++row) {
      sheet->AddRow(kPoints, at(row), kTagDefault);
      held.push_back(sheet->CellsSRC(kPoints, at(row), kCellConnectionX));
      held.back()->SetFormula(std::to_string(row + 10));
    }
    held[2] = sheet->Cells("Connections.X" + std::to_string(first + 3));
    const auto seen = [&] {
      std::vector<std::string> formulas;
      for (const IVCellPtr& cell : held)
        if (ErrorOf([&] { formulas.push_back(cell->Formula()); }) == kHostObjectGone) formulas.push_back("gone");
      return formulas;
    };
    user().RunCommand([&] { sheet->DeleteRow(kPoints, at(0)); });
    EXPECT_THAT(seen(), ElementsAre("gone", "11", "12"));
    EXPECT_EQ(ErrorOf([&] { held[0]->SetFormula("1"); }), kHostObjectGone);
    held[2]->SetFormula("99");
    EXPECT_EQ(sheet->CellsSRC(kPoints, at(1), kCellConnectionX)->Formula(), "99") << "written where the row is now";
    user().RunCommand([&] {
      sheet->AddRow(kPoints, at(1), kTagDefault);
      held.push_back(sheet->CellsSRC(kPoints, at(1), kCellConnectionX));
      held.back()->SetFormula("50");
      sheet->DeleteRow(kPoints, at(2));
    });
    EXPECT_THAT(seen(), ElementsAre("gone", "11", "gone", "50"));
    user().Undo();
    EXPECT_THAT(seen(), ElementsAre("gone", "11", "99", "gone")) << "the row that came with the command has gone with it";
    user().Redo();
    EXPECT_THAT(seen(), ElementsAre("gone", "11", "gone", "50"));
    for (int i = 0; i < 3; ++i) user().Undo();
    EXPECT_THAT(seen(), ElementsAre("10", "11", "12", "gone")) << "the row that was deleted is back";
    sheet->DeleteRow(kPoints, at(1));
    sheet->AddRow(kPoints, at(1), kTagDefault);
    EXPECT_THAT(seen(), ElementsAre("10", "gone", "12", "gone")) << "another row in the old one's place is another row";
  }
}

TEST_P(HostConformance, ACellOfAnInheritedNumberedRowFollowsItToo) {
  const IVShapePtr shape = Drop("Process"), other = Drop("Process");
  ASSERT_GE(shape->RowCount(kSectionConnectionPts), 2);
  const IVCellPtr first = shape->Cells("Connections.X1"), second = shape->Cells("Connections.X2");
  const IVCellPtr others = other->Cells("Connections.X1");
  const std::string before = second->Formula(), othersBefore = others->Formula();
  shape->DeleteRow(kSectionConnectionPts, 0);
  EXPECT_EQ(ErrorOf([&] { first->Formula(); }), kHostObjectGone);
  EXPECT_EQ(second->Formula(), before);
  shape->Master()->Delete();
  second->SetFormula("3");
  EXPECT_EQ(Formula(shape, "Connections.X1"), "3");
  EXPECT_EQ(others->Formula(), othersBefore) << "another shape's rows stay where they are";
}

// --- Rows

TEST_P(HostConformance, ANamedRowGoesToTheEndAndReturnsItsNumber) {
  const IVShapePtr shape = Drop();
  const int before = shape->RowCount(kSectionProp);
  EXPECT_EQ(shape->AddNamedRow(kSectionProp, "Extra_1", kTagDefault), before);
  EXPECT_EQ(shape->AddNamedRow(kSectionProp, "Extra_2", kTagDefault), before + 1);
  EXPECT_EQ(shape->RowCount(kSectionProp), before + 2);
  EXPECT_EQ(PropRow(shape, "Extra_2"), before + 1);
  EXPECT_EQ(Drop()->RowCount(kSectionProp), before) << "other instances are left alone";
}

TEST_P(HostConformance, ARowNameIsRefusedWhenItIsTakenOrNoName) {
  const IVShapePtr shape = Drop();
  const int before = shape->RowCount(kSectionProp);
  for (const char* name : {"CreateName", "CREATENAME", "", " ", "two words", "a.b", "a;b", "a!b", "a\"b", "a=b"})
    EXPECT_EQ(ErrorOf([&] { shape->AddNamedRow(kSectionProp, name, kTagDefault); }), kHostNotAllowed) << name;
  EXPECT_EQ(shape->RowCount(kSectionProp), before);
}

TEST_P(HostConformance, ASectionOfNamedRowsAppendsWhateverPositionIsAsked) {
  const IVShapePtr shape = Drop();
  const int before = shape->RowCount(kSectionProp);
  EXPECT_EQ(shape->AddRow(kSectionProp, 0, kTagDefault), before);
  EXPECT_EQ(shape->AddRow(kSectionProp, 0, kTagDefault), before + 1);
  EXPECT_EQ(shape->RowCount(kSectionProp), before + 2);
}

TEST_P(HostConformance, AMissingSectionIsMadeWithItsFirstRow) {
  const IVShapePtr sheet = PlainSheet();
  ASSERT_EQ(sheet->RowCount(kSectionConnectionPts), 0);
  EXPECT_EQ(sheet->AddRow(kSectionConnectionPts, 0, kTagDefault), 0);
  EXPECT_EQ(sheet->RowCount(kSectionConnectionPts), 1);
  ASSERT_EQ(sheet->RowCount(kSectionAction), 0);
  EXPECT_EQ(sheet->AddNamedRow(kSectionAction, "Close", kTagDefault), 0);
  EXPECT_TRUE(sheet->CellExists("Actions.Close.Menu", kExistsLocally));
}

TEST_P(HostConformance, AnExistingSectionIsNotAddedAgain) {
  const IVShapePtr sheet = PlainSheet();
  EXPECT_EQ(ErrorOf([&] { sheet->AddSection(kSectionAction); }), 0);
  EXPECT_EQ(sheet->RowCount(kSectionAction), 0);
  EXPECT_EQ(ErrorOf([&] { sheet->AddSection(kSectionAction); }), kHostNotAllowed);
  EXPECT_EQ(ErrorOf([&] { Drop()->AddSection(kSectionProp); }), kHostNotAllowed) << "inherited";
}

TEST_P(HostConformance, NumberedRowsAreInsertedAtTheirPositionAndShift) {
  const IVShapePtr sheet = PlainSheet();
  const auto write = [&](short row, const char* formula) {
    sheet->CellsSRC(kSectionConnectionPts, row, kCellConnectionX)->SetFormula(formula);
  };
  const auto all = [&] {
    std::vector<std::string> formulas;
    for (short row = 0; row < sheet->RowCount(kSectionConnectionPts); ++row)
      formulas.push_back(sheet->CellsSRC(kSectionConnectionPts, row, kCellConnectionX)->Formula());
    return formulas;
  };
  for (short row = 0; row < 3; ++row) {
    EXPECT_EQ(sheet->AddRow(kSectionConnectionPts, row, kTagDefault), row);
    write(row, std::to_string(row + 10).c_str());
  }
  EXPECT_EQ(sheet->AddRow(kSectionConnectionPts, 1, kTagDefault), 1);
  write(1, "99");
  EXPECT_THAT(all(), ElementsAre("10", "99", "11", "12"));
  EXPECT_EQ(Formula(sheet, "Connections.X3"), "11") << "the name counts from 1";
  sheet->DeleteRow(kSectionConnectionPts, 0);
  EXPECT_THAT(all(), ElementsAre("99", "11", "12"));
  sheet->DeleteRow(kSectionConnectionPts, 1);
  EXPECT_THAT(all(), ElementsAre("99", "12"));
  EXPECT_EQ(Formula(sheet, "Connections.X2"), "12");
  EXPECT_EQ(sheet->AddRow(kSectionConnectionPts, 7, kTagDefault), 2) << "behind the end is the end";
}

TEST_P(HostConformance, ANumberedRowStandsBeforeThoseOfTheMasterToo) {
  const IVShapePtr shape = Drop();
  const int before = shape->RowCount(kSectionConnectionPts);
  ASSERT_GT(before, 0);
  shape->Cells("Connections.X1")->SetFormula("Width*0.7");
  const std::string y = Formula(shape, "Connections.Y1");
  EXPECT_EQ(shape->AddRow(kSectionConnectionPts, 0, kTagDefault), 0);
  EXPECT_EQ(shape->RowCount(kSectionConnectionPts), before + 1);
  EXPECT_EQ(Formula(shape, "Connections.X1"), "0") << "a new point";
  EXPECT_EQ(Formula(shape, "Connections.X2"), "Width*0.7") << "the one that was the first";
  EXPECT_EQ(Formula(shape, "Connections.Y2"), y);
  shape->DeleteRow(kSectionConnectionPts, 0);
  EXPECT_EQ(Formula(shape, "Connections.X1"), "Width*0.7");
}

TEST_P(HostConformance, ARowThatIsNotThereIsDeletedQuietly) {
  const IVShapePtr shape = Drop();
  const int before = shape->RowCount(kSectionProp);
  for (const int row : {before, 999, -1}) shape->DeleteRow(kSectionProp, static_cast<short>(row));
  EXPECT_EQ(shape->RowCount(kSectionProp), before);
}

TEST_P(HostConformance, ADeletedInheritedRowIsGoneFromThisShapeOnly) {
  const IVShapePtr shape = Drop(), other = Drop();
  const int before = shape->RowCount(kSectionProp);
  const int row = PropRow(shape, "CreateType");
  ASSERT_GE(row, 0);
  const std::string next = shape->CellsSRC(kSectionProp, static_cast<short>(row + 1), kCellPropLabel)->Formula();
  shape->DeleteRow(kSectionProp, static_cast<short>(row));
  EXPECT_EQ(shape->RowCount(kSectionProp), before - 1);
  EXPECT_FALSE(shape->CellExists("Prop.CreateType", kExistsAnywhere));
  EXPECT_FALSE(shape->CellExists("Prop.CreateType.Label", kExistsAnywhere));
  EXPECT_EQ(shape->CellsSRC(kSectionProp, static_cast<short>(row), kCellPropLabel)->Formula(), next) << "the rows behind move up";
  EXPECT_EQ(other->RowCount(kSectionProp), before);
  EXPECT_TRUE(other->CellExists("Prop.CreateType", kExistsAnywhere));
  EXPECT_EQ(Drop()->RowCount(kSectionProp), before);
}

TEST_P(HostConformance, ADeletedInheritedRowCanBeAddedAgain) {
  const IVShapePtr shape = Drop();
  const int before = shape->RowCount(kSectionProp);
  for (int round = 0; round < 2; ++round) {
    shape->DeleteRow(kSectionProp, static_cast<short>(PropRow(shape, "CreateType")));
    const short row = shape->AddNamedRow(kSectionProp, "CreateType", kTagDefault);
    EXPECT_EQ(shape->RowCount(kSectionProp), before);
    EXPECT_NE(Formula(shape, "Prop.CreateType"), "\"Random\"") << "a new row inherits nothing";
    EXPECT_NE(Formula(shape, "Prop.CreateType.Label"), "\"Type\"");
    shape->CellsSRC(kSectionProp, row, kCellPropValue)->SetFormula("\"again\"");
    EXPECT_EQ(Formula(shape, "Prop.CreateType"), "\"again\"") << "the number returned is the row's";
  }
}

TEST_P(HostConformance, RowsAreCountedAndTheLocalOnesTold) {
  const IVShapePtr shape = Drop();
  const int inherited = shape->RowCount(kSectionProp);
  const short added = shape->AddNamedRow(kSectionProp, "Mine", kTagDefault);
  EXPECT_TRUE(shape->RowExists(kSectionProp, 0, kExistsAnywhere));
  EXPECT_FALSE(shape->RowExists(kSectionProp, 0, kExistsLocally));
  EXPECT_TRUE(shape->RowExists(kSectionProp, added, kExistsLocally));
  EXPECT_FALSE(shape->RowExists(kSectionProp, static_cast<short>(inherited + 1), kExistsAnywhere));
  EXPECT_FALSE(shape->RowExists(kSectionProp, -1, kExistsAnywhere));
  EXPECT_TRUE(shape->RowExists(kSectionObject, kRowXFormOut, kExistsAnywhere));
  EXPECT_EQ(shape->RowCount(9), 0) << "a section that is not there";
}

TEST_P(HostConformance, ManyFormulasAreWrittenAtOnceTheLastServingForTheRest) {
  const IVShapePtr shape = Drop();
  EXPECT_EQ(shape->SetFormulas({243, 0, 0, 243, 1, 0, 243, 2, 0}, {"\"a\"", "\"b\""}, kSetBlastGuards), 3);
  EXPECT_EQ(shape->CellsSRC(kSectionProp, 0, 0)->Formula(), "\"a\"");
  EXPECT_EQ(shape->CellsSRC(kSectionProp, 1, 0)->Formula(), "\"b\"");
  EXPECT_EQ(shape->CellsSRC(kSectionProp, 2, 0)->Formula(), "\"b\"");
}

TEST_P(HostConformance, WritingManyFormulasEndsAtTheFirstThatFails) {
  const IVShapePtr shape = Drop();
  const std::string first = shape->CellsSRC(kSectionProp, 0, 0)->Formula();
  const std::string third = shape->CellsSRC(kSectionProp, 2, 0)->Formula();
  const auto write = [&] {
    EXPECT_EQ(ErrorOf([&] { shape->SetFormulas({243, 0, 0, 243, 999, 0, 243, 2, 0}, {"\"x\""}, 0); }), kHostNoSuchCell);
  };
  write();
  EXPECT_EQ(shape->CellsSRC(kSectionProp, 0, 0)->Formula(), first) << "a member that fails has done nothing";
  user().RunCommand(write);
  EXPECT_EQ(shape->CellsSRC(kSectionProp, 0, 0)->Formula(), "\"x\"") << "inside a command the earlier ones are written";
  EXPECT_EQ(shape->CellsSRC(kSectionProp, 2, 0)->Formula(), third) << "the later ones are not";
}

// --- Pages

TEST_P(HostConformance, AGuardedFormulaStaysUnlessGuardsAreBlasted) {
  const IVShapePtr shape = Drop();
  for (const std::string guarded : {"GUARD(\"a\")", " guard( (1+2)*3 ) ", "GUARD(\"a)\")"}) {
    SCOPED_TRACE(guarded);
    shape->SetFormulas({243, 0, 0}, {guarded}, kSetBlastGuards);
    const IVCellPtr cell = shape->CellsSRC(kSectionProp, 0, kCellPropValue);
    const std::string before = cell->Formula();
    EXPECT_EQ(ErrorOf([&] { cell->SetFormula("1"); }), kHostGuarded);
    EXPECT_EQ(ErrorOf([&] { cell->SetResult(1); }), kHostGuarded);
    EXPECT_EQ(ErrorOf([&] { shape->SetFormulas({243, 0, 0}, {"1"}, 0); }), kHostGuarded);
    EXPECT_EQ(cell->Formula(), before);
    EXPECT_EQ(shape->SetFormulas({243, 0, 0}, {"1"}, kSetBlastGuards), 1);
    EXPECT_EQ(cell->Formula(), "1");
  }
  for (const std::string free : {"GUARD(1)+GUARD(2)", "1+GUARD(2)", "GUARDED(1)", "\"GUARD(1)\""}) {
    SCOPED_TRACE(free);
    const IVCellPtr cell = shape->CellsSRC(kSectionProp, 0, kCellPropValue);
    cell->SetFormula(free);
    EXPECT_EQ(cell->Formula(), free);
    cell->SetFormula("1");
    EXPECT_EQ(cell->Formula(), "1");
  }
}

TEST_P(HostConformance, ANewPageComesLastNamedByItsNumberAndIsShown) {
  EXPECT_EQ(Pages()->Add()->Name(), "Page-2");
  EXPECT_EQ(Page()->Name(), "Page-2");
  app()->ActiveWindow()->SetPage("Page-1");
  EXPECT_EQ(Pages()->Add()->Name(), "Page-3");
  EXPECT_THAT(PageNames(), ElementsAre("Page-1", "Page-2", "Page-3"));
  EXPECT_EQ(Pages()->Item("Page-3")->Name(), "Page-3");
  EXPECT_EQ(app()->ActiveWindow()->Page()->Name(), "Page-3");
}

TEST_P(HostConformance, APageIsNamedFreelyButNotTwice) {
  Pages()->Add();
  const IVPagePtr page = Pages()->Item(2);
  for (const char* name : {"Paint shop", "paint shop", "Lackiererei \xc3\x84", "a;b", "paint shop"}) {
    page->SetName(name);
    EXPECT_EQ(page->Name(), name);
    EXPECT_EQ(Pages()->Item(name)->Name(), name);
  }
  EXPECT_EQ(ErrorOf([&] { page->SetName(""); }), kHostNotAllowed);
  EXPECT_EQ(ErrorOf([&] { page->SetName("Page-1"); }), kHostNotAllowed);
  EXPECT_EQ(ErrorOf([&] { page->SetName("paint shop"); }), 0) << "its own name";
  EXPECT_EQ(ErrorOf([&] { page->SetName("page-1"); }), 0) << "names are compared exactly";
  EXPECT_THAT(PageNames(), ElementsAre("Page-1", "page-1"));
  EXPECT_EQ(ErrorOf([&] { Pages()->Item("PAGE-1"); }), kHostBadIndex);
}

TEST_P(HostConformance, DeletingAPageRenumbersOnlyWhenAsked) {
  for (const short renumber : {0, 1}) {
    user().NewDrawing();
    for (int i = 0; i < 4; ++i) Pages()->Add();
    Pages()->Item(3)->SetName("Named");
    Pages()->Item(2)->Delete(renumber);
    if (renumber) {
      EXPECT_THAT(PageNames(), ElementsAre("Page-1", "Named", "Page-3", "Page-4"));
    } else {
      EXPECT_THAT(PageNames(), ElementsAre("Page-1", "Named", "Page-4", "Page-5"));
    }
  }
}

TEST_P(HostConformance, APageThatGoesTakesItsShapesAlong) {
  const IVPagePtr page = Pages()->Add();
  const IVShapePtr shape = Drop();
  page->Delete(0);
  EXPECT_THAT(PageNames(), ElementsAre("Page-1"));
  EXPECT_EQ(Page()->Name(), "Page-1") << "another page is shown";
  EXPECT_EQ(ErrorOf([&] { shape->Text(); }), kHostObjectGone);
}

TEST_P(HostConformance, DeletingAPageInTheBackgroundShowsTheSamePageStill) {
  Pages()->Add();
  Pages()->Add();
  app()->ActiveWindow()->SetPage("Page-3");
  Pages()->Item("Page-2")->Delete(0);
  EXPECT_EQ(Page()->Name(), "Page-3");
}

TEST_P(HostConformance, TheOnlyPageStays) {
  EXPECT_EQ(ErrorOf([&] { Page()->Delete(1); }), kHostNotAllowed);
  EXPECT_EQ(Pages()->Count(), 1);
}

TEST_P(HostConformance, TheWindowShowsAPageByItsExactName) {
  Pages()->Add();
  app()->ActiveWindow()->SetPage("Page-1");
  EXPECT_EQ(Page()->Name(), "Page-1");
  EXPECT_EQ(ErrorOf([&] { app()->ActiveWindow()->SetPage("page-2"); }), kHostBadIndex);
  EXPECT_EQ(app()->ActiveWindow()->Page()->Name(), "Page-1");
}

// --- Selection

TEST_P(HostConformance, TheSelectionIsInTheOrderOfSelecting) {
  const IVShapePtr create = Drop("Create"), process = Drop("Process"), dispose = Drop("Dispose");
  EXPECT_THAT(Selected(), ElementsAre("Dispose")) << "what was dropped last";
  user().Select({process, create});
  EXPECT_THAT(Selected(), ElementsAre("Process", "Create"));
}

TEST_P(HostConformance, ASelectionIsASnapshot) {
  const IVShapePtr create = Drop("Create"), process = Drop("Process");
  user().Select({create});
  const IVSelectionPtr before = app()->ActiveWindow()->Selection();
  user().Select({process});
  ASSERT_EQ(before->Count(), 1);
  EXPECT_EQ(before->Item(1)->Name(), "Create");
  create->Delete();
  EXPECT_EQ(ErrorOf([&] { before->Item(1)->Name(); }), kHostObjectGone);
}

TEST_P(HostConformance, AnotherPageHasNothingSelected) {
  Drop();
  Pages()->Add();
  EXPECT_THAT(Selected(), IsEmpty());
}

TEST_P(HostConformance, ADeletedShapeIsNoLongerSelected) {
  const IVShapePtr create = Drop("Create"), process = Drop("Process");
  user().Select({create, process});
  create->Delete();
  EXPECT_THAT(Selected(), ElementsAre("Process"));
}

// --- Events

TEST_P(HostConformance, ADropIsToldWhenTheShapeIsThereAndSelected) {
  int shapes = 0;
  std::vector<std::string> selected;
  const auto sink = Listen({kEventShapeAdded}, [&](const RecordingSink::Event&) {
    shapes = Shapes()->Count();
    selected = Selected();
  });
  const IVShapePtr shape = Drop();
  ASSERT_EQ(sink->events.size(), 1u);
  EXPECT_EQ(sink->events[0].code, -32704);
  EXPECT_EQ(sink->events[0].moreInfo, "");
  EXPECT_EQ(std::get<IVShapePtr>(sink->events[0].subject)->ID(), shape->ID());
  EXPECT_EQ(shapes, 1);
  EXPECT_THAT(selected, ElementsAre("Create"));
}

TEST_P(HostConformance, TypingIsToldWithTheShapesNumbersAndNothingSelected) {
  Pages()->Add();
  Drop();
  const IVShapePtr shape = Drop();
  std::vector<std::string> selected = {"not told"};
  std::string text;
  const auto sink = Listen({kEventTextChanged}, [&](const RecordingSink::Event& event) {
    selected = Selected();
    text = std::get<IVShapePtr>(event.subject)->Text();
  });
  user().Type(shape, "Arrivals");
  ASSERT_EQ(sink->events.size(), 1u);
  EXPECT_EQ(sink->events[0].code, 8320);
  EXPECT_EQ(sink->events[0].moreInfo, "/doc=1 /page=2 /shape=Sheet." + std::to_string(shape->ID()));
  EXPECT_EQ(text, "Arrivals");
  EXPECT_THAT(selected, IsEmpty());
}

TEST_P(HostConformance, ATextSetByAProgramIsToldWithTheSelectionAsItIs) {
  const IVShapePtr shape = Drop();
  std::vector<std::string> selected;
  const auto sink = Listen({kEventTextChanged}, [&](const RecordingSink::Event&) { selected = Selected(); });
  shape->SetText("Arrivals");
  ASSERT_EQ(sink->events.size(), 1u);
  EXPECT_EQ(sink->events[0].moreInfo, "/doc=1 /page=1 /shape=Sheet." + std::to_string(shape->ID()));
  EXPECT_THAT(selected, ElementsAre("Create"));
}

TEST_P(HostConformance, ASelectionThatGoesIsToldWhileItsShapesAreStillThere) {
  const IVShapePtr first = Drop(), second = Drop(), third = Drop();
  user().Select({third, first});
  int shapes = 0;
  std::vector<int> going;
  const auto sink = Listen({kEventBeforeSelectionDelete}, [&](const RecordingSink::Event& event) {
    shapes = Shapes()->Count();
    const IVSelectionPtr selection = std::get<IVSelectionPtr>(event.subject);
    for (int i = 1; i <= selection->Count(); ++i) going.push_back(selection->Item(i)->Index());
  });
  user().DeleteSelection();
  ASSERT_EQ(sink->events.size(), 1u);
  EXPECT_EQ(sink->events[0].code, 901);
  EXPECT_EQ(sink->events[0].moreInfo, "");
  EXPECT_EQ(shapes, 3);
  EXPECT_THAT(going, ElementsAre(3, 1));
  EXPECT_EQ(Shapes()->Count(), 1);
  EXPECT_EQ(second->Index(), 1);
  EXPECT_THAT(Selected(), IsEmpty());
}

TEST_P(HostConformance, AShapeDeletedByAProgramIsNotToldAsASelection) {
  const IVShapePtr shape = Drop();
  const auto sink = Listen({kEventBeforeSelectionDelete});
  shape->Delete();
  EXPECT_THAT(sink->events, IsEmpty());
}

TEST_P(HostConformance, ANewPageIsToldBeforeAddReturns) {
  std::string shown;
  const auto sink = Listen({kEventPageAdded, kEventWindowChanged}, [&](const RecordingSink::Event& event) {
    if (const auto* page = std::get_if<IVPagePtr>(&event.subject))
      shown = (*page)->Name() + " of " + std::to_string(Pages()->Count());
  });
  Pages()->Add();
  EXPECT_THAT(sink->Codes(), ElementsAre(kEventPageAdded, kEventWindowChanged));
  EXPECT_EQ(sink->events[0].code, -32752);
  EXPECT_EQ(shown, "Page-2 of 2");
}

TEST_P(HostConformance, APageThatGoesIsToldWhileItIsStillThere) {
  Pages()->Add();
  Drop();
  std::string seen;
  const auto sink = Listen({kEventPageDeleted}, [&](const RecordingSink::Event& event) {
    const IVPagePtr page = std::get<IVPagePtr>(event.subject);
    seen = page->Name() + " with " + std::to_string(page->Shapes()->Count()) + " of " + std::to_string(Pages()->Count());
  });
  Page()->Delete(1);
  ASSERT_EQ(sink->events.size(), 1u);
  EXPECT_EQ(sink->events[0].code, 16400);
  EXPECT_EQ(seen, "Page-2 with 1 of 2");
}

TEST_P(HostConformance, ARenamedPageIsToldWithItsNewName) {
  std::string seen;
  const auto sink =
      Listen({kEventPageChanged}, [&](const RecordingSink::Event& event) { seen = std::get<IVPagePtr>(event.subject)->Name(); });
  Page()->SetName("Main");
  EXPECT_THAT(sink->Codes(), ElementsAre(kEventPageChanged));
  EXPECT_EQ(seen, "Main");
}

TEST_P(HostConformance, TheWindowTellsOfAnotherSelectionAndAnotherPage) {
  const IVShapePtr first = Drop();
  Drop();
  Pages()->Add();
  app()->ActiveWindow()->SetPage("Page-1");
  std::string shown;
  const auto sink = Listen({kEventWindowChanged}, [&](const RecordingSink::Event& event) {
    shown = std::get<IVWindowPtr>(event.subject)->Page()->Name();
  });
  user().Select({first});
  EXPECT_EQ(sink->events.size(), 1u);
  EXPECT_EQ(shown, "Page-1");
  app()->ActiveWindow()->SetPage("Page-2");
  ASSERT_EQ(sink->events.size(), 2u);
  EXPECT_EQ(shown, "Page-2");
  EXPECT_EQ(sink->events[1].code, 701);
}

TEST_P(HostConformance, ADrawingIsToldWhenItClosesAndWhenItIsMade) {
  const auto sink = Listen({kEventDocumentCreated, kEventDocumentClosed});
  user().NewDrawing();
  ASSERT_THAT(sink->Codes(), ElementsAre(kEventDocumentClosed, kEventDocumentCreated));
  for (const auto& event : sink->events) EXPECT_TRUE(std::holds_alternative<IVDocumentPtr>(event.subject));
  EXPECT_EQ(std::get<IVDocumentPtr>(sink->events[1].subject)->Pages()->Count(), 1);
  EXPECT_EQ(app()->EventList()->Count(), 2) << "the application's own list outlives its drawings";
}

TEST_P(HostConformance, AnEventThatIsSwitchedOffIsNotDelivered) {
  const auto sink = std::make_shared<RecordingSink>();
  const IVEventPtr event = Advise(sink, kEventShapeAdded);
  event->SetEnabled(false);
  Drop();
  EXPECT_THAT(sink->events, IsEmpty());
  event->SetEnabled(true);
  Drop();
  EXPECT_EQ(sink->events.size(), 1u);
  app()->EventList()->Item(1)->SetEnabled(false);
  Drop();
  EXPECT_EQ(sink->events.size(), 1u) << "the list holds the same event";
}

TEST_P(HostConformance, SinksAreCalledInTheOrderOfTheAdvises) {
  std::vector<std::string> order;
  std::vector<std::shared_ptr<RecordingSink>> sinks;
  for (const char* name : {"first", "second", "third"})
    sinks.push_back(Listen({kEventShapeAdded}, [&order, name](const RecordingSink::Event&) { order.push_back(name); }));
  EXPECT_EQ(app()->EventList()->Count(), 3);
  Drop();
  EXPECT_THAT(order, ElementsAre("first", "second", "third"));
  EXPECT_NE(sinks[0]->events[0].id, sinks[1]->events[0].id) << "each advise has an ID of its own";
  EXPECT_LT(sinks[0]->events[0].sequence, sinks[2]->events[0].sequence);
}

TEST_P(HostConformance, AListenerIsKeptByTheListAndNeedsNoInterfaceIdentifier) {
  std::weak_ptr<RecordingSink> kept = Listen({kEventShapeAdded});
  EXPECT_FALSE(kept.expired());
  const auto sink = std::make_shared<RecordingSink>();
  EXPECT_NE(ErrorOf([&] { app()->EventList()->AddAdvise(1, sink, "{000D0728}", ""); }), 0);
  EXPECT_EQ(app()->EventList()->Count(), 1);
}

TEST_P(HostConformance, AListenerMayDeleteTheShapeItIsToldOf) {
  const auto sink =
      Listen({kEventShapeAdded}, [&](const RecordingSink::Event& event) { std::get<IVShapePtr>(event.subject)->Delete(); });
  EXPECT_NO_THROW(Drop());
  EXPECT_EQ(Shapes()->Count(), 0);
  EXPECT_THAT(Selected(), IsEmpty());
}

TEST_P(HostConformance, AListenerMayDeleteWhatIsGoingAnyway) {
  const IVShapePtr shape = Drop();
  const auto sink = Listen({kEventBeforeSelectionDelete}, [&](const RecordingSink::Event&) { shape->Delete(); });
  EXPECT_NO_THROW(user().DeleteSelection());
  EXPECT_EQ(Shapes()->Count(), 0);
}

// --- Objects that have gone

TEST_P(HostConformance, WhatWasDeletedIsGone) {
  const IVShapePtr shape = Drop();
  const IVCellPtr cell = shape->Cells("Prop.CreateName");
  const IVPagePtr page = Pages()->Add();
  const IVShapesPtr shapes = page->Shapes();
  const IVShapePtr sheet = page->PageSheet();
  const IVMasterPtr master = Drop("Variable")->Master();
  page->Delete(0);
  shape->Delete();
  master->Delete();
  const std::pair<const char*, std::function<void()>> uses[] = {
      {"Shape.Name", [&] { shape->Name(); }},
      {"Shape.ID", [&] { shape->ID(); }},
      {"Shape.Index", [&] { shape->Index(); }},
      {"Shape.Type", [&] { shape->Type(); }},
      {"Shape.Text", [&] { shape->Text(); }},
      {"Shape.SetText", [&] { shape->SetText("x"); }},
      {"Shape.Master", [&] { shape->Master(); }},
      {"Shape.Cells", [&] { shape->Cells("PinX"); }},
      {"Shape.CellExists", [&] { shape->CellExists("PinX", 0); }},
      {"Shape.CellsSRC", [&] { shape->CellsSRC(1, 1, 0); }},
      {"Shape.RowCount", [&] { shape->RowCount(kSectionProp); }},
      {"Shape.AddNamedRow", [&] { shape->AddNamedRow(kSectionProp, "x", 0); }},
      {"Shape.DeleteRow", [&] { shape->DeleteRow(kSectionProp, 0); }},
      {"Shape.SetFormulas",
       [&] {
         shape->SetFormulas({243, 0, 0}, {"1"}, 0);
       }},
      {"Shape.Delete", [&] { shape->Delete(); }},
      {"Cell.Formula", [&] { cell->Formula(); }},
      {"Cell.SetFormula", [&] { cell->SetFormula("1"); }},
      {"Page.Name", [&] { page->Name(); }},
      {"Page.SetName", [&] { page->SetName("x"); }},
      {"Page.Delete", [&] { page->Delete(1); }},
      {"Shapes.Count", [&] { shapes->Count(); }},
      {"Shapes.Item", [&] { shapes->Item(1); }},
      {"PageSheet.Cells", [&] { sheet->Cells("Prop.Create"); }},
      {"Master.Name", [&] { master->Name(); }},
      {"Master.Delete", [&] { master->Delete(); }},
  };
  for (const auto& [member, use] : uses) EXPECT_EQ(ErrorOf(use), kHostObjectGone) << member;
}

TEST_P(HostConformance, AnOtherDrawingsObjectsAreGone) {
  const IVDocumentPtr document = app()->ActiveDocument();
  const int id = document->ID();
  const IVPagePtr page = Page();
  const IVShapePtr shape = Drop();
  EXPECT_EQ(app()->ActiveDocument()->ID(), id);
  user().NewDrawing();
  Drop();
  EXPECT_NE(app()->ActiveDocument()->ID(), id);
  EXPECT_EQ(ErrorOf([&] { document->ID(); }), kHostObjectGone);
  EXPECT_EQ(ErrorOf([&] { document->Pages(); }), kHostObjectGone);
  EXPECT_EQ(ErrorOf([&] { page->Name(); }), kHostObjectGone);
  EXPECT_EQ(ErrorOf([&] { shape->Name(); }), kHostObjectGone);
}

TEST_P(HostConformance, AMasterGoesWithoutItsInstances) {
  const auto seen = [](const IVShapePtr& shape) {
    std::vector<std::string> seen = {shape->Name(), shape->Text(), Formula(shape, "Width"), Formula(shape, "EventDblClick")};
    for (const short section : {kSectionProp, kSectionUser, kSectionAction, kSectionConnectionPts}) {
      for (short row = 0; row < shape->RowCount(section); ++row)
        for (const short column : {0, 1, 2, 3, 6})
          if (ErrorOf([&] { seen.push_back(shape->CellsSRC(section, row, column)->Formula()); })) seen.push_back("no such cell");
      seen.push_back("end of section");
    }
    return seen;
  };
  const IVMastersPtr masters = app()->ActiveDocument()->Masters();
  std::vector<std::string> names;
  for (int i = 1; i <= masters->Count(); ++i) names.push_back(masters->Item(i)->Name());
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    const IVShapePtr shape = Drop(name), changed = Drop(name);
    changed->SetText("changed");
    if (changed->RowCount(kSectionProp) > 1) {
      changed->CellsSRC(kSectionProp, 0, kCellPropValue)->SetFormula("\"mine\"");
      changed->DeleteRow(kSectionProp, 1);
      changed->AddNamedRow(kSectionProp, "Mine", kTagDefault);
    }
    const auto shapeBefore = seen(shape), changedBefore = seen(changed);
    const int count = masters->Count();
    shape->Master()->Delete();
    EXPECT_EQ(masters->Count(), count - 1);
    EXPECT_FALSE(shape->Master());
    EXPECT_EQ(seen(shape), shapeBefore);
    EXPECT_EQ(seen(changed), changedBefore);
    user().Undo();
    ASSERT_TRUE(shape->Master());
    EXPECT_EQ(shape->Master()->Name(), name);
    EXPECT_FALSE(shape->CellExists("Width", kExistsLocally)) << "undone";
    EXPECT_EQ(seen(changed), changedBefore);
    user().Redo();
    EXPECT_EQ(seen(changed), changedBefore);
  }
  std::vector<std::vector<std::string>> before, after;
  for (int i = 1; i <= Shapes()->Count(); ++i) before.push_back(seen(Shapes()->Item(i)));
  user().SaveAndReopen();
  for (int i = 1; i <= Shapes()->Count(); ++i) after.push_back(seen(Shapes()->Item(i)));
  EXPECT_EQ(before, after) << "after saving and opening";
}

// --- Undo

TEST_P(HostConformance, ACommandIsOneStepWithAllThatItsListenersDid) {
  Page()->PageSheet()->AddNamedRow(kSectionProp, "Probe", kTagDefault);
  Listen({kEventShapeAdded}, [&](const RecordingSink::Event& event) {
    std::get<IVShapePtr>(event.subject)->SetText("told");
    Write(Page()->PageSheet(), "Prop.Probe", "1");
  });
  const std::string before = Formula(Page()->PageSheet(), "Prop.Probe");
  Drop();
  user().Undo();
  EXPECT_EQ(Shapes()->Count(), 0);
  EXPECT_EQ(Formula(Page()->PageSheet(), "Prop.Probe"), before);
  user().Redo();
  ASSERT_EQ(Shapes()->Count(), 1);
  EXPECT_EQ(Shapes()->Item(1)->Text(), "told");
  EXPECT_EQ(Formula(Page()->PageSheet(), "Prop.Probe"), "1");
}

TEST_P(HostConformance, EachCommandIsUndoneByItself) {
  const IVShapePtr shape = Drop();
  user().RunCommand([&] {
    shape->SetText("A");
    Write(shape, "Prop.CreateName", "\"A\"");
    shape->DeleteRow(kSectionProp, static_cast<short>(PropRow(shape, "CreateUnits")));
  });
  user().Type(shape, "B");
  user().Select({shape});
  user().DeleteSelection();
  user().Undo();
  EXPECT_EQ(shape->Text(), "B") << "the shape is back under its own ID";
  user().Undo();
  EXPECT_EQ(shape->Text(), "A");
  user().Undo();
  EXPECT_EQ(shape->Text(), "Create 1");
  EXPECT_EQ(Formula(shape, "Prop.CreateName"), "\"Create 1\"");
  EXPECT_TRUE(shape->CellExists("Prop.CreateUnits", kExistsAnywhere));
  EXPECT_FALSE(shape->CellExists("Prop.CreateName", kExistsLocally));
  user().Undo();
  EXPECT_EQ(ErrorOf([&] { shape->Text(); }), kHostObjectGone);
  EXPECT_EQ(ErrorOf([&] { user().Undo(); }), kHostNotAllowed);
  for (int i = 0; i < 4; ++i) user().Redo();
  EXPECT_EQ(Shapes()->Count(), 0);
  EXPECT_EQ(ErrorOf([&] { user().Redo(); }), kHostNotAllowed);
}

TEST_P(HostConformance, PagesComeBackWithTheirShapes) {
  Pages()->Add();
  Drop("Process");
  Page()->SetName("Inside");
  Pages()->Item("Inside")->Delete(1);
  user().Undo();
  ASSERT_THAT(PageNames(), ElementsAre("Page-1", "Inside"));
  EXPECT_EQ(Pages()->Item("Inside")->Shapes()->Item(1)->Name(), "Process");
  user().Undo();
  EXPECT_THAT(PageNames(), ElementsAre("Page-1", "Page-2"));
}

TEST_P(HostConformance, UndoAndRedoAreToldLikeWhatAPersonDoesAndSayWhatTheyAre) {
  const IVShapePtr shape = Drop();
  const IVShapePtr other = Drop();
  user().Type(shape, "A");
  user().Select({shape});
  user().DeleteSelection();
  Pages()->Add();
  Page()->SetName("Other");
  int told = 0;
  const auto sink = Listen(AllCodes(), [&](const RecordingSink::Event&) { told += app()->IsUndoingOrRedoing() ? 1 : 0; });
  const auto toldBy = [&](void (HostUser::*act)()) {
    sink->events.clear();
    (user().*act)();
    return sink->Codes();
  };
  EXPECT_THAT(toldBy(&HostUser::Undo), ElementsAre(kEventPageChanged));
  EXPECT_THAT(toldBy(&HostUser::Undo), ElementsAre(kEventPageDeleted, kEventWindowChanged));
  EXPECT_THAT(toldBy(&HostUser::Undo), ElementsAre(kEventShapeAdded));
  EXPECT_EQ(std::get<IVShapePtr>(sink->events.front().subject)->Text(), "A") << "it is there, with all that it had";
  EXPECT_THAT(toldBy(&HostUser::Undo), ElementsAre(kEventTextChanged));
  EXPECT_EQ(sink->events.front().moreInfo, "/doc=1 /page=1 /shape=Sheet." + std::to_string(shape->ID()));
  EXPECT_THAT(toldBy(&HostUser::Undo), ElementsAre(kEventBeforeSelectionDelete));
  EXPECT_THAT(toldBy(&HostUser::Redo), ElementsAre(kEventShapeAdded));
  EXPECT_THAT(toldBy(&HostUser::Redo), ElementsAre(kEventTextChanged));
  EXPECT_THAT(toldBy(&HostUser::Redo), ElementsAre(kEventBeforeSelectionDelete));
  EXPECT_THAT(toldBy(&HostUser::Redo), ElementsAre(kEventPageAdded));
  EXPECT_THAT(toldBy(&HostUser::Redo), ElementsAre(kEventPageChanged));
  EXPECT_EQ(told, 11) << "each of them says what it comes from";
  EXPECT_FALSE(app()->IsUndoingOrRedoing());
  Drop();
  EXPECT_EQ(told, 11);
}

TEST_P(HostConformance, WhatGoesByAnUndoIsToldOfWhileItIsStillThere) {
  Drop()->SetText("A");
  std::string text;
  Listen({kEventBeforeSelectionDelete},
         [&](const RecordingSink::Event& event) { text = std::get<IVSelectionPtr>(event.subject)->Item(1)->Text(); });
  user().Undo();
  user().Undo();
  EXPECT_EQ(text, "Create 1");
}

TEST_P(HostConformance, AnUndoScopeIsOneStep) {
  const IVShapePtr shape = Drop();
  const int scope = app()->BeginUndoScope("Outer");
  shape->SetText("A");
  const int inner = app()->BeginUndoScope("Inner");
  EXPECT_NE(scope, inner);
  shape->SetText("B");
  EXPECT_EQ(ErrorOf([&] { app()->EndUndoScope(scope, true); }), kHostNotAllowed) << "the inner one ends first";
  EXPECT_EQ(ErrorOf([&] { user().Undo(); }), kHostNotAllowed) << "it has not ended";
  app()->EndUndoScope(inner, true);
  Write(shape, "Prop.CreateName", "\"B\"");
  app()->EndUndoScope(scope, true);
  EXPECT_EQ(ErrorOf([&] { app()->EndUndoScope(scope, true); }), kHostNotAllowed) << "it has ended";
  app()->EndUndoScope(0, true);
  user().Undo();
  EXPECT_EQ(shape->Text(), "Create 1");
  EXPECT_EQ(Formula(shape, "Prop.CreateName"), "\"Create 1\"");
}

TEST_P(HostConformance, AnUndoScopeThatIsNotKeptIsTakenBack) {
  const IVShapePtr shape = Drop();
  const int scope = app()->BeginUndoScope("Tried");
  shape->SetText("A");
  app()->EndUndoScope(scope, false);
  EXPECT_EQ(shape->Text(), "Create 1");
  user().RunCommand([&] {
    const int inside = app()->BeginUndoScope("Inside");
    shape->SetText("B");
    EXPECT_EQ(ErrorOf([&] { app()->EndUndoScope(inside, false); }), kHostNotAllowed) << "that is the command's";
    app()->EndUndoScope(inside, true);
  });
  EXPECT_EQ(shape->Text(), "B");
}

TEST_P(HostConformance, AnUndoScopeThatNobodyEndsEndsWithItsCommand) {
  Listen({kEventShapeAdded}, [&](const RecordingSink::Event&) { app()->BeginUndoScope("Forgotten"); });
  Drop();
  user().Undo();
  EXPECT_EQ(Shapes()->Count(), 0);
}

// --- Menus

TEST_P(HostConformance, MenusCountFromZero) {
  const IVMenusPtr menus = DrawingMenus(app()->BuiltInMenus());
  const int count = menus->Count();
  ASSERT_GT(count, 6);
  EXPECT_NE(menus->Item(0)->Caption(), "");
  EXPECT_NE(menus->Item(count - 1)->Caption(), "");
  EXPECT_EQ(ErrorOf([&] { menus->Item(count); }), kHostBadIndex);
  EXPECT_EQ(ErrorOf([&] { menus->Item(-1); }), kHostBadIndex);
  EXPECT_EQ(ErrorOf([&] { app()->BuiltInMenus()->MenuSets()->ItemAtID(99); }), kHostBadIndex);
}

TEST_P(HostConformance, AMenuGoesToItsPositionOrToTheEnd) {
  const IVMenusPtr menus = DrawingMenus(app()->BuiltInMenus());
  const int count = menus->Count();
  const std::string seventh = menus->Item(6)->Caption();
  menus->AddAt(6)->SetCaption("&Simulate");
  menus->AddAt(99)->SetCaption("&Last");
  EXPECT_EQ(menus->Count(), count + 2);
  EXPECT_EQ(menus->Item(6)->Caption(), "&Simulate");
  EXPECT_EQ(menus->Item(7)->Caption(), seventh);
  EXPECT_EQ(menus->Item(count + 1)->Caption(), "&Last");
}

TEST_P(HostConformance, BuiltInMenusAreAFreshCopy) {
  DrawingMenus(app()->BuiltInMenus())->AddAt(0)->SetCaption("&Mine");
  EXPECT_NE(DrawingMenus(app()->BuiltInMenus())->Item(0)->Caption(), "&Mine");
  EXPECT_FALSE(app()->CustomMenus());
}

TEST_P(HostConformance, CustomMenusAreACopyOfWhatWasSet) {
  const IVUIObjectPtr menus = app()->BuiltInMenus();
  const IVMenuPtr menu = DrawingMenus(menus)->AddAt(0);
  menu->SetCaption("&Mine");
  const IVMenuItemPtr item = menu->MenuItems()->AddAt(0);
  item->SetCaption("&Run");
  item->SetAddOnName("run.exe");
  app()->SetCustomMenus(menus);
  menu->SetCaption("&Changed later");
  ASSERT_TRUE(app()->CustomMenus());
  EXPECT_EQ(DrawingMenus(app()->CustomMenus())->Item(0)->Caption(), "&Mine");
  EXPECT_NE(DrawingMenus(app()->BuiltInMenus())->Item(0)->Caption(), "&Mine");
}

}  // namespace vardo
