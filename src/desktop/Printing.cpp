#include "desktop/Printing.h"

#include "picture/Painter.h"
#include "picture/qt/QtPainter.h"

#include <QPageLayout>
#include <QPainter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>

#include <algorithm>

namespace vardo {

void Printing::Print() {
  QPrinter printer(QPrinter::HighResolution);
  QPrintDialog dialog(&printer, &window_);
  if (dialog.exec() == QDialog::Accepted) PrintOn(printer);
}

void Printing::Preview() {
  QPrinter printer(QPrinter::HighResolution);
  QPrintPreviewDialog dialog(&printer, &window_);
  QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &window_, [this](QPrinter* on) { PrintOn(*on); });
  dialog.exec();
}

void Printing::PrintOn(QPrinter& printer) {
  const std::vector<picture::PagePicture> pictures = session_.Pictures();
  QPainter painter;
  for (const picture::PagePicture& picture : pictures) {
    printer.setPageOrientation(picture.width > picture.height ? QPageLayout::Landscape : QPageLayout::Portrait);
    if (&picture == &pictures.front())
      painter.begin(&printer);
    else
      printer.newPage();
    const QRectF paper = printer.pageLayout().paintRect(QPageLayout::Inch);
    const double fits = std::min({1.0, paper.width() / picture.width, paper.height() / picture.height});
    picture::QtPainter onPaper(painter, printer.resolution() * fits, picture.height);
    picture::Paint(picture, onPaper, picture::Audience::Paper);
  }
  painter.end();
}

}  // namespace vardo
