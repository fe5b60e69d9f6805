#include "server/ApplicationObject.h"

#include "addin/Global_Variables.h"
#include "platform/win32/OwnModule.h"
#include "server/Addin.h"
#include "server/Module.h"
#include "visio/Visio.h"

// After windows.h, which it needs.
#include <ocidl.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

namespace vardo {
namespace {

// Of Windows' own calls, which say no more than the number.
void Check(HRESULT result, const char* what) {
  if (FAILED(result)) throw AutomationError(result, what);
}

// What the type library says of the interface and of the class.
struct Description {
  Description() {
    ComPtr<ITypeLib> library;
    Check(LoadTypeLibEx(ModuleFile(OwnModule()).c_str(), REGKIND_NONE, library.Receive()),
          "The type library in VardoBasic.dll cannot be read.");
    Check(library->GetTypeInfoOfGuid(IID__Application, interfaceInfo.Receive()),
          "The type library in VardoBasic.dll lacks the interface.");
    Check(library->GetTypeInfoOfGuid(CLSID_Application, classInfo.Receive()),
          "The type library in VardoBasic.dll lacks the class.");
  }
  ComPtr<ITypeInfo> interfaceInfo, classInfo;
};

// Loaded once, and kept until the process ends: by then the library's own code may be gone.
const Description& TheDescription() {
  static const Description& description = *new Description;
  return description;
}

// What Windows says about a number of its own, or where it has no words for it, the number.
std::string SystemText(HRESULT code) {
  constexpr DWORD kFlags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK;
  wchar_t text[256];
  const DWORD length = FormatMessageW(kFlags, nullptr, static_cast<DWORD>(code), 0, text, std::size(text), nullptr);
  return length ? FromWide({text, length}) : "The call was refused with the number " + std::to_string(code) + ".";
}

// A call that automation itself refuses, for its name, its arguments or their types, gets a description, too.
HRESULT ReportRefusal(HRESULT result) noexcept {
  if (SUCCEEDED(result) || result == DISP_E_EXCEPTION) return result;
  return ToHresult([&] { throw AutomationError(result, SystemText(result)); }, IID__Application);
}

// Windows itself would follow every reference.
bool AreReadable(const DISPPARAMS* arguments) {
  if (!arguments || (arguments->cArgs != 0 && !arguments->rgvarg)) return false;
  if (arguments->cNamedArgs > arguments->cArgs || (arguments->cNamedArgs != 0 && !arguments->rgdispidNamedArgs)) return false;
  return std::all_of(arguments->rgvarg, arguments->rgvarg + arguments->cArgs, IsReadable);
}

// Wine drops the arguments that are too many, where Windows refuses the call.
bool HasTooManyArguments(ITypeInfo& typeInfo, DISPID member, UINT count) {
  FUNCDESC* method = nullptr;
  for (UINT index = 0; SUCCEEDED(typeInfo.GetFuncDesc(index, &method)); ++index) {
    const bool isCalled = method->memid == member;
    const auto most = static_cast<UINT>(method->cParams);
    typeInfo.ReleaseFuncDesc(method);
    if (isCalled) return count > most;
  }
  return false;
}

IDispatch* Required(IDispatch* object, const char* name) {
  if (!object) throw RuntimeError::InvalidArgument(std::string(name) + " is no object");
  return object;
}

// Most calls bring the host that the last one brought.
IVApplicationPtr TheHost(IDispatch* application) { return WrapApplication(Required(application, "application"), visApp); }

// A command of the add-in, whose failure is one of its interface.
template <class Command>
HRESULT Run(const Command& command) noexcept {
  return ToHresult([&] { command(TheAddin()); }, IID__Application);
}

class ApplicationObject final : public ComObject<_Application>, public ISupportErrorInfo, public IProvideClassInfo {
 public:
  explicit ApplicationObject(const Description& description)
      : typeInfo_(description.interfaceInfo), classInfo_(description.classInfo) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override {
    if (!object) return E_POINTER;
    if (id == __uuidof(ISupportErrorInfo))
      *object = static_cast<ISupportErrorInfo*>(this);
    else if (id == __uuidof(IProvideClassInfo))
      *object = static_cast<IProvideClassInfo*>(this);
    else
      return ComObject::QueryInterface(id, object);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ComObject::AddRef(); }
  ULONG STDMETHODCALLTYPE Release() noexcept override { return ComObject::Release(); }

  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) noexcept override {
    return id == IID__Application || id == __uuidof(IDispatch) ? S_OK : S_FALSE;
  }

  // By which callers tell the class's name from its interface's.
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) noexcept override {
    if (!info) return ReportRefusal(E_POINTER);
    *info = ComPtr<ITypeInfo>(classInfo_).Detach();
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
    if (!count) return ReportRefusal(E_POINTER);
    *count = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override {
    if (!info) return ReportRefusal(E_POINTER);
    *info = nullptr;
    if (index != 0) return ReportRefusal(DISP_E_BADINDEX);
    *info = ComPtr<ITypeInfo>(typeInfo_).Detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override {
    if (id != IID_NULL) return ReportRefusal(DISP_E_UNKNOWNINTERFACE);
    if (!names || !ids || count == 0 || std::find(names, names + count, nullptr) != names + count)
      return ReportRefusal(E_INVALIDARG);
    return ReportRefusal(typeInfo_->GetIDsOfNames(names, count, ids));
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID id, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                                   EXCEPINFO* exception, UINT* wrongArgument) noexcept override {
    if (id != IID_NULL) return ReportRefusal(DISP_E_UNKNOWNINTERFACE);
    if (!AreReadable(arguments)) return ReportRefusal(E_INVALIDARG);
    if (HasTooManyArguments(*typeInfo_, member, arguments->cArgs)) return ReportRefusal(DISP_E_BADPARAMCOUNT);
    _Application* const self = this;
    return ReportRefusal(typeInfo_->Invoke(self, member, flags, arguments, result, exception, wrongArgument));
  }

  HRESULT STDMETHODCALLTYPE AddVardoMenu() noexcept override {
    return Run([](Application& addin) { addin.AddVardoMenu(); });
  }
  HRESULT STDMETHODCALLTYPE InitializePage() noexcept override {
    return Run([](Application& addin) { addin.InitializePage(); });
  }
  HRESULT STDMETHODCALLTYPE SetupEventSink(IDispatch* application) noexcept override {
    return Run([&](Application& addin) { addin.SetupEventSink(TheHost(application)); });
  }
  HRESULT STDMETHODCALLTYPE ShowEditor(IDispatch* application, IDispatch* shape) noexcept override {
    return Run([&](Application& addin) { addin.ShowEditor(TheHost(application), WrapShape(Required(shape, "shape"))); });
  }
  HRESULT STDMETHODCALLTYPE Submodel(IDispatch* application, IDispatch* shape) noexcept override {
    return Run([&](Application& addin) { addin.Submodel(TheHost(application), WrapShape(Required(shape, "shape"))); });
  }
  HRESULT STDMETHODCALLTYPE CloseSubmodel(IDispatch* application, IDispatch* page) noexcept override {
    return Run([&](Application& addin) { addin.CloseSubmodel(TheHost(application), WrapPage(Required(page, "page"))); });
  }
  // Any object will do, so it is not looked at.
  HRESULT STDMETHODCALLTYPE CopyAndPaste(IDispatch*) noexcept override {
    return Run([](Application& addin) { addin.CopyAndPaste({}); });
  }

 protected:
  bool Answers(REFIID id) const noexcept override { return id == __uuidof(IDispatch) || ComObject::Answers(id); }

 private:
  ModuleLock lock_;
  ComPtr<ITypeInfo> typeInfo_, classInfo_;
};

class ApplicationFactory final : public ComObject<IClassFactory> {
 public:
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) noexcept override {
    if (!object) return ReportRefusal(E_POINTER);
    *object = nullptr;
    if (outer) return ReportRefusal(CLASS_E_NOAGGREGATION);
    return ToHresult([&] {
      const auto made = MakeCom<ApplicationObject>(TheDescription());
      Check(made->QueryInterface(id, object), "Application does not offer the interface asked for.");
    });
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override {
    ModuleLock::Add(lock);
    return S_OK;
  }

 private:
  ModuleLock lock_;
};

}  // namespace

HRESULT GetFactory(REFCLSID classId, REFIID id, void** object) noexcept {
  if (!object) return ReportRefusal(E_POINTER);
  *object = nullptr;
  if (classId != CLSID_Application) return ReportRefusal(CLASS_E_CLASSNOTAVAILABLE);
  return ToHresult([&] {
    Check(MakeCom<ApplicationFactory>()->QueryInterface(id, object), "The class factory does not offer the interface asked for.");
  });
}

}  // namespace vardo
