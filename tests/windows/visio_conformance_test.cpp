// The suite that every host is put through, over the way that the add-in goes to Visio: the adapter, automation objects, and the
// in-memory host behind them.
#include "DrawingUser.h"

#include "automation/HostAutomation.h"
#include "visio/Visio.h"

namespace vardo {
namespace {

class AutomatedUser : public DrawingUser {
 public:
  IVApplicationPtr application() override { return application_; }

 private:
  HostAutomation automation_;
  IVApplicationPtr application_ = WrapApplication(automation_.Offer(host_.application()).get());
};

INSTANTIATE_TEST_SUITE_P(Hosts, HostConformance,
                         testing::Values(HostUnderTest{"Automated", [] { return std::make_unique<AutomatedUser>(); }}), HostName);

}  // namespace
}  // namespace vardo
