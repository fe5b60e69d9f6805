#include "visio/Com.h"

#include "base/Utf16.h"

#include <climits>

#include <cstdio>
#include <new>

namespace vardo {
namespace {

constexpr VARTYPE kVariantByReference = VT_BYREF | VT_VARIANT;
constexpr std::string_view kErrorSource = "VardoBasic.Application";

std::string HexText(HRESULT code) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(code));
  return text;
}

void CheckCopied(HRESULT result) {
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(result)) throw RuntimeError::TypeMismatch();
}

// The value, by reference or not, as another type; numbers are written with a point whatever the user's language.
Variant Converted(const VARIANT& value, VARTYPE type) {
  Variant plain = Variant::CopyOf(value), converted;
  if (plain.get().vt == type) return plain;
  // An object's default member is not asked for: that would be a call into somebody else's program.
  const bool isObject = plain.get().vt == VT_DISPATCH || plain.get().vt == VT_UNKNOWN;
  if (isObject || FAILED(VariantChangeTypeEx(&converted.get(), &plain.get(), LOCALE_INVARIANT, VARIANT_ALPHABOOL, type)))
    throw RuntimeError::TypeMismatch();
  return converted;
}

// The elements of a one-dimensional array while they are locked.
class LockedArray {
 public:
  LockedArray(const VARIANT& value, VARTYPE element) : array_(ArrayIn(value)) {
    VARTYPE type = VT_EMPTY;
    if (!array_ || SafeArrayGetDim(array_) != 1 || FAILED(SafeArrayGetVartype(array_, &type)) || type != element ||
        FAILED(SafeArrayAccessData(array_, &data_)))
      throw RuntimeError::TypeMismatch();
  }
  ~LockedArray() { SafeArrayUnaccessData(array_); }
  LockedArray(const LockedArray&) = delete;
  LockedArray& operator=(const LockedArray&) = delete;

  ULONG size() const { return array_->rgsabound[0].cElements; }
  template <class Element>
  const Element* begin() const {
    return static_cast<const Element*>(data_);
  }

 private:
  static SAFEARRAY* ArrayIn(const VARIANT& value) {
    if (!IsReadable(value)) return nullptr;
    const VARIANT& holder = value.vt == kVariantByReference ? *value.pvarVal : value;
    if (!(holder.vt & VT_ARRAY)) return nullptr;
    return holder.vt & VT_BYREF ? *holder.pparray : holder.parray;
  }
  SAFEARRAY* array_;
  void* data_ = nullptr;
};

// An array of that many elements in a variant, with its memory at hand until it is filled.
template <class Element, class Fill>
Variant FilledArray(VARTYPE type, size_t size, const Fill& fill) {
  VARIANT value;
  VariantInit(&value);
  value.parray = SafeArrayCreateVector(type, 0, static_cast<ULONG>(size));
  if (!value.parray) throw std::bad_alloc();
  value.vt = static_cast<VARTYPE>(VT_ARRAY | type);
  Variant owner = Variant::Attach(value);
  void* data = nullptr;
  if (FAILED(SafeArrayAccessData(value.parray, &data))) throw std::bad_alloc();
  struct Unlock {
    SAFEARRAY* array;
    ~Unlock() { SafeArrayUnaccessData(array); }
  } unlock{value.parray};
  fill(static_cast<Element*>(data));
  return owner;
}

}  // namespace

unique_bstr ToBstr(std::string_view text) {
  // As wide as each other on Windows.
  const std::u16string units = ToUtf16(text);
  if (units.size() > UINT_MAX / sizeof(OLECHAR)) throw std::bad_alloc();
  unique_bstr bstr(SysAllocStringLen(reinterpret_cast<const OLECHAR*>(units.data()), static_cast<UINT>(units.size())));
  if (!bstr) throw std::bad_alloc();
  return bstr;
}

std::string FromBstr(const OLECHAR* bstr) {
  return bstr ? FromWide({bstr, SysStringLen(const_cast<OLECHAR*>(bstr))}) : std::string();
}

Variant::Variant(std::string_view text) : Variant() {
  value_.bstrVal = ToBstr(text).release();
  value_.vt = VT_BSTR;
}

Variant::Variant(const Variant& other) : Variant() { CheckCopied(VariantCopy(&value_, const_cast<VARIANT*>(&other.value_))); }

Variant Variant::Attach(const VARIANT& value) {
  Variant owner;
  owner.value_ = value;
  return owner;
}

Variant Variant::CopyOf(const VARIANT& value) {
  if (!IsReadable(value)) throw RuntimeError::TypeMismatch();
  Variant copy;
  CheckCopied(VariantCopyInd(&copy.value_, const_cast<VARIANT*>(&value)));
  return copy;
}

Variant Variant::ArrayOf(const std::vector<std::int16_t>& numbers) {
  return FilledArray<SHORT>(VT_I2, numbers.size(), [&](SHORT* element) {
    for (const std::int16_t number : numbers) *element++ = number;
  });
}

Variant Variant::ArrayOf(const std::vector<std::int32_t>& numbers) {
  return FilledArray<LONG>(VT_I4, numbers.size(), [&](LONG* element) {
    for (const std::int32_t number : numbers) *element++ = number;
  });
}

Variant Variant::ArrayOf(std::vector<Variant> values) {
  return FilledArray<VARIANT>(VT_VARIANT, values.size(), [&](VARIANT* element) {
    for (Variant& value : values) *element++ = value.Detach();
  });
}

Variant Variant::ArrayOf(const std::vector<std::string>& texts) {
  return FilledArray<VARIANT>(VT_VARIANT, texts.size(), [&](VARIANT* element) {
    for (const std::string& text : texts) *element++ = Variant(text).Detach();
  });
}

Variant Variant::NoArray(VARENUM element) {
  Variant none;
  none.value_.vt = static_cast<VARTYPE>(VT_ARRAY | element);
  none.value_.parray = nullptr;
  return none;
}

Variant Variant::ReferenceTo(Variant& array) {
  Variant reference;
  reference.value_.vt = static_cast<VARTYPE>(VT_BYREF | array.value_.vt);
  reference.value_.pparray = &array.value_.parray;
  return reference;
}

Variant Variant::Missing() {
  Variant missing(VT_ERROR);
  missing.value_.scode = DISP_E_PARAMNOTFOUND;
  return missing;
}

VARIANT* Variant::Receive() {
  *this = Variant();
  return &value_;
}

VARIANT Variant::Detach() {
  const VARIANT value = value_;
  VariantInit(&value_);
  return value;
}

bool IsReadable(const VARIANT& value) {
  if (!(value.vt & VT_BYREF)) return true;
  if (!value.byref) return false;
  return value.vt != kVariantByReference || (value.pvarVal->vt != kVariantByReference && IsReadable(*value.pvarVal));
}

bool AsBool(const VARIANT& value) { return Converted(value, VT_BOOL).get().boolVal != VARIANT_FALSE; }

// The host's unsigned 16-bit codes are the same bits.
std::int16_t AsInt16(const VARIANT& value) {
  const std::int32_t number = AsInt32(value);
  if (number < SHRT_MIN || number > USHRT_MAX) throw RuntimeError::Overflow();
  return static_cast<std::int16_t>(number);
}

std::int32_t AsInt32(const VARIANT& value) { return Converted(value, VT_I4).get().lVal; }

double AsDouble(const VARIANT& value) { return Converted(value, VT_R8).get().dblVal; }

std::string AsText(const VARIANT& value) { return FromBstr(Converted(value, VT_BSTR).get().bstrVal); }

ComPtr<IDispatch> AsObject(const VARIANT& value) {
  const Variant plain = Variant::CopyOf(value);
  switch (plain.get().vt) {
    case VT_EMPTY:
    case VT_NULL:
      return nullptr;
    case VT_DISPATCH:
      return ComPtr<IDispatch>(plain.get().pdispVal);
    case VT_UNKNOWN:
      if (!plain.get().punkVal) return nullptr;
      if (auto object = ComPtr<IUnknown>(plain.get().punkVal).As<IDispatch>()) return object;
      break;
    default:
      break;
  }
  throw RuntimeError::TypeMismatch();
}

std::vector<std::int16_t> AsInt16Array(const VARIANT& value) {
  const LockedArray array(value, VT_I2);
  const SHORT* const first = array.begin<SHORT>();
  return {first, first + array.size()};
}

std::vector<std::int32_t> AsInt32Array(const VARIANT& value) {
  const LockedArray array(value, VT_I4);
  const LONG* const first = array.begin<LONG>();
  return {first, first + array.size()};
}

std::vector<Variant> AsVariantArray(const VARIANT& value) {
  const LockedArray array(value, VT_VARIANT);
  std::vector<Variant> elements;
  for (ULONG i = 0; i < array.size(); ++i) elements.push_back(Variant::CopyOf(array.begin<VARIANT>()[i]));
  return elements;
}

bool IsMissing(const VARIANT* value) { return !value || (value->vt == VT_ERROR && value->scode == DISP_E_PARAMNOTFOUND); }

HRESULT HresultOf(std::int32_t number) noexcept {
  if (number < 0) return number;
  if (number == 0) return E_FAIL;
  return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, number & 0xFFFF);
}

Failure CurrentFailure() noexcept {
  HRESULT code = E_UNEXPECTED;
  try {
    try {
      throw;
    } catch (const ToldHostError& error) {
      code = HresultOf(error.number());
      return {code, error.description(), error.help()};
    } catch (const AutomationError& error) {
      code = HresultOf(error.number());
      return {code, error.description()};
    } catch (const std::bad_alloc&) {
      return {E_OUTOFMEMORY, RuntimeError::OutOfMemory().description()};
    } catch (const std::exception& error) {
      code = E_FAIL;
      return {code, error.what()};
    }
  } catch (...) {
    return {code, {}};
  }
}

HRESULT ReportFailure(const Failure& failure, REFIID called) noexcept {
  try {
    const unique_bstr description = ToBstr(failure.description);
    const unique_bstr source = ToBstr(failure.help.source.empty() ? kErrorSource : failure.help.source);
    const unique_bstr help = ToBstr(failure.help.file);
    ComPtr<ICreateErrorInfo> info;
    if (SUCCEEDED(CreateErrorInfo(info.Receive()))) {
      info->SetGUID(called);
      info->SetDescription(description.get());
      info->SetSource(source.get());
      if (SysStringLen(help.get()) != 0) info->SetHelpFile(help.get());
      info->SetHelpContext(failure.help.context);
      SetErrorInfo(0, info.As<IErrorInfo>().get());
    }
  } catch (const std::bad_alloc&) {
    SetErrorInfo(0, nullptr);
  }
  return failure.code;
}

void ThrowHostError(HRESULT code, EXCEPINFO& info, std::string_view member) {
  if (info.pfnDeferredFillIn) std::exchange(info.pfnDeferredFillIn, nullptr)(&info);
  const unique_bstr source(std::exchange(info.bstrSource, nullptr)), help(std::exchange(info.bstrHelpFile, nullptr)),
      description(std::exchange(info.bstrDescription, nullptr));
  std::int32_t number = code;
  if (code == DISP_E_EXCEPTION && info.scode != 0) number = info.scode;
  if (code == DISP_E_EXCEPTION && info.scode == 0 && info.wCode != 0) number = info.wCode;
  std::string text = FromBstr(description.get());
  if (text.empty()) text = "The drawing host failed at " + std::string(member) + " (" + HexText(number) + ").";
  throw ToldHostError(number, std::move(text), {FromBstr(source.get()), FromBstr(help.get()), info.dwHelpContext});
}

}  // namespace vardo
