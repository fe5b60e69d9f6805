// The keys of a dialog by the names that forms know them by.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace vardo {

// What a key message (WM_KEYDOWN, WM_SYSKEYDOWN, WM_SYSCHAR) says; empty for a key that means nothing special in a dialog.
std::string NameOfKey(UINT message, WPARAM key);
// Sends the messages of that key to a window. False for a name that no key has.
bool SendNamedKey(HWND window, std::string_view name);
// The messages of a key that bears no name for forms, as it is pressed alone.
void SendPlainKey(HWND window, WORD key);

}  // namespace vardo
