// Forms and controls bear their names on their windows, where tests, automation and assistive tools find them.
//   The value of a window's property is a global atom, so that it can be read from another process too.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// The property of a form's window, and of the window of each of its controls.
inline constexpr const wchar_t* kFormProperty = L"VardoForm";
inline constexpr const wchar_t* kControlProperty = L"VardoControl";
// Of a form's window: where the form stands by its own description, in twips: "left top width height". Windows have whole pixels.
inline constexpr const wchar_t* kPlaceProperty = L"VardoPlace";

void NameWindow(HWND window, const wchar_t* property, std::string_view name);
// A loaded form as others in the process can see it, while this lives: also while the form itself has no window.
class LoadedMark {
 public:
  explicit LoadedMark(std::string_view form);
  ~LoadedMark();
  LoadedMark(const LoadedMark&) = delete;
  LoadedMark& operator=(const LoadedMark&) = delete;

 private:
  HWND window_;
};
// The names of this thread's loaded forms, in the order of loading.
std::vector<std::string> MarkedForms();

// Before the window is destroyed.
void UnnameWindow(HWND window, const wchar_t* property);

// Empty when the window has no such property.
std::string NameOfWindow(HWND window, const wchar_t* property);

}  // namespace vardo
