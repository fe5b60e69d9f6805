#include "canvas/Gestures.h"

#include "canvas/HitTest.h"
#include "canvas/LegalTargets.h"
#include "canvas/ShapeFacts.h"
#include "document/Drawing.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace vardo {
namespace {

std::vector<PagePoint> Elbow(PagePoint from, PagePoint to) {
  const double middle = (from.x + to.x) / 2;
  return {from, {middle, from.y}, {middle, to.y}, to};
}

bool IsFar(PagePoint by) { return std::abs(by.x) > 1e-9 || std::abs(by.y) > 1e-9; }

// --- Moving.

class MoveGesture : public Gesture {
 public:
  MoveGesture(const Stage& stage, PagePoint from, std::vector<int> shapes) : from_(from), shapes_(std::move(shapes)) {
    const std::unordered_set<int> moved(shapes_.begin(), shapes_.end());
    const double scale = stage.scene.picture().scale;
    for (const int id : shapes_) {
      const DrawingShape* const shape = stage.page.FindShape(id);
      if (shape && (!shape->IsOneDimensional() || shapes_.size() == 1)) box_.Add(FrameOf(*shape, scale));
    }
    FindOthers(stage, moved);
    FindConnectors(stage, moved);
  }

  void Move(const Stage& stage, const Pointer& pointer) override {
    PagePoint wanted = stage.view.ToPage(pointer.at) - from_;
    if (pointer.held.shift) (std::abs(wanted.x) < std::abs(wanted.y) ? wanted.x : wanted.y) = 0;
    copies_ = pointer.held.control;
    if (pointer.held.alt || box_.empty()) {
      snapped_ = {wanted};
      return;
    }
    snapped_ = Snap(box_, wanted, others_, stage.snap, stage.view.ToInches(feel::kGuideReach));
    if (!pointer.held.shift) return;
    if (wanted.x == 0) snapped_.by.x = 0;
    if (wanted.y == 0) snapped_.by.y = 0;
  }

  std::optional<Deed> Finish(const Stage&) override {
    if (!IsFar(snapped_.by)) return std::nullopt;
    return deeds::Move{shapes_, snapped_.by, copies_};
  }

  void Draw(const Stage&, Overlay& overlay) const override {
    for (const int shape : shapes_) overlay.ghosts.push_back({shape, snapped_.by});
    for (const Box& guide : snapped_.guides)
      overlay.lines.push_back({{{guide.left, guide.bottom}, {guide.right, guide.top}}, Ink::Guide});
    if (copies_) return;
    for (const GluedConnector& connector : connectors_)
      overlay.lines.push_back({Elbow(connector.movesBegin ? connector.ends.begin + snapped_.by : connector.ends.begin,
                                     connector.movesEnd ? connector.ends.end + snapped_.by : connector.ends.end),
                               Ink::Connector});
  }
  PointerShape Shape() const override { return PointerShape::Move; }

 private:
  struct GluedConnector {
    EndPlaces ends;
    bool movesBegin = false, movesEnd = false;
  };

  void FindOthers(const Stage& stage, const std::unordered_set<int>& moved) {
    for (const int id : ShapesIn(stage.scene, stage.view.Seen(stage.window), true)) {
      const DrawingShape* const shape = stage.page.FindShape(id);
      if (shape && !moved.contains(id) && !shape->IsOneDimensional())
        others_.push_back(FrameOf(*shape, stage.scene.picture().scale));
      if (others_.size() >= feel::kMostGuides) return;
    }
  }

  void FindConnectors(const Stage& stage, const std::unordered_set<int>& moved) {
    std::unordered_map<int, GluedConnector> found;
    for (const DrawingPage::GluedEnd& end : stage.page.GluedEnds()) {
      if (!moved.contains(end.target) || moved.contains(end.connector)) continue;
      (end.isBegin ? found[end.connector].movesBegin : found[end.connector].movesEnd) = true;
    }
    for (auto& [id, connector] : found) {
      const DrawingShape* const shape = stage.page.FindShape(id);
      if (!shape) continue;
      connector.ends = EndsOf(*shape, stage.scene.picture().scale);
      connectors_.push_back(connector);
    }
  }

  PagePoint from_;
  std::vector<int> shapes_;
  Box box_;
  std::vector<Box> others_;
  std::vector<GluedConnector> connectors_;
  Snapped snapped_{};
  bool copies_ = false;
};

// --- Sizes.

class ResizeGesture : public Gesture {
 public:
  ResizeGesture(const Stage& stage, PagePoint from, int shape, Handle handle)
      : from_(from), shape_(shape), handle_(handle), before_(FrameOf(*stage.page.FindShape(shape), stage.scene.picture().scale)) {
    now_ = before_;
  }

  void Move(const Stage& stage, const Pointer& pointer) override {
    PagePoint by = stage.view.ToPage(pointer.at) - from_;
    const PagePoint corner = PlaceOf(handle_, before_);
    if (!pointer.held.alt) by = SnapPoint(corner + by, stage.snap) - corner;
    double wider = handle_.x * by.x, higher = handle_.y * by.y;
    const double centred = pointer.held.control ? 2 : 1;
    double width = std::max(feel::kSmallestModule, before_.width() + centred * wider),
           height = std::max(feel::kSmallestModule, before_.height() + centred * higher);
    if (pointer.held.shift && handle_.x != 0 && handle_.y != 0) {
      const double factor = std::max(width / before_.width(), height / before_.height());
      width = before_.width() * factor;
      height = before_.height() * factor;
    }
    wider = width - before_.width();
    higher = height - before_.height();
    const auto lower = [&](int side, double more) { return pointer.held.control ? more / 2 : side < 0 ? more : 0; };
    now_.left = before_.left - lower(handle_.x, wider);
    now_.bottom = before_.bottom - lower(handle_.y, higher);
    now_.right = now_.left + width;
    now_.top = now_.bottom + height;
  }

  std::optional<Deed> Finish(const Stage&) override {
    if (now_ == before_) return std::nullopt;
    return deeds::Resize{shape_, now_};
  }
  void Draw(const Stage&, Overlay& overlay) const override { overlay.frames.push_back({now_, Ink::Selection}); }
  PointerShape Shape() const override { return ShapeOf(handle_); }

 private:
  PagePoint from_;
  int shape_;
  Handle handle_;
  Box before_, now_;
};

// --- Selecting.

class BandGesture : public Gesture {
 public:
  BandGesture(PagePoint from, std::vector<int> addTo) : from_(from), to_(from), addTo_(std::move(addTo)) {}

  void Move(const Stage& stage, const Pointer& pointer) override { to_ = stage.view.ToPage(pointer.at); }
  std::optional<Deed> Finish(const Stage& stage) override {
    std::vector<int> shapes = addTo_;
    for (const int shape : ShapesIn(stage.scene, BoxBetween(from_, to_), Touches()))
      if (std::find(shapes.begin(), shapes.end(), shape) == shapes.end()) shapes.push_back(shape);
    return deeds::Select{shapes};
  }
  void Draw(const Stage&, Overlay& overlay) const override {
    overlay.frames.push_back({BoxBetween(from_, to_), Touches() ? Ink::TouchBand : Ink::Band});
  }

 private:
  // Drawn to the left it takes what it touches.
  bool Touches() const { return to_.x < from_.x; }

  PagePoint from_, to_;
  std::vector<int> addTo_;
};

// --- Connectors.

// The end of a connector that follows the pointer, and what it would be glued to.
class LooseEnd {
 public:
  void Move(const Stage& stage, const Pointer& pointer, const std::optional<int>& otherShape) {
    place_ = stage.view.ToPage(pointer.at);
    target_ = {};
    spots_.clear();
    const double scale = stage.scene.picture().scale, magnet = stage.view.ToInches(feel::kMagnet);
    for (const int id : ShapesAt(stage.scene, place_, magnet)) {
      const DrawingShape* const shape = stage.page.FindShape(id);
      if (!shape || shape->IsOneDimensional() || id == otherShape) continue;
      target_ = id;
      frame_ = FrameOf(*shape, scale);
      spots_ = PointsOf(*shape, scale);
      return;
    }
  }

  std::optional<int> target() const { return target_; }
  const Box& frame() const { return frame_; }
  // Of the target's, counted from 1.
  PagePoint PlaceOfPoint(int point) const { return spots_[static_cast<size_t>(point - 1)]; }
  bool HasPoint(int point) const { return point >= 1 && static_cast<size_t>(point) <= spots_.size(); }
  PagePoint place() const { return place_; }

 private:
  PagePoint place_;
  std::optional<int> target_;
  Box frame_;
  std::vector<PagePoint> spots_;
};

// Leads an end to where it may be glued, and says what is wrong otherwise.
class EndGesture : public Gesture {
 public:
  EndGesture(PagePoint fixed, std::optional<int> fixedShape, bool movesBegin)
      : fixed_(fixed), fixedShape_(fixedShape), movesBegin_(movesBegin) {}

  void Move(const Stage& stage, const Pointer& pointer) override {
    end_.Move(stage, pointer, fixedShape_);
    point_ = {};
    why_.clear();
    const DrawingShape* const shape = end_.target() ? stage.page.FindShape(*end_.target()) : nullptr;
    const DrawingShape* const fixed = fixedShape_ ? stage.page.FindShape(*fixedShape_) : nullptr;
    if (!shape) return;
    why_ = WhyNotConnect(master_, movesBegin_ ? shape : fixed, movesBegin_ ? fixed : shape).value_or("");
    if (!why_.empty()) return;
    point_ = movesBegin_ ? ChooseConnector(stage.page, *shape, {}).point : EntryOf(*shape);
    if (point_ && !end_.HasPoint(*point_)) point_.reset();
  }

  void Draw(const Stage& stage, Overlay& overlay) const override {
    const PagePoint to = point_ ? end_.PlaceOfPoint(*point_) : end_.place();
    overlay.lines.push_back({movesBegin_ ? Elbow(to, fixed_) : Elbow(fixed_, to), Ink::Connector});
    DrawLegal(stage, overlay);
    if (!end_.target()) return;
    overlay.frames.push_back({end_.frame(), why_.empty() ? Ink::Legal : Ink::Illegal});
    overlay.spots.push_back({to, why_.empty() ? Ink::Legal : Ink::Illegal, true});
  }
  PointerShape Shape() const override { return why_.empty() ? PointerShape::Cross : PointerShape::Forbidden; }
  std::string Hint() const override { return why_; }

 protected:
  DrawingHost::End Glued() const { return {end_.target(), point_}; }
  PagePoint place() const { return end_.place(); }
  void SetMaster(std::string master) { master_ = std::move(master); }
  const std::string& master() const { return master_; }
  void Start(PagePoint at) { fixed_ = at; }

 private:
  // The points in sight where it may end.
  void DrawLegal(const Stage& stage, Overlay& overlay) const {
    const DrawingShape* const fixed = fixedShape_ ? stage.page.FindShape(*fixedShape_) : nullptr;
    size_t seen = 0;
    for (const int id : ShapesIn(stage.scene, stage.view.Seen(stage.window), true)) {
      const DrawingShape* const shape = stage.page.FindShape(id);
      if (!shape || shape->IsOneDimensional() || id == fixedShape_ || KindOf(*shape).empty()) continue;
      if (++seen > feel::kMostGuides) return;
      if (WhyNotConnect(master_, movesBegin_ ? shape : fixed, movesBegin_ ? fixed : shape)) continue;
      const std::vector<PagePoint> points = PointsOf(*shape, stage.scene.picture().scale);
      const std::optional<int> point = movesBegin_ ? ChooseConnector(stage.page, *shape, {}).point : EntryOf(*shape);
      if (point && static_cast<size_t>(*point) <= points.size())
        overlay.spots.push_back({points[static_cast<size_t>(*point - 1)], Ink::Legal, true});
    }
  }

  PagePoint fixed_;
  std::optional<int> fixedShape_;
  bool movesBegin_;
  std::string master_;
  LooseEnd end_;
  std::optional<int> point_;
  std::string why_;
};

class DrawGesture : public EndGesture {
 public:
  DrawGesture(const Stage& stage, int shape, int point)
      : EndGesture(PointsOf(*stage.page.FindShape(shape), stage.scene.picture().scale)[static_cast<size_t>(point - 1)], shape,
                   false),
        begin_{shape, point} {
    SetMaster(stage.connector ? *stage.connector : ChooseConnector(stage.page, *stage.page.FindShape(shape), point).master);
  }
  std::optional<Deed> Finish(const Stage&) override { return deeds::Connect{master(), begin_, Glued(), {}, place()}; }

 private:
  DrawingHost::End begin_;
};

class ReglueGesture : public EndGesture {
 public:
  ReglueGesture(const Stage& stage, int connector, bool isBegin)
      : EndGesture(FixedPlace(stage, connector, isBegin), FixedShape(stage, connector, isBegin), isBegin),
        connector_(connector),
        isBegin_(isBegin) {
    const DrawingMaster* const master = stage.page.FindShape(connector)->master();
    SetMaster(master ? master->Name() : std::string(kPlainConnector));
  }
  std::optional<Deed> Finish(const Stage&) override { return deeds::Reglue{connector_, isBegin_, Glued(), place()}; }

 private:
  static PagePoint FixedPlace(const Stage& stage, int connector, bool isBegin) {
    const EndPlaces ends = EndsOf(*stage.page.FindShape(connector), stage.scene.picture().scale);
    return isBegin ? ends.end : ends.begin;
  }
  static std::optional<int> FixedShape(const Stage& stage, int connector, bool isBegin) {
    for (const DrawingPage::GluedEnd& end : stage.page.GluedEnds())
      if (end.connector == connector && end.isBegin != isBegin) return end.target;
    return std::nullopt;
  }

  int connector_;
  bool isBegin_;
};

}  // namespace

PagePoint PlaceOf(const Handle& handle, const Box& frame) {
  const PagePoint middle = frame.middle();
  return {middle.x + handle.x * frame.width() / 2, middle.y + handle.y * frame.height() / 2};
}

PointerShape ShapeOf(const Handle& handle) {
  if (handle.y == 0) return PointerShape::SizeAcross;
  if (handle.x == 0) return PointerShape::SizeUp;
  return handle.x == handle.y ? PointerShape::SizeRising : PointerShape::SizeFalling;
}

std::unique_ptr<Gesture> MoveShapes(const Stage& stage, PagePoint from, std::vector<int> shapes) {
  return std::make_unique<MoveGesture>(stage, from, std::move(shapes));
}
std::unique_ptr<Gesture> ResizeShape(const Stage& stage, PagePoint from, int shape, Handle handle) {
  return std::make_unique<ResizeGesture>(stage, from, shape, handle);
}
std::unique_ptr<Gesture> RubberBand(PagePoint from, std::vector<int> addTo) {
  return std::make_unique<BandGesture>(from, std::move(addTo));
}
std::unique_ptr<Gesture> DrawConnector(const Stage& stage, int shape, int point) {
  return std::make_unique<DrawGesture>(stage, shape, point);
}
std::unique_ptr<Gesture> MoveEnd(const Stage& stage, int connector, bool isBegin) {
  return std::make_unique<ReglueGesture>(stage, connector, isBegin);
}

}  // namespace vardo
