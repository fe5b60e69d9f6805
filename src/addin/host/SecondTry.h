// A host that is busy refuses a call that it takes a moment later.
#pragma once

#include "base/Errors.h"

namespace vardo {

// Runs a step and, when the host refuses, once more from its beginning; what it returns or throws then counts. For steps that can
// be repeated: they only read, or write the same again.
template <class Step>
auto WithSecondTry(const Step& step) {
  try {
    return step();
  } catch (const AutomationError&) {
  }
  return step();
}

}  // namespace vardo
