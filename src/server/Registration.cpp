#include "server/Registration.h"

#include "base/Errors.h"
#include "platform/win32/OwnModule.h"
#include "visio/Com.h"

// After windows.h, which it needs.
#include <VardoBasic.h>

#include <array>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace vardo {
namespace {

// Everything is written below this key of either root: HKEY_CLASSES_ROOT shows both merged and decides by itself where to write.
const std::wstring kClasses = L"Software\\Classes\\";

constexpr wchar_t kProgId[] = L"VardoBasic.Application";
constexpr wchar_t kVersionedProgId[] = L"VardoBasic.Application.1";
constexpr wchar_t kDescription[] = L"Vardo Basic Application";
constexpr wchar_t kTypeLibraryVersion[] = L"1.0";

// The system's own marshaller, which reads the type library.
constexpr wchar_t kAutomationMarshaller[] = L"{00020424-0000-0000-C000-000000000046}";

constexpr bool kIs64Bit = sizeof(void*) == 8;
constexpr wchar_t kPlatform[] = {L'w', L'i', L'n', kIs64Bit ? L'6' : L'3', kIs64Bit ? L'4' : L'2', L'\0'};
constexpr REGSAM kOtherView = kIs64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

HKEY RootOf(RegistrationScope scope) { return scope == RegistrationScope::kUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE; }

std::wstring ToText(const GUID& guid) {
  std::array<wchar_t, 39> text;
  StringFromGUID2(guid, text.data(), static_cast<int>(text.size()));
  return text.data();
}

struct Keys {
  std::wstring classId = ToText(CLSID_Application);
  std::wstring library = ToText(LIBID_VardoBasic);
  std::wstring classKey = L"CLSID\\" + classId;
  std::wstring interfaceKey = L"Interface\\" + ToText(IID__Application);
  std::wstring libraryKey = L"TypeLib\\" + library;
  std::wstring libraryVersionKey = libraryKey + L'\\' + kTypeLibraryVersion;
  std::wstring libraryPlatformKey = libraryVersionKey + L"\\0\\" + kPlatform;
};

struct Value {
  std::wstring key;
  const wchar_t* name;  // null: the key's own value
  std::wstring text;
};

std::vector<Value> Values() {
  const Keys keys;
  const std::filesystem::path file = ModuleFile(OwnModule());
  return {
      {keys.classKey, nullptr, kDescription},
      {keys.classKey + L"\\InprocServer32", nullptr, file},
      {keys.classKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {keys.classKey + L"\\ProgID", nullptr, kVersionedProgId},
      {keys.classKey + L"\\VersionIndependentProgID", nullptr, kProgId},
      {keys.classKey + L"\\TypeLib", nullptr, keys.library},
      {keys.classKey + L"\\Version", nullptr, kTypeLibraryVersion},
      {keys.classKey + L"\\Programmable", nullptr, L""},
      {kProgId, nullptr, kDescription},
      {std::wstring(kProgId) + L"\\CLSID", nullptr, keys.classId},
      {std::wstring(kProgId) + L"\\CurVer", nullptr, kVersionedProgId},
      {kVersionedProgId, nullptr, kDescription},
      {std::wstring(kVersionedProgId) + L"\\CLSID", nullptr, keys.classId},
      {keys.interfaceKey, nullptr, L"_Application"},
      {keys.interfaceKey + L"\\ProxyStubClsid32", nullptr, kAutomationMarshaller},
      {keys.interfaceKey + L"\\TypeLib", nullptr, keys.library},
      {keys.interfaceKey + L"\\TypeLib", L"Version", kTypeLibraryVersion},
      {keys.libraryVersionKey, nullptr, L"Vardo Basic"},
      {keys.libraryVersionKey + L"\\FLAGS", nullptr, L"0"},
      {keys.libraryVersionKey + L"\\HELPDIR", nullptr, file.parent_path()},
      {keys.libraryPlatformKey, nullptr, file},
  };
}

struct KeyCloser {
  void operator()(HKEY key) const { RegCloseKey(key); }
};
using RegistryKey = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

[[noreturn]] void Fail(const char* what, const std::wstring& key, LSTATUS status) {
  throw AutomationError(HRESULT_FROM_WIN32(static_cast<DWORD>(status)),
                        std::string(what) + FromWide(key) + " (Windows error " + std::to_string(status) + ")");
}

void Write(HKEY root, const Value& value) {
  const std::wstring path = kClasses + value.key;
  HKEY opened = nullptr;
  auto status =
      RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr, &opened, nullptr);
  const RegistryKey key(opened);
  if (status == ERROR_SUCCESS)
    status = RegSetValueExW(opened, value.name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.text.c_str()),
                            static_cast<DWORD>((value.text.size() + 1) * sizeof(wchar_t)));
  if (status != ERROR_SUCCESS) Fail("cannot write the registry key ", path, status);
}

void DeleteTree(HKEY root, const std::wstring& key) {
  const std::wstring path = kClasses + key;
  const auto status = RegDeleteTreeW(root, path.c_str());
  if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) Fail("cannot delete the registry key ", path, status);
}

// A user's first registration makes the keys that all classes stand in; without any they are nothing.
void DeleteIfEmpty(HKEY root, const std::wstring& name) {
  const std::wstring path = kClasses + name;
  HKEY opened = nullptr;
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_QUERY_VALUE, &opened) != ERROR_SUCCESS) return;
  const RegistryKey key(opened);
  DWORD keys = 0;
  DWORD values = 0;
  const auto status =
      RegQueryInfoKeyW(opened, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr, nullptr, nullptr);
  if (status == ERROR_SUCCESS && keys == 0 && values == 0) RegDeleteKeyW(root, path.c_str());
}

// Whether the server built for the other kind of program is registered, too.
bool IsOtherRegistered(HKEY root) {
  HKEY opened = nullptr;
  const std::wstring path = kClasses + Keys().classKey + L"\\InprocServer32";
  if (RegOpenKeyExW(root, path.c_str(), 0, KEY_QUERY_VALUE | kOtherView, &opened) != ERROR_SUCCESS) return false;
  RegCloseKey(opened);
  return true;
}

}  // namespace

void RegisterServer(RegistrationScope scope) try {
  for (const auto& value : Values()) Write(RootOf(scope), value);
} catch (const std::exception&) {
  try {
    UnregisterServer(scope);
  } catch (const AutomationError&) {
    // What could not be written cannot be deleted either; the first failure is the one to report.
  }
  throw;
}

void UnregisterServer(RegistrationScope scope) {
  const HKEY root = RootOf(scope);
  const Keys keys;
  DeleteTree(root, keys.classKey);
  DeleteTree(root, keys.interfaceKey);
  DeleteTree(root, keys.libraryPlatformKey);
  if (!IsOtherRegistered(root))
    for (const auto& shared : {std::wstring(kProgId), std::wstring(kVersionedProgId), keys.libraryKey}) DeleteTree(root, shared);
  for (const auto* container : {L"CLSID", L"Interface", L"TypeLib"}) DeleteIfEmpty(root, container);
}

}  // namespace vardo
