// What is wrong with the model, kept current while it is drawn.
#pragma once

#include "desktop/DrawingSession.h"
#include "model/Finding.h"

#include <QDockWidget>
#include <QTimer>
#include <QTreeWidget>

#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace vardo {

class ProblemsDock : public QDockWidget {
 public:
  ProblemsDock(DrawingSession& session, QWidget* parent);

  // The drawing has changed; checked again when it has come to rest.
  void Refresh();
  void CheckNow();
  // The worst that is found of each shape, by page and shape.
  const std::map<std::pair<int, int>, Severity>& worst() const { return worst_; }

  std::function<void(int page, int shape)> onGoTo;
  std::function<void()> onChecked;

 private:
  void Show(const std::vector<Finding>& findings);

  DrawingSession& session_;
  QTreeWidget* list_;
  QTimer refresh_;
  std::map<std::pair<int, int>, Severity> worst_;
};

}  // namespace vardo
