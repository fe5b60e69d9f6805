#include "automation_script/AutomationAddin.h"

// After windows.h, which it needs.
#include <objbase.h>

namespace vardo {
namespace {

constexpr wchar_t kProgId[] = L"VardoBasic.Application";

ComPtr<IDispatch> MakeAddin() {
  CLSID id;
  HRESULT result = CLSIDFromProgID(kProgId, &id);
  ComPtr<IDispatch> addin;
  if (SUCCEEDED(result))
    result = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(addin.Receive()));
  if (FAILED(result))
    throw AutomationError(result, FromWide(kProgId) + " cannot be made; register the add-in with regsvr32 VardoBasic.dll.");
  return addin;
}

// Basic's own numbers travel as HRESULTs of the control facility.
bool IsBasicNumber(HRESULT number) { return FAILED(number) && HRESULT_FACILITY(number) == FACILITY_CONTROL; }

}  // namespace

AutomationAddin::AutomationAddin() : addin_(HostClass::Application, MakeAddin(), std::make_shared<DispidTable>()) {}

HMODULE AutomationAddin::library() const {
  HMODULE library = nullptr;
  const auto* code = *reinterpret_cast<const wchar_t* const*>(addin_.object().get());
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, code, &library);
  return library;
}

template <class... Objects>
void AutomationAddin::Call(const wchar_t* method, const Objects&... objects) const {
  try {
    addin_.Call(method, objects...);
  } catch (const HostError& error) {
    if (!IsBasicNumber(error.number())) throw;
    throw RuntimeError(HRESULT_CODE(error.number()), error.description());
  }
}

void AutomationAddin::AddVardoMenu() { Call(L"AddVardoMenu"); }
void AutomationAddin::InitializePage() { Call(L"InitializePage"); }
void AutomationAddin::SetupEventSink(const IVApplicationPtr& application) { Call(L"SetupEventSink", host_.Offer(application)); }
void AutomationAddin::ShowEditor(const IVApplicationPtr& application, const IVShapePtr& shape) {
  Call(L"ShowEditor", host_.Offer(application), host_.Offer(shape));
}
void AutomationAddin::Submodel(const IVApplicationPtr& application, const IVShapePtr& shape) {
  Call(L"Submodel", host_.Offer(application), host_.Offer(shape));
}
void AutomationAddin::CloseSubmodel(const IVApplicationPtr& application, const IVPagePtr& page) {
  Call(L"CloseSubmodel", host_.Offer(application), host_.Offer(page));
}
void AutomationAddin::CopyAndPaste() { Call(L"CopyAndPaste", ComPtr<IDispatch>()); }

}  // namespace vardo
