#include "visio/LateBound.h"

#include <algorithm>
#include <iterator>

namespace vardo {

HRESULT DispidTable::Ask(HostClass hostClass, const wchar_t* member, IDispatch& object, DISPID& id) {
  auto& known = ids_[static_cast<size_t>(hostClass)];
  if (const auto found = known.find(member); found != known.end()) {
    id = found->second;
    return S_OK;
  }
  auto* name = const_cast<OLECHAR*>(member);
  const HRESULT result = object.GetIDsOfNames(GUID{}, &name, 1, LOCALE_USER_DEFAULT, &id);
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
  const HRESULT code = object_->Invoke(id, GUID{}, LOCALE_USER_DEFAULT, kind, &parameters, isPut ? nullptr : result.Receive(),
                                       &failure, &wrongArgument);
  if (FAILED(code)) ThrowHostError(code, failure, FromWide(member));
  return result;
}

void LateBound::ThrowWrongType(const wchar_t* member) {
  throw HostError(DISP_E_TYPEMISMATCH, "The drawing host returned something of an unknown type for " + FromWide(member) + ".");
}

}  // namespace vardo
