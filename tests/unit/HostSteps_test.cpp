// Every command of a person, and every writing member of the object model called outside one, is one step to undo; one that is
// refused leaves no trace. Who watches is told once a step of what it touched.
#include "TestDrawings.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "base/Text.h"
#include "memoryhost/DrawingHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <ostream>
#include <set>
#include <utility>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kUnkeepable = "a\xEF\xBF\xBF";  // U+FFFF
constexpr int kNobody = 99;

using Parts = std::map<std::string, std::string>;

// All of a drawing at work that a command may change.
struct State {
  Parts parts;
  std::vector<std::string> undo, redo;
  std::vector<int> selection;
  int page = 0;
  bool changed = false;
  friend bool operator==(const State&, const State&) = default;
};
void PrintTo(const State& state, std::ostream* out) {
  *out << "page " << state.page << ", changed " << state.changed << ", undo " << testing::PrintToString(state.undo) << ", redo "
       << testing::PrintToString(state.redo) << ", selected " << testing::PrintToString(state.selection);
}

// ------------------------------------------------------------------------------------------- what a step is seen to have changed

// A sheet of a part and a cell of it; without a cell, the sheet itself: that it is there, its text, its rows.
struct Spot {
  int page, shape;
  std::string cell;
  auto operator<=>(const Spot&) const = default;
};
void PrintTo(const Spot& spot, std::ostream* out) { *out << spot.page << '/' << spot.shape << '/' << spot.cell; }

// What the trees say at every spot, read without the host's help.
class Seen {
 public:
  explicit Seen(Drawing& drawing) {
    for (int i = 1; i <= drawing.PageCount(); ++i) {
      DrawingPage& page = drawing.PageAt(i);
      page_ = page.id();
      Sheet({page_, 0, ""}, pugi::xml_node(page.entry()), pugi::xml_node(page.entry()).child("PageSheet"));
      if (page.contents()) Shapes(page.contents()->root());
    }
  }
  // The spots that differ, without those within a page, a sheet or a section's rows that have come or gone: that is said of the
  // whole.
  std::set<Spot> Differing(const Seen& other) const {
    std::set<Spot> spots;
    for (const auto& [spot, said] : facts_)
      if (!other.Within(spot) && other.SaidAt(spot) != said) spots.insert(spot);
    for (const auto& [spot, said] : other.facts_)
      if (!Within(spot) && SaidAt(spot) != said) spots.insert(spot);
    std::erase_if(spots, [&](const Spot& spot) { return InChangedSection(spot, other); });
    return spots;
  }
  bool MayBeTold(const Spot& spot, const Seen& other) const {
    return Within(spot) || other.Within(spot) || InChangedSection(spot, other);
  }

 private:
  std::string SaidAt(const Spot& spot) const {
    const auto found = facts_.find(spot);
    return found == facts_.end() ? "" : found->second;
  }
  // Whether it is a cell of a sheet, or a sheet of a page, that is not there.
  bool Within(const Spot& spot) const {
    const bool hasSheet = facts_.contains({spot.page, spot.shape, ""}), hasPage = facts_.contains({spot.page, 0, ""});
    return (!spot.cell.empty() && !hasSheet) || (spot.shape != 0 && !hasPage);
  }
  bool InChangedSection(const Spot& spot, const Seen& other) const {
    const size_t dot = spot.cell.find('.');
    if (dot == std::string::npos) return false;
    const auto key = std::pair(std::pair(spot.page, spot.shape), spot.cell.substr(0, dot));
    const auto rows = [&](const Seen& seen) {
      const auto found = seen.rows_.find(key);
      return found == seen.rows_.end() ? "" : found->second;
    };
    return rows(*this) != rows(other);
  }

  void Shapes(pugi::xml_node parent) {
    for (const pugi::xml_node shape : parent.child("Shapes").children("Shape"))
      Sheet({page_, shape.attribute("ID").as_int(), ""}, shape, shape);
  }
  void Sheet(const Spot& sheet, pugi::xml_node named, pugi::xml_node cells) {
    std::string& said = facts_[sheet];
    said = Attributes(named) + (named.child("Text") ? "text:" : "") + named.child("Text").text().get();
    Cells(sheet, "", cells);
    for (const pugi::xml_node section : cells.children("Section")) {
      const SectionInfo* info = SectionOfElement(section);
      if (!info) continue;
      const std::string prefix = LowerAscii(info->prefix);
      std::string& rows = rows_[{{sheet.page, sheet.shape}, prefix}];
      rows = prefix;
      for (const pugi::xml_node row : section.children("Row")) {
        rows += Attributes(row);
        Cells(sheet, prefix + "." + LowerAscii(KeyOfRow(*info, row).Text()) + ".", row);
      }
      facts_[sheet] += rows;
    }
  }
  void Cells(const Spot& sheet, const std::string& before, pugi::xml_node parent) {
    for (const pugi::xml_node cell : parent.children("Cell"))
      facts_[{sheet.page, sheet.shape, before + LowerAscii(cell.attribute("N").value())}] = Attributes(cell) + cell.text().get();
  }
  static std::string Attributes(pugi::xml_node element) {
    std::string text = "|";
    for (const pugi::xml_attribute attribute : element.attributes())
      text.append(attribute.name()).append("=").append(attribute.value()).append("|");
    return text;
  }

  std::map<Spot, std::string> facts_;
  std::map<std::pair<std::pair<int, int>, std::string>, std::string> rows_;
  int page_ = 0;
};

Spot SpotOf(const TouchedCell& touched) {
  Spot spot{touched.page, touched.shape, LowerAscii(touched.cell.cell.text())};
  if (const SectionInfo* section = touched.cell.section)
    spot.cell = LowerAscii(section->prefix) + "." + LowerAscii(touched.cell.row.Text()) + "." + spot.cell;
  return spot;
}

// ------------------------------------------------------------------------------------------------------------- the drawing

// A Process (1) led to a Decide (2) by a connector (3) on the first page, and a Process (1) on a second page.
class World {
 public:
  World() {
    test::WriteFile(folder_ / "world.vsdx", Bytes());
    host.Open(folder_ / "world.vsdx");
    first = host.ActivePage().id();
    second = host.drawing().PageAt(2).id();
    host.SetStepObserver([this](const std::vector<TouchedCell>& touched) { told.push_back(touched); });
  }

  SheetRef Ref(int shape) { return {host.serial(), first, shape}; }
  IVPagePtr Page() { return host.application()->ActiveDocument()->Pages()->Item(1); }
  IVShapePtr Shape(int id) { return Page()->Shapes()->ItemFromID(id); }
  IVShapePtr Process() { return Shape(1); }
  IVMasterPtr Master() { return Process()->Master(); }
  SheetRef PageSheet() { return host.RefTo(host.ActivePage(), SheetKind::Page); }
  Drawing& drawing() { return host.drawing(); }

  State Now() {
    State state{.parts = {},
                .undo = drawing().log().UndoLabels(),
                .redo = drawing().log().RedoLabels(),
                .selection = host.selection(),
                .page = host.ActivePage().id(),
                .changed = drawing().Changed()};
    for (const std::string& name : drawing().package().PartNames()) state.parts[name] = drawing().package().Bytes(name);
    return state;
  }

  DrawingHost host;
  int first = 0, second = 0;
  std::vector<std::vector<TouchedCell>> told;

 private:
  static const std::string& Bytes() {
    static const std::string bytes = [] {
      DrawingHost host;
      host.New();
      const int page = host.ActivePage().id();
      host.Drop("Process", page, 2, 5, std::nullopt);
      host.Drop("Decide", page, 6, 5, std::nullopt);
      host.Connect("Dynamic connector", page, {1, 1}, {2, 2});
      host.SetCell({host.serial(), page, 1}, "Prop.Mine", "\"kept\"");
      host.SetCell({host.serial(), page, 0, SheetKind::Page}, "User.Count", "2");
      host.AddPage("Second");
      host.Drop("Process", host.ActivePage().id(), 2, 2, std::nullopt);
      const test::TempFolder folder;
      host.Save(folder / "made.vsdx");
      return test::ReadFile(folder / "made.vsdx");
    }();
    return bytes;
  }
  test::TempFolder folder_;
};

struct Act {
  const char* what;
  std::function<void(World&)> run;
  bool comesBack = false;  // cells are changed on the way and are in the end as they were
};
void PrintTo(const Act& act, std::ostream* out) { *out << act.what; }

// ---------------------------------------------------------------------------------------------------------- one step each

const Act kActs[] = {
    {"drop", [](World& w) { w.host.Drop("Process", w.first, 1, 1, std::nullopt); }},
    {"drop with a text", [](World& w) { w.host.Drop("Process", w.first, 1, 1, "text"); }},
    {"drop from the stencil", [](World& w) { w.host.Drop("Separate", w.first, 1, 1, "text"); }},
    {"drop on another page", [](World& w) { w.host.Drop("Decide", w.second, 1, 1, std::nullopt); }},
    {"drop a connector", [](World& w) { w.host.Drop("Dynamic connector", w.first, 1, 1, std::nullopt); }},
    {"paste",
     [](World& w) {
       w.host.Paste({w.Ref(1), w.Ref(2), w.Ref(3)}, w.first);
     }},
    {"paste on another page",
     [](World& w) {
       w.host.Paste({w.Ref(1), w.Ref(3)}, w.second);
     }},
    {"connect points",
     [](World& w) {
       w.host.Connect("Dynamic connector", w.first, {2, 1}, {1, 2});
     }},
    {"connect at the outline", [](World& w) { w.host.Connect("Dynamic connector", w.first, {2}, {1}); }},
    {"connect shapes",
     [](World& w) {
       w.host.Connect("True Connector", w.first, {2, {}, true}, {1, {}, true});
     }},
    {"connect a loose end",
     [](World& w) {
       w.host.Connect("Dynamic connector", w.first, {2, 1}, {});
     }},
    {"type", [](World& w) { w.host.TypeText(w.Ref(1), "typed", false); }},
    {"type on another page",
     [](World& w) {
       w.host.TypeText({w.host.serial(), w.second, 1}, "typed", true);
     }},
    {"set a cell", [](World& w) { w.host.SetCell(w.Ref(1), "Prop.Mine", "5"); }},
    {"set a cell that others follow", [](World& w) { w.host.SetCell(w.Ref(1), "PinX", "3"); }},
    {"set a cell and make its row", [](World& w) { w.host.SetCell(w.Ref(1), "Prop.New.Label", "\"x\""); }},
    {"set a cell of the page", [](World& w) { w.host.SetCell(w.PageSheet(), "User.Count", "3"); }},
    {"glue an end",
     [](World& w) { w.host.SetCell(w.Ref(3), "BeginX", "PAR(PNT(Sheet.2!Connections.X1,Sheet.2!Connections.Y1))"); }},
    {"delete the selection",
     [](World& w) {
       w.host.Select({1, 3}), w.host.DeleteSelection();
     }},
    {"delete what a connector is glued to", [](World& w) { w.host.Select({2}), w.host.DeleteSelection(); }},
    {"delete a property", [](World& w) { w.host.DeleteRow(w.Ref(1), kSectionProp, 0); }},
    {"delete a glued point", [](World& w) { w.host.DeleteRow(w.Ref(1), kSectionConnectionPts, 0); }},
    {"add a page", [](World& w) { w.host.AddPage("Third"); }},
    {"delete the page shown", [](World& w) { w.host.DeletePage(w.first, true); }},
    {"delete another page", [](World& w) { w.host.DeletePage(w.second, false); }},
    {"rename a page", [](World& w) { w.host.RenamePage(w.second, "Other"); }},

    {"Cell.SetFormula", [](World& w) { w.Process()->Cells("Prop.Mine")->SetFormula("\"other\""); }},
    {"Cell.SetFormula of an inherited cell", [](World& w) { w.Process()->Cells("Prop.ProcessName")->SetFormula("\"x\""); }},
    {"Cell.SetFormula of a page", [](World& w) { w.Page()->PageSheet()->Cells("User.Count")->SetFormula("7"); }},
    {"Cell.SetFormula without a value", [](World& w) { w.Process()->Cells("Prop.Mine")->SetFormula("SOMETHING("); }},
    {"Cell.SetFormula of nothing", [](World& w) { w.Process()->Cells("Prop.Mine")->SetFormula(""); }},
    {"Cell.SetFormula with line ends", [](World& w) { w.Process()->Cells("Prop.Mine")->SetFormula("\"a\nb\""); }},
    {"Cell.SetResult", [](World& w) { w.Process()->Cells("Width")->SetResult(4); }},
    {"AddSection", [](World& w) { w.Page()->PageSheet()->AddSection(kSectionAction); }},
    {"AddRow", [](World& w) { w.Process()->AddRow(kSectionUser, 0, kTagDefault); }},
    {"AddRow of a point behind the others", [](World& w) { w.Process()->AddRow(kSectionConnectionPts, 9, kTagDefault); }},
    {"AddRow of a point before glued ones", [](World& w) { w.Process()->AddRow(kSectionConnectionPts, 0, kTagDefault); }, true},
    {"AddNamedRow", [](World& w) { w.Process()->AddNamedRow(kSectionProp, "New", kTagDefault); }},
    {"AddNamedRow in a new section", [](World& w) { w.Page()->PageSheet()->AddNamedRow(kSectionProp, "New", kTagDefault); }},
    {"DeleteRow", [](World& w) { w.Process()->DeleteRow(kSectionProp, 1); }},
    {"DeleteRow of the page's last", [](World& w) { w.Page()->PageSheet()->DeleteRow(kSectionUser, 0); }},
    {"SetFormulas",
     [](World& w) {
       w.Process()->SetFormulas({kSectionProp, 0, kCellPropLabel, kSectionProp, 1, kCellPropLabel, kSectionProp, 2, 0}, {"\"x\""},
                                kSetBlastGuards);
     }},
    {"SetText", [](World& w) { w.Process()->SetText("text"); }},
    {"SetText of nothing", [](World& w) { w.Process()->SetText(""); }},
    {"Shape.Delete", [](World& w) { w.Process()->Delete(); }},
    {"Page.SetName", [](World& w) { w.Page()->SetName("Other"); }},
    {"Page.Delete", [](World& w) { w.Page()->Delete(1); }},
    {"Pages.Add", [](World& w) { w.host.application()->ActiveDocument()->Pages()->Add(); }},
    {"Master.Delete", [](World& w) { w.Master()->Delete(); }},
    {"a command of several",
     [](World& w) {
       w.host.RunCommand("Several", [&] {
         w.Process()->SetText("text");
         w.Process()->AddNamedRow(kSectionProp, "New", kTagDefault);
         w.Process()->Cells("Prop.New")->SetFormula("1");
         w.host.application()->ActiveDocument()->Pages()->Add();
         w.Shape(2)->Delete();
       });
     }},
};

class Acts : public testing::TestWithParam<Act> {};

TEST_P(Acts, AreOneStepThatUndoTakesBackAndRedoBringsBack) {
  World world;
  const State before = world.Now();
  ASSERT_FALSE(before.changed);
  GetParam().run(world);
  const State after = world.Now();
  EXPECT_THAT(after.undo, SizeIs(1));
  EXPECT_NE(after.parts, before.parts);
  EXPECT_TRUE(after.changed);
  for (int round = 0; round < 2; ++round) {
    world.host.Undo();
    const State undone = world.Now();
    EXPECT_EQ(undone.parts, before.parts);
    EXPECT_FALSE(undone.changed);
    EXPECT_EQ(undone.page, before.page) << "the page shown before";
    EXPECT_THAT(undone.undo, IsEmpty());
    EXPECT_EQ(undone.redo, after.undo);
    world.host.Redo();
    const State redone = world.Now();
    EXPECT_EQ(redone.parts, after.parts);
    EXPECT_TRUE(redone.changed);
    EXPECT_EQ(redone.undo, after.undo);
  }
}

TEST_P(Acts, AreToldOnceWithAllThatTheyTouched) {
  World world;
  const auto expectTold = [&](const char* when, const std::function<void()>& act) {
    SCOPED_TRACE(when);
    const Seen before(world.drawing());
    world.told.clear();
    act();
    const Seen after(world.drawing());
    ASSERT_THAT(world.told, SizeIs(1));
    std::set<Spot> told;
    for (const TouchedCell& touched : world.told.front()) EXPECT_TRUE(told.insert(SpotOf(touched)).second) << "told twice";
    for (const Spot& spot : before.Differing(after)) EXPECT_TRUE(told.contains(spot)) << testing::PrintToString(spot);
    for (const Spot& spot : told)
      EXPECT_TRUE(before.Differing(after).contains(spot) || before.MayBeTold(spot, after) || GetParam().comesBack)
          << testing::PrintToString(spot) << " is as it was";
  };
  expectTold("done", [&] { GetParam().run(world); });
  expectTold("undone", [&] { world.host.Undo(); });
  expectTold("done again", [&] { world.host.Redo(); });
}

INSTANTIATE_TEST_SUITE_P(HostSteps, Acts, testing::ValuesIn(kActs));

// ---------------------------------------------------------------------------------------------------------------- refused

struct Refusal {
  const char* what;
  std::int32_t error;
  std::function<void(World&)> run;
};
void PrintTo(const Refusal& refusal, std::ostream* out) { *out << refusal.what; }

constexpr const char* kNoSuchPoint = "PAR(PNT(Sheet.2!Connections.X9,Sheet.2!Connections.Y9))";

const Refusal kRefusals[] = {
    {"drop of no master", kHostBadIndex, [](World& w) { w.host.Drop("Nothing", w.second, 1, 1, std::nullopt); }},
    {"drop with an unkeepable text", kHostNotAllowed, [](World& w) { w.host.Drop("Separate", w.second, 1, 1, kUnkeepable); }},
    {"drop on no page", kHostObjectGone, [](World& w) { w.host.Drop("Separate", kNobody, 1, 1, std::nullopt); }},
    {"paste of no shape", kHostObjectGone,
     [](World& w) {
       w.host.Paste({w.Ref(1), w.Ref(kNobody)}, w.second);
     }},
    {"paste on no page", kHostObjectGone, [](World& w) { w.host.Paste({w.Ref(1)}, kNobody); }},
    {"connect with no master", kHostBadIndex, [](World& w) { w.host.Connect("Nothing", w.first, {2}, {1}); }},
    {"connect with a module", kHostNotAllowed, [](World& w) { w.host.Connect("Separate", w.first, {2}, {1}); }},
    {"connect to no shape", kHostObjectGone, [](World& w) { w.host.Connect("True Connector", w.first, {2}, {kNobody}); }},
    {"connect to no point", kHostBadIndex,
     [](World& w) {
       w.host.Connect("True Connector", w.first, {2}, {1, 9});
     }},
    {"connect to the point 0", kHostBadIndex,
     [](World& w) {
       w.host.Connect("True Connector", w.first, {2, 0}, {1});
     }},
    {"connect on no page", kHostObjectGone, [](World& w) { w.host.Connect("True Connector", kNobody, {2}, {1}); }},
    {"type what is unkeepable", kHostNotAllowed,
     [](World& w) {
       w.host.TypeText({w.host.serial(), w.second, 1}, kUnkeepable, false);
     }},
    {"type into no shape", kHostObjectGone, [](World& w) { w.host.TypeText(w.Ref(kNobody), "x", false); }},
    {"set no cell", kHostNoSuchCell, [](World& w) { w.host.SetCell(w.Ref(1), "Nothing", "1"); }},
    {"set a cell of a row that cannot be", kHostNoSuchCell, [](World& w) { w.host.SetCell(w.Ref(1), "Connections.X9", "1"); }},
    {"set no column of a new row", kHostNoSuchCell, [](World& w) { w.host.SetCell(w.Ref(1), "Prop.New.Nothing", "1"); }},
    {"set a cell of a row with a bad name", kHostNotAllowed, [](World& w) { w.host.SetCell(w.Ref(1), "Prop.a-b", "1"); }},
    {"set a cell of a row with an unkeepable name", kHostNotAllowed,
     [](World& w) { w.host.SetCell(w.Ref(1), std::string("Prop.") + kUnkeepable, "1"); }},
    {"set a cell to what is unkeepable", kHostNotAllowed, [](World& w) { w.host.SetCell(w.Ref(1), "Prop.New", kUnkeepable); }},
    {"set a cell of no shape", kHostObjectGone, [](World& w) { w.host.SetCell(w.Ref(kNobody), "Prop.New", "1"); }},
    {"glue to no point by formula", kHostNoSuchCell, [](World& w) { w.host.SetCell(w.Ref(3), "BeginX", kNoSuchPoint); }},
    {"delete a row of no section", kHostNotAllowed, [](World& w) { w.host.DeleteRow(w.Ref(1), 99, 0); }},
    {"delete a row of no shape", kHostObjectGone, [](World& w) { w.host.DeleteRow(w.Ref(kNobody), kSectionProp, 0); }},
    {"add a page without a name", kHostNotAllowed, [](World& w) { w.host.AddPage(""); }},
    {"add a page of a taken name", kHostNotAllowed, [](World& w) { w.host.AddPage("Second"); }},
    {"add a page of an unkeepable name", kHostNotAllowed, [](World& w) { w.host.AddPage(kUnkeepable); }},
    {"rename a page to nothing", kHostNotAllowed, [](World& w) { w.host.RenamePage(w.first, ""); }},
    {"rename a page to a taken name", kHostNotAllowed, [](World& w) { w.host.RenamePage(w.first, "Second"); }},
    {"rename a page to what is unkeepable", kHostNotAllowed, [](World& w) { w.host.RenamePage(w.first, kUnkeepable); }},
    {"rename no page", kHostObjectGone, [](World& w) { w.host.RenamePage(kNobody, "x"); }},
    {"delete no page", kHostObjectGone, [](World& w) { w.host.DeletePage(kNobody, true); }},
    {"show no page", kHostObjectGone, [](World& w) { w.host.ShowPage(kNobody); }},
    {"select no shape", kHostObjectGone,
     [](World& w) {
       w.host.Select({1, kNobody});
     }},

    {"Cell.SetFormula of what is unkeepable", kHostNotAllowed,
     [](World& w) { w.Process()->Cells("Prop.ProcessName")->SetFormula(kUnkeepable); }},
    {"Cell.SetFormula that glues to no point", kHostNoSuchCell,
     [](World& w) { w.Shape(3)->Cells("EndY")->SetFormula(kNoSuchPoint); }},
    {"AddSection that is there", kHostNotAllowed, [](World& w) { w.Process()->AddSection(kSectionProp); }},
    {"AddSection of no kind", kHostNotAllowed, [](World& w) { w.Process()->AddSection(99); }},
    {"AddRow of no section", kHostNotAllowed, [](World& w) { w.Process()->AddRow(99, 0, kTagDefault); }},
    {"AddNamedRow without a name", kHostNotAllowed,
     [](World& w) { w.Page()->PageSheet()->AddNamedRow(kSectionProp, "", kTagDefault); }},
    {"AddNamedRow of an illegal name", kHostNotAllowed,
     [](World& w) { w.Page()->PageSheet()->AddNamedRow(kSectionProp, "a b", kTagDefault); }},
    {"AddNamedRow of a taken name", kHostNotAllowed,
     [](World& w) { w.Process()->AddNamedRow(kSectionProp, "processname", kTagDefault); }},
    {"AddNamedRow of an unkeepable name", kHostNotAllowed,
     [](World& w) { w.Page()->PageSheet()->AddNamedRow(kSectionProp, kUnkeepable, kTagDefault); }},
    {"DeleteRow of no section", kHostNotAllowed, [](World& w) { w.Process()->DeleteRow(99, 0); }},
    {"SetFormulas of a cell that is not there", kHostNoSuchCell,
     [](World& w) {
       w.Process()->SetFormulas({kSectionProp, 0, kCellPropLabel, kSectionProp, 99, 0}, {"\"x\""}, kSetBlastGuards);
     }},
    {"SetFormulas of what is unkeepable", kHostNotAllowed,
     [](World& w) {
       w.Process()->SetFormulas({kSectionProp, 0, kCellPropLabel, kSectionProp, 1, kCellPropLabel}, {"\"x\"", kUnkeepable},
                                kSetBlastGuards);
     }},
    {"SetFormulas of no formula", kHostNotAllowed,
     [](World& w) {
       w.Process()->SetFormulas({kSectionProp, 0, 0}, {}, 0);
     }},
    {"SetText of what is unkeepable", kHostNotAllowed, [](World& w) { w.Process()->SetText(kUnkeepable); }},
    {"SetText of a page", kHostObjectGone, [](World& w) { w.Page()->PageSheet()->SetText("x"); }},
    {"Shape.Delete of a page's sheet", kHostNotAllowed, [](World& w) { w.Page()->PageSheet()->Delete(); }},
    {"Page.SetName without a name", kHostNotAllowed, [](World& w) { w.Page()->SetName(""); }},
    {"Page.SetName of a taken name", kHostNotAllowed, [](World& w) { w.Page()->SetName("Second"); }},
    {"a command whose last member is refused", kHostNotAllowed,
     [](World& w) {
       w.host.RunCommand("Several", [&] {
         w.host.Drop("Separate", w.second, 1, 1, "text");
         w.host.application()->ActiveDocument()->Pages()->Add();
         w.Process()->AddRow(kSectionConnectionPts, 0, kTagDefault);
         w.Process()->Delete();
         w.Shape(2)->SetText(kUnkeepable);
       });
     }},
};

class Refusals : public testing::TestWithParam<Refusal> {};

TEST_P(Refusals, LeaveNoTrace) {
  World world;
  world.host.SetCell(world.Ref(1), "Prop.Mine", "\"done\"");
  world.host.SetCell(world.Ref(1), "Prop.Mine", "\"undone\"");
  world.host.Undo();
  world.host.Select({2, 1});
  world.told.clear();
  const State before = world.Now();
  const Seen seen(world.drawing());
  std::int32_t error = 0;
  try {
    GetParam().run(world);
  } catch (const HostError& refused) {
    error = refused.number();
    EXPECT_THAT(refused.description(), EndsWith("."));
  }
  EXPECT_EQ(error, GetParam().error);
  EXPECT_EQ(world.Now(), before);
  EXPECT_THAT(world.told, IsEmpty()) << "nothing was touched";
  // What is kept of the trees is as it was, too.
  world.host.Redo();
  world.host.Undo();
  EXPECT_EQ(world.Now().parts, before.parts);
  world.host.Connect("Dynamic connector", world.first, {1, 1}, {2, 1});
  world.host.Drop("Separate", world.first, 1, 1, "text");
  world.host.Undo();
  world.host.Undo();
  EXPECT_EQ(world.Now().parts, before.parts);
}

INSTANTIATE_TEST_SUITE_P(HostSteps, Refusals, testing::ValuesIn(kRefusals));

TEST(HostSteps, TheOnlyPageIsKept) {
  World world;
  world.host.DeletePage(world.second, false);
  world.host.Undo();
  world.host.Redo();
  world.host.Select({1});
  world.told.clear();
  const State before = world.Now();
  EXPECT_THROW(world.host.DeletePage(world.first, true), HostError);
  EXPECT_THROW(world.Page()->Delete(0), HostError);
  EXPECT_EQ(world.Now(), before);
  EXPECT_THAT(world.told, IsEmpty());
}

TEST(HostSteps, WhatIsGoneIsRefused) {
  World world;
  const IVCellPtr cell = world.Process()->Cells("Prop.Mine"), point = world.Process()->Cells("Connections.X1");
  const IVMasterPtr master = world.Shape(2)->Master();
  master->Delete();
  world.Process()->DeleteRow(kSectionProp, static_cast<short>(world.Process()->RowCount(kSectionProp) - 1));
  world.Process()->DeleteRow(kSectionConnectionPts, 0);
  world.told.clear();
  const State before = world.Now();
  EXPECT_THROW(cell->SetFormula("1"), HostError);
  EXPECT_THROW(cell->SetResult(1), HostError);
  EXPECT_THROW(point->SetResult(1), HostError);
  EXPECT_THROW(master->Delete(), HostError);
  EXPECT_EQ(world.Now(), before);
  EXPECT_THAT(world.told, IsEmpty());
}

TEST(HostSteps, AStencilsPageTakesNothing) {
  DrawingHost host;
  const test::TempFolder folder;
  test::WriteFile(folder / "stencil.vssx",
                  test::ZipOf({.shapes = "", .masters = {{"Box", "<Shape ID='5' Type='Shape'/>"}}, .pageHasPart = false}));
  host.Open(folder / "stencil.vssx");
  for (const char* master : {"Box", "Process"}) EXPECT_THROW(host.Drop(master, 0, 1, 1, "text"), HostError);
  EXPECT_FALSE(host.drawing().Changed());
  EXPECT_EQ(host.drawing().MasterCount(), 1);
  EXPECT_FALSE(host.drawing().log().CanUndo());
}

TEST(HostSteps, AMemberRefusedWithinACommandIsItsCallersToBear) {
  World world;
  world.host.RunCommand("Goes on", [&] {
    world.Process()->SetText("text");
    EXPECT_THROW(world.Process()->SetText(kUnkeepable), HostError);
    EXPECT_THROW(world.Process()->AddNamedRow(kSectionProp, "a b", kTagDefault), HostError);
    world.Process()->Cells("Prop.Mine")->SetFormula("1");
  });
  EXPECT_EQ(world.Process()->Text(), "text");
  EXPECT_EQ(world.Process()->Cells("Prop.Mine")->Formula(), "1");
  EXPECT_THAT(world.Now().undo, ElementsAre("Goes on"));
}

TEST(HostSteps, NothingDoneIsNoStep) {
  World world;
  world.host.SetCell(world.Ref(1), "Prop.Mine", "\"other\"");
  world.host.Undo();
  world.told.clear();
  const State before = world.Now();
  world.host.SetCell(world.Ref(1), "Prop.Mine", "\"kept\"");
  world.Process()->SetText(world.Process()->Text());
  world.Process()->DeleteRow(kSectionProp, 99);
  world.host.DeleteSelection();
  world.host.Paste({}, world.first);
  EXPECT_EQ(world.Now(), before) << "redo is possible still";
  EXPECT_THAT(world.told, IsEmpty());
}

TEST(HostSteps, ManyWritesToACellAreOneRecord) {
  World world;
  const auto bytesOf = [&](int writes) {
    const size_t before = world.drawing().log().Bytes();
    world.host.RunCommand("Edit", [&] {
      const IVCellPtr cell = world.Process()->Cells("Prop.Mine");
      for (int i = 0; i < writes; ++i) cell->SetFormula(i % 2 ? "\"one\"" : "\"two\"");
    });
    return world.drawing().log().Bytes() - before;
  };
  const size_t one = bytesOf(1);
  EXPECT_LE(bytesOf(1000), one + 8);
}

}  // namespace
}  // namespace vardo
