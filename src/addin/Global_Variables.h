// The state that the whole add-in shares; it lives as long as the add-in is loaded.
#pragma once

#include "addin/host/HostFwd.h"

#include <memory>

namespace vardo {

class CEventSink;

// The host the add-in serves; null until SetupEventSink or ShowEditor has been called.
extern IVApplicationPtr visApp;

// The one listener for the host's events; null until SetupEventSink first runs.
extern std::shared_ptr<CEventSink> eventSink;

}  // namespace vardo
