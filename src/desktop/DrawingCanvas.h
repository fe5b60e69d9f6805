// The canvas on which a person draws: hands mouse and keys to the tool, and its deeds to the window.
#pragma once

#include "canvas/Tool.h"
#include "desktop/Canvas.h"
#include "desktop/DrawingSession.h"

namespace vardo {

class DrawingCanvas : public Canvas {
 public:
  explicit DrawingCanvas(DrawingSession& session, QWidget* parent = nullptr);

  // The page, the selection or both may be others now.
  void Refresh();
  SnapSettings& snap() { return snap_; }
  // Which connector is drawn; none: what fits.
  void SetConnector(std::optional<std::string> master) { connector_ = std::move(master); }
  Stage stage();
  // A palette's module is over the page; none when it has gone.
  void ShowGhost(std::optional<Overlay> overlay);
  PagePoint PlaceUnder(QPointF pixel, bool snapped) const;

  // What else is seen over the page.
  std::function<void(const Stage&, Overlay&)> onDecorate;
  std::function<void(const Deed&)> onDeed;
  std::function<void(const QString&)> onHint;
  std::function<void(int shape)> onDoubleClick;          // 0: on the paper
  std::function<void(int shape, QPoint global)> onMenu;  // 0: on the paper
  std::function<void(QKeyEvent&)> onTyping;              // a letter
  std::function<bool(QKeyEvent&)> onKey;                 // true when it meant something

 protected:
  void PaintOver(QPainter& painter, const QRect& rect) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void ToolMoved();
  void Act(const std::optional<Deed>& deed);
  void UpdateOverlay();
  void AutoScroll();

  DrawingSession& session_;
  SelectTool tool_;
  SnapSettings snap_;
  std::optional<std::string> connector_;
  Overlay overlay_;
  std::optional<Overlay> ghost_;
  QRect overlayBounds_;
  SlicePainter ghostPainter_;
  Pointer last_;
  QTimer autoScroll_;
};

}  // namespace vardo
