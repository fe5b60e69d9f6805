// The palette of modules and connectors: to be dragged onto the page, or chosen by Enter.
#pragma once

#include "desktop/StencilItems.h"

#include <QDockWidget>
#include <QLineEdit>
#include <QListWidget>

#include <functional>
#include <string>
#include <vector>

namespace vardo {

inline constexpr const char* kMasterMime = "application/x-vardo-master";

class StencilDock : public QDockWidget {
 public:
  explicit StencilDock(QWidget* parent);

  const std::vector<StencilItem>& items() const { return items_; }
  // Null when there is none of that name.
  const StencilItem* Find(const std::string& master) const;
  void FocusSearch();

  // Enter or a double click.
  std::function<void(const StencilItem&)> onChosen;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Filter(const QString& text);
  void ChooseCurrent();

  std::vector<StencilItem> items_;
  QLineEdit* search_;
  QListWidget* list_;
};

}  // namespace vardo
