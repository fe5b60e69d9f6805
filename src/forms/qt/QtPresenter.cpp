#include "forms/qt/QtPresenter.h"

#include "base/Errors.h"
#include "base/Text.h"
#include "forms/Forms.h"
#include "forms/qt/FormWindow.h"
#include "forms/qt/Keys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPixmap>
#include <QPointer>

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

}  // namespace

void QtPresenter::RunModal(Form& form) {
  QWidget* const below = windows_.Top() ? windows_.Top() : QApplication::activeWindow();
  const ActiveAgain activeAgain(below);
  FormWindow window(form, below);
  const ShownWindows<FormWindow>::OnTop onTop(windows_, window);
  window.Open();
  Serve(window);
  if (form.IsShown()) form.UserKey("Escape");
  if (form.IsShown()) Hide(form);
}

void QtPresenter::Serve(FormWindow& window) {
  if (pump_) return pump_(window.form());
  window.Run();
}

void QtPresenter::Closed(Form& form) { windows_.Of(form).Close(); }

void QtPresenter::Focus(Control& control) {
  control.form().RequireFocusable(control);
  ViewOf(control).GoTo();
}

void QtPresenter::Type(TextControl& control, std::string_view text) {
  const auto* combo = dynamic_cast<const ComboBox*>(&control);
  if (combo && combo->PickOnly()) return Pick(control, control.form().RequireOffered(*combo, text));
  control.form().RequireFocusable(control);
  ViewOf(control).Type(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

void QtPresenter::Pick(Control& control, int index) {
  control.form().RequireItem(control, index);
  ViewOf(control).Pick(index);
}

void QtPresenter::Check(CheckBox& control, bool checked) {
  Focus(control);
  if (control.Checked() != checked && control.Shown()) ViewOf(control).Click();
}

void QtPresenter::Click(Control& control) {
  control.form().RequireFocusable(control);
  ViewOf(control).Click();
}

void QtPresenter::DblClick(Control& control) {
  control.form().RequireFocusable(control);
  ViewOf(control).DblClick();
}

void QtPresenter::Key(Form& form, std::string_view name) {
  const auto key = KeyOfName(name);
  // A blank typed over whatever the box has selected would be typing; so would be a key that has no name.
  if (!key || name == "Space") return form.UserKey(name);
  FormWindow& window = windows_.Of(form);
  QWidget* const focus = window.focusWidget() ? window.focusWidget() : &window;
  for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key->key(), key->keyboardModifiers());
    QApplication::sendEvent(focus, &event);
  }
}

void QtPresenter::Screenshot(Form& form, const std::string& file) {
  if (!windows_.Of(form).grab().save(QString::fromStdString(file), "PNG"))
    throw RuntimeError(5, "No picture of " + form.name() + " could be written to " + InWords(file) + ".");
}

void QtPresenter::ProcessEvents() { QApplication::processEvents(); }

ControlView& QtPresenter::ViewOf(const Control& control) const { return windows_.Of(control.form()).View(control); }

}  // namespace vardo
