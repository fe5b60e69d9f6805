// Paints slices on the screen, quickly: what has been prepared for a look or a text serves all slices that share it, and all
// zooms.
#pragma once

#include "canvas/View.h"
#include "picture/PagePicture.h"

#include <QColor>
#include <QGlyphRun>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <memory>
#include <span>
#include <unordered_map>
#include <vector>

namespace vardo {

class SlicePainter {
 public:
  // Those of the picture with these numbers, in that order, where the view has them.
  void Paint(QPainter& painter, const picture::PagePicture& picture, std::span<const std::uint32_t> numbers, const View& view);
  // One, wherever it is moved to before, with all that there is to see of it.
  void PaintOne(QPainter& painter, const picture::PagePicture& picture, const picture::Slice& slice, const View& view,
                picture::Point movedBy);

 private:
  struct PreparedPath {
    QPainterPath path;
    QBrush fill;  // none: a line
    QPen pen;     // its width in the look's units
  };
  // Keeps what it was made from, so that nothing else comes to lie in its place.
  struct PreparedLook {
    std::shared_ptr<const picture::Look> look;
    std::vector<PreparedPath> paths;
    bool isPlain = true;  // nothing but paths of one colour
    QColor colour;        // that it has from afar
    bool isFilled = false;
    std::vector<QPointF> line;  // from afar
  };
  struct PreparedRun {
    QGlyphRun glyphs;
    QPointF at;
    QColor colour;
  };
  struct PreparedText {
    std::shared_ptr<const picture::TextBlock> text;
    std::vector<PreparedRun> runs;
    double largest = 0;  // size of font, inches
  };
  enum class Detail { Boxes, Rough, Fine };

  const PreparedLook& Prepared(const std::shared_ptr<const picture::Look>& look, double scale);
  const PreparedText& Prepared(const std::shared_ptr<const picture::TextBlock>& text);
  void PaintFromAfar(QPainter& painter, const picture::PagePicture& picture, std::span<const std::uint32_t> numbers,
                     const View& view);
  void PaintSlice(QPainter& painter, const picture::PagePicture& picture, const picture::Slice& slice, const View& view);
  void PaintText(QPainter& painter, const picture::Slice& slice, const View& view);

  std::unordered_map<const picture::Look*, PreparedLook> looks_;
  std::unordered_map<const picture::TextBlock*, PreparedText> texts_;
};

}  // namespace vardo
