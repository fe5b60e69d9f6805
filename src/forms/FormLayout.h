// Lays a form's controls out in rows: labels in one column, boxes in the next, all in twips.
//   Boxes that take each other's place stand in one row, so the window keeps its size when they come and go.
#pragma once

#include "forms/Form.h"

#include <initializer_list>

namespace vardo {

class FormLayout {
 public:
  // Widths of the label column and of the boxes.
  FormLayout(Form& form, double labelWidth, double boxWidth);

  // A new row of a label and its box.
  FormLayout& Row(Label& label, Control& box);
  // The same place as the row before.
  FormLayout& InPlace(Label& label, Control& box);
  // Rows from here to EndFrame stand in the frame.
  FormLayout& BeginFrame(Frame& frame);
  FormLayout& EndFrame();
  // The row of buttons at the lower right; sets the form's size.
  void Buttons(std::initializer_list<Button*> buttons);

 private:
  void Put(Control& control, double left, double top, double width, double height);

  Form& form_;
  double labelWidth_, boxWidth_;
  double top_;
  Frame* frame_ = nullptr;
  double frameTop_ = 0;
};

}  // namespace vardo
