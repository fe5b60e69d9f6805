// The font of a form's window, and the room that texts take.
#pragma once

#include "forms/Form.h"

#include <windows.h>

#include <memory>
#include <type_traits>

namespace vardo {

// Measures texts in a font, for a window or, for null, for the screen.
class TextMeasure {
 public:
  TextMeasure(HWND window, HFONT font) : window_(window), dc_(GetDC(window)), before_(SelectObject(dc_, font)) {}
  ~TextMeasure() {
    SelectObject(dc_, before_);
    ReleaseDC(window_, dc_);
  }
  TextMeasure(const TextMeasure&) = delete;
  TextMeasure& operator=(const TextMeasure&) = delete;
  HDC dc() const { return dc_; }

 private:
  HWND window_;
  HDC dc_;
  HGDIOBJ before_;
};

struct FontDeleter {
  void operator()(HFONT font) const { DeleteObject(font); }
};
using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, FontDeleter>;

// The system's font for dialogs in the largest size, up to the system's own, in which every caption of the form fits its place.
Font MakeDialogFont(const Form& form, int dotsPerInch);

}  // namespace vardo
