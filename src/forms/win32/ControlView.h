// One control of a form as a window: shows what the control says, and tells the form what a person does with the window.
//   The form decides what that means; nothing here changes a window but the control it shows.
#pragma once

#include "forms/Form.h"

#include <windows.h>

#include <memory>
#include <string>

namespace vardo {

// Runs what a person did. Nothing may be thrown through a window procedure, and what the form refuses changes nothing.
template <class Act>
void Forward(Act act) noexcept {
  try {
    act();
  } catch (const std::exception&) {
  }
}

// The same for a message that Windows waits for an answer to.
template <class Answering>
LRESULT ForwardMessage(Answering answering) noexcept {
  LRESULT result = 0;
  Forward([&] { result = answering(); });
  return result;
}

// Hands a key that means something in a dialog to the form; true when the message went there and goes no further.
bool ForwardDialogKey(Form& form, UINT message, WPARAM key);

// What a form's window and a frame have to answer for the windows in them. None when it is another message.
struct Answer {
  bool given = false;
  LRESULT result = 0;
};
Answer AnswerAsParent(UINT message, WPARAM wParam, LPARAM lParam);

// Set while what happens to the windows is the program's doing and not a person's.
class Mirroring {
 public:
  explicit Mirroring(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
  ~Mirroring() { flag_ = before_; }
  Mirroring(const Mirroring&) = delete;
  Mirroring& operator=(const Mirroring&) = delete;

 private:
  bool& flag_;
  bool before_;
};

class ControlView {
 public:
  // Makes the control's window in that of the form or of a frame, and destroys it unless they have gone with it. Throws
  // RuntimeError when Windows makes none.
  static std::unique_ptr<ControlView> Make(Control& control, HWND parent, bool& mirroring);
  // The view of a window that Make made; null for any other.
  static ControlView* Of(HWND window);

  virtual ~ControlView();
  ControlView(const ControlView&) = delete;
  ControlView& operator=(const ControlView&) = delete;

  Control& control() const { return control_; }
  // Null when it has gone.
  HWND window() const { return window_; }
  // The window that has the keyboard while the control has the focus.
  virtual HWND FocusWindow() const { return window_; }

  // In pixels of the parent's client area.
  virtual void SetPlace(const RECT& place);
  void SetFont(HFONT font);
  void Mirror();

  // A person comes here by other means than the mouse; goes elsewhere.
  virtual void Entered() {}
  virtual void Left() {}
  // What the window tells its parent.
  virtual void Notified(WORD) {}

 protected:
  ControlView(Control& control, HWND window, bool& mirroring);

  // Has the messages of one more window, a part of the control's, come to Handle.
  void Watch(HWND window);
  virtual LRESULT Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  virtual void Update() = 0;

  // A key that means nothing to the form: true when the window may have it.
  virtual bool LeavesKey(WPARAM) const { return true; }
  // Blanks and the caret's keys are the window's own.
  virtual bool TakesTyping() const { return false; }

  Form& form() const { return control_.form(); }
  // What a person does now is meant for the form.
  bool Listens() const { return !mirroring_ && form().IsShown() && control_.Shown(); }
  void FocusTaken();
  void DoubleClicked();

  bool& mirroring_;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id, DWORD_PTR view);
  bool TakesKey(UINT message, WPARAM key);

  Control& control_;
  HWND window_;
};

}  // namespace vardo
