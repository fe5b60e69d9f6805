// Forms and controls bear their names on their windows, where tests, automation and assistive tools find them.
//   The value of a window's property is a global atom, so that it can be read from another process too.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace vardo {

// The property of a form's window, and of the window of each of its controls.
inline constexpr const wchar_t* kFormProperty = L"VardoForm";
inline constexpr const wchar_t* kControlProperty = L"VardoControl";

void NameWindow(HWND window, const wchar_t* property, std::string_view name);
// Before the window is destroyed.
void UnnameWindow(HWND window, const wchar_t* property);

// Empty when the window has no such property.
std::string NameOfWindow(HWND window, const wchar_t* property);

}  // namespace vardo
