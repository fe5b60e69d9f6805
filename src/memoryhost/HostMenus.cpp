#include "memoryhost/HostMenus.h"

#include "addin/host/HostConstants.h"
#include "base/Errors.h"

#include <algorithm>

namespace vardo {
namespace {

// The copy of a menu bar that a user-interface object hands out; its parts share it.
using BarPtr = std::shared_ptr<MenuBar>;

HostError NoSuchIndex(int index) { return HostError(kHostBadIndex, "There is no menu or item " + std::to_string(index) + "."); }

class ItemObject : public IVMenuItem {
 public:
  ItemObject(BarPtr bar, size_t menu, size_t item) : bar_(std::move(bar)), menu_(menu), item_(item) {}
  void SetCaption(std::string_view caption) override { Data().caption = caption; }
  void SetAddOnName(std::string_view name) override { Data().runs = name; }

 private:
  MenuItemData& Data() { return (*bar_)[menu_].items[item_]; }
  BarPtr bar_;
  size_t menu_, item_;
};

class ItemsObject : public IVMenuItems {
 public:
  ItemsObject(BarPtr bar, size_t menu) : bar_(std::move(bar)), menu_(menu) {}
  IVMenuItemPtr AddAt(int position) override {
    std::vector<MenuItemData>& items = (*bar_)[menu_].items;
    const size_t at = std::min(items.size(), static_cast<size_t>(std::max(position, 0)));
    items.insert(items.begin() + static_cast<ptrdiff_t>(at), MenuItemData{"", position, ""});
    return std::make_shared<ItemObject>(bar_, menu_, at);
  }

 private:
  BarPtr bar_;
  size_t menu_;
};

class MenuObject : public IVMenu {
 public:
  MenuObject(BarPtr bar, size_t menu) : bar_(std::move(bar)), menu_(menu) {}
  std::string Caption() override { return (*bar_)[menu_].caption; }
  void SetCaption(std::string_view caption) override { (*bar_)[menu_].caption = caption; }
  IVMenuItemsPtr MenuItems() override { return std::make_shared<ItemsObject>(bar_, menu_); }

 private:
  BarPtr bar_;
  size_t menu_;
};

class MenusObject : public IVMenus {
 public:
  explicit MenusObject(BarPtr bar) : bar_(std::move(bar)) {}
  int Count() override { return static_cast<int>(bar_->size()); }
  IVMenuPtr Item(int index) override {
    if (index < 0 || index >= Count()) throw NoSuchIndex(index);
    return std::make_shared<MenuObject>(bar_, static_cast<size_t>(index));
  }
  IVMenuPtr AddAt(int position) override {
    const size_t at = std::min(bar_->size(), static_cast<size_t>(std::max(position, 0)));
    bar_->insert(bar_->begin() + static_cast<ptrdiff_t>(at), MenuData{"", position, true, {}});
    return std::make_shared<MenuObject>(bar_, at);
  }

 private:
  BarPtr bar_;
};

class MenuSetObject : public IVMenuSet {
 public:
  explicit MenuSetObject(BarPtr bar) : bar_(std::move(bar)) {}
  IVMenusPtr Menus() override { return std::make_shared<MenusObject>(bar_); }

 private:
  BarPtr bar_;
};

class MenuSetsObject : public IVMenuSets {
 public:
  explicit MenuSetsObject(BarPtr bar) : bar_(std::move(bar)) {}
  IVMenuSetPtr ItemAtID(int id) override {
    if (id != kMenuSetDrawing) throw NoSuchIndex(id);
    return std::make_shared<MenuSetObject>(bar_);
  }

 private:
  BarPtr bar_;
};

class UIObject : public IVUIObject {
 public:
  explicit UIObject(const MenuBar& bar) : bar_(std::make_shared<MenuBar>(bar)) {}
  IVMenuSetsPtr MenuSets() override { return std::make_shared<MenuSetsObject>(bar_); }
  const MenuBar& bar() const { return *bar_; }

 private:
  BarPtr bar_;
};

}  // namespace

HostMenus::HostMenus() {
  int position = 0;
  for (const char* caption : {"&File", "&Edit", "&View", "&Insert", "F&ormat", "&Tools", "&Shape", "&Window", "&Help"})
    builtIn_.push_back({caption, position++, false, {}});
}

IVUIObjectPtr HostMenus::CustomMenus() const { return custom_ ? std::make_shared<UIObject>(*custom_) : nullptr; }

IVUIObjectPtr HostMenus::BuiltInMenus() const { return std::make_shared<UIObject>(builtIn_); }

void HostMenus::SetCustomMenus(const IVUIObjectPtr& menus) {
  const auto ours = std::dynamic_pointer_cast<UIObject>(menus);
  if (!ours) throw HostError(kHostNotAllowed, "These menus are not this host's.");
  custom_ = std::make_shared<const MenuBar>(ours->bar());
}

}  // namespace vardo
