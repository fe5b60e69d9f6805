#include "forms/qt/QtPresenter.h"

#include "addin/host/HostError.h"
#include "forms/Forms.h"
#include "forms/qt/FormWindow.h"
#include "forms/qt/Keys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPixmap>
#include <QPointer>
#include <algorithm>
#include <string>

namespace vardo {
namespace {

// However the form above ends.
class ActiveAgain {
 public:
  explicit ActiveAgain(QWidget* window) : window_(window) {}
  ~ActiveAgain() {
    if (window_) ActivateWindow(*window_);
  }
  ActiveAgain(const ActiveAgain&) = delete;
  ActiveAgain& operator=(const ActiveAgain&) = delete;

 private:
  QPointer<QWidget> window_;
};

class OnTop {
 public:
  OnTop(std::vector<FormWindow*>& windows, FormWindow& window) : windows_(windows) { windows_.push_back(&window); }
  ~OnTop() { windows_.pop_back(); }
  OnTop(const OnTop&) = delete;
  OnTop& operator=(const OnTop&) = delete;

 private:
  std::vector<FormWindow*>& windows_;
};

ControlView& ViewOf(FormWindow& window, const Control& control) { return window.View(control); }

}  // namespace

void QtPresenter::RunModal(Form& form) {
  QWidget* const below = windows_.empty() ? QApplication::activeWindow() : windows_.back();
  const ActiveAgain activeAgain(below);
  FormWindow window(form, below);
  const OnTop onTop(windows_, window);
  window.Open();
  Serve(window);
  if (form.IsShown()) form.UserKey("Escape");
  if (form.IsShown()) Hide(form);
}

void QtPresenter::Serve(FormWindow& window) {
  if (pump_) return pump_(window.form());
  window.Run();
}

void QtPresenter::Closed(Form& form) { Window(form).Close(); }

void QtPresenter::Focus(Control& control) {
  control.form().RequireFocusable(control);
  ViewOf(Window(control.form()), control).GoTo();
}

void QtPresenter::Type(TextControl& control, std::string_view text) {
  const auto* combo = dynamic_cast<const ComboBox*>(&control);
  if (combo && combo->PickOnly()) return Pick(control, control.form().RequireOffered(*combo, text));
  control.form().RequireFocusable(control);
  ViewOf(Window(control.form()), control).Type(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

void QtPresenter::Pick(Control& control, int index) {
  control.form().RequireItem(control, index);
  ViewOf(Window(control.form()), control).Pick(index);
}

void QtPresenter::Check(CheckBox& control, bool checked) {
  Focus(control);
  if (control.Checked() != checked && control.Shown()) ViewOf(Window(control.form()), control).Click();
}

void QtPresenter::Click(Control& control) {
  control.form().RequireFocusable(control);
  ViewOf(Window(control.form()), control).Click();
}

void QtPresenter::DblClick(Control& control) {
  control.form().RequireFocusable(control);
  ViewOf(Window(control.form()), control).DblClick();
}

void QtPresenter::Key(Form& form, std::string_view name) {
  const auto key = KeyOfName(name);
  // A blank typed over whatever the box has selected would be typing; so would be a key that has no name.
  if (!key || name == "Space") return form.UserKey(name);
  FormWindow& window = Window(form);
  QWidget* const focus = window.focusWidget() ? window.focusWidget() : &window;
  for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key->key(), key->keyboardModifiers());
    QApplication::sendEvent(focus, &event);
  }
}

void QtPresenter::Screenshot(Form& form, const std::string& file) {
  if (!Window(form).grab().save(QString::fromStdString(file), "PNG"))
    throw RuntimeError(5, "No picture of " + form.name() + " could be written to " + file + ".");
}

void QtPresenter::ProcessEvents() { QApplication::processEvents(); }

FormWindow& QtPresenter::Window(const Form& form) const {
  const auto found = std::find_if(windows_.begin(), windows_.end(), [&](const FormWindow* w) { return &w->form() == &form; });
  if (found == windows_.end()) throw RuntimeError(5, form.name() + " is not shown.");
  return **found;
}

}  // namespace vardo
