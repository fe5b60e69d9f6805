// The add-in as the host calls it.
#pragma once

#include "addin/host/IVEventList.h"

namespace vardo {

// The one creatable class. It has no state of its own: everything lives in the drawing and in Global_Variables.
class Application {
 public:
  // Adds the "&Simulate" menu to the host's drawing menus and builds the name catalogues; does nothing when the menu is there or
  // no host is known. A failure is shown in a message box.
  void AddVardoMenu();

  // Clears the active page for a new model: empties the page's properties, deletes its shapes and the drawing's masters. A
  // failure is shown in a message box. Does nothing when no host is known.
  void InitializePage();

  // Remembers the host; the first time, also listens to its events. Throws what the host throws; the next call then goes on with
  // the events that are not listened to yet.
  void SetupEventSink(const IVApplicationPtr& application);

  // Remembers the host and opens the dialog for the shape's module kind. Returns when it is closed.
  void ShowEditor(const IVApplicationPtr& application, const IVShapePtr& shape);

  // Shows the submodel page of a Process shape, made first when it has none. The host is the add-in's for this call. Throws what
  // the host throws; a page that could not be finished is taken away again.
  void Submodel(const IVApplicationPtr& application, const IVShapePtr& shape);

  // Shows the page on which a submodel page's Process stands; does nothing on any other page. The host is the add-in's for this
  // call.
  void CloseSubmodel(const IVApplicationPtr& application, const IVPagePtr& page);

  // Accepts any object and does nothing.
  void CopyAndPaste(const EventSubject& object);
};

}  // namespace vardo
