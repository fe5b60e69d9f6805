#include "desktop/Icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <algorithm>
#include <sstream>

namespace vardo {
namespace {

constexpr int kSize = 40;     // pixels, enough for twice the usual scale
constexpr double kGrid = 16;  // in which the paths are given, y downwards
constexpr double kLineWidth = 1.2;

struct Drawn {
  std::string_view action, path;
};
constexpr Drawn kIcons[] = {
    {"new", "M 4 2 L 10 2 L 13 5 L 13 14 L 4 14 Z M 10 2 L 10 5 L 13 5"},
    {"open", "M 2 13 L 2 4 L 6 4 L 7.5 5.5 L 13 5.5 L 13 7 M 2 13 L 4.5 7 L 15 7 L 12.5 13 Z"},
    {"save", "M 3 3 L 11 3 L 13 5 L 13 13 L 3 13 Z M 5 3 L 5 6.5 L 10 6.5 L 10 3 M 5 13 L 5 9 L 11 9 L 11 13"},
    {"undo", "M 6 3 L 2.5 6.5 L 6 10 M 2.5 6.5 L 10 6.5 C 12.5 6.5 13.5 8 13.5 10 C 13.5 12 12.5 13 10 13 L 7 13"},
    {"redo", "M 10 3 L 13.5 6.5 L 10 10 M 13.5 6.5 L 6 6.5 C 3.5 6.5 2.5 8 2.5 10 C 2.5 12 3.5 13 6 13 L 9 13"},
    {"copy", "M 3 2 L 10 2 L 10 5 M 3 2 L 3 11 L 6 11 M 6 5 L 13 5 L 13 14 L 6 14 Z"},
    {"paste", "M 5 3 L 3 3 L 3 14 L 13 14 L 13 3 L 11 3 M 5 2 L 11 2 L 11 4.5 L 5 4.5 Z M 5.5 8 L 10.5 8 M 5.5 11 L 10.5 11"},
    {"duplicate", "M 5 5 L 13 5 L 13 13 L 5 13 Z M 3 11 L 3 3 L 11 3 M 9 7 L 9 11 M 7 9 L 11 9"},
    {"delete", "M 3 4.5 L 13 4.5 M 6.5 4.5 L 6.5 2.5 L 9.5 2.5 L 9.5 4.5 M 4.5 4.5 L 5.2 14 L 10.8 14 L 11.5 4.5"},
    {"zoomIn",
     "M 11 7 C 11 9.2 9.2 11 7 11 C 4.8 11 3 9.2 3 7 C 3 4.8 4.8 3 7 3 C 9.2 3 11 4.8 11 7 Z M 10 10 L 14 14 M 5 7 L 9 7 "
     "M 7 5 L 7 9"},
    {"zoomOut",
     "M 11 7 C 11 9.2 9.2 11 7 11 C 4.8 11 3 9.2 3 7 C 3 4.8 4.8 3 7 3 C 9.2 3 11 4.8 11 7 Z M 10 10 L 14 14 M 5 7 L 9 7"},
    {"fitPage",
     "M 2 5 L 2 2 L 5 2 M 11 2 L 14 2 L 14 5 M 14 11 L 14 14 L 11 14 M 5 14 L 2 14 L 2 11 M 5 5 L 11 5 L 11 11 L 5 11 Z"},
};

QPainterPath PathOf(std::string_view text) {
  QPainterPath path;
  std::istringstream steps{std::string(text)};
  steps.imbue(std::locale::classic());
  const auto next = [&] {
    double x = 0, y = 0;
    steps >> x >> y;
    return QPointF(x, y);
  };
  for (char letter; steps >> letter;) {
    if (letter == 'M') path.moveTo(next());
    if (letter == 'L') path.lineTo(next());
    if (letter == 'Z') path.closeSubpath();
    if (letter != 'C') continue;
    const QPointF first = next(), second = next();
    path.cubicTo(first, second, next());
  }
  return path;
}

QPixmap Painted(const QPainterPath& path, QColor colour, int opacity) {
  QPixmap pixmap(kSize, kSize);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(kSize / kGrid, kSize / kGrid);
  colour.setAlpha(opacity);
  painter.setPen(QPen(colour, kLineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(path);
  return pixmap;
}

}  // namespace

QIcon OwnIcon(std::string_view action, const QColor& colour) {
  const auto* const drawn =
      std::find_if(std::begin(kIcons), std::end(kIcons), [&](const Drawn& icon) { return icon.action == action; });
  if (drawn == std::end(kIcons)) return {};
  const QPainterPath path = PathOf(drawn->path);
  QIcon icon(Painted(path, colour, 230));
  icon.addPixmap(Painted(path, colour, 80), QIcon::Disabled);
  return icon;
}

}  // namespace vardo
