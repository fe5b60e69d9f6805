// From a shape's cells to its text, ready to be laid out.
#pragma once

#include "document/XmlNode.h"
#include "picture/ResolvedSheet.h"
#include "picture/ShapeFormat.h"
#include "picture/TextLayout.h"

#include <optional>

namespace vardo::picture {

// A text's place in its shape: lengths as the drawing has them.
struct TextFrame {
  double width = 0, height = 0;
  Point middle;      // in the shape
  double angle = 0;  // radians
};

// Its frame's size is not set. colour: of every run, whatever the cells say.
TextToLay ReadShapeText(XmlNode textElement, const ResolvedSheet& sheet, const ShapeFormat& format, const FormatReader& reader,
                        std::optional<Rgba> colour);

// scale: inches on paper for one of the drawing. Frames that are as large as their text are measured.
TextFrame FrameOf(const ResolvedSheet& sheet, const TextToLay& text, double scale);

}  // namespace vardo::picture
