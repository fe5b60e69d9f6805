// The steps that have been done and can be taken back, and those that can be done again.
#pragma once

#include "desktop/DrawingSession.h"

#include <QDockWidget>
#include <QListWidget>

#include <functional>

namespace vardo {

class HistoryDock : public QDockWidget {
 public:
  explicit HistoryDock(QWidget* parent);
  void Show(DrawingSession& session);
  // So many steps back, or ahead if negative.
  std::function<void(int steps)> onChosen;

 private:
  QListWidget* list_;
  int done_ = 0;
};

}  // namespace vardo
