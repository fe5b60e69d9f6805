#include "forms/Form.h"

#include "base/Errors.h"
#include "base/Text.h"
#include "platform/Platform.h"

#include <algorithm>
#include <new>
#include <string>
#include <utility>

namespace vardo {
namespace {

void ShowFailure(const AutomationError& error) {
  ThePlatform().ShowMessage(std::to_string(error.number()) + "\n" + error.description(), kProductTitle, kStyleExclamation);
}

RuntimeError NotForAPerson(const Control& control, std::string_view why) {
  return RuntimeError::InvalidArgument(control.name() + " " + std::string(why));
}

int ItemCount(const Control& control) {
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control)) return static_cast<int>(combo->Items().size());
  if (const auto* list = dynamic_cast<const ListBox*>(&control)) return static_cast<int>(list->Items().size());
  return 0;
}

int ChosenIndex(const Control& control) {
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control)) return combo->ListIndex();
  if (const auto* list = dynamic_cast<const ListBox*>(&control)) return list->ListIndex();
  return -1;
}

// As far as a page goes in a list, so that one item of the page before stays in sight.
int PageOf(const Control& control) {
  const auto* list = dynamic_cast<const ListBox*>(&control);
  return std::max(1, (list ? list->LinesInSight() : ComboBox::kItemsInSight) - 1);
}

bool TakesTyping(const Control& control) {
  const auto* combo = dynamic_cast<const ComboBox*>(&control);
  return control.kind() == ControlKind::Text || (combo && !combo->PickOnly());
}

void ChooseItem(Control& control, int index) {
  if (auto* combo = dynamic_cast<ComboBox*>(&control)) combo->SetListIndex(index);
  if (auto* list = dynamic_cast<ListBox*>(&control)) list->SetListIndex(index);
}

}  // namespace

Control* Form::Find(std::string_view controlName) const {
  const auto found = std::find_if(controls_.begin(), controls_.end(), [&](const Control* c) { return c->name() == controlName; });
  return found == controls_.end() ? nullptr : *found;
}

Label* Form::LabelOf(const Control& control) const {
  for (size_t at = PositionOf(&control); at-- > 0;) {
    if (controls_[at]->kind() == ControlKind::Label) return static_cast<Label*>(controls_[at]);
    if (controls_[at]->kind() != control.kind()) return nullptr;
  }
  return nullptr;
}

void Form::SetSize(double width, double height) {
  place_.width = width;
  place_.height = height;
}

void Form::MoveTo(double left, double top) {
  place_.left = left;
  place_.top = top;
}

void Form::SetDefaultButtons(Button& ok, Button& cancel) {
  ok_ = &ok;
  cancel_ = &cancel;
}

void Form::FocusFirst() {
  wantsFocus_ = nullptr;
  GiveFocus(NextShown(nullptr, +1));
}

void Form::UserFocus(Control& control) { FocusGained(control); }

// When leaving a box hides the one that was to be reached, the focus is back where it was.
bool Form::FocusGained(Control& control) {
  RequireFocusable(control);
  Control* const left = focus_;
  const bool done = Guarded([&] { MoveFocus(control); });
  if (control.Shown()) return done;
  GiveFocus(left && left->Shown() ? left : NextShown(left, +1));
  return false;
}

void Form::UserType(TextControl& control, std::string_view text) {
  RequireShown(control);
  auto* combo = dynamic_cast<ComboBox*>(&control);
  if (combo && combo->PickOnly()) return UserPick(control, RequireOffered(*combo, text));
  UserFocus(control);
  if (!control.Shown()) return;
  Guarded([&] { control.SetText(text); });
  if (combo) combo->KeepChoice();
  wantsFocus_ = nullptr;
}

void Form::UserPick(Control& control, int index) {
  RequireItem(control, index);
  UserFocus(control);
  if (!control.Shown()) return;
  CloseList(&control);
  Choose(control, index);
}

void Form::UserCheck(CheckBox& control, bool checked) {
  RequireShown(control);
  UserFocus(control);
  if (control.Shown()) Guarded([&] { control.SetChecked(checked); });
}

// A click that meets a failure in the box it leaves is spent on the message.
void Form::UserClick(Control& control) {
  if (&control == ok_) wantsFocus_ = nullptr;
  if (FocusGained(control)) Press(control);
}

void Form::UserDblClick(Control& control) {
  if (FocusGained(control)) Guarded([&] { Control::Raise(control.DblClick); });
}

void Form::UserKey(std::string_view key) {
  constexpr std::string_view kAlt = "Alt+";
  if (key == "Enter") return EnterOrEscape(ok_, true);
  if (key == "Escape") return EnterOrEscape(cancel_, false);
  if (key == "Tab") return StepFocus(+1);
  if (key == "Shift+Tab") return StepFocus(-1);
  if (key == "Down") return StepItem(+1);
  if (key == "Up") return StepItem(-1);
  if (key == "PageDown" && focus_) return StepItem(+PageOf(*focus_));
  if (key == "PageUp" && focus_) return StepItem(-PageOf(*focus_));
  if (key == "Home") return ChooseEdge(false);
  if (key == "End") return ChooseEdge(true);
  if (key == "Space") {
    if (focus_ && (focus_->kind() == ControlKind::Button || focus_->kind() == ControlKind::Check)) Press(*focus_);
    return;
  }
  if (key == "F4" || key == "Alt+Down") {
    if (auto* combo = dynamic_cast<ComboBox*>(focus_); combo && !combo->Items().empty())
      combo->SetDroppedDown(!combo->DroppedDown());
    return;
  }
  if (key.substr(0, kAlt.size()) == kAlt && key.size() == kAlt.size() + 1) {
    const char letter = key.back();
    return AccessKeyPressed(static_cast<char32_t>(letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter));
  }
  throw RuntimeError::InvalidArgument("key \"" + InWords(key) + "\"");
}

void Form::ControlChanged(Control& control) {
  if (observer_) observer_->ControlChanged(control);
}

void Form::VisibilityChanged() {
  if (!shown_) return;
  if (wantsFocus_ && wantsFocus_->Shown()) return MoveFocus(*std::exchange(wantsFocus_, nullptr));
  if (focus_ && !focus_->Shown()) {
    Control* const left = focus_;
    GiveFocus(NextShown(left, +1));
    CloseList(left);
  }
}

void Form::FocusWanted(Control& control) {
  wantsFocus_ = control.Shown() ? nullptr : &control;
  if (control.Shown()) MoveFocus(control);
}

void Form::MoveFocus(Control& control) {
  Control* const left = focus_;
  GiveFocus(&control);
  if (left && left != &control) {
    CloseList(left);
    Control::Raise(left->LostFocus);
  }
}

void Form::GiveFocus(Control* control) {
  focus_ = control;
  if (observer_) observer_->FocusMoved(focus_);
}

void Form::RequireShown(const Control& control) const {
  if (!control.Shown()) throw NotForAPerson(control, "is not shown");
}

void Form::RequireFocusable(const Control& control) const {
  RequireShown(control);
  if (!control.TakesFocus()) throw NotForAPerson(control, "takes no focus");
}

void Form::RequireItem(const Control& control, int index) const {
  RequireShown(control);
  if (index < 0 || index >= ItemCount(control)) throw NotForAPerson(control, "has no item " + std::to_string(index));
}

int Form::RequireOffered(const ComboBox& control, std::string_view text) const {
  RequireShown(control);
  const auto found = std::find(control.Items().begin(), control.Items().end(), text);
  if (found == control.Items().end()) throw NotForAPerson(control, "offers no item \"" + InWords(text) + "\"");
  return static_cast<int>(found - control.Items().begin());
}

void Form::CloseList(Control* control) {
  if (auto* combo = dynamic_cast<ComboBox*>(control); combo && combo->DroppedDown()) combo->SetDroppedDown(false);
}

bool Form::Guarded(const std::function<void()>& handler) {
  try {
    handler();
    return true;
  } catch (const AutomationError& error) {
    ShowFailure(error);
  } catch (const std::bad_alloc&) {
    ShowFailure(RuntimeError::OutOfMemory());
  }
  return false;
}

void Form::Press(Control& control) {
  Guarded([&] {
    if (auto* check = dynamic_cast<CheckBox*>(&control)) return check->SetChecked(!check->Checked());
    if (control.kind() == ControlKind::Button) Control::Raise(control.Click);
  });
}

void Form::EnterOrEscape(Button* button, bool enter) {
  if (auto* combo = dynamic_cast<ComboBox*>(focus_); combo && combo->DroppedDown()) {
    if (enter) return combo->SetDroppedDown(false);
    Guarded([&] { combo->LeaveList(); });
    return;
  }
  if (enter && focus_ && focus_->kind() == ControlKind::Button) button = static_cast<Button*>(focus_);
  if (button && button->Shown()) UserClick(*button);
}

void Form::StepFocus(int direction) {
  Control* const left = focus_;
  Control* const next = NextShown(left, direction);
  if (!next) return;
  UserFocus(*next);
  if (!next->Shown()) GiveFocus(NextShown(left, direction));
}

void Form::StepItem(int step) {
  if (!focus_) return;
  const int from = ChosenIndex(*focus_), last = ItemCount(*focus_) - 1;
  if (step > 0 ? from >= last : from <= 0) return;
  Choose(*focus_, std::clamp(from + step, 0, last));
}

void Form::ChooseEdge(bool last) {
  if (!focus_ || ItemCount(*focus_) == 0 || TakesTyping(*focus_)) return;
  Choose(*focus_, last ? ItemCount(*focus_) - 1 : 0);
}

// Choosing in a box that takes typing is editing; elsewhere it may be what brings a hidden box back.
void Form::Choose(Control& control, int index) {
  Guarded([&] { ChooseItem(control, index); });
  if (TakesTyping(control)) wantsFocus_ = nullptr;
}

// A letter that several share only leads to them, one after another.
void Form::AccessKeyPressed(char32_t key) {
  const auto has = [key](const Control* control) { return control->Shown() && control->AccessKey() == key; };
  const bool shared = std::count_if(controls_.begin(), controls_.end(), has) > 1;
  const size_t start = focus_ ? PositionOf(focus_) : controls_.size() - 1;
  for (size_t step = 1; step <= controls_.size(); ++step) {
    Control& control = *controls_[(start + step) % controls_.size()];
    if (!has(&control)) continue;
    Control* const led = control.TakesFocus() ? &control : NextShown(&control, +1);
    if (!led) return;
    return led == &control && !shared ? UserClick(*led) : UserFocus(*led);
  }
}

Control* Form::NextShown(const Control* from, int direction) const {
  const size_t count = controls_.size();
  size_t at = from ? PositionOf(from) : (direction > 0 ? count - 1 : 0);
  for (size_t step = 0; step < count; ++step) {
    at = (at + count + static_cast<size_t>(direction)) % count;
    if (controls_[at]->TakesFocus() && controls_[at]->Shown()) return controls_[at];
  }
  return nullptr;
}

size_t Form::PositionOf(const Control* control) const {
  return static_cast<size_t>(std::find(controls_.begin(), controls_.end(), control) - controls_.begin());
}

}  // namespace vardo
