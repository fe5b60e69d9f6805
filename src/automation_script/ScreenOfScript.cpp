#include "automation_script/ScreenOfScript.h"

#include "platform/win32/Screen.h"

#include <cstring>
#include <span>

namespace vardo {
namespace {

SIZE pixels;

template <class T>
T* At(HMODULE library, DWORD offset) {
  return reinterpret_cast<T*>(reinterpret_cast<std::byte*>(library) + offset);
}

const IMAGE_DATA_DIRECTORY& ImportsOf(HMODULE library) {
  const auto& dos = *At<IMAGE_DOS_HEADER>(library, 0);
  const auto& headers = *At<IMAGE_NT_HEADERS>(library, static_cast<DWORD>(dos.e_lfanew));
  return headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
}

// Where the library keeps the address of a function that it calls in another; null when it does not call it.
ULONG_PTR* FindImport(HMODULE library, const char* function) {
  for (auto* from = At<IMAGE_IMPORT_DESCRIPTOR>(library, ImportsOf(library).VirtualAddress); from->Name; ++from) {
    const auto* name = At<IMAGE_THUNK_DATA>(library, from->OriginalFirstThunk);
    auto* address = At<IMAGE_THUNK_DATA>(library, from->FirstThunk);
    for (; name->u1.AddressOfData; ++name, ++address) {
      if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
      const auto& import = *At<IMAGE_IMPORT_BY_NAME>(library, static_cast<DWORD>(name->u1.AddressOfData));
      if (std::strcmp(import.Name, function) == 0) return &address->u1.Function;
    }
  }
  return nullptr;
}

void Redirect(HMODULE library, const char* function, const void* target) {
  ULONG_PTR* const address = FindImport(library, function);
  DWORD before = 0;
  if (!address || !VirtualProtect(address, sizeof *address, PAGE_READWRITE, &before)) return;
  *address = reinterpret_cast<ULONG_PTR>(target);
  VirtualProtect(address, sizeof *address, before, &before);
}

constexpr const char* kQuestion = "GetMonitorInfoW";

}  // namespace

ScreenOfScript::ScreenOfScript(HMODULE library, const TwipsSize& size)
    : library_(library), dotsPerInch_(ScreenOf(nullptr).dotsPerInch) {
  SetSize(size);
  Redirect(library_, kQuestion, reinterpret_cast<const void*>(&Answer));
}

ScreenOfScript::~ScreenOfScript() { Redirect(library_, kQuestion, reinterpret_cast<const void*>(&GetMonitorInfoW)); }

TwipsSize ScreenOfScript::Size() const {
  const double twipsPerPixel = kTwipsPerInch / dotsPerInch_;
  return {pixels.cx * twipsPerPixel, pixels.cy * twipsPerPixel};
}

void ScreenOfScript::SetSize(const TwipsSize& size) {
  pixels = {ToPixels(size.width, dotsPerInch_), ToPixels(size.height, dotsPerInch_)};
}

BOOL WINAPI ScreenOfScript::Answer(HMONITOR monitor, MONITORINFO* info) {
  if (!GetMonitorInfoW(monitor, info)) return FALSE;
  info->rcMonitor = {0, 0, pixels.cx, pixels.cy};
  info->rcWork = info->rcMonitor;
  return TRUE;
}

}  // namespace vardo
