#include "desktop/OverlayPainter.h"

namespace vardo {
namespace {

constexpr double kHandle = 8, kDot = 9, kMark = 14;  // pixels
constexpr double kGhostOpacity = 0.75;
constexpr size_t kMostGhosts = 300;  // drawn whole; of more only the frames
constexpr int kReach = 12;           // of anything beyond its place

const QColor kGuide(0x8e, 0x44, 0xad), kLegal(0x2e, 0x9e, 0x4f), kIllegal(0xd0, 0x34, 0x2c), kConnector(0x60, 0x60, 0x60),
    kWarning(0xe6, 0x8a, 0x00);

struct Look {
  QColor colour;
  double width = 1;
  Qt::PenStyle style = Qt::SolidLine;
  int fill = 0;  // its opacity, of 255
};

Look LookOf(Ink ink, const QPalette& palette) {
  const QColor highlight = palette.color(QPalette::Highlight);
  switch (ink) {
    case Ink::Hover:
      return {highlight, 1};
    case Ink::Guide:
      return {kGuide, 1};
    case Ink::Band:
      return {highlight, 1, Qt::SolidLine, 30};
    case Ink::TouchBand:
      return {highlight, 1, Qt::DashLine, 30};
    case Ink::Legal:
      return {kLegal, 2};
    case Ink::Illegal:
    case Ink::Error:
      return {kIllegal, 2};
    case Ink::Warning:
      return {kWarning, 2};
    case Ink::Connector:
      return {kConnector, 1.5};
    case Ink::LockedHandle:
      return {palette.color(QPalette::Mid), 1};
    default:
      return {highlight, 1.5};
  }
}

QPointF PointOf(PagePoint at, const View& view) {
  const Pixel pixel = view.ToPixel(at);
  return {pixel.x, pixel.y};
}

QRectF RectOf(const Box& box, const View& view) {
  return {PointOf({box.left, box.top}, view), PointOf({box.right, box.bottom}, view)};
}

// A disk with an exclamation mark.
void PaintMark(QPainter& painter, QPointF at, const QColor& colour) {
  painter.setPen(QPen(Qt::white, 1.5));
  painter.setBrush(colour);
  painter.drawEllipse(at, kMark / 2, kMark / 2);
  painter.setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(at + QPointF(0, -3.5), at + QPointF(0, 0.5));
  painter.drawPoint(at + QPointF(0, 3.5));
}

// Light around, so that it is seen on dark and on light.
void PaintSpot(QPainter& painter, const Overlay::Spot& spot, const View& view, const QPalette& palette) {
  const QPointF at = PointOf(spot.at, view);
  const QColor colour = LookOf(spot.ink, palette).colour;
  const bool isHandle = spot.ink == Ink::Handle || spot.ink == Ink::LockedHandle;
  const double size = spot.ink == Ink::Legal || spot.ink == Ink::Illegal ? kDot + 2 : isHandle ? kHandle : kDot;
  const QRectF box(at.x() - size / 2, at.y() - size / 2, size, size);
  painter.setPen(QPen(isHandle ? colour : QColor(Qt::white), 1.5));
  painter.setBrush(isHandle ? QColor(Qt::white) : colour);
  if (spot.ink == Ink::Error || spot.ink == Ink::Warning) return PaintMark(painter, at, colour);
  spot.isRound ? painter.drawEllipse(box) : painter.drawRect(box);
}

void PaintLabel(QPainter& painter, const Overlay::Label& label, const View& view, const QPalette& palette) {
  const QString text = QString::fromStdString(label.text);
  const QRectF box = QRectF(painter.fontMetrics().boundingRect(text)).adjusted(-4, -2, 4, 2).translated(PointOf(label.at, view));
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette.color(QPalette::ToolTipBase));
  painter.drawRoundedRect(box, 3, 3);
  painter.setPen(palette.color(QPalette::ToolTipText));
  painter.drawText(box, Qt::AlignCenter, text);
}

}  // namespace

void PaintOverlay(QPainter& painter, const Overlay& overlay, const Scene& scene, const View& view, const QPalette& palette,
                  SlicePainter& slices) {
  painter.setOpacity(kGhostOpacity);
  const bool whole = overlay.ghosts.size() <= kMostGhosts;
  for (const Overlay::Ghost& ghost : overlay.ghosts)
    for (const size_t number : scene.SlicesOf(ghost.shape)) {
      if (whole)
        slices.PaintOne(painter, scene.picture(), scene.slice(number), view, ghost.by);
      else
        painter.fillRect(RectOf(MovedBy(scene.slice(number).box, ghost.by), view), LookOf(Ink::Hover, palette).colour);
    }
  painter.setOpacity(1);
  painter.setRenderHint(QPainter::Antialiasing, true);
  for (const Overlay::Frame& frame : overlay.frames) {
    const Look look = LookOf(frame.ink, palette);
    QColor fill = look.colour;
    fill.setAlpha(look.fill);
    painter.setPen(QPen(look.colour, look.width, look.style));
    painter.setBrush(fill);
    const double grown = frame.ink == Ink::Hover || frame.ink == Ink::Selection ? 1.5 : 0;
    painter.drawRect(RectOf(frame.box, view).adjusted(-grown, -grown, grown, grown));
  }
  painter.setBrush(Qt::NoBrush);
  for (const Overlay::Line& line : overlay.lines) {
    const Look look = LookOf(line.ink, palette);
    painter.setPen(QPen(look.colour, look.width, look.style));
    QPolygonF points;
    for (const PagePoint point : line.points) points << PointOf(point, view);
    painter.drawPolyline(points);
  }
  for (const Overlay::Spot& spot : overlay.spots) PaintSpot(painter, spot, view, palette);
  for (const Overlay::Label& label : overlay.labels) PaintLabel(painter, label, view, palette);
}

QRect BoundsOf(const Overlay& overlay, const Scene& scene, const View& view) {
  Box bounds;
  for (const Overlay::Frame& frame : overlay.frames) bounds.Add(frame.box);
  for (const Overlay::Line& line : overlay.lines)
    for (const PagePoint point : line.points) bounds.Add(point);
  for (const Overlay::Spot& spot : overlay.spots) bounds.Add(spot.at);
  for (const Overlay::Ghost& ghost : overlay.ghosts) bounds.Add(MovedBy(scene.BoxOf(ghost.shape), ghost.by));
  QRectF rect = bounds.empty() ? QRectF() : RectOf(bounds, view).adjusted(-kReach, -kReach, kReach, kReach);
  constexpr double kLabelReach = 300;
  for (const Overlay::Label& label : overlay.labels) {
    const QPointF at = PointOf(label.at, view);
    rect |= QRectF(at.x() - kLabelReach, at.y() - 40, 2 * kLabelReach, 80);
  }
  return rect.toAlignedRect();
}

}  // namespace vardo
