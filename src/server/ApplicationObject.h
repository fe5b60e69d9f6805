// The creatable class Application, and the factory that makes its objects.
#pragma once

#include "visio/Com.h"

// After windows.h, which it needs.
#include <VardoBasic.h>

namespace vardo {

// The interface of that number of a new factory for the class, which is the only one; as DllGetClassObject answers.
HRESULT GetFactory(REFCLSID classId, REFIID id, void** object) noexcept;

}  // namespace vardo
