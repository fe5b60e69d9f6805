#include "platform/win32/Screen.h"

// After windows.h, which it needs.
#include <shellscalingapi.h>

#include <cmath>

namespace vardo {

Screen ScreenOf(HWND window) {
  const OwnPixels pixels;
  const HMONITOR monitor = MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY);
  MONITORINFO info = {};
  info.cbSize = sizeof info;
  GetMonitorInfoW(monitor, &info);
  UINT x = USER_DEFAULT_SCREEN_DPI, y = USER_DEFAULT_SCREEN_DPI;
  GetDpiForMonitor(monitor, MDT_EFFECTIVE_DPI, &x, &y);
  return {info.rcMonitor, static_cast<int>(y)};
}

int ToPixels(double twips, int dotsPerInch) { return static_cast<int>(std::lround(twips * dotsPerInch / kTwipsPerInch)); }

}  // namespace vardo
