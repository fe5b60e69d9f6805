// A form as a window: the widgets of its controls, and what a person does with them.
#pragma once

#include "forms/qt/ControlView.h"

#include <QDialog>
#include <QEventLoop>

#include <unordered_map>

namespace vardo {

class FormWindow : public QDialog, private FormObserver {
 public:
  // Shows nothing yet. The form is mirrored until the window is destroyed, and must outlive it.
  FormWindow(Form& form, QWidget* below);
  ~FormWindow() override { form_.SetObserver(nullptr); }

  Form& form() const { return form_; }
  ControlView& View(const Control& control) const { return *views_.at(&control); }

  // Shows the window and gives it the keyboard.
  void Open();
  // Serves the person until Close is called.
  void Run() { loop_.exec(); }
  void Close();

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void ControlChanged(Control& control) override { View(control).Mirror(); }
  void FocusMoved(Control* focus) override;

  ControlView& MakeView(Control& control);
  void PlaceWindow();
  void NameForReaders(const Control& control) const;
  QWidget* LedBy(const Control& label) const;

  Form& form_;
  std::unordered_map<const Control*, ControlView*> views_;
  QEventLoop loop_;
  bool mirroring_ = false;
};

// Makes a window the one with the keyboard. Qt does not do so by itself when a modal window over it has closed, where no window
// manager runs.
void ActivateWindow(QWidget& window);

}  // namespace vardo
