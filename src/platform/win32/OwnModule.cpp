#include "platform/win32/OwnModule.h"

#include <string>

namespace vardo {

HINSTANCE OwnModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&OwnModule), &module);
  return module;
}

// A path may be longer than MAX_PATH; one that does not fit is cut to the buffer's size.
std::filesystem::path ModuleFile(HMODULE module) {
  std::wstring file(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(module, file.data(), static_cast<DWORD>(file.size()));
    if (length < file.size()) return file.substr(0, length);
    file.resize(file.size() * 2);
  }
}

}  // namespace vardo
