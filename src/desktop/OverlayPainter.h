// Paints what is seen over a page while a person works on it.
#pragma once

#include "canvas/Overlay.h"
#include "canvas/Scene.h"
#include "canvas/View.h"
#include "desktop/SlicePainter.h"

#include <QPainter>
#include <QPalette>

namespace vardo {

void PaintOverlay(QPainter& painter, const Overlay& overlay, const Scene& scene, const View& view, const QPalette& palette,
                  SlicePainter& slices);

// In pixels, around all of it.
QRect BoundsOf(const Overlay& overlay, const Scene& scene, const View& view);

}  // namespace vardo
