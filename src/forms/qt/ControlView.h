// One control of a form as a Qt widget: shows what the control says, and tells the form what a person does with the widget.
//   The form decides what that means; nothing here changes a widget but the control it shows.
#pragma once

#include "forms/Form.h"

#include <QObject>
#include <QString>
#include <QWidget>

namespace vardo {

// Hands a key that means something in a dialog to the form; true when the event went there and goes no further.
bool ForwardDialogKey(Form& form, QEvent& event);

class ControlView : public QObject {
 public:
  // Makes the control's widget in a window or frame, which owns both. While mirroring is set, what happens to the widgets is the
  // program's doing and not a person's.
  static ControlView* Make(Control& control, QWidget& parent, bool& mirroring);

  Control& control() const { return control_; }
  QWidget& widget() const { return widget_; }

  void Mirror();

  // --- A person's acts, as events of the toolkit. They are only for a control that the form says can take them.
  // False when leaving another control has hidden this one.
  bool GoTo();
  virtual void Type(const QString&) {}
  virtual void Pick(int) {}
  virtual void Click() { GoTo(); }
  virtual void DblClick();

 protected:
  ControlView(Control& control, QWidget& widget, bool& mirroring);
  bool eventFilter(QObject* watched, QEvent* event) override;

  virtual void Update() = 0;
  // A key that means nothing to the form: true when the widget may have it.
  virtual bool LeavesKey(int) const { return false; }
  // Letters, blanks and the caret's keys are the widget's own.
  virtual bool TakesTyping() const { return false; }

  Form& form() const { return control_.form(); }
  bool mirroring() const { return mirroring_; }

 private:
  Control& control_;
  QWidget& widget_;
  bool& mirroring_;
};

}  // namespace vardo
