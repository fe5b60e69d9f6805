// The fields of the modules that are selected, to be read and edited. What is typed goes through the module's own dialog, unseen.
#pragma once

#include "desktop/DrawingSession.h"

#include <QDockWidget>
#include <QLabel>
#include <QTreeWidget>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vardo {

class PropertiesDock : public QDockWidget {
 public:
  PropertiesDock(DrawingSession& session, QWidget* parent);

  void Refresh();
  void FocusFields();

  // Returns why it is refused; empty when it is done.
  std::function<QString(const std::vector<int>& shapes, const std::string& field, const QString& text)> onEdited;

 private:
  void Edited(QTreeWidgetItem& row);

  DrawingSession& session_;
  QLabel* title_;
  QTreeWidget* table_;
  QLabel* refusal_;
  std::vector<int> shapes_;
  bool filling_ = false;
};

}  // namespace vardo
