// What Windows and regsvr32 call.
#include "addin/Global_Variables.h"
#include "server/ApplicationObject.h"
#include "server/Module.h"
#include "server/Registration.h"

#include <cstddef>
#include <cwchar>
#include <new>
#include <utility>

using namespace vardo;

namespace {

// What the holder refers to is released neither now nor later.
template <class Holder>
void Abandon(Holder& holder) noexcept {
  alignas(Holder) static std::byte forever[sizeof(Holder)];
  new (forever) Holder(std::move(holder));
}

// The compiler's runtime takes memory for the first exception and the first static variable, and ends the process when there is
// none. So it gets it while the server is loaded, not in the middle of a command.
void PrepareRuntime() noexcept {
  static const DWORD first = GetTickCount();
  try {
    throw first;
  } catch (DWORD) {
  }
}

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* processEnds) {
  if (reason == DLL_PROCESS_ATTACH) {
    DisableThreadLibraryCalls(module);
    PrepareRuntime();
  }
  // When the process ends the host's objects may be gone already, so their references are not given back.
  if (reason == DLL_PROCESS_DETACH && processEnds) {
    Abandon(eventSink);
    Abandon(visApp);
  }
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID id, void** object) { return GetFactory(classId, id, object); }

STDAPI DllCanUnloadNow() { return ModuleLock::IsHeld() ? S_FALSE : S_OK; }

STDAPI DllRegisterServer() {
  return ToHresult([] { RegisterServer(RegistrationScope::kMachine); });
}

STDAPI DllUnregisterServer() {
  return ToHresult([] { UnregisterServer(RegistrationScope::kMachine); });
}

// regsvr32 /n /i:user registers for the current user alone, and /i without a word for the machine.
STDAPI DllInstall(BOOL install, PCWSTR scopeName) {
  return ToHresult([&] {
    const bool isUser = scopeName && _wcsicmp(scopeName, L"user") == 0;
    if (scopeName && *scopeName && !isUser) throw RuntimeError::InvalidArgument(R"(the only scope to name is "user")");
    const auto scope = isUser ? RegistrationScope::kUser : RegistrationScope::kMachine;
    install ? RegisterServer(scope) : UnregisterServer(scope);
  });
}
