#include "forms/win32/Win32Driver.h"

#include "base/Errors.h"
#include "base/Text.h"
#include "forms/win32/Hands.h"
#include "forms/win32/Keys.h"
#include "forms/win32/Picture.h"
#include "platform/win32/WideText.h"

#include <string>

namespace vardo {

void Win32Driver::Focus(Control& control) {
  control.form().RequireFocusable(control);
  GoTo(WindowOf(control));
}

void Win32Driver::Type(TextControl& control, std::string_view text) {
  const auto* combo = dynamic_cast<const ComboBox*>(&control);
  if (combo && combo->PickOnly()) return Pick(control, control.form().RequireOffered(*combo, text));
  control.form().RequireFocusable(control);
  TypeInto(WindowOf(control), ToWide(text));
}

void Win32Driver::Pick(Control& control, int index) {
  control.form().RequireItem(control, index);
  PickItem(WindowOf(control), index);
}

void Win32Driver::Check(CheckBox& control, bool checked) {
  Focus(control);
  if (control.Checked() != checked && control.Shown()) ClickOn(WindowOf(control));
}

void Win32Driver::Click(Control& control) {
  control.form().RequireFocusable(control);
  ClickOn(WindowOf(control));
}

void Win32Driver::DblClick(Control& control) {
  control.form().RequireFocusable(control);
  DoubleClickOn(WindowOf(control));
}

void Win32Driver::Key(Form& form, std::string_view name) {
  FormWindow& window = windows().Of(form);
  const HWND focus = form.Focus() ? window.View(*form.Focus()).FocusWindow() : window.window();
  if (!SendNamedKey(focus, name)) form.UserKey(name);
}

void Win32Driver::Screenshot(Form& form, const std::string& file) {
  FormWindow& window = windows().Of(form);
  if (!SavePicture(window.window(), file))
    throw RuntimeError(5, "No picture of " + form.name() + " could be written to " + InWords(file) + ".");
}

HWND Win32Driver::WindowOf(const Control& control) const { return windows().Of(control.form()).View(control).window(); }

}  // namespace vardo
