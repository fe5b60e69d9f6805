#include "picture/qt/QtPainter.h"

#include "picture/FontSubstitutes.h"
#include "picture/LinePatterns.h"

#include <QFontMetricsF>
#include <QImage>
#include <QImageReader>
#include <QLinearGradient>
#include <QPainter>
#include <QPen>
#include <QRadialGradient>

#include <algorithm>

namespace vardo::picture {
namespace {

constexpr double kMitreLimit = 4;
constexpr int kLargestImage = 256;  // megabytes, unpacked
// How far letters may be spread or drawn together, in parts of a run's width.
constexpr double kMostSpacing = 0.08;
// Fonts are set at a size of their own and scaled, so that a text is as wide at every zoom.
constexpr double kFontUnitsPerInch = 960;

QColor ColourOf(Rgba colour) { return {colour.r, colour.g, colour.b, colour.a}; }
QPointF PointOf(Point point) { return {point.x, point.y}; }
QTransform TransformOf(const Matrix& m) { return {m.a, m.b, m.c, m.d, m.e, m.f}; }

QFont FontOf(const Font& font, double unitsPerInch) {
  QStringList families;
  for (const std::string& family : FontsFor(font.family)) families << QString::fromStdString(family);
  QFont qt;
  qt.setFamilies(families);
  qt.setPixelSize(std::max(1, qRound(font.size * unitsPerInch)));
  qt.setBold(font.bold);
  qt.setItalic(font.italic);
  qt.setUnderline(font.underline);
  qt.setStrikeOut(font.strike);
  if (font.smallCapitals) qt.setCapitalization(QFont::SmallCaps);
  qt.setHintingPreference(QFont::PreferNoHinting);
  return qt;
}

QImage TileOf(const Fill& fill) {
  QImage tile(8, 8, QImage::Format_ARGB32);
  const HatchTile& rows = HatchOf(fill.hatch);
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x)
      tile.setPixelColor(x, y, ColourOf(rows[static_cast<size_t>(y)] >> (7 - x) & 1 ? fill.colour : fill.ground));
  return tile;
}

}  // namespace

FittedRun FitRun(const Font& font, const TextRun& run, double unitsPerInch) {
  FittedRun fitted{FontOf(font, unitsPerInch), QString::fromStdString(run.text)};
  const double wanted = run.width * unitsPerInch, own = QFontMetricsF(fitted.font).horizontalAdvance(fitted.letters);
  const double spread = std::clamp(wanted - own, -kMostSpacing * own, kMostSpacing * own);
  if (!fitted.letters.isEmpty())
    fitted.font.setLetterSpacing(QFont::AbsoluteSpacing, spread / static_cast<double>(fitted.letters.size()));
  fitted.indent = (wanted - own - spread) / 2;
  return fitted;
}

QtPainter::QtPainter(QPainter& painter, double unitsPerInch, double pageHeight)
    : painter_(painter), unitsPerInch_(unitsPerInch), toUnits_{unitsPerInch, 0, 0, -unitsPerInch, 0, pageHeight * unitsPerInch} {
  painter_.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
  QImageReader::setAllocationLimit(kLargestImage);
}

QPainterPath QtPainter::PathOf(const Outline& outline) const {
  QPainterPath path;
  size_t at = 0;
  const auto next = [&] { return PointOf(toUnits_(outline.points[at++])); };
  for (const Verb verb : outline.verbs) {
    if (verb == Verb::Move) path.moveTo(next());
    if (verb == Verb::Line) path.lineTo(next());
    if (verb == Verb::Close) path.closeSubpath();
    if (verb != Verb::Cubic) continue;
    const QPointF control1 = next(), control2 = next();
    path.cubicTo(control1, control2, next());
  }
  return path;
}

QBrush QtPainter::BrushOf(const Fill& fill) const {
  if (fill.kind == Fill::Kind::Solid) return ColourOf(fill.colour);
  if (fill.kind == Fill::Kind::Hatch) {
    QBrush brush(TileOf(fill));
    const double dot = kHatchDot * unitsPerInch_;
    brush.setTransform(QTransform::fromScale(dot, dot));
    return brush;
  }
  const QPointF from = PointOf(toUnits_(fill.from)), to = PointOf(toUnits_(fill.to));
  QGradientStops stops;
  for (const GradientStop& stop : fill.stops) stops.append({stop.at, ColourOf(stop.colour)});
  QLinearGradient linear(from, to);
  QRadialGradient radial(from, QLineF(from, to).length());
  linear.setStops(stops);
  radial.setStops(stops);
  return fill.kind == Fill::Kind::Linear ? QBrush(linear) : QBrush(radial);
}

QPen QtPainter::PenOf(const Stroke& stroke) const {
  const double width = stroke.weight * unitsPerInch_;
  QPen pen(ColourOf(stroke.colour), width);
  const bool isRound = stroke.cap == Stroke::Cap::Round;
  pen.setCapStyle(isRound ? Qt::RoundCap : stroke.cap == Stroke::Cap::Flat ? Qt::FlatCap : Qt::SquareCap);
  pen.setJoinStyle(isRound ? Qt::RoundJoin : Qt::SvgMiterJoin);
  pen.setMiterLimit(kMitreLimit);
  if (stroke.dash.empty()) return pen;
  QList<double> dashes;  // in widths of the line
  for (const double length : stroke.dash) dashes.append(length * unitsPerInch_ / std::max(width, 1e-6));
  if (dashes.size() % 2 == 0 && width > 0) pen.setDashPattern(dashes);
  return pen;
}

void QtPainter::Draw(const FillPath& fill) {
  QPainterPath path = PathOf(fill.outline);
  path.setFillRule(Qt::OddEvenFill);
  if (fill.clip.empty()) return painter_.fillPath(path, BrushOf(fill.fill));
  painter_.save();
  painter_.setClipPath(PathOf(fill.clip), Qt::IntersectClip);
  painter_.fillPath(path, BrushOf(fill.fill));
  painter_.restore();
}

void QtPainter::Draw(const StrokePath& line) { painter_.strokePath(PathOf(line.outline), PenOf(line.stroke)); }

void QtPainter::Draw(const Image& image, const Matrix& toPage) {
  const QImage pixels =
      QImage::fromData(reinterpret_cast<const uchar*>(image.bytes->data()), static_cast<int>(image.bytes->size()));
  if (pixels.isNull()) return;
  painter_.save();
  Outline clip;
  clip.AppendRectangle(image.clip);
  painter_.setClipPath(PathOf(Transformed(std::move(clip), toPage)), Qt::IntersectClip);
  painter_.setOpacity(painter_.opacity() * image.opacity);
  // The image's own y goes down from its top.
  const Box& place = image.place;
  painter_.setTransform(TransformOf(toUnits_ * toPage * Translation({place.left, place.top}) * Scaling(1, -1)), true);
  painter_.drawImage(QRectF(0, 0, place.width(), place.height()), pixels);
  painter_.restore();
}

void QtPainter::Draw(const TextBlock& text, const Matrix& toPage) {
  for (const Box& ground : text.grounds) {
    Outline outline;
    outline.AppendRectangle(ground);
    Draw(FillPath{Transformed(std::move(outline), toPage), {.colour = text.ground}, {}});
  }
  painter_.save();
  painter_.setTransform(TransformOf(toUnits_ * toPage * Scaling(1 / kFontUnitsPerInch, -1 / kFontUnitsPerInch)), true);
  for (const TextRun& run : text.runs) DrawRun(text, run, kFontUnitsPerInch);
  painter_.restore();
}

void QtPainter::DrawRun(const TextBlock& text, const TextRun& run, double unitsPerInch) {
  if (text.fonts[run.font].size <= 0) return;
  const FittedRun fitted = FitRun(text.fonts[run.font], run, unitsPerInch);
  painter_.setFont(fitted.font);
  painter_.setPen(ColourOf(run.colour));
  painter_.drawText(QPointF(run.at.x * unitsPerInch + fitted.indent, -run.at.y * unitsPerInch), fitted.letters);
}

}  // namespace vardo::picture
