// Calls a program's sink as Visio does.
#pragma once

#include "addin/host/IVEventList.h"
#include "automation/OfferedObjects.h"

namespace vardo {

// A host's listener that passes each event on to the sink's VisEventProc, found by its name; what the sink answers, failures
// included, is not looked at. Throws HostError when the sink has no such member. Null for no sink.
IVEventSinkPtr MakeSinkCaller(ComPtr<IDispatch> sink, const std::shared_ptr<OfferedObjects>& objects);

}  // namespace vardo
