// The drawing's pages as tabs, and where the page shown belongs.
#pragma once

#include "desktop/DrawingSession.h"

#include <QLabel>
#include <QTabBar>
#include <QToolButton>
#include <QWidget>

#include <functional>

namespace vardo {

class PageTabs : public QWidget {
 public:
  explicit PageTabs(QWidget* parent = nullptr);

  void Show(DrawingSession& session);

  std::function<void(int page)> onChosen, onRename;
  std::function<void()> onAdd;
  std::function<void(int page, QPoint global)> onMenu;

 private:
  int PageAt(int tab) const { return bar_->tabData(tab).toInt(); }

  QTabBar* bar_;
  QToolButton* add_;
  bool filling_ = false;
};

class Breadcrumb : public QLabel {
 public:
  explicit Breadcrumb(QWidget* parent = nullptr);
  void Show(DrawingSession& session);
  std::function<void(int page)> onChosen;
};

}  // namespace vardo
