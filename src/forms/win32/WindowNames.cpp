#include "forms/win32/WindowNames.h"

#include "platform/win32/OwnModule.h"
#include "platform/win32/WideText.h"

#include <algorithm>
#include <array>

namespace vardo {
namespace {

ATOM AtomOf(HANDLE property) { return static_cast<ATOM>(reinterpret_cast<ULONG_PTR>(property)); }

}  // namespace

void NameWindow(HWND window, const wchar_t* property, std::string_view name) {
  const ATOM atom = GlobalAddAtomW(ToWide(name).c_str());
  SetPropW(window, property, reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(atom)));
}

void UnnameWindow(HWND window, const wchar_t* property) {
  if (const ATOM atom = AtomOf(RemovePropW(window, property))) GlobalDeleteAtom(atom);
}

LoadedMark::LoadedMark(std::string_view form)
    : window_(CreateWindowExW(0, L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, OwnModule(), nullptr)) {
  if (window_) NameWindow(window_, kFormProperty, form);
}

LoadedMark::~LoadedMark() {
  if (!window_) return;
  UnnameWindow(window_, kFormProperty);
  DestroyWindow(window_);
}

// Windows lists the newest first.
std::vector<std::string> MarkedForms() {
  std::vector<std::string> names;
  for (HWND mark = nullptr; (mark = FindWindowExW(HWND_MESSAGE, mark, L"Static", nullptr));)
    if (GetWindowThreadProcessId(mark, nullptr) == GetCurrentThreadId()) names.push_back(NameOfWindow(mark, kFormProperty));
  std::erase(names, "");
  std::reverse(names.begin(), names.end());
  return names;
}

std::string NameOfWindow(HWND window, const wchar_t* property) {
  std::array<wchar_t, 256> name;  // the longest that an atom can have
  const ATOM atom = AtomOf(GetPropW(window, property));
  const UINT length = atom ? GlobalGetAtomNameW(atom, name.data(), static_cast<int>(name.size())) : 0;
  return FromWide({name.data(), length});
}

}  // namespace vardo
