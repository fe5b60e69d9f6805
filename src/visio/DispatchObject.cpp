#include "visio/DispatchObject.h"

#include <cwchar>

namespace vardo {

bool IsSameName(const wchar_t* a, const wchar_t* b) { return a && b && _wcsicmp(a, b) == 0; }

HRESULT DispatchObject::GetTypeInfoCount(UINT* count) noexcept {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT DispatchObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept {
  if (info) *info = nullptr;
  return DISP_E_BADINDEX;
}

HRESULT DispatchObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept {
  if (!names || !ids || count == 0) return E_INVALIDARG;
  for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
  const std::optional<Signature> member = FindMember(names[0]);
  if (!member) return DISP_E_UNKNOWNNAME;
  ids[0] = member->id;
  bool areKnown = true;
  for (UINT i = 1; i < count; ++i) {
    for (size_t parameter = 0; parameter < kMaxParameters; ++parameter)
      if (IsSameName(names[i], (*member->parameters)[parameter])) ids[i] = static_cast<DISPID>(parameter);
    areKnown = areKnown && ids[i] != DISPID_UNKNOWN;
  }
  return areKnown ? S_OK : DISP_E_UNKNOWNNAME;
}

CallArguments::CallArguments(const DISPPARAMS* parameters) noexcept {
  if (!parameters || !parameters->rgvarg) return;
  count_ = parameters->cArgs;
  const size_t named = parameters->rgdispidNamedArgs ? std::min(parameters->cNamedArgs, parameters->cArgs) : 0;
  const size_t positional = count_ - named;
  const auto set = [&](size_t parameter, size_t argument) {
    if (parameter < kMaxParameters) values_[parameter] = &parameters->rgvarg[argument];
  };
  // Those given by position come behind the named ones, the last of them first.
  for (size_t i = 0; i < positional; ++i) set(i, count_ - 1 - i);
  for (size_t i = 0; i < named; ++i) {
    const DISPID parameter = parameters->rgdispidNamedArgs[i];
    set(parameter == DISPID_PROPERTYPUT ? positional : static_cast<size_t>(parameter), i);
  }
}

}  // namespace vardo
