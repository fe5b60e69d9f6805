// The running host, its window and what is selected there.
//   Text is UTF-8. Every call is made on the drawing's own thread, and every call may throw HostError.
#pragma once

#include "addin/host/HostFwd.h"

#include <string_view>

namespace vardo {

class IVApplication {
 public:
  virtual ~IVApplication() = default;
  // The window, page and document the user works in. Throw HostError(kHostNotAllowed) when no drawing is open.
  virtual IVWindowPtr ActiveWindow() = 0;
  virtual IVPagePtr ActivePage() = 0;
  virtual IVDocumentPtr ActiveDocument() = 0;
  // The application-wide event list: it hears of every drawing.
  virtual IVEventListPtr EventList() = 0;

  // The menus that stand in place of the built-in ones, or null when there are none.
  virtual IVUIObjectPtr CustomMenus() = 0;
  // A fresh copy of the built-in menus; changing it changes nothing on screen.
  virtual IVUIObjectPtr BuiltInMenus() = 0;
  // Shows these menus from now on. The host keeps a copy.
  virtual void SetCustomMenus(const IVUIObjectPtr& menus) = 0;

  // True while the host takes something back, or does it again, at a person's wish. It tells of that by events like any other,
  // but a listener that changed the drawing then would do twice what the host restores. False for a host that cannot tell.
  virtual bool IsUndoingOrRedoing() = 0;
  // Whatever is written from here to EndUndoScope is undone as one, under that name; scopes nest, and one inside a command of a
  // person belongs to the command. One ends with the event or the command that it was begun in at the latest. Returns the scope's
  // number, or 0 for a host that has no scopes.
  virtual int BeginUndoScope(std::string_view name) = 0;
  // Ends the scope begun last, which has that number; nothing happens for 0. Unless it is to be kept, what it wrote is taken
  // back. Throws HostError(kHostNotAllowed) for another number, and for taking back what is inside a command.
  virtual void EndUndoScope(int scope, bool keep) = 0;
};

class IVWindow {
 public:
  virtual ~IVWindow() = default;
  // A snapshot of what is selected, in the order of selecting.
  virtual IVSelectionPtr Selection() = 0;
  virtual IVPagePtr Page() = 0;
  // Shows the page of that exact name; throws HostError(kHostBadIndex) and shows the old one still when there is none.
  virtual void SetPage(std::string_view name) = 0;
};

class IVSelection {
 public:
  virtual ~IVSelection() = default;
  virtual int Count() = 0;
  // 1-based; throws HostError(kHostBadIndex) outside 1 .. Count.
  virtual IVShapePtr Item(int index) = 0;
};

}  // namespace vardo
