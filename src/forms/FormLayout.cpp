#include "forms/FormLayout.h"

namespace vardo {
namespace {

constexpr double kMargin = 180;
constexpr double kFrameInset = 150;
constexpr double kFrameTitle = 390;
constexpr double kBoxHeight = 345;
constexpr double kLabelHeight = 255;
constexpr double kRowPitch = 435;
constexpr double kGap = 120;
constexpr double kButtonWidth = 1215;
constexpr double kButtonHeight = 390;

}  // namespace

FormLayout::FormLayout(Form& form, double labelWidth, double boxWidth)
    : form_(form), labelWidth_(labelWidth), boxWidth_(boxWidth), top_(kMargin) {}

FormLayout& FormLayout::Row(Label& label, Control& box) {
  top_ += kRowPitch;
  return InPlace(label, box);
}

FormLayout& FormLayout::InPlace(Label& label, Control& box) {
  const double top = top_ - kRowPitch;
  const double left = kMargin + kFrameInset;
  Put(label, left, top + (kBoxHeight - kLabelHeight) / 2, labelWidth_, kLabelHeight);
  Put(box, left + labelWidth_, top, boxWidth_, kBoxHeight);
  return *this;
}

FormLayout& FormLayout::BeginFrame(Frame& frame) {
  frameTop_ = top_;
  top_ += kFrameTitle;
  frame_ = &frame;
  return *this;
}

FormLayout& FormLayout::EndFrame() {
  Frame& frame = *frame_;
  frame_ = nullptr;
  top_ += kGap / 4;
  Put(frame, kMargin, frameTop_, labelWidth_ + boxWidth_ + 2 * kFrameInset, top_ - frameTop_);
  top_ += kGap;
  return *this;
}

void FormLayout::Buttons(std::initializer_list<Button*> buttons) {
  const double width = labelWidth_ + boxWidth_ + 2 * kFrameInset + 2 * kMargin;
  const double count = static_cast<double>(buttons.size());
  double left = width - kMargin - count * kButtonWidth - (count - 1) * kGap;
  top_ += kGap;
  for (Button* button : buttons) {
    Put(*button, left, top_, kButtonWidth, kButtonHeight);
    left += kButtonWidth + kGap;
  }
  form_.SetSize(width, top_ + kButtonHeight + kMargin);
}

void FormLayout::Put(Control& control, double left, double top, double width, double height) {
  control.SetPlace({left, top, width, height});
  if (frame_) control.SetParent(frame_);
}

}  // namespace vardo
