#include "server/Module.h"

#include "platform/win32/OwnModule.h"

namespace vardo {

// A path may be longer than MAX_PATH; one that does not fit is cut to the buffer's size.
std::wstring ModuleFile() {
  std::wstring file(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(OwnModule(), file.data(), static_cast<DWORD>(file.size()));
    if (length < file.size()) {
      file.resize(length);
      return file;
    }
    file.resize(file.size() * 2);
  }
}

}  // namespace vardo
