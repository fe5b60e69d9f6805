// Shows a page: paints what is seen of it, and lets a person move and zoom.
#pragma once

#include "canvas/Scene.h"
#include "canvas/View.h"
#include "desktop/SlicePainter.h"

#include <QAbstractScrollArea>
#include <QPixmap>
#include <QTimer>

#include <functional>
#include <optional>

namespace vardo {

class Canvas : public QAbstractScrollArea {
 public:
  explicit Canvas(QWidget* parent = nullptr);

  // Null for none; the scene outlives its being shown.
  void Show(const Scene* scene);
  const Scene* scene() const { return scene_; }
  void Repaint(const Scene::Dirty& dirty);

  const View& view() const { return view_; }
  void SetView(const View& view);
  // About the middle of the window, or about a pixel.
  void ZoomTo(double pixelsPerInch);
  void ZoomTo(double pixelsPerInch, Pixel fixed);
  void ZoomBySteps(double steps, std::optional<Pixel> fixed = {});
  void Fit(const picture::Box& box, double largest = kFullSize);
  void ScrollTo(const picture::Box& box);
  PixelSize WindowSize() const;

  bool showsGrid() const { return showsGrid_; }
  void ShowGrid(bool shows);

  // Another part is seen, or at another size.
  std::function<void()> onViewChanged;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void changeEvent(QEvent* event) override;

  bool IsPanning() const { return panFrom_.has_value(); }

  // Over the page, in pixels of the window.
  virtual void PaintOver(QPainter&, const QRect&) {}

 private:
  void PaintPage(QPainter& painter, const QRect& rect);
  void PaintGrid(QPainter& painter, const picture::Box& seen);
  void Stretch(QPainter& painter);
  void ZoomGesture(const View& view);
  void UpdateScrollBars();
  View Aligned(const View& view) const;

  const Scene* scene_ = nullptr;
  View view_;
  SlicePainter painter_;
  bool showsGrid_ = true;
  bool adjusting_ = false;

  // While zooming a picture that takes long is stretched first.
  QPixmap snapshot_;
  View snapshotView_;
  bool stretching_ = false;
  double lastPainting_ = 0;  // milliseconds
  QTimer settle_;

  std::optional<Pixel> panFrom_;
  bool spaceHeld_ = false;
};

}  // namespace vardo
