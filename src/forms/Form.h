// A dialog as a plain object. Its controls hold the state; a FormPresenter shows them and forwards what a person does.
//
// All that keys, clicks and the focus mean is decided here, because toolkits differ there. A handler's failure that comes from
// something the person did is shown in a message box, and the form stays open.
#pragma once

#include "forms/Controls.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// Hears of every change of a form that a toolkit has to show.
class FormObserver {
 public:
  virtual ~FormObserver() = default;
  virtual void ControlChanged(Control& control) = 0;
  virtual void FocusMoved(Control* focus) = 0;
};

class Form {
 public:
  Form(std::string_view name, std::string_view caption) : name_(name), caption_(caption) {}
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;
  virtual ~Form() = default;

  const std::string& name() const { return name_; }
  const std::string& Caption() const { return caption_; }
  // In tab order.
  const std::vector<Control*>& Controls() const { return controls_; }
  // Null when the form has none of that name.
  Control* Find(std::string_view controlName) const;
  // The label that names a control for the eye and for a screen reader: the nearest one before it in tab order. May be null.
  Label* LabelOf(const Control& control) const;

  const TwipsRect& Place() const { return place_; }
  void SetSize(double width, double height);
  void MoveTo(double left, double top);

  // What runs once when the instance is made.
  virtual void Form_Load() {}

  // --- Showing. Forms.h shows and unloads forms; these say what is so now.
  bool IsShown() const { return shown_; }
  void SetShown(bool shown) { shown_ = shown; }
  Control* Focus() const { return focus_; }
  // Gives the focus to the first control that can have it; raises nothing.
  void FocusFirst();
  void SetObserver(FormObserver* observer) { observer_ = observer; }

  // The button that Enter presses when no other has the focus; may be null.
  Button* DefaultButton() const { return ok_; }

  // --- What a person can do. Each throws RuntimeError 5 where a person could not.
  void RequireFocusable(const Control& control) const;
  void RequireItem(const Control& control, int index) const;
  // The item that a person chooses by typing the text into a pick-only combo.
  int RequireOffered(const ComboBox& control, std::string_view text) const;

  // --- What a person does. Each throws RuntimeError 5 for a control that is not shown or does not take it, and changes nothing.
  void UserFocus(Control& control);
  void UserType(TextControl& control, std::string_view text);
  void UserPick(Control& control, int index);
  void UserCheck(CheckBox& control, bool checked);
  void UserClick(Control& control);
  void UserDblClick(Control& control);
  // "Enter", "Escape", "Tab", "Shift+Tab", "Space", "Up", "Down", "PageUp", "PageDown", "Home", "End", "F4", "Alt+Down", "Alt+"
  // and a character.
  // "Space", "Home" and "End" mean nothing in a box that takes typing: there they belong to the caret.
  void UserKey(std::string_view key);

 protected:
  // The buttons that Enter and Escape press.
  void SetDefaultButtons(Button& ok, Button& cancel);

 private:
  friend class Control;
  friend class ComboBox;
  void Register(Control& control) { controls_.push_back(&control); }
  void ControlChanged(Control& control);
  void VisibilityChanged();
  // The program wants a control to have the focus.
  void FocusWanted(Control& control);
  // From one control to another: the one that is left hears of it.
  void MoveFocus(Control& control);
  // Nobody hears of it but who shows the form.
  void GiveFocus(Control* control);

  void RequireShown(const Control& control) const;
  static void CloseList(Control* control);
  // False when the handler failed; the failure has been shown.
  bool Guarded(const std::function<void()>& handler);
  // False when the control has not come to be the person's to act on: leaving the other failed, or has hidden it.
  bool FocusGained(Control& control);
  void Press(Control& control);
  void EnterOrEscape(Button* button, bool enter);
  void StepFocus(int direction);
  void Choose(Control& control, int index);
  void StepItem(int step);
  void ChooseEdge(bool last);
  void AccessKeyPressed(char32_t key);
  Control* NextShown(const Control* from, int direction) const;
  size_t PositionOf(const Control* control) const;

  std::string name_, caption_;
  TwipsRect place_;
  std::vector<Control*> controls_;
  Control* focus_ = nullptr;
  Control* wantsFocus_ = nullptr;  // once it is shown
  Button* ok_ = nullptr;
  Button* cancel_ = nullptr;
  FormObserver* observer_ = nullptr;
  bool shown_ = false;
};

}  // namespace vardo
