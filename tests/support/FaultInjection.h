// Host failures on purpose: fail call 1, then call 2, and so on until the operation succeeds, and look each time at what is left.
#pragma once

#include "Forwarding.h"
#include "base/Errors.h"

#include <string>
#include <string_view>

namespace vardo {

class FailingHost : public HostCallObserver {
 public:
  enum class Mode { Once, EverAfter };

  // Throws HostError(kHostNotAllowed) at the call of that number, counted from 1 and from now.
  void FailAt(int call, Mode mode) {
    failAt_ = call;
    mode_ = mode;
    calls_ = failures_ = 0;
  }
  // No call fails from now on; the counts stay.
  void SwitchOff() { failAt_ = 0; }

  int calls() const { return calls_; }
  int failures() const { return failures_; }

  void BeforeCall(std::string_view member) override {
    ++calls_;
    const bool isDue = calls_ == failAt_ || (mode_ == Mode::EverAfter && calls_ > failAt_);
    if (failAt_ == 0 || !isDue) return;
    ++failures_;
    throw HostError(kHostNotAllowed, "The host refused " + std::string(member) + ".");
  }

 private:
  int failAt_ = 0;
  Mode mode_ = Mode::Once;
  int calls_ = 0;
  int failures_ = 0;
};

}  // namespace vardo
