// What the host keeps of a drawing beside its trees - orders, names, glue, who reads whom - always equals what a plain reading of
// the trees finds: after any edits, undone and done again, the drawing answers as the same one does that was saved and opened.
#include "TestDrawings.h"
#include "addin/host/HostConstants.h"
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"
#include "base/Numbers.h"
#include "memoryhost/DrawingHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <random>
#include <set>
#include <stdexcept>

namespace vardo {
namespace {

using Lines = std::vector<std::string>;

// ------------------------------------------------------------------------------------------------------ all that can be asked

class Answers {
 public:
  explicit Answers(DrawingHost& host) : host_(host) {
    Drawing& drawing = host.drawing();
    for (int i = 1; i <= drawing.MasterCount(); ++i)
      Add("master " + Number(drawing.MasterAt(i).id()) + drawing.MasterAt(i).Name());
    for (int i = 1; i <= drawing.PageCount(); ++i) OfPage(drawing.PageAt(i), i);
  }
  const Lines& lines() const { return lines_; }

 private:
  static std::string Number(double number) { return NumberText(number) + " "; }
  void Add(std::string line) { lines_.push_back(std::move(line)); }

  void OfPage(DrawingPage& page, int index) {
    Drawing& drawing = host_.drawing();
    Add("page " + Number(page.id()) + Number(drawing.IndexOf(page)) + Number(index) + page.Name() +
        (drawing.FindPage(page.Name()) == &page && drawing.FindPage(page.id()) == &page ? "" : " NOT FOUND"));
    page_ = "page " + Number(page.id());
    OfSheet({host_.serial(), page.id(), 0, SheetKind::Page});
    std::vector<DrawingShape*> shapes;
    for (int at = 1; at <= page.ShapeCount(); ++at) {
      DrawingShape& shape = page.ShapeAt(at);
      Add(page_ + "at " + Number(at) + "is " + Number(shape.id()) + (page.IndexOf(shape) == at ? "" : "WITH ANOTHER INDEX"));
      shapes.push_back(&shape);
      for (DrawingShape* inner : page.InnerShapes(shape)) shapes.push_back(inner);
    }
    for (const DrawingShape* shape : shapes) OfShape(page, *shape);
    for (const auto& end : page.GluedEnds())
      Add(page_ + (end.isBegin ? "begin of " : "end of ") + Number(end.connector) + "at " + Number(end.target));
  }

  void OfShape(DrawingPage& page, const DrawingShape& shape) {
    const std::string name = page.NameOf(shape);
    page_ = "page " + Number(page.id()) + "shape " + Number(shape.id());
    Add(page_ + name + (page.FindShape(name) == &shape && page.FindShape(shape.id()) == &shape ? "" : " NOT FOUND") + ", " +
        page.NameInFormula(shape) + (page.FindSheet(page.NameInFormula(shape)) == &shape ? "" : " NAMES ANOTHER") + ", of " +
        Number(shape.MasterId()) + "in " + Number(shape.parent() ? shape.parent()->id() : -1) + "type " + Number(shape.Type()) +
        (shape.IsOneDimensional() ? "1D " : "2D ") + shape.Text());
    OfSheet({host_.serial(), page.id(), shape.id()});
    page_ = "page " + Number(page.id());
  }

  void OfSheet(const SheetRef& ref) {
    const DrawingHost::SheetView view = host_.Resolve(ref);
    const auto ofCell = [&](const std::string& name, const CellAddress& address) {
      const CellValue value = view.sheet->Value(address);
      const auto* number = std::get_if<double>(&value);
      Add(page_ + name + " = " + host_.FormulaOf(view, address) + " = " +
          (number ? Number(*number) : std::get<std::string>(value)));
    };
    for (const char* name : {"PinX", "PinY", "Width", "Height", "LocPinX", "Angle", "FlipX", "BeginX", "BeginY", "EndX", "EndY",
                             "BegTrigger", "EndTrigger", "TxtWidth", "PageWidth"})
      if (const auto address = view.sheet->Find(std::string_view(name))) ofCell(name, *address);
    for (const short number : {kSectionUser, kSectionProp, kSectionConnectionPts, kFirstGeometry}) {
      const SectionInfo* section = number == kFirstGeometry ? FindGeometry(0) : FindSection(number);
      for (const Sheet::Row& row : view.sheet->Rows(*section))
        for (const std::string_view column : {section->columns[0].name, section->columns[1].name})
          ofCell(std::string(section->prefix) + "." + view.sheet->RowText(*section, row.key) + "." + std::string(column),
                 {section, row.key, Symbol(column)});
    }
  }

  static constexpr short kFirstGeometry = 10;
  DrawingHost& host_;
  std::string page_;
  Lines lines_;
};

Lines Differences(const Lines& kept, const Lines& read) {
  Lines differences;
  const std::set<std::string> a(kept.begin(), kept.end()), b(read.begin(), read.end());
  for (const std::string& line : a)
    if (!b.contains(line)) differences.push_back("kept: " + line);
  for (const std::string& line : b)
    if (!a.contains(line)) differences.push_back("read: " + line);
  if (differences.empty() && kept != read) differences.emplace_back("the order");
  return differences;
}

// ---------------------------------------------------------------------------------------------------------- a person at random

class Hand {
 public:
  Hand(DrawingHost& host, unsigned seed) : host_(host), random_(seed) {}

  // Returns what was done, for who reads a failure.
  std::string Act() {
    static constexpr struct {
      int weight;
      const char* what;
      void (Hand::*act)();
    } kActs[] = {{12, "drop", &Hand::Drop},
                 {8, "paste", &Hand::Paste},
                 {10, "connect", &Hand::Connect},
                 {16, "move", &Hand::Move},
                 {20, "formula", &Hand::SetFormula},
                 {4, "glue", &Hand::Glue},
                 {6, "text", &Hand::Type},
                 {9, "delete", &Hand::Delete},
                 {6, "add row", &Hand::AddRow},
                 {5, "delete row", &Hand::DeleteRow},
                 {2, "add page", &Hand::AddPage},
                 {1, "delete page", &Hand::DeletePage},
                 {2, "rename page", &Hand::RenamePage},
                 {1, "delete master", &Hand::DeleteMaster},
                 {4, "several", &Hand::Several},
                 {3, "several, refused", &Hand::SeveralRefused},
                 {14, "undo", &Hand::Undo},
                 {7, "redo", &Hand::Redo}};
    int total = 0;
    for (const auto& act : kActs) total += act.weight;
    int drawn = Below(total);
    for (const auto& act : kActs) {
      if ((drawn -= act.weight) >= 0) continue;
      said_ = act.what;
      try {
        (this->*act.act)();
      } catch (const HostError& refused) {
        said_ += ", refused: " + refused.description();
      }
      return said_;
    }
    return "";
  }

  // A number for a cell that others may read.
  struct Change {
    SheetRef sheet;
    const char* cell;
    std::string number;
  };
  Change AnyChange() {
    const SheetRef ref = Below(3) ? AnyShape() : host_.RefTo(AnyPage(), SheetKind::Page);
    const char* const size = ref.IsShape() ? "Width" : "PageWidth";
    return {ref, Below(3) ? size : "User.a", NumberText(1 + Below(40) / 8.0)};
  }

 private:
  static constexpr int kManyShapes = 16;

  int Below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
  template <class List>
  auto OneOf(const List& list) {
    return *(std::begin(list) + Below(static_cast<int>(std::size(list))));
  }
  Drawing& drawing() { return host_.drawing(); }
  DrawingPage& AnyPage() { return drawing().PageAt(1 + Below(drawing().PageCount())); }
  // Without one, the page's own sheet.
  SheetRef AnyShape() { return AnyShapeOf(AnyPage()); }
  SheetRef AnyShapeOf(DrawingPage& page) {
    if (page.ShapeCount() == 0) return host_.RefTo(page, SheetKind::Page);
    DrawingShape* shape = &page.ShapeAt(1 + Below(page.ShapeCount()));
    const auto inner = page.InnerShapes(*shape);
    return host_.RefTo(page, !inner.empty() && Below(2) ? OneOf(inner)->id() : shape->id());
  }
  std::string NameIn(int page, const SheetRef& ref) {
    DrawingShape* shape = drawing().FindPage(page)->FindShape(ref.shape);
    if (!shape) return "ThePage";
    return Below(2) ? "Sheet." + std::to_string(ref.shape) : SheetNameInFormula(drawing().FindPage(page)->NameInFormula(*shape));
  }
  void Say(const std::string& more) { said_ += " " + more; }

  void Drop() {
    DrawingPage& page = AnyPage();
    if (page.ShapeCount() >= kManyShapes) return Delete();
    static constexpr const char* kOfTheStencil[] = {"Process", "Dynamic connector"};
    const int own = drawing().MasterCount();
    const std::string master = own > 0 && Below(5) ? drawing().MasterAt(1 + Below(own)).Name() : OneOf(kOfTheStencil);
    Say(master);
    host_.Drop(master, page.id(), Below(10), Below(10), Below(2) ? std::optional<std::string>("dropped") : std::nullopt);
  }
  void Paste() {
    DrawingPage& to = AnyPage();
    if (to.ShapeCount() >= kManyShapes) return Delete();
    std::vector<SheetRef> originals;
    DrawingPage& from = AnyPage();
    for (int count = 1 + Below(4); count > 0 && from.ShapeCount() > 0; --count) {
      const SheetRef ref = host_.RefTo(from, from.ShapeAt(1 + Below(from.ShapeCount())).id());
      Say(std::to_string(ref.shape));
      originals.push_back(ref);
    }
    host_.Paste(originals, to.id());
  }
  void Connect() {
    DrawingPage& page = AnyPage();
    if (page.ShapeCount() >= kManyShapes) return Delete();
    const auto end = [&] {
      DrawingHost::End end;
      const SheetRef ref = AnyShapeOf(page);
      if (ref.IsShape() && Below(6)) end.shape = ref.shape;
      if (Below(2)) end.point = 1 + Below(3);
      end.walks = Below(2);
      return end;
    };
    const auto from = end(), to = end();
    Say(std::to_string(from.shape.value_or(-1)) + " to " + std::to_string(to.shape.value_or(-1)));
    host_.Connect("Dynamic connector", page.id(), from, to);
  }
  void Move() {
    static constexpr const char* kCells[] = {"PinX", "PinY", "Width", "Height", "Angle", "FlipX", "LocPinX", "PageWidth"};
    Set(AnyShape(), OneOf(kCells), NumberText(Below(30) / 4.0));
  }
  void Set(const SheetRef& ref, const std::string& cell, const std::string& formula) {
    Say(std::to_string(ref.page) + "/" + std::to_string(ref.shape) + " " + cell + " = " + formula);
    host_.SetCell(ref, cell, formula);
  }
  void SetFormula() {
    static constexpr const char* kCells[] = {"User.a", "User.b", "User.fan", "Prop.c", "Prop.c.Label", "Width", "PinX", "Height"};
    DrawingPage& page = AnyPage();
    const SheetRef ref = Below(8) ? AnyShapeOf(page) : host_.RefTo(page, SheetKind::Page);
    const std::string other = NameIn(page.id(), AnyShapeOf(page));
    const std::string formulas[] = {other + "!Width*2",
                                    other + "!User.a+1",
                                    other + "!Connections.X2",
                                    "ThePage!PageWidth/2+" + other + "!PinX",
                                    "ThePage!User.a",
                                    "User.b&\"x\"",
                                    "User.a*2",
                                    "Width+" + other + "!PinX-" + other + "!PinX",
                                    "\"" + other + "!PinX\"",
                                    "Nobody!PinX",
                                    "Pages[Page-1]!" + other + "!PinX",
                                    "3",
                                    "\"text\"",
                                    "=?",
                                    ""};
    Set(ref, OneOf(kCells), OneOf(formulas));
  }
  void Glue() {
    DrawingPage& page = AnyPage();
    const std::string other = NameIn(page.id(), AnyShapeOf(page)) + "!Connections.", number = std::to_string(1 + Below(3));
    static constexpr const char* kEnds[] = {"BeginX", "BeginY", "EndX", "EndY"};
    Set(AnyShapeOf(page), OneOf(kEnds), "PAR(PNT(" + other + "X" + number + "," + other + "Y" + number + "))");
  }
  void Type() {
    const SheetRef ref = AnyShape();
    host_.TypeText(ref, Below(3) ? "typed " + std::to_string(Below(100)) : "", Below(2));
  }
  void Delete() {
    DrawingPage& page = AnyPage();
    host_.ShowPage(page.id());
    std::vector<int> shapes;
    for (int count = 1 + Below(3); count > 0; --count)
      if (const SheetRef ref = AnyShapeOf(page); ref.IsShape()) shapes.push_back(ref.shape);
    for (const int id : shapes) Say(std::to_string(id));
    host_.Select(shapes);
    host_.DeleteSelection();
  }
  short AnySection() {
    static constexpr short kSections[] = {kSectionConnectionPts, kSectionConnectionPts, kSectionUser, kSectionProp};
    return OneOf(kSections);
  }
  IVShapePtr Object(const SheetRef& ref) {
    host_.ShowPage(ref.page);
    const IVPagePtr page = host_.application()->ActivePage();
    return !ref.IsShape() ? page->PageSheet() : page->Shapes()->ItemFromID(ref.shape);
  }
  void AddRow() {
    const SheetRef ref = AnyShape();
    Say(std::to_string(ref.shape));
    Object(ref)->AddRow(AnySection(), static_cast<short>(Below(4)), kTagDefault);
  }
  void DeleteRow() {
    const SheetRef ref = AnyShape();
    Say(std::to_string(ref.shape));
    host_.DeleteRow(ref, AnySection(), static_cast<short>(Below(4)));
  }
  void AddPage() {
    if (drawing().PageCount() < 4)
      host_.AddPage(Below(2) ? std::optional<std::string>("Page " + std::to_string(Below(9))) : std::nullopt);
  }
  void DeletePage() { host_.DeletePage(AnyPage().id(), Below(2)); }
  void RenamePage() { host_.RenamePage(AnyPage().id(), "Page-" + std::to_string(1 + Below(5))); }
  void DeleteMaster() {
    if (drawing().MasterCount() > 0) host_.DeleteMaster(drawing().MasterAt(1 + Below(drawing().MasterCount())).id());
  }
  void Several() {
    host_.RunCommand("Several", [&] {
      for (int count = 2 + Below(3); count > 0; --count) Some();
    });
  }
  void SeveralRefused() {
    host_.RunCommand("Several", [&] {
      for (int count = 1 + Below(4); count > 0; --count) Some();
      throw HostError(kHostNotAllowed, "No more.");
    });
  }
  void Some() {
    static constexpr void (Hand::*kSome[])() = {&Hand::Drop,       &Hand::Paste,   &Hand::Connect, &Hand::Move,
                                                &Hand::SetFormula, &Hand::Delete,  &Hand::AddRow,  &Hand::DeleteRow,
                                                &Hand::DeletePage, &Hand::AddPage, &Hand::Type,    &Hand::DeleteMaster};
    try {
      (this->*OneOf(kSome))();
    } catch (const HostError&) {
      Say("(refused)");
    }
  }
  void Undo() {
    for (int count = 1 + Below(4); count > 0 && drawing().log().CanUndo(); --count) host_.Undo();
  }
  void Redo() {
    for (int count = 1 + Below(3); count > 0 && drawing().log().CanRedo(); --count) host_.Redo();
  }

  DrawingHost& host_;
  std::mt19937 random_;
  std::string said_;
};

// --------------------------------------------------------------------------------------------------------------------- the test

constexpr const char* kBox =
    "<Shape ID='5' Type='Shape'><Cell N='Width' V='1'/><Cell N='Height' V='1'/><Cell N='LocPinX' V='0.5' F='Width*0.5'/>"
    "<Cell N='LocPinY' V='0.5' F='Height*0.5'/><Section N='User'><Row N='fan'><Cell N='Value' V='5.5' "
    "F='ThePage!PageWidth*0.5'/></Row></Section><Section N='Connection'><Row T='Connection' IX='0'><Cell N='X' V='1' "
    "F='Width*1'/><Cell N='Y' V='0.5' F='Height*0.5'/></Row><Row T='Connection' IX='1'><Cell N='X' V='0' F='Width*0'/><Cell "
    "N='Y' V='0.5' F='Height*0.5'/></Row></Section><Text>Box\n</Text></Shape>";
constexpr const char* kTeam =
    "<Shape ID='6' Type='Group'><Cell N='Width' V='4'/><Cell N='Height' V='2'/><Cell N='LocPinX' V='2' F='Width*0.5'/><Shapes>"
    "<Shape ID='7' Type='Shape' NameU='Head'><Cell N='PinX' V='1' F='Sheet.6!Width*0.25'/><Cell N='PinY' V='1'/><Cell N='Width' "
    "V='2' F='Sheet.6!Width*0.5'/><Section N='Connection'><Row T='Connection' IX='0'><Cell N='X' V='1'/><Cell N='Y' "
    "V='0'/></Row></Section></Shape><Shape ID='8' Type='Group'><Cell N='Width' V='1'/><Shapes><Shape ID='9' Type='Shape'><Cell "
    "N='Width' V='0.5'/></Shape></Shapes></Shape></Shapes></Shape>";
const std::vector<test::DrawingText::Master> kMasters = {{"Box", kBox}, {"Team", kTeam}};

const test::DrawingText kNameless = {
    .shapes =
        "<Shape ID='4' Type='Shape' Master='2'/><Shape ID='2' Type='Shape' Master='2'/><Shape ID='7' Type='Shape'/>"
        "<Shape ID='22' Type='Shape'/><Shape ID='9' NameU='Sheet.22' Type='Shape'/><Shape ID='10' NameU='Box.4' Type='Shape'/>"
        "<Shape ID='11' Type='Group'><Cell N='Width' V='3'/><Shapes><Shape ID='12' Type='Shape' NameU='In'/><Shape ID='13' "
        "Type='Group'><Shapes><Shape ID='14' Type='Shape'><Cell N='Width' V='1' F='Sheet.11!Width/3'/></Shape></Shapes></Shape>"
        "</Shapes></Shape><Shape ID='20' Type='Group' Master='3'><Shapes><Shape ID='21' Type='Shape' MasterShape='7'/><Shape "
        "ID='23' Type='Group' MasterShape='8'><Shapes><Shape ID='24' Type='Shape' MasterShape='9'/></Shapes></Shape></Shapes>"
        "</Shape><Shape ID='30' Type='Shape' NameU='In'/>",
    .connects = "<Connect FromSheet='77' FromCell='EndX' FromPart='12' ToSheet='78' ToCell='PinX' ToPart='3'/>",
    .masters = kMasters};
const test::DrawingText kEmpty = {.shapes = "", .masters = kMasters};

struct Start {
  const char* name;
  const test::DrawingText* text;
  unsigned seed;
};
void PrintTo(const Start& start, std::ostream* out) { *out << start.name << start.seed; }

class Views : public testing::TestWithParam<Start> {};

TEST_P(Views, EqualAPlainReadingAfterAnyEdits) {
  constexpr int kRounds = 60, kActsARound = 10;
  const test::TempFolder folder;
  test::WriteFile(folder / "start.vsdx", test::ZipOf(*GetParam().text));
  DrawingHost kept;
  kept.Open(folder / "start.vsdx");
  Hand hand(kept, GetParam().seed);
  Lines done;
  for (int round = 0; round < kRounds; ++round) {
    done.clear();
    for (int i = 0; i < kActsARound; ++i) done.push_back(hand.Act());
    DrawingHost read;
    const auto expectEqual = [&](const char* when) {
      ASSERT_EQ(Differences(Answers(kept).lines(), Answers(read).lines()), Lines())
          << when << " in round " << round << " after " << testing::PrintToString(done);
    };
    kept.Save(folder / "now.vsdx");
    read.Open(folder / "now.vsdx");
    ASSERT_NO_FATAL_FAILURE(expectEqual("saved and opened"));
    // Whoever is recalculated is so in both.
    std::vector<Hand::Change> changes;
    for (int i = 0; i < 12; ++i) changes.push_back(hand.AnyChange());
    for (DrawingHost* host : {&kept, &read})
      host->RunCommand("Widths", [&] {
        for (auto [sheet, cell, number] : changes) {
          sheet.drawing = host->serial();
          host->SetCell(sheet, cell, number);
        }
      });
    done.push_back("and numbers set");
    ASSERT_NO_FATAL_FAILURE(expectEqual("recalculated"));
  }
  while (kept.drawing().log().CanUndo()) kept.Undo();
  DrawingHost read;
  read.Open(folder / "start.vsdx");
  EXPECT_EQ(Differences(Answers(kept).lines(), Answers(read).lines()), Lines()) << "undone to the start";
}

INSTANTIATE_TEST_SUITE_P(AtRandom, Views,
                         testing::Values(Start{"Nameless", &kNameless, 1}, Start{"Nameless", &kNameless, 2},
                                         Start{"Nameless", &kNameless, 3}, Start{"Empty", &kEmpty, 4},
                                         Start{"Empty", &kEmpty, 5}));

}  // namespace
}  // namespace vardo
