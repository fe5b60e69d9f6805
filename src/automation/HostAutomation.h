// Any drawing host of ours offered as automation objects, as Visio offers its own: for programs that expect Visio, and for tests.
//   The objects bear the members of Visio's that the add-in uses, with Visio's names of members and parameters. A failure of the
//   host ends a call with DISP_E_EXCEPTION and the host's number and description. Sinks are called as Visio calls them.
//   Everything runs on the caller's thread.
#pragma once

#include "addin/host/HostFwd.h"
#include "visio/Com.h"

#include <cstddef>

namespace vardo {

class OfferedObjects;

class HostAutomation {
 public:
  HostAutomation();
  // Objects keep the host's handles they stand for, and outlive this when others still hold them. A handle that is offered is the
  // same object each time. Null is no object.
  ComPtr<IDispatch> Offer(const IVApplicationPtr& application) const;
  ComPtr<IDispatch> Offer(const IVPagePtr& page) const;
  ComPtr<IDispatch> Offer(const IVShapePtr& shape) const;

  // How often members of the objects have been called.
  size_t CallCount() const;

 private:
  std::shared_ptr<OfferedObjects> objects_;
};

}  // namespace vardo
