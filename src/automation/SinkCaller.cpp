#include "automation/SinkCaller.h"

#include "base/Errors.h"

#include <new>

namespace vardo {
namespace {

class SinkCaller : public IVEventSink {
 public:
  SinkCaller(ComPtr<IDispatch> sink, DISPID procedure, std::shared_ptr<OfferedObjects> objects)
      : sink_(std::move(sink)), procedure_(procedure), objects_(std::move(objects)) {}

  void VisEventProc(std::int16_t eventCode, const IVApplicationPtr& source, std::int32_t eventId, std::int32_t eventSeqNum,
                    const EventSubject& subject, std::string_view moreInfo) override {
    // The last argument comes first.
    const std::array<Variant, 6> owners = {moreInfo.empty() ? Variant(ComPtr<IDispatch>()) : Variant(moreInfo),
                                           Variant(objects_->Offer(subject)),
                                           Variant(eventSeqNum),
                                           Variant(eventId),
                                           Variant(objects_->Offer(source)),
                                           Variant(eventCode)};
    std::array<VARIANT, owners.size()> arguments;
    for (size_t i = 0; i < owners.size(); ++i) arguments[i] = owners[i].get();
    DISPPARAMS parameters = {arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    Variant answer;
    const HRESULT told =
        sink_->Invoke(procedure_, GUID{}, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, answer.Receive(), nullptr, nullptr);
    if (told == E_OUTOFMEMORY) throw std::bad_alloc();
  }

 private:
  ComPtr<IDispatch> sink_;
  DISPID procedure_;
  std::shared_ptr<OfferedObjects> objects_;
};

}  // namespace

IVEventSinkPtr MakeSinkCaller(ComPtr<IDispatch> sink, const std::shared_ptr<OfferedObjects>& objects) {
  if (!sink) return nullptr;
  OLECHAR name[] = L"VisEventProc";
  OLECHAR* names = name;
  DISPID procedure = DISPID_UNKNOWN;
  if (FAILED(sink->GetIDsOfNames(GUID{}, &names, 1, LOCALE_USER_DEFAULT, &procedure)))
    throw HostError(kHostNotAllowed, "An event's sink needs the member VisEventProc.");
  return std::make_shared<SinkCaller>(std::move(sink), procedure, objects);
}

}  // namespace vardo
