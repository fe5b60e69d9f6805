#include "picture/qt/Export.h"

#include "base/FileError.h"
#include "base/Numbers.h"
#include "base/Text.h"
#include "picture/SvgWriter.h"
#include "picture/qt/QtPainter.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>

#include <cmath>

namespace vardo::picture {
namespace {

constexpr int kDotsOfPdf = 1200;  // an inch

int& PrepareOffscreen(int& count) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  return count;
}

QPageSize SizeOf(const PagePicture& picture, double scale) {
  return QPageSize(QSizeF(picture.width * scale, picture.height * scale), QPageSize::Inch, {}, QPageSize::ExactMatch);
}

}  // namespace

Offscreen::Offscreen() : application_(PrepareOffscreen(count_), names_) {}

std::string PngOf(const PagePicture& picture, double scale) {
  const double perInch = kPixelsPerInch * scale;
  const double width = std::max(1.0, std::round(picture.width * perInch)),
               height = std::max(1.0, std::round(picture.height * perInch));
  if (width > kMostPixels || height > kMostPixels)
    throw FileError("The picture of page \"" + InWords(picture.name) + "\" would be more than " + std::to_string(kMostPixels) +
                    " pixels wide or high; choose a smaller --scale.");
  QImage image(static_cast<int>(width), static_cast<int>(height), QImage::Format_ARGB32_Premultiplied);
  if (image.isNull()) throw std::bad_alloc();
  image.setDotsPerMeterX(qRound(perInch / 0.0254));
  image.setDotsPerMeterY(qRound(perInch / 0.0254));
  image.fill(QColor(picture.paper.r, picture.paper.g, picture.paper.b, picture.paper.a));
  QPainter painter(&image);
  QtPainter onImage(painter, perInch, picture.height);
  Paint(picture, onImage, Audience::Paper);
  painter.end();
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return buffer.data().toStdString();
}

std::string PdfOf(std::span<const PagePicture> pictures, double scale) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setResolution(kDotsOfPdf);
  writer.setCreator("Vardo");
  writer.setPageMargins(QMarginsF(0, 0, 0, 0));
  QPainter painter;
  for (const PagePicture& picture : pictures) {
    writer.setPageSize(SizeOf(picture, scale));
    if (&picture == pictures.data())
      painter.begin(&writer);
    else
      writer.newPage();
    QtPainter onPage(painter, kDotsOfPdf * scale, picture.height);
    Paint(picture, onPage, Audience::Paper);
  }
  painter.end();
  return buffer.data().toStdString();
}

}  // namespace vardo::picture
