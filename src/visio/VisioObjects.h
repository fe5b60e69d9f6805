// The host's objects that reach the program from outside, with the table of member numbers that they are to share.
#pragma once

#include "addin/host/IVEventList.h"
#include "visio/LateBound.h"

namespace vardo {

IVApplicationPtr WrapApplication(ComPtr<IDispatch> application, const DispidTablePtr& dispids);
// What an event of that code is about; nothing for a code that the program does not listen to.
EventSubject WrapSubject(std::uint16_t eventCode, ComPtr<IDispatch> subject, const DispidTablePtr& dispids);

}  // namespace vardo
