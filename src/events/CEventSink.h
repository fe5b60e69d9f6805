// The listener for the host's events: it gives new pages their bookkeeping rows and registers and renumbers new module shapes.
#pragma once

#include "addin/host/IVEventList.h"

#include <string>

namespace vardo {

// The parent that the next new page is given; cleared as soon as it has been written.
extern std::string PendingParentPage;

class CEventSink : public IVEventSink {
 public:
  // Lets no failure out.
  void VisEventProc(std::int16_t eventCode, const IVApplicationPtr& source, std::int32_t eventId, std::int32_t eventSeqNum,
                    const EventSubject& subject, std::string_view moreInfo) override;

  // Gives the page its seventeen hidden rows. Ends silently on a host failure.
  void PageAdded(const IVPagePtr& page);
  // Renumbers a module shape whose name is in use and registers it on its page. Ends silently on a host failure.
  void ShapeAdded(const IVShapePtr& shape);
};

}  // namespace vardo
