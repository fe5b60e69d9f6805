// Pictures of windows as PNG files.
#pragma once

#include <windows.h>

#include <string>

namespace vardo {

// The client area of a window as it stands on the screen, with whatever stands before it. Waits, handling messages, until the
// screen has come to rest. False when not all of the area is on a screen, or the file cannot be written.
bool SavePicture(HWND window, const std::string& file);

}  // namespace vardo
