// Events: what the host tells its listeners.
//   A sink is called on the drawing's own thread, inside the operation that raises the event, in the order of the advises.
#pragma once

#include "addin/host/HostFwd.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace vardo {

// What an event is about.
using EventSubject = std::variant<std::monostate, IVDocumentPtr, IVPagePtr, IVShapePtr, IVSelectionPtr, IVWindowPtr>;

class IVEventSink {
 public:
  virtual ~IVEventSink() = default;
  // eventCode is the published unsigned code in a signed 16-bit number (0x8040 arrives as -32704). source is the application.
  // moreInfo is empty but for text events: "/doc=1 /page=1 /shape=Sheet.3". Throws nothing but std::bad_alloc.
  virtual void VisEventProc(std::int16_t eventCode, const IVApplicationPtr& source, std::int32_t eventId,
                            std::int32_t eventSeqNum, const EventSubject& subject, std::string_view moreInfo) = 0;
};

class IVEventList {
 public:
  virtual ~IVEventList() = default;
  // Registers the sink for an event code; iid must be empty. The list keeps the sink. Not kept in the drawing.
  virtual IVEventPtr AddAdvise(std::int16_t code, const IVEventSinkPtr& sink, std::string_view iid,
                               std::string_view targetArgs) = 0;
  virtual int Count() = 0;
  // 1-based; throws HostError(kHostBadIndex).
  virtual IVEventPtr Item(int index) = 0;
};

class IVEvent {
 public:
  virtual ~IVEvent() = default;
  // An event that is switched off is not delivered.
  virtual void SetEnabled(bool enabled) = 0;
};

}  // namespace vardo
