#include "desktop/Canvas.h"

#include <QElapsedTimer>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace vardo {
namespace {

constexpr double kZoomStep = 1.189207115002721;  // four of them double the size
constexpr double kLongPainting = 12;             // milliseconds
constexpr int kSettleAfter = 60;                 // milliseconds
constexpr double kDeskMargin = 200;              // pixels around all that is drawn
constexpr double kFitMargin = 24;
constexpr double kGridStep = 0.125;  // inches
constexpr int kGridFactors[] = {1, 2, 4, 8, 16, 32, 64, 128, 256};
constexpr double kNarrowestGrid = 8;  // pixels

QRectF RectOf(const picture::Box& box, const View& view) {
  const Pixel corner = view.ToPixel({box.left, box.top});
  return {corner.x, corner.y, box.width() * view.pixelsPerInch(), box.height() * view.pixelsPerInch()};
}

}  // namespace

Canvas::Canvas(QWidget* parent) : QAbstractScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::StrongFocus);
  viewport()->setMouseTracking(true);
  viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  settle_.setSingleShot(true);
  settle_.setInterval(kSettleAfter);
  QObject::connect(&settle_, &QTimer::timeout, this, [this] {
    stretching_ = false;
    viewport()->update();
  });
}

PixelSize Canvas::WindowSize() const {
  return {static_cast<double>(viewport()->width()), static_cast<double>(viewport()->height())};
}

void Canvas::Show(const Scene* scene) {
  scene_ = scene;
  stretching_ = false;
  UpdateScrollBars();
  viewport()->update();
}

void Canvas::Repaint(const Scene::Dirty& dirty) {
  if (dirty.wholly) {
    UpdateScrollBars();
    return viewport()->update();
  }
  for (const picture::Box& box : dirty.boxes) viewport()->update(RectOf(box, view_).toAlignedRect().adjusted(-3, -3, 3, 3));
}

// What is painted is shifted by whole pixels when it is scrolled.
View Canvas::Aligned(const View& view) const {
  const double k = view.pixelsPerInch();
  return {{std::round(view.corner().x * k) / k, std::round(view.corner().y * k) / k}, k};
}

void Canvas::SetView(const View& view) {
  const View wanted = Aligned(view);
  if (wanted == view_) return;
  const bool sameSize = wanted.pixelsPerInch() == view_.pixelsPerInch();
  const Pixel shift = wanted.ToPixel(view_.corner());
  view_ = wanted;
  UpdateScrollBars();
  if (sameSize)
    viewport()->scroll(static_cast<int>(std::lround(shift.x)), static_cast<int>(std::lround(shift.y)));
  else
    viewport()->update();
  if (onViewChanged) onViewChanged();
}

void Canvas::ZoomTo(double pixelsPerInch) { ZoomTo(pixelsPerInch, {WindowSize().width / 2, WindowSize().height / 2}); }
void Canvas::ZoomTo(double pixelsPerInch, Pixel fixed) { SetView(view_.ZoomedAt(fixed, pixelsPerInch)); }

void Canvas::ZoomBySteps(double steps, std::optional<Pixel> fixed) {
  const Pixel at = fixed.value_or(Pixel{WindowSize().width / 2, WindowSize().height / 2});
  ZoomGesture(view_.ZoomedAt(at, view_.pixelsPerInch() * std::pow(kZoomStep, steps)));
}

// The last picture is stretched at once; the new one comes when the person pauses, or soon enough.
void Canvas::ZoomGesture(const View& view) {
  if (lastPainting_ > kLongPainting) {
    if (!stretching_) {
      snapshot_ = viewport()->grab();
      snapshotView_ = view_;
    }
    stretching_ = true;
    settle_.start();
  }
  SetView(view);
}

void Canvas::Fit(const picture::Box& box, double largest) { SetView(View::Fitting(box, WindowSize(), kFitMargin, largest)); }

void Canvas::ScrollTo(const picture::Box& box) {
  const picture::Box seen = view_.Seen(WindowSize());
  if (box.left >= seen.left && box.right <= seen.right && box.bottom >= seen.bottom && box.top <= seen.top) return;
  const PagePoint middle = box.middle();
  const PixelSize window = WindowSize();
  const double k = view_.pixelsPerInch();
  SetView(View({middle.x - window.width / 2 / k, middle.y + window.height / 2 / k}, k));
}

void Canvas::ShowGrid(bool shows) {
  showsGrid_ = shows;
  viewport()->update();
}

// The bars reach over all that is drawn and what is seen.
void Canvas::UpdateScrollBars() {
  if (!scene_) return;
  const double k = view_.pixelsPerInch();
  picture::Box reach = scene_->Everything().Grown(kDeskMargin / k);
  reach.Add(view_.Seen(WindowSize()));
  adjusting_ = true;
  const auto set = [](QScrollBar* bar, double from, double to, double page, double at) {
    bar->setRange(static_cast<int>(std::floor(from)), static_cast<int>(std::ceil(to - page)));
    bar->setPageStep(static_cast<int>(page));
    bar->setSingleStep(32);
    bar->setValue(static_cast<int>(std::lround(at)));
  };
  const PixelSize window = WindowSize();
  set(horizontalScrollBar(), reach.left * k, reach.right * k, window.width, view_.corner().x * k);
  set(verticalScrollBar(), -reach.top * k, -reach.bottom * k, window.height, -view_.corner().y * k);
  adjusting_ = false;
}

void Canvas::scrollContentsBy(int, int) {
  if (adjusting_) return;
  const double k = view_.pixelsPerInch();
  SetView(View({horizontalScrollBar()->value() / k, -verticalScrollBar()->value() / k}, k));
}

void Canvas::resizeEvent(QResizeEvent*) {
  UpdateScrollBars();
  if (onViewChanged) onViewChanged();
}

void Canvas::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) viewport()->update();
  QAbstractScrollArea::changeEvent(event);
}

// --- Painting.

void Canvas::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  if (!scene_) return painter.fillRect(event->rect(), palette().window());
  if (stretching_) return Stretch(painter);
  QElapsedTimer clock;
  clock.start();
  for (const QRect& rect : event->region()) {
    painter.save();
    painter.setClipRect(rect);
    PaintPage(painter, rect);
    painter.restore();
    painter.save();
    painter.setClipRect(rect);
    PaintOver(painter, rect);
    painter.restore();
  }
  if (event->rect() == viewport()->rect()) lastPainting_ = static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

void Canvas::PaintPage(QPainter& painter, const QRect& rect) {
  painter.fillRect(rect, palette().color(QPalette::Mid).darker(105));
  const QRectF paper = RectOf(scene_->Paper(), view_);
  painter.fillRect(paper.translated(3, 3), QColor(0, 0, 0, 50));
  const picture::Rgba colour = scene_->picture().paper;
  painter.fillRect(paper, QColor(colour.r, colour.g, colour.b));
  const PagePoint corner = view_.ToPage({static_cast<double>(rect.left()), static_cast<double>(rect.bottom() + 1)});
  const PagePoint opposite = view_.ToPage({static_cast<double>(rect.right() + 1), static_cast<double>(rect.top())});
  picture::Box seen{corner.x, corner.y, opposite.x, opposite.y};
  if (showsGrid_) PaintGrid(painter, seen);
  painter_.Paint(painter, scene_->picture(), scene_->index().Find(seen.Grown(view_.ToInches(2))), view_);
}

void Canvas::PaintGrid(QPainter& painter, const picture::Box& seen) {
  const auto* const factor = std::find_if(std::begin(kGridFactors), std::end(kGridFactors),
                                          [&](int f) { return f * kGridStep * view_.pixelsPerInch() >= kNarrowestGrid; });
  if (factor == std::end(kGridFactors)) return;
  const double step = *factor * kGridStep;
  const picture::Box paper = scene_->Paper();
  const picture::Box box{std::max(seen.left, paper.left), std::max(seen.bottom, paper.bottom), std::min(seen.right, paper.right),
                         std::min(seen.top, paper.top)};
  if (box.empty() || box.bottom > box.top) return;
  const auto lines = [&](int every, const QColor& colour) {
    QList<QLineF> drawn;
    const double stride = step * every;
    for (double x = std::ceil(box.left / stride) * stride; x <= box.right; x += stride) {
      const Pixel from = view_.ToPixel({x, box.bottom}), to = view_.ToPixel({x, box.top});
      drawn.append(QLineF(std::round(from.x), from.y, std::round(to.x), to.y));
    }
    for (double y = std::ceil(box.bottom / stride) * stride; y <= box.top; y += stride) {
      const Pixel from = view_.ToPixel({box.left, y}), to = view_.ToPixel({box.right, y});
      drawn.append(QLineF(from.x, std::round(from.y), to.x, std::round(to.y)));
    }
    painter.setPen(QPen(colour, 1));
    painter.drawLines(drawn);
  };
  painter.setRenderHint(QPainter::Antialiasing, false);
  lines(1, QColor(0xf3, 0xf5, 0xf8));
  lines(4, QColor(0xe4, 0xe9, 0xf0));
}

void Canvas::Stretch(QPainter& painter) {
  painter.fillRect(viewport()->rect(), palette().color(QPalette::Mid).darker(105));
  const Pixel corner = view_.ToPixel(snapshotView_.corner());
  const double factor = view_.pixelsPerInch() / snapshotView_.pixelsPerInch();
  const QSizeF size = QSizeF(snapshot_.deviceIndependentSize()) * factor;
  painter.drawPixmap(QRectF(QPointF(corner.x, corner.y), size), snapshot_, QRectF(QPointF(0, 0), QSizeF(snapshot_.size())));
}

// --- Moving and zooming.

void Canvas::wheelEvent(QWheelEvent* event) {
  const QPoint pixels = event->pixelDelta(), angle = event->angleDelta();
  event->accept();
  if (event->modifiers() & Qt::ControlModifier) {
    const QPointF at = event->position();
    return ZoomBySteps(angle.y() / 120.0, Pixel{at.x(), at.y()});
  }
  constexpr double kPerNotch = 96;
  QPointF by = pixels.isNull() ? QPointF(angle) / 120.0 * kPerNotch : QPointF(pixels);
  if (event->modifiers() & Qt::ShiftModifier && by.x() == 0) by = {by.y(), 0};
  SetView(view_.MovedBy({-by.x(), by.y() * -1}));
}

bool Canvas::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::NativeGesture) {
    const auto* const gesture = static_cast<QNativeGestureEvent*>(event);
    if (gesture->gestureType() == Qt::ZoomNativeGesture) {
      const QPointF at = gesture->position();
      ZoomGesture(view_.ZoomedAt({at.x(), at.y()}, view_.pixelsPerInch() * (1 + gesture->value())));
      return true;
    }
  }
  return QAbstractScrollArea::viewportEvent(event);
}

void Canvas::mousePressEvent(QMouseEvent* event) {
  const bool pans = event->button() == Qt::MiddleButton || (event->button() == Qt::LeftButton && spaceHeld_);
  if (!pans) return;
  panFrom_ = Pixel{event->position().x(), event->position().y()};
  viewport()->setCursor(Qt::ClosedHandCursor);
}

void Canvas::mouseMoveEvent(QMouseEvent* event) {
  if (!panFrom_) return;
  const Pixel at{event->position().x(), event->position().y()};
  SetView(view_.MovedBy(*panFrom_ - at));
  panFrom_ = at;
}

void Canvas::mouseReleaseEvent(QMouseEvent*) {
  if (!panFrom_) return;
  panFrom_.reset();
  viewport()->setCursor(spaceHeld_ ? Qt::OpenHandCursor : Qt::ArrowCursor);
}

void Canvas::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Space) return QAbstractScrollArea::keyPressEvent(event);
  if (event->isAutoRepeat()) return;
  spaceHeld_ = true;
  viewport()->setCursor(Qt::OpenHandCursor);
}

void Canvas::keyReleaseEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Space || event->isAutoRepeat()) return;
  spaceHeld_ = false;
  if (!panFrom_) viewport()->unsetCursor();
}

}  // namespace vardo
