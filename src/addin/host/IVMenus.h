// The host's menus, reached through its user-interface objects.
//   Captions mark their access key with "&". These collections count from 0, as the host's reference says of them; an index that
//   is not there throws HostError(kHostBadIndex).
#pragma once

#include "addin/host/HostFwd.h"

#include <string>
#include <string_view>

namespace vardo {

class IVUIObject {
 public:
  virtual ~IVUIObject() = default;
  virtual IVMenuSetsPtr MenuSets() = 0;
};

class IVMenuSets {
 public:
  virtual ~IVMenuSets() = default;
  // The set of that identifier (kMenuSetDrawing); throws HostError(kHostBadIndex).
  virtual IVMenuSetPtr ItemAtID(int id) = 0;
};

class IVMenuSet {
 public:
  virtual ~IVMenuSet() = default;
  virtual IVMenusPtr Menus() = 0;
};

class IVMenus {
 public:
  virtual ~IVMenus() = default;
  virtual int Count() = 0;
  virtual IVMenuPtr Item(int index) = 0;
  // Adds a menu at that position, or at the end when there are fewer.
  virtual IVMenuPtr AddAt(int position) = 0;
};

class IVMenu {
 public:
  virtual ~IVMenu() = default;
  virtual std::string Caption() = 0;
  virtual void SetCaption(std::string_view caption) = 0;
  virtual IVMenuItemsPtr MenuItems() = 0;
};

class IVMenuItems {
 public:
  virtual ~IVMenuItems() = default;
  virtual IVMenuItemPtr AddAt(int position) = 0;
};

class IVMenuItem {
 public:
  virtual ~IVMenuItem() = default;
  virtual void SetCaption(std::string_view caption) = 0;
  // The add-on, or the line of the host's macro language, that choosing the item runs.
  virtual void SetAddOnName(std::string_view name) = 0;
};

}  // namespace vardo
