#include "desktop/SlicePainter.h"

#include "picture/Painter.h"
#include "picture/qt/QtPainter.h"

#include <QRawFont>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace vardo {
namespace {

using picture::Matrix;

constexpr size_t kMostPrepared = 60'000;
// Below so many pixels an inch shapes are boxes and lines; below the next they are not smoothed.
constexpr double kBoxes = 15, kRough = 24;
// Texts whose font is smaller than that, in pixels, are bars; below the second they are not there.
constexpr double kLegible = 3.5, kVisible = 2;
constexpr double kFontUnits = 960;  // for an inch, in which texts are laid out
constexpr double kMitreLimit = 4;

QColor ColourOf(picture::Rgba colour) { return {colour.r, colour.g, colour.b, colour.a}; }
QTransform TransformOf(const Matrix& m) { return {m.a, m.b, m.c, m.d, m.e, m.f}; }

Matrix ToPixels(const View& view) {
  const double k = view.pixelsPerInch();
  return {k, 0, 0, -k, -view.corner().x * k, view.corner().y * k};
}

QPainterPath PathOf(const picture::Outline& outline) {
  QPainterPath path;
  path.setFillRule(Qt::OddEvenFill);
  size_t at = 0;
  const auto next = [&] {
    const picture::Point point = outline.points[at++];
    return QPointF(point.x, point.y);
  };
  for (const picture::Verb verb : outline.verbs) {
    if (verb == picture::Verb::Move) path.moveTo(next());
    if (verb == picture::Verb::Line) path.lineTo(next());
    if (verb == picture::Verb::Close) path.closeSubpath();
    if (verb != picture::Verb::Cubic) continue;
    const QPointF first = next(), second = next();
    path.cubicTo(first, second, next());
  }
  return path;
}

QPen PenOf(const picture::Stroke& stroke, double scale) {
  const double width = stroke.weight / scale;
  QPen pen(ColourOf(stroke.colour), width);
  const bool isRound = stroke.cap == picture::Stroke::Cap::Round;
  pen.setCapStyle(isRound ? Qt::RoundCap : stroke.cap == picture::Stroke::Cap::Flat ? Qt::FlatCap : Qt::SquareCap);
  pen.setJoinStyle(isRound ? Qt::RoundJoin : Qt::SvgMiterJoin);
  pen.setMiterLimit(kMitreLimit);
  QList<double> dashes;
  for (const double length : stroke.dash) dashes.append(length / std::max(stroke.weight, 1e-6));
  if (!dashes.isEmpty() && dashes.size() % 2 == 0 && width > 0) pen.setDashPattern(dashes);
  return pen;
}

}  // namespace

const SlicePainter::PreparedLook& SlicePainter::Prepared(const std::shared_ptr<const picture::Look>& look, double scale) {
  if (const auto known = looks_.find(look.get()); known != looks_.end()) return known->second;
  if (looks_.size() >= kMostPrepared) looks_.clear();
  PreparedLook prepared;
  prepared.look = look;
  for (const picture::Operation& operation : look->operations) {
    if (const auto* fill = std::get_if<picture::FillPath>(&operation)) {
      prepared.isPlain = prepared.isPlain && fill->fill.kind == picture::Fill::Kind::Solid && fill->clip.empty();
      if (!prepared.isFilled) prepared.colour = ColourOf(fill->fill.colour);
      prepared.isFilled = true;
      prepared.paths.push_back({PathOf(fill->outline), QBrush(ColourOf(fill->fill.colour)), QPen(Qt::NoPen)});
    } else if (const auto* line = std::get_if<picture::StrokePath>(&operation)) {
      if (!prepared.colour.isValid()) prepared.colour = ColourOf(line->stroke.colour);
      if (prepared.line.empty())
        for (const picture::Point point : line->outline.points) prepared.line.emplace_back(point.x, point.y);
      prepared.paths.push_back({PathOf(line->outline), QBrush(), PenOf(line->stroke, scale)});
    } else {
      prepared.isPlain = false;
      prepared.isFilled = true;
      prepared.colour = Qt::lightGray;
    }
  }
  return looks_.emplace(look.get(), std::move(prepared)).first->second;
}

const SlicePainter::PreparedText& SlicePainter::Prepared(const std::shared_ptr<const picture::TextBlock>& text) {
  if (const auto known = texts_.find(text.get()); known != texts_.end()) return known->second;
  if (texts_.size() >= kMostPrepared) texts_.clear();
  PreparedText prepared;
  prepared.text = text;
  for (const picture::TextRun& run : text->runs) {
    const picture::Font& font = text->fonts[run.font];
    if (font.size <= 0 || run.text.empty()) continue;
    prepared.largest = std::max(prepared.largest, font.size);
    const picture::FittedRun fitted = picture::FitRun(font, run, kFontUnits);
    QTextLayout layout(fitted.letters, fitted.font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const double ascent = layout.lineAt(0).ascent();
    for (const QGlyphRun& glyphs : layout.glyphRuns())
      prepared.runs.push_back(
          {glyphs, {run.at.x * kFontUnits + fitted.indent, -run.at.y * kFontUnits - ascent}, ColourOf(run.colour)});
  }
  return texts_.emplace(text.get(), std::move(prepared)).first->second;
}

void SlicePainter::Paint(QPainter& painter, const picture::PagePicture& picture, std::span<const std::uint32_t> numbers,
                         const View& view) {
  if (view.pixelsPerInch() < kBoxes) return PaintFromAfar(painter, picture, numbers, view);
  painter.setRenderHint(QPainter::Antialiasing, view.pixelsPerInch() >= kRough);
  for (const std::uint32_t number : numbers) PaintSlice(painter, picture, picture.slices[number], view);
}

void SlicePainter::PaintOne(QPainter& painter, const picture::PagePicture& picture, const picture::Slice& slice, const View& view,
                            picture::Point movedBy) {
  painter.setRenderHint(QPainter::Antialiasing, true);
  const View moved({view.corner().x - movedBy.x, view.corner().y - movedBy.y}, view.pixelsPerInch());
  PaintSlice(painter, picture, slice, moved);
}

void SlicePainter::PaintSlice(QPainter& painter, const picture::PagePicture& picture, const picture::Slice& slice,
                              const View& view) {
  if (slice.look) {
    const PreparedLook& look = Prepared(slice.look, picture.scale);
    if (look.isPlain) {
      painter.save();
      painter.setTransform(TransformOf(ToPixels(view) * slice.toPage), true);
      for (const PreparedPath& path : look.paths) {
        if (path.fill.style() != Qt::NoBrush)
          painter.fillPath(path.path, path.fill);
        else
          painter.strokePath(path.path, path.pen);
      }
      painter.restore();
    } else {
      // What is rare may take its time.
      painter.save();
      painter.translate(-view.corner().x * view.pixelsPerInch(), view.corner().y * view.pixelsPerInch());
      picture::QtPainter slow(painter, view.pixelsPerInch(), 0);
      picture::Slice withoutText = slice;
      withoutText.text = nullptr;
      picture::PaintSlice(withoutText, slow);
      painter.restore();
    }
  }
  if (slice.text) PaintText(painter, slice, view);
}

void SlicePainter::PaintText(QPainter& painter, const picture::Slice& slice, const View& view) {
  const PreparedText& text = Prepared(slice.text);
  const double pixels = text.largest * view.pixelsPerInch();
  if (pixels < kVisible) return;
  painter.save();
  painter.setTransform(TransformOf(ToPixels(view) * slice.textToPage * picture::Scaling(1 / kFontUnits, -1 / kFontUnits)), true);
  for (const Box& ground : slice.text->grounds)
    painter.fillRect(
        QRectF(ground.left * kFontUnits, -ground.top * kFontUnits, ground.width() * kFontUnits, ground.height() * kFontUnits),
        ColourOf(slice.text->ground));
  if (pixels < kLegible) {
    QColor grey(Qt::gray);
    for (const picture::TextRun& run : slice.text->runs) {
      const double size = slice.text->fonts[run.font].size * kFontUnits;
      painter.fillRect(QRectF(run.at.x * kFontUnits, -run.at.y * kFontUnits - size / 2, run.width * kFontUnits, size / 3), grey);
    }
  } else {
    for (const PreparedRun& run : text.runs) {
      painter.setPen(run.colour);
      painter.drawGlyphRun(run.at, run.glyphs);
    }
  }
  painter.restore();
}

// Boxes of one colour together, then lines.
void SlicePainter::PaintFromAfar(QPainter& painter, const picture::PagePicture& picture, std::span<const std::uint32_t> numbers,
                                 const View& view) {
  painter.setRenderHint(QPainter::Antialiasing, false);
  const Matrix toPixels = ToPixels(view);
  std::unordered_map<QRgb, QList<QRectF>> boxes;
  std::unordered_map<QRgb, QList<QLineF>> lines;
  for (const std::uint32_t number : numbers) {
    const picture::Slice& slice = picture.slices[number];
    if (!slice.look) continue;
    const PreparedLook& look = Prepared(slice.look, picture.scale);
    if (look.isFilled && !slice.isOneDimensional) {
      const Box box = picture::Transformed(slice.box, toPixels);
      boxes[look.colour.rgba()].append(QRectF(box.left, box.bottom, std::max(1.0, box.width()), std::max(1.0, box.height())));
      continue;
    }
    const Matrix own = toPixels * slice.toPage;
    QList<QLineF>& some = lines[look.colour.rgba()];
    QPointF before;
    for (size_t i = 0; i < look.line.size(); ++i) {
      const picture::Point at = own({look.line[i].x(), look.line[i].y()});
      const QPointF point(at.x, at.y);
      if (i > 0) some.append(QLineF(before, point));
      before = point;
    }
  }
  for (const auto& [colour, some] : lines) {
    painter.setPen(QPen(QColor::fromRgba(colour), 0));
    painter.drawLines(some);
  }
  painter.setPen(Qt::NoPen);
  for (const auto& [colour, some] : boxes) {
    painter.setBrush(QColor::fromRgba(colour));
    painter.drawRects(some);
  }
}

}  // namespace vardo
