// VardoBasic.dll called as hosts and scripts call it, and as they should not: every method with whatever an automation caller can
// pass, hosts that fail, hosts that answer nonsense, and no memory.
#include "addin/host/IVApplication.h"
#include "addin/host/IVDocument.h"
#include "addin/host/IVShape.h"
#include "automation/HostAutomation.h"
#include "memoryhost/DrawingHost.h"
#include "visio/Com.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <initguid.h>
#include <ocidl.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iterator>
#include <string>
#include <utility>
#include <vector>
// After initguid.h, which turns the declarations into definitions.
#include <VardoBasic.h>

namespace vardo {
namespace {

constexpr HRESULT kInvalidArgument = static_cast<HRESULT>(0x800A0005);
constexpr HRESULT kSomeHostFailure = static_cast<HRESULT>(0x86DB08A7);

// --- The DLL

class Server {
 public:
  static const Server& The() {
    static const Server server;
    return server;
  }

  HMODULE module() const { return module_; }
  template <class Function>
  Function* Export(const char* name) const {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }
  template <class Interface>
  HRESULT GetClassObject(ComPtr<Interface>& object) const {
    return getClassObject_(CLSID_Application, __uuidof(Interface), reinterpret_cast<void**>(object.Receive()));
  }
  ComPtr<IClassFactory> Factory() const {
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(GetClassObject(factory), S_OK);
    return factory;
  }
  ComPtr<_Application> NewObject() const {
    ComPtr<_Application> object;
    EXPECT_EQ(Factory()->CreateInstance(nullptr, IID__Application, reinterpret_cast<void**>(object.Receive())), S_OK);
    return object;
  }
  HRESULT CanUnload() const { return canUnloadNow_(); }

 private:
  HMODULE module_ = LoadLibraryA(VARDO_SERVER);
  decltype(DllGetClassObject)* getClassObject_ = Export<decltype(DllGetClassObject)>("DllGetClassObject");
  decltype(DllCanUnloadNow)* canUnloadNow_ = Export<decltype(DllCanUnloadNow)>("DllCanUnloadNow");
};

// The pending description of a failure; empty when there is none.
std::string TakeErrorDescription() {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Receive()) != S_OK) return "";
  BSTR text = nullptr;
  info->GetDescription(&text);
  return FromBstr(unique_bstr(text).get());
}

// --- Objects in the host's place

// Has whatever member it is asked for, and answers every call alike.
class AnsweringObject : public ComObject<IDispatch> {
 public:
  using Answer = std::function<HRESULT(IDispatch& self, VARIANT& result, EXCEPINFO& failure)>;

  explicit AnsweringObject(Answer answer) : answer_(std::move(answer)) { ++alive; }
  static inline int alive = 0;

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override { return *count = 0, S_OK; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* ids) noexcept override { return *ids = 1, S_OK; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO* failure,
                                   UINT*) noexcept override {
    VARIANT ignored;
    EXCEPINFO ignoredFailure{};
    return answer_(*this, result ? *result : ignored, failure ? *failure : ignoredFailure);
  }

 private:
  ~AnsweringObject() override { --alive; }
  Answer answer_;
};

ComPtr<IDispatch> ObjectThat(AnsweringObject::Answer answer) {
  return ComPtr<IDispatch>::Attach(MakeCom<AnsweringObject>(std::move(answer)).Detach());
}

ComPtr<IDispatch> ObjectFailingWith(HRESULT code) {
  return ObjectThat([=](IDispatch&, VARIANT&, EXCEPINFO&) { return code; });
}

// What cannot be copied, no host can answer; it fails then.
ComPtr<IDispatch> ObjectAnswering(const Variant& answer) {
  return ObjectThat([&answer](IDispatch&, VARIANT& result, EXCEPINFO&) {
    VariantInit(&result);
    return VariantCopy(&result, const_cast<VARIANT*>(&answer.get()));
  });
}

ComPtr<IDispatch> ObjectAnsweringItself() {
  return ObjectThat([](IDispatch& self, VARIANT& result, EXCEPINFO&) {
    result = Variant(ComPtr<IDispatch>(&self)).Detach();
    return S_OK;
  });
}

// Remembered by the server as long as it is loaded, because it is the first one it hears of.
IDispatch* FirstHost() {
  static const ComPtr<IDispatch> host = ObjectAnsweringItself();
  return host.get();
}

// --- Message boxes, pressed away as soon as they come

class MessageBoxes {
 public:
  MessageBoxes() : hook_(SetWindowsHookExW(WH_CBT, Watch, nullptr, GetCurrentThreadId())) { texts_.clear(); }
  ~MessageBoxes() { UnhookWindowsHookEx(hook_); }
  MessageBoxes(const MessageBoxes&) = delete;
  MessageBoxes& operator=(const MessageBoxes&) = delete;

  static const std::vector<std::string>& texts() { return texts_; }
  // Of the last one.
  static HWND owner() { return owner_; }

 private:
  static constexpr int kTextControl = 0xFFFF;

  static LRESULT CALLBACK Watch(int code, WPARAM window, LPARAM data) {
    const auto box = reinterpret_cast<HWND>(window);
    wchar_t text[1024];
    if (code == HCBT_ACTIVATE && GetDlgItemTextW(box, kTextControl, text, std::size(text)) > 0) {
      texts_.push_back(FromWide(text));
      owner_ = GetWindow(box, GW_OWNER);
      PostMessageW(box, WM_COMMAND, IDOK, 0);
    }
    return CallNextHookEx(nullptr, code, window, data);
  }

  HHOOK hook_;
  static inline std::vector<std::string> texts_;
  static inline HWND owner_ = nullptr;
};

// --- What the server takes from other DLLs

// While it lives, the server calls these functions in place of others of those names.
class ReplacedImports {
 public:
  struct Replacement {
    const char* name;
    void* function;
  };
  explicit ReplacedImports(std::initializer_list<Replacement> replacements) {
    ForEachImport([&](const char* name, void** address) {
      for (const Replacement& replacement : replacements)
        if (std::strcmp(name, replacement.name) == 0) Replace(address, replacement.function);
    });
  }
  ~ReplacedImports() {
    for (const auto& [address, function] : replaced_) Write(address, function);
  }
  ReplacedImports(const ReplacedImports&) = delete;
  ReplacedImports& operator=(const ReplacedImports&) = delete;

 private:
  // By name, and where the server keeps their addresses.
  template <class Visit>
  static void ForEachImport(const Visit& visit) {
    auto* const base = reinterpret_cast<std::byte*>(Server::The().module());
    const auto at = [base](auto offset, auto* type) { return reinterpret_cast<decltype(type)>(base + offset); };
    const auto* const headers =
        at(at(0, static_cast<IMAGE_DOS_HEADER*>(nullptr))->e_lfanew, static_cast<IMAGE_NT_HEADERS*>(nullptr));
    const auto imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (const auto* library = at(imports, static_cast<IMAGE_IMPORT_DESCRIPTOR*>(nullptr)); library->Name != 0; ++library) {
      const auto* name = at(library->OriginalFirstThunk, static_cast<IMAGE_THUNK_DATA*>(nullptr));
      auto* address = at(library->FirstThunk, static_cast<IMAGE_THUNK_DATA*>(nullptr));
      for (; name->u1.AddressOfData != 0; ++name, ++address)
        if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal))
          visit(at(name->u1.AddressOfData, static_cast<IMAGE_IMPORT_BY_NAME*>(nullptr))->Name,
                reinterpret_cast<void**>(&address->u1.Function));
    }
  }

  void Replace(void** address, void* function) {
    replaced_.push_back({address, *address});
    Write(address, function);
  }
  static void Write(void** address, void* function) {
    DWORD protection = 0;
    VirtualProtect(address, sizeof *address, PAGE_READWRITE, &protection);
    *address = function;
    VirtualProtect(address, sizeof *address, protection, &protection);
  }

  std::vector<std::pair<void**, void*>> replaced_;
};

// --- Memory that runs out

// While it lives, one of the allocations that the server itself makes fails: the first after so many others.
class OneFailingAllocation {
 public:
  explicit OneFailingAllocation(int after) { after_ = after; }
  OneFailingAllocation(const OneFailingAllocation&) = delete;
  OneFailingAllocation& operator=(const OneFailingAllocation&) = delete;

  bool HasFailed() const { return after_ < 0; }

 private:
  static bool FailsNow() { return after_ >= 0 && after_-- == 0; }
  static void* Malloc(size_t size) { return FailsNow() ? nullptr : std::malloc(size); }
  static void* Calloc(size_t count, size_t size) { return FailsNow() ? nullptr : std::calloc(count, size); }
  static void* Realloc(void* old, size_t size) { return FailsNow() ? nullptr : std::realloc(old, size); }
  static BSTR STDMETHODCALLTYPE AllocString(const OLECHAR* text, UINT length) {
    return FailsNow() ? nullptr : SysAllocStringLen(text, length);
  }

  static inline int after_ = -1;
  const ReplacedImports functions_{{"malloc", reinterpret_cast<void*>(Malloc)},
                                   {"calloc", reinterpret_cast<void*>(Calloc)},
                                   {"realloc", reinterpret_cast<void*>(Realloc)},
                                   {"SysAllocStringLen", reinterpret_cast<void*>(AllocString)}};
};

// Runs the call with its first allocation failing, then with its second, and so on until it makes no more. What it returns is
// success, or that there is no memory. Of many thousands, the later ones are tried here and there. Returns how many there are.
int WithEachAllocationFailing(const std::function<HRESULT()>& call) {
  constexpr int kEachOf = 100;
  for (int after = 0;; after += 1 + after / kEachOf) {
    const OneFailingAllocation failing(after);
    const HRESULT result = call();
    EXPECT_TRUE(result == S_OK || result == E_OUTOFMEMORY) << "allocation " << after << " failed: " << std::hex << result;
    EXPECT_TRUE(result == S_OK || TakeErrorDescription() == "Out of memory") << "allocation " << after;
    if (!failing.HasFailed()) return after;
  }
}

// --- The methods

constexpr struct Method {
  const wchar_t* name;
  DISPID id;
  UINT argumentCount;
} kMethods[] = {
    {L"AddVardoMenu", 1, 0}, {L"InitializePage", 2, 0}, {L"SetupEventSink", 3, 1}, {L"ShowEditor", 4, 2},
    {L"Submodel", 5, 2},     {L"CloseSubmodel", 6, 2},  {L"CopyAndPaste", 7, 1},
};
constexpr DISPID kCopyAndPaste = 7;

// A call through IDispatch, its arguments in their order.
struct Outcome {
  HRESULT result;
  HRESULT code;  // of the exception; 0 when there is none
  std::string description;
};

Outcome Invoke(_Application& object, DISPID member, std::vector<VARIANT> arguments, WORD flags = DISPATCH_METHOD) {
  std::reverse(arguments.begin(), arguments.end());
  DISPPARAMS parameters = {arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  EXCEPINFO exception{};
  Variant result;
  SetErrorInfo(0, nullptr);
  const HRESULT returned =
      object.Invoke(member, IID_NULL, LOCALE_NEUTRAL, flags, &parameters, result.Receive(), &exception, nullptr);
  const unique_bstr source(exception.bstrSource), description(exception.bstrDescription), help(exception.bstrHelpFile);
  if (returned != DISP_E_EXCEPTION) return {returned, 0, TakeErrorDescription()};
  EXPECT_EQ(FromBstr(source.get()), "VardoBasic.Application");
  return {returned, exception.scode, FromBstr(description.get())};
}

void ExpectDescribedFailure(const Outcome& outcome) {
  EXPECT_TRUE(FAILED(outcome.result)) << std::hex << outcome.result;
  EXPECT_EQ(outcome.result == DISP_E_EXCEPTION, FAILED(outcome.code)) << std::hex << outcome.code;
  EXPECT_NE(outcome.description, "") << std::hex << outcome.result;
}

class ServerTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  void SetUp() override { ASSERT_EQ(object_->SetupEventSink(FirstHost()), S_OK); }
  // The server keeps the host it was called from last; nothing else of what it was given.
  void TearDown() override {
    EXPECT_EQ(object_->SetupEventSink(FirstHost()), S_OK);
    EXPECT_EQ(AnsweringObject::alive, 1);
    auto* const object = object_.Detach();
    EXPECT_EQ(object->Release(), 0u);
  }

  ComPtr<_Application> object_ = Server::The().NewObject();
};

// --- Loading

TEST(Server, StaysLoadedAsLongAsItIsInUse) {
  const Server& server = Server::The();
  ASSERT_NE(server.module(), nullptr);
  EXPECT_EQ(server.CanUnload(), S_OK);
  {
    const auto factory = server.Factory();
    EXPECT_EQ(server.CanUnload(), S_FALSE);
  }
  EXPECT_EQ(server.CanUnload(), S_OK);
  {
    const auto object = server.NewObject();
    EXPECT_EQ(server.CanUnload(), S_FALSE);
  }
  EXPECT_EQ(server.CanUnload(), S_OK);
  const auto factory = server.Factory();
  EXPECT_EQ(factory->LockServer(TRUE), S_OK);
  EXPECT_EQ(factory->LockServer(FALSE), S_OK);
}

TEST(Server, BringsItsTypeLibraryAndManifest) {
  const HMODULE module = Server::The().module();
  EXPECT_NE(FindResourceW(module, MAKEINTRESOURCEW(1), L"TYPELIB"), nullptr);
  EXPECT_NE(FindResourceW(module, MAKEINTRESOURCEW(2), MAKEINTRESOURCEW(24)), nullptr) << "manifest";
}

TEST(Server, TellsItsVersion) {
  DWORD none = 0;
  std::vector<std::byte> version(GetFileVersionInfoSizeA(VARDO_SERVER, &none));
  ASSERT_TRUE(GetFileVersionInfoA(VARDO_SERVER, 0, static_cast<DWORD>(version.size()), version.data()));
  VS_FIXEDFILEINFO* numbers = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(version.data(), L"\\", reinterpret_cast<void**>(&numbers), &length));
  EXPECT_EQ(numbers->dwFileType, static_cast<DWORD>(VFT_DLL));
  const std::string told = std::to_string(HIWORD(numbers->dwFileVersionMS)) + "." +
                           std::to_string(LOWORD(numbers->dwFileVersionMS)) + "." +
                           std::to_string(HIWORD(numbers->dwFileVersionLS));
  EXPECT_EQ(told, VARDO_VERSION);
  const std::pair<const wchar_t*, const char*> texts[] = {{L"FileVersion", VARDO_VERSION},
                                                          {L"ProductVersion", VARDO_VERSION},
                                                          {L"ProductName", "Vardo"},
                                                          {L"CompanyName", "The Vardo founders"},
                                                          {L"LegalCopyright", "Copyright (c) 2026 The Vardo founders"},
                                                          {L"OriginalFilename", "VardoBasic.dll"}};
  for (const auto& [name, want] : texts) {
    wchar_t* text = nullptr;
    const std::wstring path = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
    ASSERT_TRUE(VerQueryValueW(version.data(), path.c_str(), reinterpret_cast<void**>(&text), &length)) << want;
    EXPECT_EQ(FromWide(text), want);
  }
}

// First of those that call a method, so that even the add-in's own making is tried.
TEST(Server, TheFirstCommandMayFindNoMemory) {
  const auto object = Server::The().NewObject();
  EXPECT_GT(WithEachAllocationFailing([&] { return object->CopyAndPaste(nullptr); }), 0);
  EXPECT_EQ(Server::The().CanUnload(), S_FALSE) << "what the add-in listens to must find it there";
}

// --- The factory

TEST(ServerFactory, IsThereForItsClassOnly) {
  const auto getClassObject = Server::The().Export<decltype(DllGetClassObject)>("DllGetClassObject");
  void* object = &object;
  EXPECT_EQ(getClassObject(CLSID_NULL, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(object, nullptr);
  EXPECT_NE(TakeErrorDescription(), "");
  object = &object;
  EXPECT_EQ(getClassObject(CLSID_Application, IID_IDispatch, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_NE(TakeErrorDescription(), "");
  EXPECT_EQ(getClassObject(CLSID_Application, IID_IClassFactory, nullptr), E_POINTER);
}

TEST(ServerFactory, RefusesWhatItCannotMake) {
  const auto factory = Server::The().Factory();
  void* object = &object;
  EXPECT_EQ(factory->CreateInstance(factory.get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(object, nullptr);
  object = &object;
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IClassFactory, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
}

TEST(ServerFactory, MayFindNoMemory) {
  const int count = WithEachAllocationFailing([] {
    ComPtr<_Application> object;
    ComPtr<IClassFactory> factory;
    const HRESULT found = Server::The().GetClassObject(factory);
    return FAILED(found) ? found : factory->CreateInstance(nullptr, IID__Application, reinterpret_cast<void**>(object.Receive()));
  });
  EXPECT_GT(count, 0);
}

// --- What the object is

TEST_F(ServerTest, OffersItsInterfaces) {
  EXPECT_TRUE(object_.As<IUnknown>());
  EXPECT_TRUE(object_.As<IDispatch>());
  const auto errors = object_.As<ISupportErrorInfo>();
  ASSERT_TRUE(errors);
  EXPECT_EQ(errors->InterfaceSupportsErrorInfo(IID__Application), S_OK);
  EXPECT_EQ(errors->InterfaceSupportsErrorInfo(IID_IClassFactory), S_FALSE);
  EXPECT_EQ(errors.As<IUnknown>(), object_.As<IUnknown>()) << "an object has one identity";
  EXPECT_FALSE(object_.As<IClassFactory>());
  EXPECT_EQ(object_->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ServerTest, KnowsItsMethodsByName) {
  for (const Method& method : kMethods) {
    DISPID id = DISPID_UNKNOWN;
    auto* name = const_cast<LPOLESTR>(method.name);
    EXPECT_EQ(object_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_NEUTRAL, &id), S_OK);
    EXPECT_EQ(id, method.id);
  }
  DISPID id = 0;
  auto* unknown = const_cast<LPOLESTR>(L"Quit");
  EXPECT_EQ(object_->GetIDsOfNames(IID_NULL, &unknown, 1, LOCALE_NEUTRAL, &id), DISP_E_UNKNOWNNAME);
  EXPECT_NE(TakeErrorDescription(), "");
  auto huge = ToWide(std::string(1 << 20, 'x'));
  auto* hugeName = huge.data();
  EXPECT_EQ(object_->GetIDsOfNames(IID_NULL, &hugeName, 1, LOCALE_NEUTRAL, &id), DISP_E_UNKNOWNNAME);
  LPOLESTR none = nullptr;
  EXPECT_EQ(object_->GetIDsOfNames(IID_NULL, &none, 1, LOCALE_NEUTRAL, &id), E_INVALIDARG);
  EXPECT_EQ(object_->GetIDsOfNames(IID_NULL, nullptr, 1, LOCALE_NEUTRAL, &id), E_INVALIDARG);
  EXPECT_EQ(object_->GetIDsOfNames(IID_NULL, &unknown, 1, LOCALE_NEUTRAL, nullptr), E_INVALIDARG);
  EXPECT_EQ(object_->GetIDsOfNames(IID_IUnknown, &unknown, 1, LOCALE_NEUTRAL, &id), DISP_E_UNKNOWNINTERFACE);
}

TEST_F(ServerTest, ItsClassIsCalledApplication) {
  const auto provider = object_.As<IProvideClassInfo>();
  ASSERT_TRUE(provider);
  EXPECT_EQ(provider.As<IUnknown>(), object_.As<IUnknown>());
  ComPtr<ITypeInfo> info;
  ASSERT_EQ(provider->GetClassInfo(info.Receive()), S_OK);
  BSTR name = nullptr;
  ASSERT_EQ(info->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(FromBstr(unique_bstr(name).get()), "Application");
  EXPECT_EQ(provider->GetClassInfo(nullptr), E_POINTER);
}

TEST_F(ServerTest, LoadsItsTypeLibraryForTheFirstObjectOnly) {
  static int loads;
  loads = 0;
  struct Counted {
    static HRESULT WINAPI Load(LPCOLESTR file, REGKIND kind, ITypeLib** library) {
      ++loads;
      return LoadTypeLibEx(file, kind, library);
    }
  };
  const ReplacedImports counted{{"LoadTypeLibEx", reinterpret_cast<void*>(Counted::Load)}};
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(Server::The().NewObject());
  EXPECT_EQ(loads, 0);
}

TEST_F(ServerTest, RefusesCallsFromAnotherApartment) {
  EXPECT_EQ(object_->CopyAndPaste(nullptr), S_OK);
  struct Call {
    HRESULT result = S_OK;
    std::string told;
  } call;
  const auto run = [](void* parameter) -> DWORD {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    auto& made = *static_cast<Call*>(parameter);
    made.result = Server::The().NewObject()->CopyAndPaste(nullptr);
    made.told = TakeErrorDescription();
    CoUninitialize();
    return 0;
  };
  const HANDLE thread = CreateThread(nullptr, 0, run, &call, 0, nullptr);
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
  EXPECT_EQ(call.result, RPC_E_WRONG_THREAD);
  EXPECT_NE(call.told, "");
}

TEST_F(ServerTest, DescribesItself) {
  UINT count = 0;
  EXPECT_EQ(object_->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 1u);
  EXPECT_EQ(object_->GetTypeInfoCount(nullptr), E_POINTER);
  ComPtr<ITypeInfo> info;
  EXPECT_EQ(object_->GetTypeInfo(0, LOCALE_NEUTRAL, info.Receive()), S_OK);
  EXPECT_TRUE(info);
  EXPECT_EQ(object_->GetTypeInfo(1, LOCALE_NEUTRAL, info.Receive()), DISP_E_BADINDEX);
  EXPECT_FALSE(info);
  EXPECT_EQ(object_->GetTypeInfo(0, LOCALE_NEUTRAL, nullptr), E_POINTER);
}

// Compiled callers go by the places in the interface, scripts by the numbers.
TEST_F(ServerTest, HasItsMethodsInTheirOrderInADualInterface) {
  ComPtr<ITypeInfo> info;
  ASSERT_EQ(object_->GetTypeInfo(0, LOCALE_NEUTRAL, info.Receive()), S_OK);
  TYPEATTR* type = nullptr;
  ASSERT_EQ(info->GetTypeAttr(&type), S_OK);
  EXPECT_TRUE(type->wTypeFlags & TYPEFLAG_FDUAL);
  EXPECT_EQ(type->guid, IID__Application);
  info->ReleaseTypeAttr(type);
  constexpr UINT kOfDispatch = 7;
  UINT index = 0;
  FUNCDESC* function = nullptr;
  for (; SUCCEEDED(info->GetFuncDesc(index, &function)) && function->memid != kMethods[0].id; ++index)
    info->ReleaseFuncDesc(function);
  info->ReleaseFuncDesc(function);
  for (UINT place = 0; place < std::size(kMethods); ++place) {
    const Method& method = kMethods[place];
    SCOPED_TRACE(FromWide(method.name));
    ASSERT_EQ(info->GetFuncDesc(index + place, &function), S_OK);
    BSTR name = nullptr;
    UINT count = 0;
    info->GetNames(function->memid, &name, 1, &count);
    EXPECT_EQ(FromBstr(unique_bstr(name).get()), FromWide(method.name));
    EXPECT_EQ(function->memid, method.id);
    EXPECT_EQ(function->oVft, static_cast<SHORT>((kOfDispatch + place) * sizeof(void*)));
    EXPECT_EQ(function->cParams, static_cast<SHORT>(method.argumentCount));
    for (UINT i = 0; i < method.argumentCount; ++i)
      EXPECT_EQ(function->lprgelemdescParam[i].tdesc.vt, VT_DISPATCH) << "any object will do, and an object it is";
    info->ReleaseFuncDesc(function);
  }
  EXPECT_TRUE(FAILED(info->GetFuncDesc(index + std::size(kMethods), &function))) << "there is no eighth";
}

// --- Calls that no caller should make

// Everything that a script's variable can hold and that is no object of the host's.
std::vector<std::pair<const char*, Variant>> WrongArguments() {
  const auto typed = [](VARTYPE type) {
    VARIANT value{};
    value.vt = type;
    return Variant::Attach(value);
  };
  const auto referringTo = [](VARIANT& other) {
    VARIANT value{};
    value.vt = VT_BYREF | VT_VARIANT;
    value.pvarVal = &other;
    return Variant::Attach(value);
  };
  std::vector<std::pair<const char*, Variant>> arguments;
  arguments.emplace_back("Empty", Variant());
  arguments.emplace_back("Null", typed(VT_NULL));
  arguments.emplace_back("a missing argument", Variant::Missing());
  arguments.emplace_back("Nothing", typed(VT_DISPATCH));
  arguments.emplace_back("no object at all", typed(VT_UNKNOWN));
  arguments.emplace_back("True", Variant(true));
  arguments.emplace_back("a number", Variant(5));
  arguments.emplace_back("a real number", Variant(1e308));
  arguments.emplace_back("a date", typed(VT_DATE));
  arguments.emplace_back("a text", Variant("Create"));
  arguments.emplace_back("an empty text", Variant(""));
  arguments.emplace_back("a huge text", Variant(std::string(8 << 20, 'x')));
  arguments.emplace_back("an array", Variant::ArrayOf(std::vector<std::int16_t>{1, 2, 3}));
  arguments.emplace_back("an array that is none", typed(VT_ARRAY | VT_VARIANT));
  arguments.emplace_back("a reference to nothing", typed(VT_BYREF | VT_VARIANT));
  arguments.emplace_back("a reference to no object", typed(VT_BYREF | VT_DISPATCH));
  arguments.emplace_back("a type that there is not", typed(0x0FFE));
  // What is behind a variant by reference, its caller holds.
  static VARIANT noObject = {}, itself = {};
  noObject.vt = VT_BYREF | VT_DISPATCH;
  itself.vt = VT_BYREF | VT_VARIANT;
  itself.pvarVal = &itself;
  arguments.emplace_back("a reference to a reference to no object", referringTo(noObject));
  arguments.emplace_back("a reference to itself", referringTo(itself));
  return arguments;
}

TEST_F(ServerTest, RefusesEveryWrongArgumentOfEveryMethod) {
  const auto wrongArguments = WrongArguments();
  for (const Method& method : kMethods)
    for (UINT position = 0; position < method.argumentCount; ++position)
      for (const auto& [what, wrong] : wrongArguments) {
        SCOPED_TRACE(FromWide(method.name) + ": " + what + " as argument " + std::to_string(position));
        std::vector<VARIANT> arguments(method.argumentCount, Variant(ComPtr<IDispatch>(FirstHost())).get());
        arguments[position] = wrong.get();
        const Outcome outcome = Invoke(*object_, method.id, arguments);
        // The one that accepts any object accepts none, too.
        if (method.id != kCopyAndPaste || FAILED(outcome.result)) ExpectDescribedFailure(outcome);
      }
}

TEST_F(ServerTest, RefusesTooManyAndTooFewArguments) {
  for (const Method& method : kMethods)
    for (UINT count = 0; count < 5; ++count) {
      if (count == method.argumentCount) continue;
      SCOPED_TRACE(FromWide(method.name) + " with " + std::to_string(count));
      const MessageBoxes boxes;
      const std::vector<VARIANT> arguments(count, Variant(ComPtr<IDispatch>(FirstHost())).get());
      ExpectDescribedFailure(Invoke(*object_, method.id, arguments));
    }
}

TEST_F(ServerTest, RefusesCallsThatAreNone) {
  for (const DISPID member : {-1, 0, 8, 0x7FFFFFFF}) ExpectDescribedFailure(Invoke(*object_, member, {}));
  ExpectDescribedFailure(Invoke(*object_, kMethods[0].id, {}, DISPATCH_PROPERTYPUT));
  EXPECT_EQ(object_->Invoke(1, IID_IUnknown, LOCALE_NEUTRAL, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
            DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(object_->Invoke(1, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr), E_INVALIDARG);
  DISPPARAMS withoutArguments = {nullptr, nullptr, 2, 0};
  EXPECT_EQ(object_->Invoke(4, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &withoutArguments, nullptr, nullptr, nullptr),
            E_INVALIDARG);
}

TEST_F(ServerTest, RefusesNamesOfArgumentsThatAreNotThere) {
  Variant host{ComPtr<IDispatch>(FirstHost())};
  DISPID names[] = {0, 1};
  for (DISPPARAMS arguments : {DISPPARAMS{&host.get(), nullptr, 1, 1}, DISPPARAMS{&host.get(), names, 1, 2}}) {
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(object_->Invoke(3, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &arguments, nullptr, nullptr, nullptr), E_INVALIDARG);
    EXPECT_NE(TakeErrorDescription(), "");
  }
}

// Who wants neither the result nor the failure passes null for them.
TEST_F(ServerTest, FailsAlsoForWhoDoesNotAskWhy) {
  std::vector<VARIANT> nothing(1, Variant(ComPtr<IDispatch>()).get());
  DISPPARAMS arguments = {nothing.data(), nullptr, 1, 0};
  EXPECT_TRUE(FAILED(object_->Invoke(3, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &arguments, nullptr, nullptr, nullptr)));
}

TEST_F(ServerTest, RefusesNullForObjects) {
  IDispatch* const host = FirstHost();
  for (const auto& call : std::vector<std::function<HRESULT()>>{
           [&] { return object_->SetupEventSink(nullptr); }, [&] { return object_->ShowEditor(nullptr, host); },
           [&] { return object_->ShowEditor(host, nullptr); }, [&] { return object_->Submodel(nullptr, host); },
           [&] { return object_->Submodel(host, nullptr); }, [&] { return object_->CloseSubmodel(nullptr, host); },
           [&] { return object_->CloseSubmodel(host, nullptr); }}) {
    EXPECT_EQ(call(), kInvalidArgument);
    EXPECT_NE(TakeErrorDescription(), "");
  }
}

TEST_F(ServerTest, NullForAnObjectIsDescribed) {
  EXPECT_EQ(object_->ShowEditor(FirstHost(), nullptr), kInvalidArgument);
  EXPECT_EQ(TakeErrorDescription(), "Invalid procedure call or argument: shape is no object");
}

TEST(ServerInstall, RefusesAScopeThatThereIsNot) {
  const auto install = Server::The().Export<HRESULT STDMETHODCALLTYPE(BOOL, PCWSTR)>("DllInstall");
  EXPECT_EQ(install(TRUE, L"everybody"), kInvalidArgument);
  EXPECT_NE(TakeErrorDescription(), "");
  EXPECT_EQ(install(FALSE, std::wstring(1 << 20, L'u').c_str()), kInvalidArgument);
}

bool IsRegisteredForTheUser() {
  HKEY key = nullptr;
  for (const wchar_t* name : {L"Software\\Classes\\VardoBasic.Application", L"Software\\Classes\\VardoBasic.Application.1",
                              L"Software\\Classes\\CLSID\\{3E3DF88D-C547-4D65-A531-A253F005419D}"})
    if (RegOpenKeyExW(HKEY_CURRENT_USER, name, 0, KEY_QUERY_VALUE, &key) == ERROR_SUCCESS) return RegCloseKey(key), true;
  return false;
}

TEST(ServerInstall, MayFindNoMemory) {
  const auto install = Server::The().Export<HRESULT STDMETHODCALLTYPE(BOOL, PCWSTR)>("DllInstall");
  ASSERT_FALSE(IsRegisteredForTheUser());
  const int registering = WithEachAllocationFailing([&] {
    const HRESULT result = install(TRUE, L"user");
    EXPECT_EQ(IsRegisteredForTheUser(), result == S_OK) << "what was written is removed again";
    return result;
  });
  EXPECT_GT(registering, 20);
  EXPECT_GT(WithEachAllocationFailing([&] { return install(FALSE, L"USER"); }), 0);
  EXPECT_FALSE(IsRegisteredForTheUser());
}

// --- Hosts that fail

constexpr HRESULT kDeadHosts[] = {
    E_FAIL,        E_UNEXPECTED, RPC_E_DISCONNECTED, RPC_E_SERVERFAULT, RPC_E_CALL_REJECTED, CO_E_OBJNOTCONNECTED,
    E_OUTOFMEMORY, E_POINTER,    kSomeHostFailure};

TEST_F(ServerTest, PassesTheFailureOfDeadObjectsOn) {
  for (const HRESULT code : kDeadHosts)
    for (const Method& method : kMethods) {
      if (method.argumentCount == 0) continue;
      SCOPED_TRACE(FromWide(method.name));
      const Variant dead(ObjectFailingWith(code)), host{ComPtr<IDispatch>(FirstHost())};
      const Outcome outcome = Invoke(*object_, method.id, std::vector<VARIANT>(method.argumentCount, dead.get()));
      if (method.id == kCopyAndPaste) {
        EXPECT_EQ(outcome.result, S_OK) << "it looks at none";
        continue;
      }
      EXPECT_EQ(outcome.code, code);
      EXPECT_NE(outcome.description, "");
      // The other object of two is alive, and whatever it answers, the failure is told.
      for (UINT position = 0; position < method.argumentCount; ++position) {
        std::vector<VARIANT> arguments(method.argumentCount, host.get());
        arguments[position] = dead.get();
        ExpectDescribedFailure(Invoke(*object_, method.id, arguments));
      }
    }
}

TEST_F(ServerTest, TellsTheHostsOwnWords) {
  const std::string words = std::string(1 << 20, 'w') + " \xE2\x82\xAC";
  const auto refusing = ObjectThat([&](IDispatch&, VARIANT&, EXCEPINFO& failure) {
    failure.scode = kSomeHostFailure;
    failure.bstrDescription = ToBstr(words).release();
    return DISP_E_EXCEPTION;
  });
  EXPECT_EQ(object_->ShowEditor(FirstHost(), refusing.get()), kSomeHostFailure);
  EXPECT_EQ(TakeErrorDescription(), words);
}

TEST_F(ServerTest, TellsWhereAFailureComesFromAndWhereItsHelpIs) {
  const auto refusing = ObjectThat([&](IDispatch&, VARIANT&, EXCEPINFO& failure) {
    failure.scode = kSomeHostFailure;
    failure.bstrSource = ToBstr("Visio").release();
    failure.bstrHelpFile = ToBstr("visio.chm").release();
    failure.dwHelpContext = 42;
    return DISP_E_EXCEPTION;
  });
  const auto told = [](const auto& call) {
    call();
    ComPtr<IErrorInfo> info;
    EXPECT_EQ(GetErrorInfo(0, info.Receive()), S_OK);
    GUID called = GUID_NULL;
    BSTR source = nullptr, help = nullptr;
    DWORD context = 0;
    info->GetGUID(&called);
    info->GetSource(&source);
    info->GetHelpFile(&help);
    info->GetHelpContext(&context);
    EXPECT_EQ(called, IID__Application);
    return FromBstr(unique_bstr(source).get()) + ", " + FromBstr(unique_bstr(help).get()) + ", " + std::to_string(context);
  };
  EXPECT_EQ(told([&] { object_->ShowEditor(FirstHost(), refusing.get()); }), "Visio, visio.chm, 42");
  EXPECT_EQ(told([&] { object_->ShowEditor(FirstHost(), nullptr); }), "VardoBasic.Application, , 0") << "its own";
}

TEST_F(ServerTest, ShowsTheFailuresThatItsCommandsKeepToThemselves) {
  const MessageBoxes boxes;
  EXPECT_EQ(object_->SetupEventSink(ObjectFailingWith(kSomeHostFailure).get()), kSomeHostFailure);
  EXPECT_EQ(object_->AddVardoMenu(), S_OK);
  EXPECT_EQ(object_->InitializePage(), S_OK);
  EXPECT_THAT(boxes.texts(), testing::ElementsAre(testing::StartsWith("Error in AddVardoMenu\n-2032465753\n"),
                                                  "Error in procedure InititalizePage"));
}

TEST_F(ServerTest, SurvivesHostsThatAnswerNonsense) {
  const MessageBoxes boxes;
  for (const auto& [what, answer] : WrongArguments()) {
    SCOPED_TRACE(what);
    const auto host = ObjectAnswering(answer);
    for (const auto& call : std::vector<std::function<HRESULT()>>{
             [&] { return object_->SetupEventSink(host.get()); }, [&] { return object_->AddVardoMenu(); },
             [&] { return object_->InitializePage(); }, [&] { return object_->ShowEditor(host.get(), host.get()); },
             [&] { return object_->Submodel(host.get(), host.get()); },
             [&] { return object_->CloseSubmodel(host.get(), host.get()); }, [&] { return object_->CopyAndPaste(host.get()); }}) {
      SetErrorInfo(0, nullptr);
      const HRESULT result = call();
      EXPECT_EQ(FAILED(result), !TakeErrorDescription().empty()) << std::hex << result;
    }
  }
}

// --- Without memory

// The in-memory host as Visio would offer itself.
TEST_F(ServerTest, CommandsMayFindNoMemory) {
  DrawingHost drawing;
  drawing.New();
  const HostAutomation automation;
  const auto host = automation.Offer(drawing.application());
  const auto page = automation.Offer(drawing.application()->ActivePage());
  const MessageBoxes boxes;
  EXPECT_GT(WithEachAllocationFailing([&] { return object_->SetupEventSink(host.get()); }), 0);
  EXPECT_GT(WithEachAllocationFailing([&] { return object_->AddVardoMenu(); }), 0);
  EXPECT_GT(WithEachAllocationFailing([&] { return object_->InitializePage(); }), 0);
  EXPECT_GT(WithEachAllocationFailing([&] { return object_->CloseSubmodel(host.get(), page.get()); }), 0);
  EXPECT_THAT(boxes.texts(),
              testing::AllOf(testing::SizeIs(testing::Gt(0)), testing::Each("Error in AddVardoMenu\n7\nOut of memory")));
}

TEST_F(ServerTest, LateCallsMayFindNoMemory) {
  auto* name = const_cast<LPOLESTR>(L"Nonsense");
  DISPID id = 0;
  WithEachAllocationFailing([&] {
    const HRESULT result = object_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_NEUTRAL, &id);
    return result == DISP_E_UNKNOWNNAME ? S_OK : result;
  });
  const int count = WithEachAllocationFailing([&] {
    const Outcome outcome = Invoke(*object_, 3, {Variant(ComPtr<IDispatch>(FirstHost())).get()});
    if (outcome.result != DISP_E_EXCEPTION) return outcome.result;
    EXPECT_EQ(outcome.description, "Out of memory");
    SetErrorInfo(0, nullptr);
    ReportFailure({outcome.code, outcome.description});
    return outcome.code;
  });
  EXPECT_GT(count, 0);
}

// A person who presses a key as soon as a dialog comes to the front, and again when a message has gone.
class KeyOnDialogs {
 public:
  explicit KeyOnDialogs(WORD key) : hook_(SetWindowsHookExW(WH_CBT, Watch, nullptr, GetCurrentThreadId())) {
    key_ = key;
    count_ = 0;
    owner_ = nullptr;
    othersWereEnabled_ = false;
  }
  ~KeyOnDialogs() { UnhookWindowsHookEx(hook_); }
  KeyOnDialogs(const KeyOnDialogs&) = delete;
  KeyOnDialogs& operator=(const KeyOnDialogs&) = delete;

  static int count() { return count_; }
  // Of the last dialog, and whether a person could reach the host beside any of them.
  static HWND owner() { return owner_; }
  static bool othersWereEnabled() { return othersWereEnabled_; }

 private:
  static BOOL CALLBACK NoteEnabled(HWND window, LPARAM dialog) {
    if (window != reinterpret_cast<HWND>(dialog) && IsWindowVisible(window) && IsWindowEnabled(window)) othersWereEnabled_ = true;
    return TRUE;
  }
  static LRESULT CALLBACK Watch(int code, WPARAM window, LPARAM data) {
    if (code == HCBT_ACTIVATE && GetPropW(reinterpret_cast<HWND>(window), L"VardoForm")) {
      ++count_;
      owner_ = GetWindow(reinterpret_cast<HWND>(window), GW_OWNER);
      EnumThreadWindows(GetCurrentThreadId(), NoteEnabled, static_cast<LPARAM>(window));
      PostMessageW(reinterpret_cast<HWND>(window), WM_KEYDOWN, key_, 1);
    }
    return CallNextHookEx(nullptr, code, window, data);
  }

  HHOOK hook_;
  static inline WORD key_ = 0;
  static inline int count_ = 0;
  static inline HWND owner_ = nullptr;
  static inline bool othersWereEnabled_ = false;
};

class FrameOfHost {
 public:
  FrameOfHost()
      : window_(CreateWindowExW(0, L"STATIC", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200, nullptr, nullptr,
                                nullptr, nullptr)) {
    SetActiveWindow(window_);
  }
  ~FrameOfHost() { DestroyWindow(window_); }
  FrameOfHost(const FrameOfHost&) = delete;
  FrameOfHost& operator=(const FrameOfHost&) = delete;
  HWND window() const { return window_; }

 private:
  HWND window_;
};

// A host with one shape, a Create, which is all of its objects in one. It works in that window.
class OneShapeHost : public ComObject<IDispatch> {
 public:
  explicit OneShapeHost(HWND window = nullptr) : window_(window) {}

  // The members that numbers have been asked for, in that order.
  const std::vector<std::string>& lookups() const { return members_; }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override { return *count = 0, S_OK; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) noexcept override {
    ids[0] = static_cast<DISPID>(members_.size());
    members_.push_back(FromWide(names[0]));
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                   UINT*) noexcept override {
    const std::string& member = members_[static_cast<size_t>(id)];
    Variant answer(ComPtr<IDispatch>(this));
    if (member == "CellExists" || member == "RowExists") answer = Variant(true);
    if (member == "Formula" || member == "Text" || member == "Name") answer = Variant("\"Create\"");
    if (member == "Count") answer = Variant(0);
    if (member == "WindowHandle32") answer = Variant(static_cast<int>(HandleToLong(window_)));
    if (result) *result = answer.Detach();
    return S_OK;
  }

 private:
  HWND window_;
  std::vector<std::string> members_;
};

// Using it after its end ends the process with a code of its own.
class MortalHost : public OneShapeHost {
 public:
  static constexpr UINT kUsedAfterItsEnd = 3;
  static inline bool hasEnded = false;

  ULONG STDMETHODCALLTYPE Release() noexcept override {
    if (hasEnded) TerminateProcess(GetCurrentProcess(), kUsedAfterItsEnd);
    return OneShapeHost::Release();
  }
};

// Windows may end the host while a person is in a dialog.
TEST(ServerDeathTest, ReleasesNothingOfAHostThatEndsWithADialogOpen) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        const auto host = MakeCom<MortalHost>();
        SetTimer(nullptr, 0, 100, [](HWND, UINT, UINT_PTR, DWORD) {
          if (!FindWindowW(L"VardoForm", nullptr)) return;
          MortalHost::hasEnded = true;
          ExitProcess(0);
        });
        Server::The().NewObject()->ShowEditor(host.get(), host.get());
      },
      testing::ExitedWithCode(0), "");
}

// In a process of its own, because the server listens to the first host that it hears of.
TEST(ServerDeathTest, EventsMayFindNoMemory) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        DrawingHost drawing;
        drawing.New();
        const HostAutomation automation;
        Server::The().NewObject()->SetupEventSink(automation.Offer(drawing.application()).get());
        const int page = drawing.ActivePage().id();
        const int count = WithEachAllocationFailing([&] {
          try {
            drawing.AddPage(std::nullopt);
            drawing.application()->ActivePage()->Delete(1);
            const IVShapePtr shape = drawing.Drop("Process", page, 1, 1, std::nullopt);
            shape->SetText("Weld");
            shape->Delete();
          } catch (const std::bad_alloc&) {
            // The host has been told, and has taken back what it was doing.
            while (drawing.drawing().log().CanUndo()) drawing.Undo();
          }
          return S_OK;
        });
        const IVShapePtr last = drawing.Drop("Process", page, 1, 1, std::nullopt);
        ExitProcess(count > 100 && last->Text() == "Process 1" ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

// A host has more windows than the one it works in, and any of them may be the active one.
TEST_F(ServerTest, DialogsAndMessagesStandOverTheHostsWindowAndKeepAPersonToThem) {
  const FrameOfHost frame, other;
  const auto host = MakeCom<OneShapeHost>(frame.window());
  SetActiveWindow(other.window());
  {
    const KeyOnDialogs escape(VK_ESCAPE);
    EXPECT_EQ(object_->ShowEditor(host.get(), host.get()), S_OK);
    EXPECT_EQ(KeyOnDialogs::count(), 1);
    EXPECT_EQ(KeyOnDialogs::owner(), frame.window());
    EXPECT_FALSE(KeyOnDialogs::othersWereEnabled());
  }
  EXPECT_TRUE(IsWindowEnabled(frame.window()));
  EXPECT_TRUE(IsWindowEnabled(other.window()));
  const MessageBoxes boxes;
  EXPECT_EQ(object_->InitializePage(), S_OK);
  EXPECT_THAT(boxes.texts(), testing::ElementsAre("Error in procedure InititalizePage"));
  EXPECT_EQ(MessageBoxes::owner(), frame.window());
  EXPECT_TRUE(IsWindowEnabled(frame.window()));
}

// A number is asked for at the first call; a later call brings the same host.
TEST_F(ServerTest, AsksTheHostForNoMembersNumberTwice) {
  const auto host = MakeCom<OneShapeHost>();
  const auto shape = MakeCom<OneShapeHost>();
  const KeyOnDialogs escape(VK_ESCAPE);
  EXPECT_EQ(object_->ShowEditor(host.get(), shape.get()), S_OK);
  const std::vector<std::string> asked = host->lookups();
  EXPECT_THAT(asked, testing::Contains("ActiveWindow"));
  EXPECT_EQ(object_->ShowEditor(host.get(), shape.get()), S_OK);
  EXPECT_EQ(KeyOnDialogs::count(), 2);
  EXPECT_EQ(host->lookups(), asked);
}

// A dialog opens and writes in as many steps as there are; whichever fails, it closes again and gives the host's window back.
TEST_F(ServerTest, DialogsAndSubmodelsMayFindNoMemory) {
  const FrameOfHost frame;
  DrawingHost drawing;
  drawing.New();
  const IVShapePtr dropped = drawing.Drop("Process", drawing.ActivePage().id(), 1, 1, std::nullopt);
  drawing.Select({dropped->ID()});
  const HostAutomation automation;
  const auto host = automation.Offer(drawing.application()), shape = automation.Offer(dropped);
  const MessageBoxes boxes;
  const KeyOnDialogs person(VK_RETURN);
  const int count = WithEachAllocationFailing([&] {
    const HRESULT result = object_->ShowEditor(host.get(), shape.get());
    EXPECT_EQ(FindWindowW(L"VardoForm", nullptr), nullptr);
    EXPECT_TRUE(IsWindowEnabled(frame.window()));
    return result;
  });
  EXPECT_GT(count, 100);
  EXPECT_GT(person.count(), 50);
  EXPECT_THAT(boxes.texts(), testing::Contains("7\nOut of memory")) << "the dialog stays, and its OK is pressed again";
  const auto pages = [&] { return drawing.application()->ActiveDocument()->Pages()->Count(); };
  int halfMade = 0;
  const int submodel = WithEachAllocationFailing([&] {
    const int before = pages();
    const HRESULT result = object_->Submodel(host.get(), shape.get());
    if (FAILED(result)) halfMade += pages() - before;
    return result;
  });
  EXPECT_LE(halfMade, 1) << "but the one that the host has added and nobody has heard of";
  EXPECT_GT(submodel, 20);
}

}  // namespace
}  // namespace vardo
