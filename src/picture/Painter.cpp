#include "picture/Painter.h"

#include "picture/TextLayout.h"

#include <algorithm>

namespace vardo::picture {
namespace {

constexpr Rgba kFrameGrey{128, 128, 128};
constexpr double kFrameWeight = 0.75 / 72, kLargestLabel = 9.0 / 72;

FillPath OnPage(const FillPath& fill, const Matrix& toPage) {
  FillPath moved{Transformed(fill.outline, toPage), fill.fill, Transformed(fill.clip, toPage)};
  moved.fill.from = toPage(fill.fill.from);
  moved.fill.to = toPage(fill.fill.to);
  return moved;
}

// A dashed box, crossed, with its label as large as there is room.
void DrawFrame(const Frame& frame, const Slice& slice, Painter& painter) {
  const Box& box = frame.place;
  const Stroke stroke{kFrameGrey, kFrameWeight, Stroke::Cap::Flat, {4 * kFrameWeight, 3 * kFrameWeight}};
  Outline outline;
  outline.AppendRectangle(box);
  outline.Move({box.left, box.bottom});
  outline.Line({box.right, box.top});
  outline.Move({box.left, box.top});
  outline.Line({box.right, box.bottom});
  painter.Draw(StrokePath{Transformed(std::move(outline), slice.toPage), stroke});

  const Box onPage = Transformed(box, slice.toPage);
  TextToLay label{.pieces = {{frame.label}}, .characters = {{}}, .paragraphs = {{}}};
  CharacterFormat& format = label.characters.front();
  format.font = {.family = "Arial", .size = kLargestLabel};
  format.colour = kFrameGrey;
  const TextExtent extent = ExtentOf(label, 0);
  format.font.size *= std::min({1.0, 0.9 * onPage.width() / extent.width, 0.9 * onPage.height() / extent.height});
  label.width = onPage.width();
  label.height = onPage.height();
  label.hasGround = true;
  label.ground = {255, 255, 255};
  painter.Draw(LayOut(label), Translation({onPage.left, onPage.bottom}));
}

}  // namespace

void PaintSlice(const Slice& slice, Painter& painter) {
  painter.BeginShape(slice);
  if (slice.look) {
    for (const Operation& operation : slice.look->operations) {
      if (const auto* fill = std::get_if<FillPath>(&operation)) painter.Draw(OnPage(*fill, slice.toPage));
      if (const auto* line = std::get_if<StrokePath>(&operation))
        painter.Draw(StrokePath{Transformed(line->outline, slice.toPage), line->stroke});
      if (const auto* image = std::get_if<Image>(&operation)) painter.Draw(*image, slice.toPage);
      if (const auto* frame = std::get_if<Frame>(&operation)) DrawFrame(*frame, slice, painter);
    }
  }
  if (slice.text) painter.Draw(*slice.text, slice.textToPage);
  painter.EndShape();
}

void Paint(const PagePicture& picture, Painter& painter, Audience audience) {
  for (const Slice& slice : picture.slices) {
    if (audience == Audience::Paper && (slice.isGuide || !slice.prints)) continue;
    if (slice.look || slice.text) PaintSlice(slice, painter);
  }
}

}  // namespace vardo::picture
