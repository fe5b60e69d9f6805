// A listener of ours in the shape in which the host calls one: an object with the member VisEventProc.
#pragma once

#include "addin/host/HostFwd.h"
#include "visio/LateBound.h"

namespace vardo {

// The member's published number; a host may also ask for it by name.
inline constexpr DISPID kVisEventProc = 0x60020000;

// Keeps the sink. Whatever the arguments are and whatever the sink throws, a call of VisEventProc succeeds: what is missing or of
// a wrong type arrives as 0, null, nothing or an empty text. Objects that come with an event share the table. Null for no sink.
ComPtr<IDispatch> MakeEventSinkDispatch(const IVEventSinkPtr& sink, const DispidTablePtr& dispids);

}  // namespace vardo
