#include "forms/win32/Win32Presenter.h"

#include "forms/Forms.h"
#include "forms/win32/MessageLoop.h"

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

HWND Win32Presenter::WindowOf(const Form& form) const {
  const FormWindow* window = windows_.Find(form);
  return window ? window->window() : nullptr;
}

}  // namespace vardo
