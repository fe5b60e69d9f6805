// The running Visio's objects as the program's host interfaces.
//   Objects are called by name (late bound), on the thread that they were given out on. Each one that is wrapped keeps a
//   reference to the host's object, and so does all that is reached from it; the last owner to go releases it. Null is wrapped as
//   null.
#pragma once

#include "addin/host/HostFwd.h"
#include "visio/Com.h"

namespace vardo {

IVApplicationPtr WrapApplication(IDispatch* application);
// The known one when that wraps the same object: it has asked for its members' numbers already.
IVApplicationPtr WrapApplication(IDispatch* application, const IVApplicationPtr& known);
IVPagePtr WrapPage(IDispatch* page);
IVShapePtr WrapShape(IDispatch* shape);

// The window that the running Visio works in, as its WindowHandle32 says; null when it does not say, and for any other host.
HWND MainWindow(const IVApplicationPtr& application) noexcept;

}  // namespace vardo
