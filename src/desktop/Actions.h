// The window's actions: their captions, keys and tips in one table.
#pragma once

#include <QAction>
#include <QList>

#include <functional>
#include <string_view>
#include <unordered_map>

class QWidget;

namespace vardo {

class Actions {
 public:
  // All of the table; they work wherever the keyboard is in the window.
  explicit Actions(QWidget& window);

  QAction& operator[](std::string_view id) const { return *actions_.at(id); }
  void On(std::string_view id, const std::function<void()>& run);
  // Why it cannot be chosen now; empty: it can.
  void Enable(std::string_view id, const QString& whyNot) const;
  QList<QAction*> All() const;

 private:
  std::unordered_map<std::string_view, QAction*> actions_;
};

}  // namespace vardo
