// Every module of the drawing by its kind: a list to look through and to go to places from.
#pragma once

#include "desktop/DrawingSession.h"

#include <QDockWidget>
#include <QLineEdit>
#include <QTimer>
#include <QTreeWidget>

#include <functional>

namespace vardo {

class ModelDock : public QDockWidget {
 public:
  ModelDock(DrawingSession& session, QWidget* parent);

  // The drawing has changed; listed anew soon, if it is seen.
  void Refresh();
  // To find something by name, value or text.
  void FocusFilter();
  // Goes to the next one listed, or with -1 to the one before.
  void Step(int step);

  std::function<void(int page, int shape)> onGoTo, onOpen;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void Fill();
  void Filter();
  void GoTo(const QTreeWidgetItem* item, const std::function<void(int, int)>& go);

  DrawingSession& session_;
  QLineEdit* filter_;
  QTreeWidget* tree_;
  QTimer refresh_;
  bool outdated_ = true;
};

}  // namespace vardo
