// The screen that a window is on, and lengths on it.
#pragma once

#include <windows.h>

namespace vardo {

inline constexpr double kTwipsPerInch = 1440;

struct Screen {
  RECT pixels;
  int dotsPerInch;
};

// The primary screen when there is no window. Pixels are those that the calling thread's windows have.
Screen ScreenOf(HWND window);

int ToPixels(double twips, int dotsPerInch);

}  // namespace vardo
