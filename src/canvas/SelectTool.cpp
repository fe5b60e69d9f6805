#include "canvas/Gestures.h"
#include "canvas/HitTest.h"
#include "canvas/LegalTargets.h"
#include "canvas/ShapeFacts.h"
#include "document/Drawing.h"

#include <algorithm>

namespace vardo {
namespace {

bool Contains(const std::vector<int>& shapes, int shape) {
  return std::find(shapes.begin(), shapes.end(), shape) != shapes.end();
}

std::vector<int> Toggled(std::vector<int> shapes, int shape) {
  if (std::erase(shapes, shape) == 0) shapes.push_back(shape);
  return shapes;
}

// The one shape that is selected; null for none or several.
DrawingShape* OnlyOne(const Stage& stage) {
  return stage.selection.size() == 1 ? stage.page.FindShape(stage.selection.front()) : nullptr;
}

bool CanResize(const DrawingShape& shape) {
  return !shape.IsOneDimensional() && !IsSet(shape, "NoObjHandles") && !IsSet(shape, "Angle");
}
bool IsLocked(const DrawingShape& shape, const Handle& handle) {
  return (handle.x != 0 && IsSet(shape, "LockWidth")) || (handle.y != 0 && IsSet(shape, "LockHeight"));
}

// What can be taken hold of on what is selected, or near the pointer.
struct Grip {
  enum class Kind { None, Handle, BeginEnd, EndEnd, Point } kind = Kind::None;
  int shape = 0;
  Handle handle{};
  int point = 0;
};

Grip ExitAt(const Stage& stage, int id, Pixel at) {
  const DrawingShape* const shape = stage.page.FindShape(id);
  if (!shape || shape->IsOneDimensional()) return {};
  const std::vector<PagePoint> points = PointsOf(*shape, stage.scene.picture().scale);
  for (const int exit : ExitsOf(*shape))
    if (static_cast<size_t>(exit) <= points.size() &&
        Distance(stage.view.ToPixel(points[static_cast<size_t>(exit - 1)]), at) <= feel::kPointReach)
      return {Grip::Kind::Point, id, {}, exit};
  return {};
}

Grip GripAt(const Stage& stage, Pixel at) {
  const double scale = stage.scene.picture().scale;
  if (const DrawingShape* const shape = OnlyOne(stage)) {
    if (shape->IsOneDimensional()) {
      const EndPlaces ends = EndsOf(*shape, scale);
      if (Distance(stage.view.ToPixel(ends.end), at) <= feel::kHandleReach) return {Grip::Kind::EndEnd, shape->id()};
      if (Distance(stage.view.ToPixel(ends.begin), at) <= feel::kHandleReach) return {Grip::Kind::BeginEnd, shape->id()};
    }
    if (const Grip exit = ExitAt(stage, shape->id(), at); exit.kind != Grip::Kind::None) return exit;
    if (CanResize(*shape)) {
      const Box frame = FrameOf(*shape, scale);
      for (const Handle& handle : kHandles)
        if (!IsLocked(*shape, handle) && Distance(stage.view.ToPixel(PlaceOf(handle, frame)), at) <= feel::kHandleReach)
          return {Grip::Kind::Handle, shape->id(), handle};
    }
  }
  for (const int id : ShapesAt(stage.scene, stage.view.ToPage(at), stage.view.ToInches(feel::kPointReach)))
    if (const Grip exit = ExitAt(stage, id, at); exit.kind != Grip::Kind::None) return exit;
  return {};
}

std::optional<int> ClickedShape(const Stage& stage, const Pointer& pointer) {
  const std::vector<int> shapes = ShapesAt(stage.scene, stage.view.ToPage(pointer.at), stage.view.ToInches(feel::kLineReach));
  if (shapes.empty()) return std::nullopt;
  // With Alt the next one below what is selected.
  for (size_t i = 0; pointer.held.alt && i + 1 < shapes.size(); ++i)
    if (Contains(stage.selection, shapes[i])) return shapes[i + 1];
  return shapes.front();
}

void DrawSelection(const Stage& stage, Overlay& overlay) {
  const double scale = stage.scene.picture().scale;
  const bool isOnly = stage.selection.size() == 1;
  const Box seen = stage.view.Seen(stage.window);
  for (const int id : stage.selection) {
    const DrawingShape* const shape = stage.page.FindShape(id);
    if (!shape) continue;
    if (shape->IsOneDimensional()) {
      const EndPlaces ends = EndsOf(*shape, scale);
      for (const PagePoint at : {ends.begin, ends.end})
        overlay.spots.push_back({at, isOnly ? Ink::Handle : Ink::LockedHandle, true});
      continue;
    }
    const Box frame = FrameOf(*shape, scale);
    if (!Meets(frame.Grown(stage.view.ToInches(feel::kHandleReach)), seen)) continue;
    overlay.frames.push_back({frame, Ink::Selection});
    if (!isOnly || !CanResize(*shape)) continue;
    for (const Handle& handle : kHandles)
      overlay.spots.push_back({PlaceOf(handle, frame), IsLocked(*shape, handle) ? Ink::LockedHandle : Ink::Handle});
  }
}

void DrawExits(const Stage& stage, int id, Overlay& overlay) {
  const DrawingShape* const shape = stage.page.FindShape(id);
  if (!shape || shape->IsOneDimensional()) return;
  const std::vector<PagePoint> points = PointsOf(*shape, stage.scene.picture().scale);
  for (const int exit : ExitsOf(*shape))
    if (static_cast<size_t>(exit) <= points.size())
      overlay.spots.push_back({points[static_cast<size_t>(exit - 1)], Ink::Point, true});
}

}  // namespace

std::optional<Deed> SelectTool::Press(const Stage& stage, const Pointer& pointer) {
  pressed_ = pointer;
  onClick_.reset();
  pressedSelection_ = stage.selection;
  if (GripAt(stage, pointer.at).kind != Grip::Kind::None) return std::nullopt;
  const bool adds = pointer.held.control || pointer.held.shift;
  const std::optional<int> shape = ClickedShape(stage, pointer);
  if (!shape) {
    if (!adds) onClick_ = deeds::Select{};
    return std::nullopt;
  }
  if (adds) {
    onClick_ = deeds::Select{Toggled(stage.selection, *shape)};
    return std::nullopt;
  }
  if (Contains(stage.selection, *shape)) {
    if (stage.selection.size() > 1) onClick_ = deeds::Select{{*shape}};
    return std::nullopt;
  }
  pressedSelection_ = {*shape};
  return deeds::Select{{*shape}};
}

std::unique_ptr<Gesture> SelectTool::GestureFor(const Stage& stage, const Pointer& pointer) const {
  const PagePoint from = stage.view.ToPage(pointer.at);
  const Grip grip = GripAt(stage, pointer.at);
  switch (grip.kind) {
    case Grip::Kind::Handle:
      return ResizeShape(stage, from, grip.shape, grip.handle);
    case Grip::Kind::BeginEnd:
      return MoveEnd(stage, grip.shape, true);
    case Grip::Kind::EndEnd:
      return MoveEnd(stage, grip.shape, false);
    case Grip::Kind::Point:
      return DrawConnector(stage, grip.shape, grip.point);
    case Grip::Kind::None:
      break;
  }
  const std::optional<int> shape = ClickedShape(stage, pointer);
  const bool adds = pointer.held.control || pointer.held.shift;
  if (!shape) return RubberBand(from, adds ? stage.selection : std::vector<int>());
  return MoveShapes(stage, from, Contains(pressedSelection_, *shape) ? pressedSelection_ : std::vector<int>{*shape});
}

void SelectTool::Move(const Stage& stage, const Pointer& pointer) {
  if (pressed_ && !gesture_ && Distance(pressed_->at, pointer.at) >= feel::kDragFrom) gesture_ = GestureFor(stage, *pressed_);
  if (gesture_) return gesture_->Move(stage, pointer);
  if (!pressed_) Hover(stage, pointer);
}

void SelectTool::Hover(const Stage& stage, const Pointer& pointer) {
  hover_ = ClickedShape(stage, pointer);
  const Grip grip = GripAt(stage, pointer.at);
  if (grip.kind == Grip::Kind::Point && !hover_) hover_ = grip.shape;
  switch (grip.kind) {
    case Grip::Kind::Handle:
      shape_ = ShapeOf(grip.handle);
      break;
    case Grip::Kind::None:
      shape_ = hover_ && Contains(stage.selection, *hover_) ? PointerShape::Move : PointerShape::Arrow;
      break;
    default:
      shape_ = PointerShape::Cross;
  }
}

std::optional<Deed> SelectTool::Release(const Stage& stage, const Pointer& pointer) {
  std::optional<Deed> deed = onClick_;
  if (gesture_) {
    gesture_->Move(stage, pointer);
    deed = gesture_->Finish(stage);
  } else if (!pressed_) {
    deed.reset();
  }
  Cancel();
  return deed;
}

void SelectTool::Cancel() {
  gesture_.reset();
  pressed_.reset();
  onClick_.reset();
}

Overlay SelectTool::Draw(const Stage& stage) const {
  Overlay overlay;
  if (!gesture_ && hover_ && stage.page.FindShape(*hover_)) {
    if (!Contains(stage.selection, *hover_)) overlay.frames.push_back({stage.scene.BoxOf(*hover_), Ink::Hover});
    DrawExits(stage, *hover_, overlay);
  }
  if (const DrawingShape* const shape = OnlyOne(stage); shape && !gesture_) DrawExits(stage, shape->id(), overlay);
  DrawSelection(stage, overlay);
  if (gesture_) gesture_->Draw(stage, overlay);
  return overlay;
}

}  // namespace vardo
