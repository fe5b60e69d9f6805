#include "visio/LateBound.h"

#include <algorithm>
#include <iterator>

namespace vardo {
namespace {

constexpr int kMostTries = 20;
constexpr DWORD kWait = 50;  // milliseconds

// Waits a moment, in which the thread's windows and callers are answered. False when the program is to end.
bool WaitForTheHost() {
  const ULONGLONG end = GetTickCount64() + kWait;
  for (ULONGLONG now = GetTickCount64(); now < end; now = GetTickCount64()) {
    MsgWaitForMultipleObjectsEx(0, nullptr, static_cast<DWORD>(end - now), QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) {
      if (message.message == WM_QUIT) {
        PostQuitMessage(static_cast<int>(message.wParam));
        return false;
      }
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
  return true;
}

// A host that is busy takes a call a moment later.
template <class Call>
HRESULT UntilTaken(const Call& call) {
  for (int tries = 1;; ++tries) {
    const HRESULT result = call();
    const bool isBusy = result == RPC_E_CALL_REJECTED || result == RPC_E_SERVERCALL_RETRYLATER;
    if (!isBusy || tries == kMostTries || !WaitForTheHost()) return result;
  }
}

}  // namespace

HRESULT DispidTable::Ask(HostClass hostClass, const wchar_t* member, IDispatch& object, DISPID& id) {
  auto& known = ids_[static_cast<size_t>(hostClass)];
  if (const auto found = known.find(member); found != known.end()) {
    id = found->second;
    return S_OK;
  }
  auto* name = const_cast<OLECHAR*>(member);
  const HRESULT result = UntilTaken([&] { return object.GetIDsOfNames(GUID{}, &name, 1, LOCALE_USER_DEFAULT, &id); });
  if (SUCCEEDED(result)) known.emplace(member, id);
  return result;
}

bool DispidTable::Knows(HostClass hostClass, const wchar_t* member, IDispatch& object) {
  DISPID id = DISPID_UNKNOWN;
  return SUCCEEDED(Ask(hostClass, member, object, id));
}

DISPID DispidTable::Find(HostClass hostClass, const wchar_t* member, IDispatch& object) {
  DISPID id = DISPID_UNKNOWN;
  const HRESULT result = Ask(hostClass, member, object, id);
  if (SUCCEEDED(result)) return id;
  EXCEPINFO none{};
  ThrowHostError(result, none, FromWide(member));
}

Variant LateBound::Run(const wchar_t* member, WORD kind, std::initializer_list<Variant> arguments) const {
  const DISPID id = dispids_->Find(hostClass_, member, *object_);
  // The last argument comes first. What they hold stays the caller's.
  std::array<VARIANT, kMaxArguments> reversed;
  std::transform(std::make_reverse_iterator(arguments.end()), std::make_reverse_iterator(arguments.begin()), reversed.begin(),
                 [](const Variant& argument) { return argument.get(); });
  const bool isPut = kind == DISPATCH_PROPERTYPUT;
  DISPID valueOfPut = DISPID_PROPERTYPUT;
  DISPPARAMS parameters = {reversed.data(), isPut ? &valueOfPut : nullptr, static_cast<UINT>(arguments.size()), isPut ? 1u : 0u};
  Variant result;
  EXCEPINFO failure{};
  UINT wrongArgument = 0;
  const HRESULT code = UntilTaken([&] {
    return object_->Invoke(id, GUID{}, LOCALE_USER_DEFAULT, kind, &parameters, isPut ? nullptr : result.Receive(), &failure,
                           &wrongArgument);
  });
  if (FAILED(code)) ThrowHostError(code, failure, FromWide(member));
  return result;
}

void LateBound::ThrowWrongType(const wchar_t* member) {
  throw HostError(DISP_E_TYPEMISMATCH, "The drawing host returned something of an unknown type for " + FromWide(member) + ".");
}

}  // namespace vardo
