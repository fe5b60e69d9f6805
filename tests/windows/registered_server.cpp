// Uses the registered server as compiled programs do: finds the class by its name, calls it through its own interface, and reads
// the registered type library. Prints what is wrong; the exit code is 0 when nothing is.
#include "visio/Com.h"

#include <initguid.h>

#include <cstdio>
// After initguid.h, which turns the declarations into definitions.
#include <VardoBasic.h>

using namespace vardo;

namespace {

int failures = 0;

bool Expect(bool holds, const char* what) {
  if (!holds) {
    std::printf("not so: %s\n", what);
    ++failures;
  }
  return holds;
}

void CheckClass(const wchar_t* name) {
  CLSID id;
  if (!Expect(SUCCEEDED(CLSIDFromProgID(name, &id)), "the class is found by its name")) return;
  Expect(id == CLSID_Application, "the name stands for the class");
  ComPtr<_Application> object;
  const HRESULT made =
      CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID__Application, reinterpret_cast<void**>(object.Receive()));
  if (!Expect(SUCCEEDED(made), "an object can be made")) return;
  Expect(SUCCEEDED(object->CopyAndPaste(object.get())), "a method can be called through the interface");
}

void CheckTypeLibrary() {
  constexpr const wchar_t* kMethods[] = {L"AddVardoMenu", L"InitializePage", L"SetupEventSink", L"ShowEditor",
                                         L"Submodel",     L"CloseSubmodel",  L"CopyAndPaste"};
  constexpr DISPID kFirst = 1;
  ComPtr<ITypeLib> library;
  if (!Expect(SUCCEEDED(LoadRegTypeLib(LIBID_VardoBasic, 1, 0, LOCALE_NEUTRAL, library.Receive())), "the type library loads"))
    return;
  ComPtr<ITypeInfo> info;
  if (!Expect(SUCCEEDED(library->GetTypeInfoOfGuid(IID__Application, info.Receive())), "it describes the interface")) return;
  DISPID expected = kFirst;
  for (const wchar_t* method : kMethods) {
    DISPID id = DISPID_UNKNOWN;
    auto* name = const_cast<LPOLESTR>(method);
    Expect(SUCCEEDED(info->GetIDsOfNames(&name, 1, &id)) && id == expected++, "the methods are in their order");
  }
  ComPtr<ITypeInfo> coclass;
  Expect(SUCCEEDED(library->GetTypeInfoOfGuid(CLSID_Application, coclass.Receive())), "it describes the class");
}

}  // namespace

int wmain() {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  CheckClass(L"VardoBasic.Application");
  CheckClass(L"VardoBasic.Application.1");
  CheckTypeLibrary();
  CoUninitialize();
  return failures == 0 ? 0 : 1;
}
