// The creatable class Application, and the factory that makes its objects.
#pragma once

#include "visio/Com.h"

// After windows.h, which it needs.
#include <VardoBasic.h>

namespace vardo {

// A new factory's interface of that number, as DllGetClassObject answers.
HRESULT GetApplicationFactory(REFIID id, void** object) noexcept;

}  // namespace vardo
