#include "forms/FormLayout.h"

#include <algorithm>

namespace vardo {
namespace {

constexpr double kMargin = 180;
constexpr double kFrameInset = 135;  // where Windows begins a frame's title: it stands on the label column
constexpr double kFrameTitle = 390;
constexpr double kBoxHeight = 345;
constexpr double kLabelHeight = 255;
constexpr double kRowPitch = 435;
constexpr double kLineHeight = 255;
constexpr double kGap = 120;
constexpr double kButtonWidth = 1215;
constexpr double kButtonHeight = 390;
constexpr double kUnitWidth = 300;

}  // namespace

FormLayout::FormLayout(Form& form, double labelWidth, double boxWidth)
    : form_(form), labelWidth_(labelWidth), boxWidth_(boxWidth), top_(kMargin) {}

FormLayout& FormLayout::Row(Label& label, Control& box) {
  top_ += kRowPitch;
  return InPlace(label, box);
}

FormLayout& FormLayout::InPlace(Label& label, Control& box) {
  Put(label, Left(), top_ - kRowPitch + (kBoxHeight - kLabelHeight) / 2, labelWidth_ - kGap, kLabelHeight);
  return InPlace(box);
}

FormLayout& FormLayout::InPlace(Control& box) {
  Put(box, Left() + labelWidth_, top_ - kRowPitch, boxWidth_, kBoxHeight);
  return *this;
}

FormLayout& FormLayout::Behind(Control& box, Label& unit) {
  Put(box, Left() + labelWidth_, top_ - kRowPitch, boxWidth_ - kUnitWidth, kBoxHeight);
  Put(unit, Left() + Width() - kUnitWidth + kGap / 2, top_ - kRowPitch + (kBoxHeight - kLabelHeight) / 2, kUnitWidth - kGap / 2,
      kLabelHeight);
  return *this;
}

FormLayout& FormLayout::Row(CheckBox& box) {
  Put(box, Left(), top_, Width(), kBoxHeight);
  top_ += kRowPitch;
  return *this;
}

FormLayout& FormLayout::List(Label& label, ListBox& list, const std::vector<Button*>& buttons, int lines) {
  Put(label, Left(), top_, Width(), kLabelHeight);
  top_ += kLabelHeight + kGap / 4;
  const double height =
      std::max(lines * kLineHeight, static_cast<double>(buttons.size()) * kRowPitch - (kRowPitch - kButtonHeight));
  Put(list, Left(), top_, Width() - kButtonWidth - kGap, height);
  double top = top_;
  for (Button* button : buttons) {
    Put(*button, Left() + Width() - kButtonWidth, top, kButtonWidth, kButtonHeight);
    top += kRowPitch;
  }
  top_ += height + kGap;
  return *this;
}

FormLayout& FormLayout::Text(Label& text, int lines) {
  text.SetWraps(lines > 1);
  Put(text, Left(), top_, Width(), lines * kLineHeight);
  top_ += lines * kLineHeight + kGap;
  return *this;
}

FormLayout& FormLayout::Separator(Line& line) {
  Put(line, Left(), top_, Width(), kGap / 4);
  top_ += kGap;
  return *this;
}

FormLayout& FormLayout::BeginFrame(Frame& frame) {
  frames_.push_back({&frame, top_});
  top_ += frame.Caption().empty() ? kGap : kFrameTitle;
  return *this;
}

FormLayout& FormLayout::EndFrame() {
  const auto [frame, top] = frames_.back();
  frames_.pop_back();
  top_ += kGap / 4;
  Put(*frame, kMargin, top, Width() + 2 * kFrameInset, top_ - top);
  top_ += kGap;
  return *this;
}

FormLayout& FormLayout::BeginChoice() {
  choices_.push_back({top_, top_});
  return *this;
}

FormLayout& FormLayout::Or() {
  OpenChoice& choice = choices_.back();
  choice.lowest = std::max(choice.lowest, top_);
  top_ = choice.top;
  return *this;
}

FormLayout& FormLayout::EndChoice() {
  Or();
  top_ = choices_.back().lowest;
  choices_.pop_back();
  return *this;
}

void FormLayout::Buttons(const std::vector<Button*>& buttons) {
  const double width = Width() + 2 * kFrameInset + 2 * kMargin;
  const double count = static_cast<double>(buttons.size());
  double left = Left() + Width() - count * kButtonWidth - (count - 1) * kGap;
  top_ += kGap;
  for (Button* button : buttons) {
    Put(*button, left, top_, kButtonWidth, kButtonHeight);
    left += kButtonWidth + kGap;
  }
  form_.SetSize(width, top_ + kButtonHeight + kMargin);
}

// Rows stand in one line whether in a frame or not.
double FormLayout::Left() const { return kMargin + kFrameInset; }

double FormLayout::Width() const { return labelWidth_ + boxWidth_; }

void FormLayout::Put(Control& control, double left, double top, double width, double height) {
  control.SetPlace({left, top, width, height});
  if (!frames_.empty()) control.SetParent(frames_.back().frame);
}

}  // namespace vardo
