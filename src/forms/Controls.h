// The controls of a form: plain objects that hold the state a toolkit shows and raise signals when it changes.
//   Text is UTF-8. Places and sizes are twips (1/1440 inch), measured from the form's upper left corner.
//   A control belongs to its form and registers itself there; the order of registering is the tab order.
#pragma once

#include "forms/FieldView.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

class Form;
class Frame;

enum class ControlKind { Label, Combo, Text, Check, Button, List, Frame, Line };

struct TwipsRect {
  double left = 0, top = 0, width = 0, height = 0;
};

using Signal = std::function<void()>;

class Control {
 public:
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;
  virtual ~Control() = default;

  const std::string& name() const { return name_; }
  ControlKind kind() const { return kind_; }
  Form& form() const { return form_; }

  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string_view caption);
  // The caption's access key as a lower-case letter, 0 when it has none.
  char32_t AccessKey() const;

  bool IsVisible() const { return visible_; }
  void SetVisible(bool visible);
  // Visible, and so is every frame around it.
  bool Shown() const;

  const TwipsRect& Place() const { return place_; }
  void SetPlace(const TwipsRect& place) { place_ = place; }
  // The frame that holds the control; null when it stands on the form itself.
  Frame* parent() const { return parent_; }
  void SetParent(Frame* parent) { parent_ = parent; }

  bool TakesFocus() const;
  // Moves the focus here. A hidden control gets it when it comes to be shown, unless another box has been edited, OK been
  // pressed, or the focus been moved by the program by then.
  void MoveFocusHere();

  Signal LostFocus, Click, DblClick;

 protected:
  Control(Form& form, std::string_view name, ControlKind kind, std::string_view caption = {});
  void Changed();
  static void Raise(const Signal& signal);

 private:
  friend class Form;
  Form& form_;
  std::string name_;
  ControlKind kind_;
  std::string caption_;
  TwipsRect place_;
  Frame* parent_ = nullptr;
  bool visible_ = true;
};

class Label : public Control {
 public:
  Label(Form& form, std::string_view name, std::string_view caption = {}) : Control(form, name, ControlKind::Label, caption) {}
  // A text of several lines, broken where its place ends.
  bool Wraps() const { return wraps_; }
  void SetWraps(bool wraps) { wraps_ = wraps; }

 private:
  bool wraps_ = false;
};

class Frame : public Control {
 public:
  Frame(Form& form, std::string_view name, std::string_view caption = {}) : Control(form, name, ControlKind::Frame, caption) {}
};

class Line : public Control {
 public:
  Line(Form& form, std::string_view name) : Control(form, name, ControlKind::Line) {}
};

class Button : public Control {
 public:
  Button(Form& form, std::string_view name, std::string_view caption = {}) : Control(form, name, ControlKind::Button, caption) {}
};

// A box with a text: what fields are checked, tidied and stored through.
class TextControl : public Control, public FieldView {
 public:
  virtual void SetText(std::string_view text) = 0;
  // FieldView.
  bool Visible() const override { return IsVisible(); }
  std::string Text() const override { return text_; }
  void SetFocus() override { MoveFocusHere(); }

 protected:
  using Control::Control;
  std::string text_;
};

class TextBox : public TextControl {
 public:
  TextBox(Form& form, std::string_view name) : TextControl(form, name, ControlKind::Text) {}
  void SetText(std::string_view text) override;
};

// A text with a list to choose from. Choosing an item sets the text; a text that equals an item chooses it.
// Click is raised each time the chosen item changes, whoever changes it.
class ComboBox : public TextControl, public ItemList {
 public:
  // A pick-only combo takes no typing but the text of an item; it shows whatever text the program sets.
  enum class Style { Typed, PickOnly };
  ComboBox(Form& form, std::string_view name, Style style = Style::Typed)
      : TextControl(form, name, ControlKind::Combo), style_(style) {}

  bool PickOnly() const { return style_ == Style::PickOnly; }
  void AddItem(std::string_view item) override;
  const std::vector<std::string>& Items() const { return items_; }
  // The chosen item, counted from 0; -1 when there is none.
  int ListIndex() const { return index_; }
  void SetListIndex(int index);
  void SetText(std::string_view text) override;

  // How many items an open list shows at once.
  static constexpr int kItemsInSight = 12;
  bool DroppedDown() const { return droppedDown_; }
  void SetDroppedDown(bool droppedDown);
  // What the open list is left with unless an item of it is taken: what the box holds now. It is what the box held when the list
  // was opened until this is called.
  void KeepChoice();
  // Closes the list, and puts back what was to be kept.
  void LeaveList();

 private:
  struct Choice {
    int index = -1;
    std::string text;
  };
  void Choose(int index, std::string_view text);

  Style style_;
  std::vector<std::string> items_;
  int index_ = -1;
  bool droppedDown_ = false;
  Choice kept_;
};

class CheckBox : public Control {
 public:
  CheckBox(Form& form, std::string_view name, std::string_view caption = {}) : Control(form, name, ControlKind::Check, caption) {}
  bool Checked() const { return checked_; }
  // Raises Click when the state changes.
  void SetChecked(bool checked);

 private:
  bool checked_ = false;
};

class ListBox : public Control {
 public:
  ListBox(Form& form, std::string_view name) : Control(form, name, ControlKind::List) {}
  const std::vector<std::string>& Items() const { return items_; }
  void AddItem(std::string_view item);
  // Inserts before the line at index; the line that was selected stays selected.
  void InsertItem(int index, std::string_view item);
  // Nothing is selected after the selected line was removed.
  void RemoveItem(int index);
  void SetItem(int index, std::string_view item);
  int ListIndex() const { return index_; }
  void SetListIndex(int index);
  // How many lines its place has room for.
  int LinesInSight() const;

 private:
  std::vector<std::string> items_;
  int index_ = -1;
};

}  // namespace vardo
