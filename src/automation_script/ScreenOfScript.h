// A screen of the script's own for one library of this process: whatever monitor the library asks for is that one.
#pragma once

#include "platform/Platform.h"

#include <windows.h>

namespace vardo {

// One at a time.
class ScreenOfScript {
 public:
  ScreenOfScript(HMODULE library, const TwipsSize& size);
  ~ScreenOfScript();
  ScreenOfScript(const ScreenOfScript&) = delete;
  ScreenOfScript& operator=(const ScreenOfScript&) = delete;

  // In whole pixels, as screens are.
  TwipsSize Size() const;
  void SetSize(const TwipsSize& size);

 private:
  static BOOL WINAPI Answer(HMONITOR monitor, MONITORINFO* info);

  HMODULE library_;
  int dotsPerInch_;
};

}  // namespace vardo
