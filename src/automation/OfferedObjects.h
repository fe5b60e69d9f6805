// The objects on offer: what makes one from a host's handle, and finds the handle behind one that comes back.
#pragma once

#include "addin/host/IVEventList.h"
#include "visio/DispatchObject.h"

#include <memory>
#include <new>
#include <optional>
#include <span>
#include <unordered_map>
#include <variant>

namespace vardo {

class OfferedObjects;

// A failure of the call itself.
struct BadCall {
  HRESULT code;
  std::optional<size_t> parameter = std::nullopt;  // the one that is wrong
};

// A member of the objects that stand for one of the host's interfaces.
template <class Interface>
struct OfferedMember {
  const wchar_t* name;
  WORD kind;  // DISPATCH_...
  ParameterNames parameters;
  size_t parameterCount;
  Variant (*run)(Interface& object, const CallArguments& arguments, OfferedObjects& objects);
  size_t optional = 0;  // how many of the last may be left out
};

// The members by interface, in HostMembers.cpp.
template <class Interface>
std::span<const OfferedMember<Interface>> MembersOf();
template <>
std::span<const OfferedMember<IVApplication>> MembersOf();
template <>
std::span<const OfferedMember<IVWindow>> MembersOf();
template <>
std::span<const OfferedMember<IVSelection>> MembersOf();
template <>
std::span<const OfferedMember<IVDocument>> MembersOf();
template <>
std::span<const OfferedMember<IVPages>> MembersOf();
template <>
std::span<const OfferedMember<IVPage>> MembersOf();
template <>
std::span<const OfferedMember<IVShapes>> MembersOf();
template <>
std::span<const OfferedMember<IVShape>> MembersOf();
template <>
std::span<const OfferedMember<IVCell>> MembersOf();
template <>
std::span<const OfferedMember<IVMasters>> MembersOf();
template <>
std::span<const OfferedMember<IVMaster>> MembersOf();
template <>
std::span<const OfferedMember<IVEventList>> MembersOf();
template <>
std::span<const OfferedMember<IVEvent>> MembersOf();
template <>
std::span<const OfferedMember<IVUIObject>> MembersOf();
template <>
std::span<const OfferedMember<IVMenuSets>> MembersOf();
template <>
std::span<const OfferedMember<IVMenuSet>> MembersOf();
template <>
std::span<const OfferedMember<IVMenus>> MembersOf();
template <>
std::span<const OfferedMember<IVMenu>> MembersOf();
template <>
std::span<const OfferedMember<IVMenuItems>> MembersOf();
template <>
std::span<const OfferedMember<IVMenuItem>> MembersOf();

class OfferedObjects : public std::enable_shared_from_this<OfferedObjects> {
 public:
  template <class Interface>
  ComPtr<IDispatch> Offer(const std::shared_ptr<Interface>& handle);
  ComPtr<IDispatch> Offer(const EventSubject& subject) {
    return std::visit([this](const auto& about) { return Offer(about); }, subject);
  }
  ComPtr<IDispatch> Offer(std::monostate) { return nullptr; }

  // The handle behind an object on offer; null for any other.
  template <class Interface>
  std::shared_ptr<Interface> HandleOf(IDispatch* object) const;

  void Forget(const void* handle) { objects_.erase(handle); }

  void CountCall() { ++calls_; }
  size_t CallCount() const { return calls_; }

 private:
  size_t calls_ = 0;
  // By the handle they keep alive.
  std::unordered_map<const void*, DispatchObject*> objects_;
};

template <class Interface>
class OfferedObject : public DispatchObject {
 public:
  OfferedObject(std::shared_ptr<Interface> handle, std::shared_ptr<OfferedObjects> objects)
      : handle_(std::move(handle)), objects_(std::move(objects)) {}
  const std::shared_ptr<Interface>& handle() const { return handle_; }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO* failure, UINT* wrongArgument) noexcept override {
    const ComPtr<IDispatch> alive(this);
    objects_->CountCall();
    const CallArguments arguments(parameters);
    try {
      Variant returned = MemberOf(id, kind, arguments).run(*handle_, arguments, *objects_);
      if (result) *result = returned.Detach();
      return S_OK;
    } catch (const BadCall& error) {
      if (wrongArgument && error.parameter) *wrongArgument = static_cast<UINT>(arguments[*error.parameter] - parameters->rgvarg);
      return error.code;
    } catch (...) {
      return TellFailure(CurrentFailure(), failure);
    }
  }

 protected:
  ~OfferedObject() override { objects_->Forget(handle_.get()); }
  std::optional<Signature> FindMember(const wchar_t* name) const noexcept override {
    for (const auto& member : MembersOf<Interface>())
      if (IsSameName(name, member.name)) return Signature{IdOf(member), &member.parameters};
    return std::nullopt;
  }

 private:
  // Reading and writing a property are two members of one name. A collection's items are what it is without a member's name.
  static DISPID IdOf(const OfferedMember<Interface>& member) {
    if (IsSameName(member.name, L"Item")) return DISPID_VALUE;
    const auto members = MembersOf<Interface>();
    DISPID id = 1;
    while (!IsSameName(members[static_cast<size_t>(id - 1)].name, member.name)) ++id;
    return id;
  }

  static const OfferedMember<Interface>& MemberOf(DISPID id, WORD kind, const CallArguments& arguments) {
    for (const auto& member : MembersOf<Interface>()) {
      if (IdOf(member) != id || !(member.kind & kind)) continue;
      const size_t required = member.parameterCount - member.optional;
      if (arguments.count() < required || arguments.count() > member.parameterCount) throw BadCall{DISP_E_BADPARAMCOUNT};
      for (size_t i = 0; i < required; ++i)
        if (IsMissing(arguments[i])) throw BadCall{DISP_E_PARAMNOTOPTIONAL, arguments[i] ? std::optional(i) : std::nullopt};
      return member;
    }
    throw BadCall{DISP_E_MEMBERNOTFOUND};
  }

  static HRESULT TellFailure(const Failure& error, EXCEPINFO* failure) noexcept {
    if (failure) {
      *failure = {};
      failure->scode = error.code;
      failure->bstrSource = SysAllocString(L"Vardo");
      failure->bstrDescription = TextOrNothing(error.description).release();
    }
    return DISP_E_EXCEPTION;
  }
  static unique_bstr TextOrNothing(const std::string& text) noexcept {
    try {
      return ToBstr(text);
    } catch (const std::bad_alloc&) {
      return nullptr;
    }
  }

  std::shared_ptr<Interface> handle_;
  std::shared_ptr<OfferedObjects> objects_;
};

template <class Interface>
ComPtr<IDispatch> OfferedObjects::Offer(const std::shared_ptr<Interface>& handle) {
  if (!handle) return nullptr;
  if (const auto found = objects_.find(handle.get()); found != objects_.end()) return ComPtr<IDispatch>(found->second);
  const auto object = MakeCom<OfferedObject<Interface>>(handle, shared_from_this());
  objects_.emplace(handle.get(), object.get());
  return ComPtr<IDispatch>(object.get());
}

template <class Interface>
std::shared_ptr<Interface> OfferedObjects::HandleOf(IDispatch* object) const {
  for (const auto& [handle, offered] : objects_) {
    if (offered != object) continue;
    const auto* found = dynamic_cast<const OfferedObject<Interface>*>(offered);
    return found ? found->handle() : nullptr;
  }
  return nullptr;
}

}  // namespace vardo
