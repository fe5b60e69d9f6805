// Paints a picture with Qt: on a screen, into an image, onto paper.
#pragma once

#include "picture/Painter.h"

#include <QFont>
#include <QPainterPath>
#include <QTransform>

#include <map>

class QPainter;
class QPen;

namespace vardo::picture {

// A run in a font that is at hand, its letters spread or drawn together to be as wide as they are meant to be.
struct FittedRun {
  QFont font;
  QString letters;
  double indent = 0;  // of what is still too wide or too narrow and stands in the middle of its place
};
FittedRun FitRun(const Font& font, const TextRun& run, double unitsPerInch);

class QtPainter : public Painter {
 public:
  // The painter's units for an inch; the page's upper left corner is at their origin. The painter must outlive this.
  QtPainter(QPainter& painter, double unitsPerInch, double pageHeight);

  void Draw(const FillPath& fill) override;
  void Draw(const StrokePath& stroke) override;
  void Draw(const Image& image, const Matrix& toPage) override;
  void Draw(const TextBlock& text, const Matrix& toPage) override;

 private:
  QPainterPath PathOf(const Outline& outline) const;
  QBrush BrushOf(const Fill& fill) const;
  QPen PenOf(const Stroke& stroke) const;
  void DrawRun(const TextBlock& text, const TextRun& run, double unitsPerInch);

  QPainter& painter_;
  double unitsPerInch_;
  Matrix toUnits_;
};

}  // namespace vardo::picture
