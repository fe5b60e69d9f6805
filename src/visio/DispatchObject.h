// What objects of our own that are called by name have in common.
#pragma once

#include "visio/Com.h"

#include <array>
#include <cstddef>
#include <optional>

namespace vardo {

inline constexpr size_t kMaxParameters = 6;
// In calling order; null behind the last.
using ParameterNames = std::array<const wchar_t*, kMaxParameters>;

// Names are compared without regard to case.
bool IsSameName(const wchar_t* a, const wchar_t* b);

class DispatchObject : public ComObject<IDispatch> {
 public:
  // There is no type information: callers ask for names.
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override;
  // A member's name, and those of its parameters.
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override;

 protected:
  struct Signature {
    DISPID id;
    const ParameterNames* parameters;
  };
  virtual std::optional<Signature> FindMember(const wchar_t* name) const noexcept = 0;
};

// The arguments of a call in the order of the parameters, however they were given: by position, by name, as the value of a
// property.
class CallArguments {
 public:
  explicit CallArguments(const DISPPARAMS* parameters) noexcept;
  // Null where none was given, also behind the last.
  const VARIANT* operator[](size_t parameter) const { return parameter < kMaxParameters ? values_[parameter] : nullptr; }
  // How many were given.
  size_t count() const { return count_; }

 private:
  std::array<const VARIANT*, kMaxParameters> values_{};
  size_t count_ = 0;
};

}  // namespace vardo
