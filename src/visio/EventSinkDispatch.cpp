#include "visio/EventSinkDispatch.h"

#include "addin/host/IVEventList.h"
#include "visio/DispatchObject.h"
#include "visio/VisioObjects.h"

#include <new>

namespace vardo {
namespace {

constexpr ParameterNames kParameters = {L"nEventCode", L"pSourceObj", L"nEventID", L"nEventSeqNum", L"pSubjectObj", L"vMoreInfo"};

template <class Value>
Value ValueOr(Value fallback, const VARIANT* argument, Value (*read)(const VARIANT&)) {
  if (IsMissing(argument)) return fallback;
  try {
    return read(*argument);
  } catch (const RuntimeError&) {
    return fallback;
  }
}

class EventSinkDispatch : public DispatchObject {
 public:
  EventSinkDispatch(IVEventSinkPtr sink, DispidTablePtr dispids) : sink_(std::move(sink)), dispids_(std::move(dispids)) {}

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO*,
                                   UINT*) noexcept override {
    if (result) VariantInit(result);
    if (id != kVisEventProc || !(kind & DISPATCH_METHOD)) return DISP_E_MEMBERNOTFOUND;
    // The listener may take its own advise off the host's list.
    const ComPtr<IDispatch> alive(this);
    try {
      Tell(CallArguments(parameters));
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    } catch (...) {
      // The host must not see any other failure of its listener.
    }
    return S_OK;
  }

 protected:
  std::optional<Signature> FindMember(const wchar_t* name) const noexcept override {
    if (!IsSameName(name, L"VisEventProc")) return std::nullopt;
    return Signature{kVisEventProc, &kParameters};
  }

 private:
  void Tell(const CallArguments& arguments) {
    const std::int16_t code = ValueOr(std::int16_t{0}, arguments[0], AsInt16);
    const IVApplicationPtr source = WrapApplication(ValueOr({}, arguments[1], AsObject), dispids_);
    const EventSubject subject = WrapSubject(static_cast<std::uint16_t>(code), ValueOr({}, arguments[4], AsObject), dispids_);
    sink_->VisEventProc(code, source, ValueOr(0, arguments[2], AsInt32), ValueOr(0, arguments[3], AsInt32), subject,
                        ValueOr({}, arguments[5], AsText));
  }

  IVEventSinkPtr sink_;
  DispidTablePtr dispids_;
};

}  // namespace

ComPtr<IDispatch> MakeEventSinkDispatch(const IVEventSinkPtr& sink, const DispidTablePtr& dispids) {
  if (!sink) return nullptr;
  return ComPtr<IDispatch>::Attach(new EventSinkDispatch(sink, dispids));
}

}  // namespace vardo
