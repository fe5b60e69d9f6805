// COM's resources as types, and the two crossings of failures: exceptions into HRESULTs, a host's HRESULTs into exceptions.
//   Text inside is UTF-8, in a BSTR it is UTF-16; between them nothing is lost, zeros and unpaired surrogates included.
#pragma once

#include "base/Errors.h"
#include "platform/win32/WideText.h"

#include <windows.h>
// After windows.h, which it needs.
#include <oleauto.h>

#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vardo {

// Holds one reference to a COM object, or none. It has no operator&, which would lose what it holds: out parameters take
// Receive().
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(std::nullptr_t) {}
  // Takes a reference of its own; null is no object.
  explicit ComPtr(Interface* object) : object_(object) {
    if (object_) object_->AddRef();
  }
  ComPtr(const ComPtr& other) : ComPtr(other.object_) {}
  ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComPtr() {
    if (object_) object_->Release();
  }

  // Takes over a reference that the caller has.
  static ComPtr Attach(Interface* object) {
    ComPtr owner;
    owner.object_ = object;
    return owner;
  }
  // Gives the reference to the caller.
  [[nodiscard]] Interface* Detach() { return std::exchange(object_, nullptr); }
  // For a call that stores a reference; what was held before is released.
  Interface** Receive() {
    *this = nullptr;
    return &object_;
  }
  // The same object's other interface; null when it has none such.
  template <class Other>
  ComPtr<Other> As() const {
    ComPtr<Other> other;
    if (object_) object_->QueryInterface(__uuidof(Other), reinterpret_cast<void**>(other.Receive()));
    return other;
  }

  Interface* get() const { return object_; }
  Interface* operator->() const { return object_; }
  Interface& operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }
  friend bool operator==(const ComPtr& a, const ComPtr& b) { return a.object_ == b.object_; }

 private:
  Interface* object_ = nullptr;
};

// A new object, owned from its first reference on. Its class counts from 1.
template <class Object, class... Arguments>
ComPtr<Object> MakeCom(Arguments&&... arguments) {
  return ComPtr<Object>::Attach(new Object(std::forward<Arguments>(arguments)...));
}

// An object's own count of references, from 1, and its two interfaces. Interface is IDispatch, or derived from it.
template <class Interface>
class ComObject : public Interface {
 public:
  ComObject() = default;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override {
    if (!object) return E_POINTER;
    *object = Answers(id) ? static_cast<Interface*>(this) : nullptr;
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
  ULONG STDMETHODCALLTYPE Release() noexcept override {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

 protected:
  virtual ~ComObject() = default;
  virtual bool Answers(REFIID id) const noexcept { return id == __uuidof(IUnknown) || id == __uuidof(Interface); }

 private:
  LONG references_ = 1;
};

struct BstrFree {
  void operator()(OLECHAR* text) const { SysFreeString(text); }
};
using unique_bstr = std::unique_ptr<OLECHAR, BstrFree>;

// Throws std::bad_alloc.
unique_bstr ToBstr(std::string_view text);
// Null is the empty text.
std::string FromBstr(const OLECHAR* bstr);

// Owns a VARIANT and all that it refers to.
class Variant {
 public:
  Variant() { VariantInit(&value_); }
  Variant(std::same_as<bool> auto value) : Variant(VT_BOOL) { value_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE; }
  Variant(std::int16_t value) : Variant(VT_I2) { value_.iVal = value; }
  Variant(int value) : Variant(VT_I4) { value_.lVal = value; }
  Variant(double value) : Variant(VT_R8) { value_.dblVal = value; }
  Variant(std::string_view text);
  Variant(const std::string& text) : Variant(std::string_view(text)) {}
  Variant(const char* text) : Variant(std::string_view(text)) {}
  // Null is the object variable that holds nothing.
  Variant(ComPtr<IDispatch> object) : Variant(VT_DISPATCH) { value_.pdispVal = object.Detach(); }
  // Throws RuntimeError 13 when what it holds is of no type there is.
  Variant(const Variant& other);
  Variant(Variant&& other) noexcept : value_(other.Detach()) {}
  Variant& operator=(Variant other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Variant() { VariantClear(&value_); }

  // Takes over what the caller has.
  static Variant Attach(const VARIANT& value);
  // A copy that refers to nothing of the caller's: what a by-reference variant points to. Throws RuntimeError 13 where it cannot.
  static Variant CopyOf(const VARIANT& value);
  // The one-dimensional arrays of the host's bulk operations, counted from 0.
  static Variant ArrayOf(const std::vector<std::int16_t>& numbers);
  static Variant ArrayOf(const std::vector<std::int32_t>& numbers);
  static Variant ArrayOf(const std::vector<std::string>& texts);
  static Variant ArrayOf(std::vector<Variant> values);
  // An array variable of that type that nothing has been put into yet.
  static Variant NoArray(VARENUM element);
  // For by-reference arguments: refers to the array, which must stay where it is meanwhile.
  static Variant ReferenceTo(Variant& array);
  // An optional argument that is left out.
  static Variant Missing();

  const VARIANT& get() const { return value_; }
  VARIANT& get() { return value_; }
  // For a call that stores a value; what was held before is released.
  VARIANT* Receive();
  // Gives what is held to the caller.
  [[nodiscard]] VARIANT Detach();

 private:
  explicit Variant(VARENUM type) : Variant() { value_.vt = static_cast<VARTYPE>(type); }
  VARIANT value_;
};

// Whether all that a by-reference variant refers to is there. A variant by reference may hold one reference more, and no further
// variant.
bool IsReadable(const VARIANT& value);
// What a variant holds, by reference or not, converted as automation converts. Throw RuntimeError 13 where that cannot be.
bool AsBool(const VARIANT& value);
std::int16_t AsInt16(const VARIANT& value);
std::int32_t AsInt32(const VARIANT& value);
double AsDouble(const VARIANT& value);
std::string AsText(const VARIANT& value);
// Null for nothing, which Empty and Null are too.
ComPtr<IDispatch> AsObject(const VARIANT& value);
std::vector<std::int16_t> AsInt16Array(const VARIANT& value);
std::vector<std::int32_t> AsInt32Array(const VARIANT& value);
std::vector<Variant> AsVariantArray(const VARIANT& value);
// No argument at all, or an optional one left out.
bool IsMissing(const VARIANT* value);

// Where the host says that a failure of its own comes from, and where its help is.
struct HelpOnFailure {
  std::string source, file;
  DWORD context = 0;
};

// What the host has refused, with all that it told.
class ToldHostError : public HostError {
 public:
  ToldHostError(std::int32_t number, std::string description, HelpOnFailure help)
      : HostError(number, std::move(description)), help_(std::move(help)) {}
  const HelpOnFailure& help() const { return help_; }

 private:
  HelpOnFailure help_;
};

// A failure as COM callers see it; without a source it is the add-in's.
struct Failure {
  HRESULT code;
  std::string description;
  HelpOnFailure help = {};
};

// Numbers that are no HRESULTs become such ones of the control facility, as Basic's runtime numbers them.
HRESULT HresultOf(std::int32_t number) noexcept;
// What the exception being handled means. Its description is lost when there is no memory for it.
Failure CurrentFailure() noexcept;
// Leaves what there is to tell for the caller to fetch with GetErrorInfo, and returns the code. The interface is the one that was
// called.
HRESULT ReportFailure(const Failure& failure, REFIID called = GUID{}) noexcept;

// Runs an action of an entry point. Whatever it throws ends here, as an HRESULT whose description GetErrorInfo tells.
template <class Action>
HRESULT ToHresult(Action&& action, REFIID called = GUID{}) noexcept {
  try {
    action();
    return S_OK;
  } catch (...) {
    return ReportFailure(CurrentFailure(), called);
  }
}

// The host's failure of that call, with all that the EXCEPINFO tells, which is emptied. Throws ToldHostError.
[[noreturn]] void ThrowHostError(HRESULT code, EXCEPINFO& info, std::string_view member);

}  // namespace vardo
