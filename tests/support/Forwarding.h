// A host seen through an observer: the same drawing, but every call is told before it is made.
//   For measuring how often the host is called, for logs, and for making calls fail on purpose.
#pragma once

#include "addin/host/HostFwd.h"

#include <string_view>

namespace vardo {

class HostCallObserver {
 public:
  virtual ~HostCallObserver() = default;
  // member is "Shape.Cells", "Cell.SetFormula" and the like. Whatever this throws reaches the caller, and the call is not made.
  virtual void BeforeCall(std::string_view member) = 0;
};

// Passes every call on to the application; so does every object got from it, by whatever way: what a member returns, and what an
// event is about in a sink advised here. Menus got from it can be given back to it. The observer must outlive all of them.
IVApplicationPtr ObserveHost(const IVApplicationPtr& application, HostCallObserver& observer);

}  // namespace vardo
