#include "forms/win32/Win32Presenter.h"

#include "base/Errors.h"
#include "base/Text.h"
#include "forms/Forms.h"
#include "forms/win32/Hands.h"
#include "forms/win32/Keys.h"
#include "forms/win32/MessageLoop.h"
#include "forms/win32/Picture.h"
#include "platform/win32/WideText.h"

#include <string>

namespace vardo {

void Win32Presenter::RunModal(Form& form) {
  FormWindow window(form, TopWindow());
  const ShownWindows<FormWindow>::OnTop onTop(windows_, window);
  window.Open();
  Serve(window);
}

void Win32Presenter::Serve(FormWindow& window) {
  Form& form = window.form();
  QuitWish quit;
  if (pump_) {
    pump_(form);
  } else {
    MSG message;
    while (form.IsShown() && window.window() && !quit.IsWished()) {
      if (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchOne(message);
      else
        quit.Note(message);
    }
  }
  if (form.IsShown()) form.UserKey("Escape");
  if (form.IsShown()) Hide(form);
}

void Win32Presenter::Closed(Form& form) { windows_.Of(form).Close(); }

void Win32Presenter::Focus(Control& control) {
  control.form().RequireFocusable(control);
  GoTo(WindowOf(control));
}

void Win32Presenter::Type(TextControl& control, std::string_view text) {
  const auto* combo = dynamic_cast<const ComboBox*>(&control);
  if (combo && combo->PickOnly()) return Pick(control, control.form().RequireOffered(*combo, text));
  control.form().RequireFocusable(control);
  TypeInto(WindowOf(control), ToWide(text));
}

void Win32Presenter::Pick(Control& control, int index) {
  control.form().RequireItem(control, index);
  PickItem(WindowOf(control), index);
}

void Win32Presenter::Check(CheckBox& control, bool checked) {
  Focus(control);
  if (control.Checked() != checked && control.Shown()) ClickOn(WindowOf(control));
}

void Win32Presenter::Click(Control& control) {
  control.form().RequireFocusable(control);
  ClickOn(WindowOf(control));
}

void Win32Presenter::DblClick(Control& control) {
  control.form().RequireFocusable(control);
  DoubleClickOn(WindowOf(control));
}

void Win32Presenter::Key(Form& form, std::string_view name) {
  FormWindow& window = windows_.Of(form);
  const HWND focus = form.Focus() ? window.View(*form.Focus()).FocusWindow() : window.window();
  if (!SendNamedKey(focus, name)) form.UserKey(name);
}

void Win32Presenter::Screenshot(Form& form, const std::string& file) {
  FormWindow& window = windows_.Of(form);
  if (!SavePicture(window.window(), file))
    throw RuntimeError(5, "No picture of " + form.name() + " could be written to " + InWords(file) + ".");
}

HWND Win32Presenter::WindowOf(const Form& form) const {
  const FormWindow* window = windows_.Find(form);
  return window ? window->window() : nullptr;
}

HWND Win32Presenter::WindowOf(const Control& control) const { return windows_.Of(control.form()).View(control).window(); }

}  // namespace vardo
