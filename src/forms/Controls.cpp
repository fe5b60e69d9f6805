#include "forms/Controls.h"

#include "base/Errors.h"
#include "forms/Form.h"

#include <algorithm>

namespace vardo {
namespace {

// In every toolkit's usual font.
constexpr double kTwipsALine = 255;

int CheckedIndex(int index, int lowest, const std::vector<std::string>& items) {
  if (index < lowest || index >= static_cast<int>(items.size()))
    throw RuntimeError::InvalidArgument("list index " + std::to_string(index));
  return index;
}

}  // namespace

Control::Control(Form& form, std::string_view name, ControlKind kind, std::string_view caption)
    : form_(form), name_(name), kind_(kind), caption_(caption) {
  form.Register(*this);
}

void Control::SetCaption(std::string_view caption) {
  caption_ = caption;
  Changed();
}

char32_t Control::AccessKey() const {
  for (size_t at = 0; at + 1 < caption_.size(); ++at) {
    if (caption_[at] != '&') continue;
    const char next = caption_[at + 1];
    if (next == '&') {
      ++at;
      continue;
    }
    return static_cast<char32_t>(next >= 'A' && next <= 'Z' ? next - 'A' + 'a' : next);
  }
  return 0;
}

void Control::SetVisible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  Changed();
  form_.VisibilityChanged();
}

bool Control::Shown() const { return visible_ && (parent_ == nullptr || parent_->Shown()); }

bool Control::TakesFocus() const {
  return kind_ != ControlKind::Label && kind_ != ControlKind::Frame && kind_ != ControlKind::Line;
}

void Control::MoveFocusHere() { form_.FocusWanted(*this); }

void Control::Changed() { form_.ControlChanged(*this); }

void Control::Raise(const Signal& signal) {
  if (signal) signal();
}

void TextBox::SetText(std::string_view text) {
  text_ = text;
  Changed();
}

void ComboBox::AddItem(std::string_view item) {
  items_.emplace_back(item);
  Changed();
}

void ComboBox::SetListIndex(int index) {
  CheckedIndex(index, -1, items_);
  Choose(index, index < 0 ? std::string_view() : std::string_view(items_[static_cast<size_t>(index)]));
}

void ComboBox::SetText(std::string_view text) {
  const auto found = std::find(items_.begin(), items_.end(), text);
  Choose(found == items_.end() ? -1 : static_cast<int>(found - items_.begin()), text);
}

void ComboBox::SetDroppedDown(bool droppedDown) {
  droppedDown_ = droppedDown;
  KeepChoice();
  Changed();
}

void ComboBox::KeepChoice() { kept_ = {index_, text_}; }

void ComboBox::LeaveList() {
  const Choice kept = kept_;
  SetDroppedDown(false);
  Choose(kept.index, kept.text);
}

void ComboBox::Choose(int index, std::string_view text) {
  const bool otherItem = index != index_;
  index_ = index;
  text_ = std::string(text);
  Changed();
  if (otherItem) Raise(Click);
}

void CheckBox::SetChecked(bool checked) {
  if (checked == checked_) return;
  checked_ = checked;
  Changed();
  Raise(Click);
}

void ListBox::AddItem(std::string_view item) {
  items_.emplace_back(item);
  Changed();
}

void ListBox::InsertItem(int index, std::string_view item) {
  if (index != static_cast<int>(items_.size())) CheckedIndex(index, 0, items_);
  items_.emplace(items_.begin() + index, item);
  if (index <= index_) ++index_;
  Changed();
}

void ListBox::RemoveItem(int index) {
  items_.erase(items_.begin() + CheckedIndex(index, 0, items_));
  if (index == index_) index_ = -1;
  if (index < index_) --index_;
  Changed();
}

void ListBox::SetItem(int index, std::string_view item) {
  items_[static_cast<size_t>(CheckedIndex(index, 0, items_))] = item;
  Changed();
}

int ListBox::LinesInSight() const { return static_cast<int>(Place().height / kTwipsALine); }

void ListBox::SetListIndex(int index) {
  index_ = CheckedIndex(index, -1, items_);
  Changed();
  Raise(Click);
}

}  // namespace vardo
