// One of the host's objects, called by the names of its members.
#pragma once

#include "visio/Com.h"

#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <type_traits>
#include <unordered_map>

namespace vardo {

enum class HostClass {
  Application,
  Window,
  Selection,
  Document,
  Pages,
  Page,
  Shapes,
  Shape,
  Cell,
  Masters,
  Master,
  EventList,
  Event,
  UIObject,
  MenuSets,
  MenuSet,
  Menus,
  Menu,
  MenuItems,
  MenuItem,
  Count
};

// The numbers of the members that have been called by name. All objects of a class share them, so each is asked for once. All
// objects reached from one object of the host's share one table; another host's objects need another.
class DispidTable {
 public:
  // Whether the object has such a member.
  bool Knows(HostClass hostClass, const wchar_t* member, IDispatch& object);
  // Throws HostError when the object has no such member.
  DISPID Find(HostClass hostClass, const wchar_t* member, IDispatch& object);

 private:
  HRESULT Ask(HostClass hostClass, const wchar_t* member, IDispatch& object, DISPID& id);

  std::array<std::unordered_map<std::wstring_view, DISPID>, static_cast<size_t>(HostClass::Count)> ids_;
};
using DispidTablePtr = std::shared_ptr<DispidTable>;

// Member names are literals. Every call throws HostError when the host refuses it or returns something else than the type asked
// for. A busy host is asked again for a second, while the thread's messages are let through.
class LateBound {
 public:
  LateBound(HostClass hostClass, ComPtr<IDispatch> object, DispidTablePtr dispids)
      : hostClass_(hostClass), object_(std::move(object)), dispids_(std::move(dispids)) {}
  const ComPtr<IDispatch>& object() const { return object_; }
  const DispidTablePtr& dispids() const { return dispids_; }

  // Whether the object has that member; an older host may lack it.
  bool Has(const wchar_t* member) const { return dispids_->Knows(hostClass_, member, *object_); }
  // A property, with its indexes. Basic asks for a property and for a function that returns something in the same way.
  template <class Result, class... Arguments>
  Result Get(const wchar_t* member, const Arguments&... arguments) const {
    static_assert(sizeof...(arguments) <= kMaxArguments);
    return ResultOf<Result>(member, Run(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {Variant(arguments)...}));
  }
  template <class Result = void, class... Arguments>
  Result Call(const wchar_t* member, const Arguments&... arguments) const {
    static_assert(sizeof...(arguments) <= kMaxArguments);
    return ResultOf<Result>(member, Run(member, DISPATCH_METHOD, {Variant(arguments)...}));
  }
  void Put(const wchar_t* member, const Variant& value) const { Run(member, DISPATCH_PROPERTYPUT, {value}); }

 private:
  static constexpr size_t kMaxArguments = 4;
  Variant Run(const wchar_t* member, WORD kind, std::initializer_list<Variant> arguments) const;
  [[noreturn]] static void ThrowWrongType(const wchar_t* member);

  template <class Result>
  static Result ResultOf(const wchar_t* member, const Variant& result) {
    if constexpr (!std::is_void_v<Result>) {
      try {
        if constexpr (std::is_same_v<Result, bool>) return AsBool(result.get());
        if constexpr (std::is_same_v<Result, std::int16_t>) return AsInt16(result.get());
        if constexpr (std::is_same_v<Result, int>) return AsInt32(result.get());
        if constexpr (std::is_same_v<Result, std::string>) return AsText(result.get());
        if constexpr (std::is_same_v<Result, ComPtr<IDispatch>>) return AsObject(result.get());
      } catch (const RuntimeError&) {
        ThrowWrongType(member);
      }
    }
  }

  HostClass hostClass_;
  ComPtr<IDispatch> object_;
  DispidTablePtr dispids_;
};

}  // namespace vardo
