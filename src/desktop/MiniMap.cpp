#include "desktop/MiniMap.h"

#include "desktop/Texts.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace vardo {
namespace {

constexpr QSize kSize(180, 120);
constexpr int kFromCorner = 10, kMargin = 4;
constexpr int kRefreshAfter = 200;  // milliseconds

}  // namespace

MiniMap::MiniMap(Canvas& canvas) : QWidget(&canvas), canvas_(canvas) {
  setFixedSize(kSize);
  setObjectName("miniMap");
  setAccessibleName(texts::MiniMapName());
  setCursor(Qt::PointingHandCursor);
  canvas.installEventFilter(this);
  refresh_.setSingleShot(true);
  refresh_.setInterval(kRefreshAfter);
  QObject::connect(&refresh_, &QTimer::timeout, this, [this] { PaintImage(); });
  Place();
}

void MiniMap::Place() {
  const QRect within = canvas_.viewport()->geometry();
  move(within.right() - kSize.width() - kFromCorner, within.bottom() - kSize.height() - kFromCorner);
  raise();
}

bool MiniMap::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize || event->type() == QEvent::Show) Place();
  return QWidget::eventFilter(watched, event);
}

View MiniMap::Whole() const {
  return View::Fitting(canvas_.scene()->Everything(), {static_cast<double>(width()), static_cast<double>(height())}, kMargin);
}

void MiniMap::PaintImage() {
  if (!canvas_.scene()) return;
  const Scene& scene = *canvas_.scene();
  const View view = Whole();
  image_ = QImage(size() * devicePixelRatioF(), QImage::Format_ARGB32_Premultiplied);
  image_.setDevicePixelRatio(devicePixelRatioF());
  image_.fill(Qt::transparent);
  QPainter painter(&image_);
  const Pixel corner = view.ToPixel({0, scene.picture().height});
  painter.fillRect(
      QRectF(corner.x, corner.y, scene.picture().width * view.pixelsPerInch(), scene.picture().height * view.pixelsPerInch()),
      Qt::white);
  painter_.Paint(painter, scene.picture(), scene.index().Find(scene.Everything()), view);
  painter.end();
  update();
}

void MiniMap::paintEvent(QPaintEvent*) {
  if (!canvas_.scene()) return;
  if (image_.isNull()) PaintImage();
  QPainter painter(this);
  QColor ground = palette().color(QPalette::Window);
  ground.setAlpha(235);
  painter.fillRect(rect(), ground);
  painter.drawImage(QPoint(0, 0), image_);
  const View view = Whole();
  const Box seen = canvas_.view().Seen(canvas_.WindowSize());
  const Pixel from = view.ToPixel({seen.left, seen.top}), to = view.ToPixel({seen.right, seen.bottom});
  const QRectF lit = QRectF(QPointF(from.x, from.y), QPointF(to.x, to.y)).intersected(QRectF(rect()).adjusted(1, 1, -2, -2));
  QPainterPath around;
  around.addRect(rect());
  around.addRect(lit);
  painter.fillPath(around, QColor(0, 0, 0, 40));
  painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
  painter.drawRect(lit);
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void MiniMap::LookAt(QPointF at) {
  if (!canvas_.scene()) return;
  const PagePoint middle = Whole().ToPage({at.x(), at.y()});
  const PixelSize window = canvas_.WindowSize();
  const double k = canvas_.view().pixelsPerInch();
  canvas_.SetView(View({middle.x - window.width / 2 / k, middle.y + window.height / 2 / k}, k));
}

void MiniMap::mousePressEvent(QMouseEvent* event) { LookAt(event->position()); }
void MiniMap::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() & Qt::LeftButton) LookAt(event->position());
}

}  // namespace vardo
