// hhctrl.ocx beside the program: stands for the help viewer of Windows and tells the program what it was asked to show.
#include <windows.h>

extern "C" __declspec(dllexport) HWND WINAPI HtmlHelpA(HWND, LPCSTR file, UINT, DWORD_PTR topic) {
  using Tell = void (*)(const char* file, const char* topic);
  const auto tell = reinterpret_cast<Tell>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(nullptr), "VardoHelpShown")));
  if (tell) tell(file, reinterpret_cast<const char*>(topic));
  return nullptr;
}
