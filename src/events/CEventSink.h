// The listener for the host's events. It gives new pages their bookkeeping rows, renumbers and registers new module shapes, keeps
// a module's name in step with the text typed on it, and removes the submodel pages of Process shapes that go.
#pragma once

#include "addin/host/IVEventList.h"
#include "events/SubmodelPages.h"

#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// Work that cannot be done while the host is inside the operation that raised an event; done at the next event of any kind.
extern std::vector<std::string> PagesToDelete;
extern std::vector<std::string> PagesToInitialise;

class CEventSink : public IVEventSink {
 public:
  // The host's entry point. Lets no failure out.
  void VisEventProc(std::int16_t eventCode, const IVApplicationPtr& source, std::int32_t eventId, std::int32_t eventSeqNum,
                    const EventSubject& subject, std::string_view moreInfo) override;

  // Gives the page its seventeen hidden rows. Ends silently on a host failure.
  void PageAdded(const IVPagePtr& page);
  // Queues the submodel pages of the Process shapes that are going, and takes all that goes out of the active page's registers.
  void BeforeSelectionDelete(const IVSelectionPtr& selection);
  // Renumbers a module shape whose name is in use and registers it on its page; of any other shape, checks the selected
  // connector. Ends silently on a host failure.
  void ShapeAdded(const IVShapePtr& shape);
  // Accepts any object and does nothing.
  void CopyAndPaste(const EventSubject&) {}
  // Queues the submodel pages of the Process shapes of a page that is going.
  void PageDeleted(const IVPagePtr& page);
  // Takes a text typed on a module shape as its name, or puts the old one back when the name is in use.
  // moreInfo names the shape: "... /shape=Sheet.3".
  void ShapeTextEdited(std::string_view moreInfo);

  // The event that is switched off while queued pages are deleted, so that their going does not come back here.
  void SetPageDeletedEvent(const IVEventPtr& event) { pageDeletedEvent_ = event; }

 private:
  void DrainQueues();
  void DeleteQueuedPage(const std::string& name);
  // Writes a text without hearing of it: a name that is refused as well would be put back without end.
  void PutText(const IVShapePtr& shape, std::string_view text);

  IVEventPtr pageDeletedEvent_;
  bool draining_ = false;
  bool puttingText_ = false;
};

}  // namespace vardo
