#include "desktop/DrawingCanvas.h"

#include "canvas/HitTest.h"
#include "desktop/OverlayPainter.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>

namespace vardo {
namespace {

constexpr double kScrollZone = 24, kFastestScroll = 20;  // pixels
constexpr int kScrollEvery = 16;                         // milliseconds

Pointer PointerOf(const QMouseEvent& event) {
  const Qt::KeyboardModifiers held = event.modifiers();
  return {{event.position().x(), event.position().y()},
          {held.testFlag(Qt::ShiftModifier), held.testFlag(Qt::ControlModifier), held.testFlag(Qt::AltModifier)}};
}

Qt::CursorShape CursorOf(PointerShape shape) {
  constexpr std::pair<PointerShape, Qt::CursorShape> kCursors[] = {
      {PointerShape::Arrow, Qt::ArrowCursor},           {PointerShape::Move, Qt::SizeAllCursor},
      {PointerShape::Cross, Qt::CrossCursor},           {PointerShape::SizeAcross, Qt::SizeHorCursor},
      {PointerShape::SizeUp, Qt::SizeVerCursor},        {PointerShape::SizeRising, Qt::SizeBDiagCursor},
      {PointerShape::SizeFalling, Qt::SizeFDiagCursor}, {PointerShape::Forbidden, Qt::ForbiddenCursor},
  };
  const auto* const found =
      std::find_if(std::begin(kCursors), std::end(kCursors), [&](const auto& c) { return c.first == shape; });
  return found->second;
}

}  // namespace

DrawingCanvas::DrawingCanvas(DrawingSession& session, QWidget* parent) : Canvas(parent), session_(session) {
  setObjectName("canvas");
  autoScroll_.setInterval(kScrollEvery);
  QObject::connect(&autoScroll_, &QTimer::timeout, this, [this] { AutoScroll(); });
}

Stage DrawingCanvas::stage() {
  return {session_.scene(), session_.page(), view(), session_.host().selection(), snap_, connector_, WindowSize()};
}

void DrawingCanvas::Refresh() {
  if (scene() != &session_.scene()) {
    tool_.Cancel();
    tool_.Leave();
    Show(&session_.scene());
  }
  UpdateOverlay();
}

PagePoint DrawingCanvas::PlaceUnder(QPointF pixel, bool snapped) const {
  const PagePoint at = view().ToPage({pixel.x(), pixel.y()});
  return snapped ? SnapPoint(at, snap_) : at;
}

void DrawingCanvas::ShowGhost(std::optional<Overlay> overlay) {
  ghost_ = std::move(overlay);
  UpdateOverlay();
}

void DrawingCanvas::UpdateOverlay() {
  if (!scene()) return;
  overlay_ = {};
  if (onDecorate) onDecorate(stage(), overlay_);
  overlay_.Append(tool_.Draw(stage()));
  QRect bounds = BoundsOf(overlay_, *scene(), view());
  if (ghost_) bounds |= BoundsOf(*ghost_, *scene(), view());
  viewport()->update(bounds | overlayBounds_);
  overlayBounds_ = bounds;
}

void DrawingCanvas::PaintOver(QPainter& painter, const QRect&) {
  PaintOverlay(painter, overlay_, *scene(), view(), palette(), ghostPainter_);
  if (ghost_) PaintOverlay(painter, *ghost_, *scene(), view(), palette(), ghostPainter_);
}

void DrawingCanvas::Act(const std::optional<Deed>& deed) {
  if (deed && onDeed) onDeed(*deed);
  UpdateOverlay();
}

void DrawingCanvas::mousePressEvent(QMouseEvent* event) {
  Canvas::mousePressEvent(event);
  if (IsPanning() || !scene()) return;
  if (event->button() == Qt::RightButton && tool_.IsBusy()) {
    tool_.Cancel();
    return ToolMoved();
  }
  if (event->button() == Qt::LeftButton) Act(tool_.Press(stage(), PointerOf(*event)));
}

void DrawingCanvas::mouseMoveEvent(QMouseEvent* event) {
  Canvas::mouseMoveEvent(event);
  if (IsPanning() || !scene()) return;
  last_ = PointerOf(*event);
  tool_.Move(stage(), last_);
  ToolMoved();
}

void DrawingCanvas::ToolMoved() {
  viewport()->setCursor(CursorOf(tool_.Shape()));
  if (onHint) onHint(QString::fromStdString(tool_.Hint()));
  if (tool_.IsBusy() && !autoScroll_.isActive()) autoScroll_.start();
  UpdateOverlay();
}

// While something is dragged to the edge the page comes along.
void DrawingCanvas::AutoScroll() {
  if (!tool_.IsBusy()) return autoScroll_.stop();
  const auto push = [](double at, double length) {
    if (at < kScrollZone) return -std::min(kFastestScroll, (kScrollZone - at));
    if (at > length - kScrollZone) return std::min(kFastestScroll, at - (length - kScrollZone));
    return 0.0;
  };
  const PixelSize window = WindowSize();
  const Pixel by{push(last_.at.x, window.width), push(last_.at.y, window.height)};
  if (by == Pixel{}) return;
  SetView(view().MovedBy(by));
  tool_.Move(stage(), last_);
  ToolMoved();
}

void DrawingCanvas::mouseReleaseEvent(QMouseEvent* event) {
  const bool panned = IsPanning();
  Canvas::mouseReleaseEvent(event);
  if (panned || !scene() || event->button() != Qt::LeftButton) return;
  autoScroll_.stop();
  const std::optional<Deed> deed = tool_.Release(stage(), PointerOf(*event));
  if (onHint) onHint({});
  Act(deed);
  if (scene()) tool_.Move(stage(), PointerOf(*event));
  ToolMoved();
}

void DrawingCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !scene()) return;
  tool_.Cancel();
  const PagePoint at = PlaceUnder(event->position(), false);
  if (onDoubleClick) onDoubleClick(ShapeAt(*scene(), at, view().ToInches(feel::kLineReach)).value_or(0));
}

void DrawingCanvas::contextMenuEvent(QContextMenuEvent* event) {
  if (!scene() || !onMenu) return;
  const std::vector<int>& selected = session_.host().selection();
  if (event->reason() == QContextMenuEvent::Keyboard) {
    const int shape = selected.empty() ? 0 : selected.front();
    const picture::Box box = shape ? scene()->BoxOf(shape) : view().Seen(WindowSize());
    const Pixel at = view().ToPixel(box.middle());
    return onMenu(shape, viewport()->mapToGlobal(QPoint(static_cast<int>(at.x), static_cast<int>(at.y))));
  }
  const PagePoint at = PlaceUnder(event->pos(), false);
  const int shape = ShapeAt(*scene(), at, view().ToInches(feel::kLineReach)).value_or(0);
  if (shape == 0)
    Act(deeds::Select{});
  else if (std::find(selected.begin(), selected.end(), shape) == selected.end())
    Act(deeds::Select{{shape}});
  onMenu(shape, event->globalPos());
}

void DrawingCanvas::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && tool_.IsBusy()) {
    tool_.Cancel();
    return ToolMoved();
  }
  if (onKey && onKey(*event)) return;
  const bool types = !event->text().isEmpty() && event->text().at(0).isPrint() && event->key() != Qt::Key_Space &&
                     !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
  if (types && onTyping) return onTyping(*event);
  Canvas::keyPressEvent(event);
}

void DrawingCanvas::leaveEvent(QEvent*) {
  if (tool_.IsBusy()) return;
  tool_.Leave();
  UpdateOverlay();
}

}  // namespace vardo
