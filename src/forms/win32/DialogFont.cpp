#include "forms/win32/DialogFont.h"

#include "platform/win32/Screen.h"
#include "platform/win32/WideText.h"

#include <algorithm>

namespace vardo {
namespace {

// Of the system's size, for eyes that have chosen a size to read.
constexpr double kSmallest = 0.7;

LOGFONTW SystemDialogFont(int dotsPerInch) {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, static_cast<UINT>(dotsPerInch));
  return metrics.lfMessageFont;
}

// What a window needs beside its caption, in twips.
double Surrounds(ControlKind kind) {
  switch (kind) {
    case ControlKind::Button:
      return 240;
    case ControlKind::Check:
      return 330;
    case ControlKind::Frame:
      return 360;
    default:
      return 0;
  }
}

bool CaptionFits(const Control& control, HDC dc, int dotsPerInch) {
  const std::wstring caption = ToWide(control.Caption());
  const LONG width = ToPixels(control.Place().width - Surrounds(control.kind()), dotsPerInch);
  const LONG height = ToPixels(control.Place().height, dotsPerInch);
  const UINT lines = control.kind() == ControlKind::Label ? DT_WORDBREAK : DT_SINGLELINE;
  RECT needed = {0, 0, width, 0};
  DrawTextW(dc, caption.c_str(), -1, &needed, DT_CALCRECT | lines);
  return needed.right <= width && needed.bottom <= height;
}

bool CaptionsFit(const Form& form, HFONT font, int dotsPerInch) {
  const TextMeasure measure(nullptr, font);
  const auto& controls = form.Controls();
  return std::all_of(controls.begin(), controls.end(), [&](const Control* control) {
    return control->Caption().empty() || CaptionFits(*control, measure.dc(), dotsPerInch);
  });
}

}  // namespace

Font MakeDialogFont(const Form& form, int dotsPerInch) {
  LOGFONTW description = SystemDialogFont(dotsPerInch);
  const auto smallest = static_cast<LONG>(description.lfHeight * kSmallest);
  Font font(CreateFontIndirectW(&description));
  // Heights of characters are negative.
  while (description.lfHeight < smallest && !CaptionsFit(form, font.get(), dotsPerInch)) {
    ++description.lfHeight;
    font.reset(CreateFontIndirectW(&description));
  }
  return font;
}

}  // namespace vardo
