// The whole page, small, in a corner of the canvas: shows which part is seen, and leads to another.
#pragma once

#include "desktop/Canvas.h"

#include <QImage>
#include <QTimer>
#include <QWidget>

namespace vardo {

class MiniMap : public QWidget {
 public:
  explicit MiniMap(Canvas& canvas);

  // The page has changed, or is another one. Painted anew soon.
  void Refresh() { refresh_.start(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  View Whole() const;
  void LookAt(QPointF at);
  void Place();
  void PaintImage();

  Canvas& canvas_;
  SlicePainter painter_;
  QImage image_;
  QTimer refresh_;
};

}  // namespace vardo
