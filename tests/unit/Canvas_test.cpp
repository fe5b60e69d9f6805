// What mouse and keys mean on a page, without a window.
#include "PictureText.h"
#include "TestPlatform.h"
#include "canvas/Deeds.h"
#include "canvas/HitTest.h"
#include "canvas/LegalTargets.h"
#include "canvas/Placing.h"
#include "canvas/ShapeFacts.h"
#include "canvas/Tool.h"
#include "modules/ModuleKinds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace vardo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// A drawing on its page, looked at from where its lower left corner is at the pixel 0, 1000.
class CanvasTest : public testing::Test {
 protected:
  CanvasTest() {
    session_.host().SetStepObserver([this](const std::vector<TouchedCell>& touched) {
      if (scene_) scene_->Touch(touched);
    });
    session_.New();
    scene_ = std::make_unique<Scene>(host().drawing(), page().id());
  }

  DrawingHost& host() { return session_.host(); }
  DrawingPage& page() { return host().ActivePage(); }
  DrawingShape& Shape(const std::string& name) { return *page().FindShape(name); }
  int Id(const std::string& name) { return Shape(name).id(); }
  Stage stage() { return {*scene_, page(), view_, host().selection(), snap_, {}, {1000, 1000}}; }

  void Drop(const std::string& master, double x, double y) { deeds_.Do(deeds::Drop{master, {x, y}}); }
  void Do(const std::optional<Deed>& deed) {
    if (deed) deeds_.Do(*deed);
  }
  void Drag(PagePoint from, PagePoint to, Modifiers held = {}) {
    const Pixel a = view_.ToPixel(from), b = view_.ToPixel(to);
    tool_.Move(stage(), {a, held});
    Do(tool_.Press(stage(), {a, held}));
    tool_.Move(stage(), {{(a.x + b.x) / 2, (a.y + b.y) / 2}, held});
    tool_.Move(stage(), {b, held});
    Do(tool_.Release(stage(), {b, held}));
  }
  void Click(PagePoint at, Modifiers held = {}) {
    Do(tool_.Press(stage(), {view_.ToPixel(at), held}));
    Do(tool_.Release(stage(), {view_.ToPixel(at), held}));
  }
  PagePoint MiddleOf(const std::string& name) { return FrameOf(Shape(name), 1).middle(); }
  PagePoint PointOf(const std::string& name, int point) { return PointsOf(Shape(name), 1)[static_cast<size_t>(point - 1)]; }
  std::string Formula(const std::string& name, const char* cell) {
    return host().FormulaOf(host().RefTo(page(), Id(name)), *Shape(name).Find(cell));
  }
  std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const DrawingShape* shape : page().TopLevel()) names.push_back(page().NameOf(*shape));
    return names;
  }
  std::string UndoLabel() { return host().drawing().log().UndoLabels().back(); }

  TestPlatform platform_;
  AddinSession session_{true};
  Deeds deeds_{session_};
  std::unique_ptr<Scene> scene_;
  View view_{{0, 10}, 100};
  SnapSettings snap_{false, false};
  SelectTool tool_;
};

TEST(ViewTest, WhatIsUnderThePointerStaysThereWhenZooming) {
  const View view({1, 9}, 96);
  const View closer = view.ZoomedAt({200, 100}, 300);
  EXPECT_NEAR(closer.ToPage({200, 100}).x, view.ToPage({200, 100}).x, 1e-9);
  EXPECT_NEAR(closer.ToPage({200, 100}).y, view.ToPage({200, 100}).y, 1e-9);
  EXPECT_EQ(view.ZoomedAt({0, 0}, 1e9).pixelsPerInch(), View::kLargest);
}

TEST(PageIndexTest, FindsWhatAScanFinds) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> place(-20, 120), size(0, 6);
  std::vector<Box> boxes(500);
  const auto any = [&] {
    const double x = place(random), y = place(random);
    return Box{x, y, x + size(random), y + size(random)};
  };
  for (Box& box : boxes) box = any();
  PageIndex index;
  index.Build(boxes.size(), [&](size_t i) { return boxes[i]; });
  for (int round = 0; round < 200; ++round) {
    const size_t moved = random() % boxes.size();
    const Box after = any();
    index.Move(moved, boxes[moved], after);
    boxes[moved] = after;
    const Box asked = any();
    std::vector<std::uint32_t> found = index.Find(asked);
    std::erase_if(found, [&](std::uint32_t i) { return !Meets(boxes[i], asked); });
    std::vector<std::uint32_t> wanted;
    for (size_t i = 0; i < boxes.size(); ++i)
      if (Meets(boxes[i], asked)) wanted.push_back(static_cast<std::uint32_t>(i));
    ASSERT_EQ(found, wanted);
  }
}

TEST_F(CanvasTest, APictureThatKeepsUpIsOneMadeAnew) {
  std::mt19937 random(11);
  const std::vector<std::string> kinds(kModuleKinds.begin(), kModuleKinds.end());
  const auto painted = [](const picture::PagePicture& picture) { return test::Painted(picture); };
  for (int i = 0; i < 6; ++i) Drop(kinds[random() % kinds.size()], 1 + i, 5);
  for (int round = 0; round < 120; ++round) {
    const auto& shapes = page().TopLevel();
    const int some = shapes.empty() ? 0 : shapes[random() % shapes.size()]->id();
    const int other = shapes.empty() ? 0 : shapes[random() % shapes.size()]->id();
    EditLog& log = host().drawing().log();
    switch (random() % 8) {
      case 0:
        Drop(kinds[random() % kinds.size()], static_cast<double>(random() % 8), 3);
        break;
      case 1:
        if (some) deeds_.Do(deeds::Move{{some}, {0.5, -0.25}, random() % 4 == 0});
        break;
      case 2:
        if (some && !page().FindShape(some)->IsOneDimensional()) deeds_.Do(deeds::Resize{some, {1, 1, 3, 2}});
        break;
      case 3:
        if (some) deeds_.Do(deeds::Type{some, "Text " + std::to_string(round)});
        break;
      case 4:
        if (some && other && some != other && !page().FindShape(some)->IsOneDimensional() &&
            !page().FindShape(other)->IsOneDimensional())
          deeds_.Do(deeds::Connect{"Dynamic connector", {some}, {other}, {}, {}});
        break;
      case 5:
        if (some) {
          deeds_.Do(deeds::Select{{some}});
          deeds_.Do(deeds::Delete{});
        }
        break;
      case 6:
        if (log.CanUndo()) deeds_.Do(deeds::Undo{});
        break;
      default:
        if (log.CanRedo()) deeds_.Do(deeds::Redo{});
    }
    ASSERT_EQ(painted(scene_->picture()), painted(picture::PictureOf(host().drawing(), page()))) << "round " << round;
    for (size_t i = 0; i < scene_->picture().slices.size(); ++i) {
      const Box& box = scene_->slice(i).box;
      if (box.empty()) continue;
      ASSERT_THAT(scene_->index().Find(box), testing::Contains(i)) << "round " << round;
    }
  }
}

TEST_F(CanvasTest, AClickTakesWhatIsOnTop) {
  Drop("Process", 3, 3);
  Drop("Decide", 3.2, 3);
  Click({3.2, 3});
  EXPECT_THAT(host().selection(), ElementsAre(Id("Decide")));
  Click({3.2, 3}, {.alt = true});
  EXPECT_THAT(host().selection(), ElementsAre(Id("Process")));
  // A corner of a rhombus's box is not the rhombus.
  EXPECT_EQ(ShapeAt(*scene_, {FrameOf(Shape("Decide"), 1).right - 0.02, FrameOf(Shape("Decide"), 1).top - 0.02}, 0.01),
            std::nullopt);
  Click({3, 3}, {.control = true});
  EXPECT_EQ(host().selection().size(), 2U);
  Click({8, 8});
  EXPECT_THAT(host().selection(), IsEmpty());
}

TEST_F(CanvasTest, ABandTakesWhatIsInsideOrTouched) {
  Drop("Process", 2, 2);
  Drop("Process", 5, 2);
  Click({9, 9});
  Drag({1, 3}, {5, 1});
  EXPECT_THAT(host().selection(), ElementsAre(Id("Process")));
  Drag({5, 1}, {1, 3});
  EXPECT_THAT(host().selection(), ElementsAre(Id("Process"), Id("Process.2")));
}

TEST_F(CanvasTest, ADraggedModuleIsOneStepAndTakesItsConnectorAlong) {
  Drop("Create", 2, 5);
  Drop("Process", 5, 5);
  Drag(PointOf("Create", 1), PointOf("Process", 2));
  Drag({5, 5}, {6, 4});
  EXPECT_EQ(UndoLabel(), "Move Process");
  EXPECT_NEAR(MiddleOf("Process").x, 6, 1e-9);
  EXPECT_NEAR(MiddleOf("Process").y, 4, 1e-9);
  EXPECT_NEAR(EndsOf(Shape("Dynamic connector"), 1).end.x, PointOf("Process", 2).x, 1e-9);
  deeds_.Do(deeds::Undo{});
  EXPECT_NEAR(MiddleOf("Process").x, 5, 1e-9);
  Drag({5, 5}, {6, 7}, {.shift = true});
  EXPECT_NEAR(MiddleOf("Process").x, 5, 1e-9);
  EXPECT_NEAR(MiddleOf("Process").y, 7, 1e-9);
}

TEST_F(CanvasTest, AMovedBoxComesToRestInLineWithOthersAndOnTheGrid) {
  const Box box{0, 0, 1, 1}, other{3.03, 0.3, 4.03, 1.3};
  const SnapSettings both{};
  const Snapped inLine = Snap(box, {3, 5}, std::span(&other, 1), both, 0.06);
  EXPECT_NEAR(inLine.by.x, 3.03, 1e-9);
  EXPECT_EQ(inLine.guides.size(), 1U);
  EXPECT_NEAR(Snap(box, {1.07, 5.04}, {}, both, 0.06).by.x, 1.125, 1e-9);
  EXPECT_NEAR(Snap(box, {1.07, 5.04}, {}, {false, false}, 0.06).by.x, 1.07, 1e-9);
}

TEST_F(CanvasTest, AHandleResizesAboutTheOtherSide) {
  Drop("Process", 3, 3);
  const Box before = FrameOf(Shape("Process"), 1);
  Drag({before.right, before.bottom}, {before.right + 1, before.bottom - 0.5});
  const Box after = FrameOf(Shape("Process"), 1);
  EXPECT_NEAR(after.left, before.left, 1e-9);
  EXPECT_NEAR(after.top, before.top, 1e-9);
  EXPECT_NEAR(after.right, before.right + 1, 1e-9);
  EXPECT_NEAR(after.bottom, before.bottom - 0.5, 1e-9);
  EXPECT_EQ(UndoLabel(), "Resize Process");
}

TEST_F(CanvasTest, AConnectorEndIsTakenElsewhere) {
  Drop("Create", 2, 5);
  Drop("Process", 5, 5);
  Drop("Dispose", 5, 2);
  Drag(PointOf("Create", 1), PointOf("Process", 2));
  deeds_.Do(deeds::Select{{Id("Dynamic connector")}});
  Drag(EndsOf(Shape("Dynamic connector"), 1).end, MiddleOf("Dispose"));
  EXPECT_THAT(Formula("Dynamic connector", "EndX"), HasSubstr("Dispose!Connections.X1"));
  deeds_.Do(deeds::Undo{});
  EXPECT_THAT(Formula("Dynamic connector", "EndX"), HasSubstr("Process!Connections.X2"));
  deeds_.Do(deeds::Select{{Id("Dynamic connector")}});
  Drag(EndsOf(Shape("Dynamic connector"), 1).end, {8, 8});
  EXPECT_NEAR(EndsOf(Shape("Dynamic connector"), 1).end.x, 8, 1e-9);
}

// What is lit up agrees with what the add-in then does: for every kind that is left and every connector.
TEST_F(CanvasTest, WhatIsPredictedIsWhatTheAddinDecides) {
  for (const ModuleSchema& module : kModules) {
    if (module.look.connections.empty()) continue;
    for (const char* master :
         {"Dynamic connector", "True Connector", "False Connector", "Original Connector", "Duplicate Connector"}) {
      host().New();
      scene_.reset();
      Drop(std::string(module.kind), 2, 5);
      Drop("Process", 6, 5);
      const int from = page().TopLevel()[0]->id(), to = page().TopLevel()[1]->id();
      const std::optional<std::string> why = WhyNotConnect(master, page().FindShape(from), page().FindShape(to));
      const size_t messages = platform_->messages.size();
      deeds_.Do(deeds::Connect{master, {from}, {to}, {}, {}});
      const bool refused = platform_->messages.size() > messages;
      // Nothing should leave a Dispose, though the add-in lets it.
      if (module.kind == "Dispose") continue;
      EXPECT_EQ(refused, why.has_value()) << module.kind << " by " << master << ": " << why.value_or("");
      EXPECT_EQ(page().ShapeCount(), refused ? 2 : 3);
    }
  }
}

TEST_F(CanvasTest, TheNextModuleComesConnectedAndIsOneStep) {
  Drop("Decide", 2, 5);
  const int decide = Id("Decide");
  for (const char* connector : {"True Connector", "False Connector"}) {
    const PagePoint at = PlaceBeside(*scene_, page(), FrameOf(Shape("Decide"), 1), 1.25, 0.75);
    deeds_.Do(deeds::Drop{"Dispose", at, decide});
    EXPECT_EQ(UndoLabel(), "Add Dispose");
    EXPECT_NE(page().FindShape(std::string_view(connector)), nullptr) << connector;
  }
  // The second stands below the first.
  EXPECT_LT(MiddleOf("Dispose.4").y, MiddleOf("Dispose").y);
  deeds_.Do(deeds::Undo{});
  EXPECT_THAT(Names(), ElementsAre("Decide", "Dispose", "True Connector"));
}

TEST_F(CanvasTest, ShapesAreReadInRowsAndConnectorsBehindWhatTheyLeave) {
  Drop("Process", 5, 5);
  Drop("Create", 2, 5.1);
  Drop("Dispose", 2, 2);
  Drag(PointOf("Create", 1), PointOf("Process", 2));
  EXPECT_THAT(ReadingOrder(page()), ElementsAre(Id("Create"), Id("Dynamic connector"), Id("Process"), Id("Dispose")));
  EXPECT_EQ(NextShape(page(), Id("Dispose"), 1), Id("Create"));
  EXPECT_EQ(NearestShape(page(), Id("Create"), 0, -1), Id("Dispose"));
  EXPECT_EQ(NearestShape(page(), Id("Create"), -1, 0), std::nullopt);
}

}  // namespace
}  // namespace vardo
