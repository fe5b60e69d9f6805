// The screen that a window is on, and lengths on it.
#pragma once

#include <windows.h>

namespace vardo {

inline constexpr double kTwipsPerInch = 1440;

// While one of these lives, the calling thread sees the screens' own pixels, and windows it makes follow the resolution of the
// screen they are on, also in a host whose windows are stretched. A window keeps to this in all that it does later.
class OwnPixels {
 public:
  // The first systems with such a thing know the first version only.
  OwnPixels() : before_(SetThreadDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2)) {
    if (!before_) before_ = SetThreadDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE);
  }
  ~OwnPixels() {
    if (before_) SetThreadDpiAwarenessContext(before_);
  }
  OwnPixels(const OwnPixels&) = delete;
  OwnPixels& operator=(const OwnPixels&) = delete;

 private:
  DPI_AWARENESS_CONTEXT before_;
};

struct Screen {
  RECT pixels;
  int dotsPerInch;
};

// The primary screen when there is no window. Pixels are the screen's own.
Screen ScreenOf(HWND window);

int ToPixels(double twips, int dotsPerInch);

}  // namespace vardo
