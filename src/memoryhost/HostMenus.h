// The menus of the in-memory host's drawing window, and the objects through which the add-in changes them.
#pragma once

#include "addin/host/IVMenus.h"

#include <memory>
#include <string>
#include <vector>

namespace vardo {

struct MenuItemData {
  std::string caption;
  int position = 0;  // as asked for
  std::string runs;
};

struct MenuData {
  std::string caption;
  int position = 0;  // as asked for
  bool added = false;
  std::vector<MenuItemData> items;
};

using MenuBar = std::vector<MenuData>;

class HostMenus {
 public:
  HostMenus();
  // Null until custom menus have been set.
  IVUIObjectPtr CustomMenus() const;
  IVUIObjectPtr BuiltInMenus() const;
  void SetCustomMenus(const IVUIObjectPtr& menus);
  // What is on screen now.
  const MenuBar& Shown() const { return custom_ ? *custom_ : builtIn_; }

 private:
  MenuBar builtIn_;
  std::shared_ptr<const MenuBar> custom_;
};

}  // namespace vardo
