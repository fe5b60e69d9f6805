// Lays a form's controls out in rows: labels in one column, boxes in the next, all in twips.
//   What takes each other's place stands in the same rows, so the window keeps its size when boxes come and go.
#pragma once

#include "forms/Form.h"

#include <vector>

namespace vardo {

class FormLayout {
 public:
  // Widths of the label column and of the boxes.
  FormLayout(Form& form, double labelWidth, double boxWidth);

  // A new row of a label and its box.
  FormLayout& Row(Label& label, Control& box);
  // The same place as the row before.
  FormLayout& InPlace(Label& label, Control& box);
  FormLayout& InPlace(Control& box);
  // A short text behind the box of the row before, which becomes so much shorter.
  FormLayout& Behind(Control& box, Label& unit);
  // A row of its own.
  FormLayout& Row(CheckBox& box);
  // A label with a list of that many lines under it, and buttons beside the list.
  FormLayout& List(Label& label, ListBox& list, const std::vector<Button*>& buttons, int lines);
  // A text that wraps within that many lines.
  FormLayout& Text(Label& text, int lines);
  FormLayout& Separator(Line& line);

  // Rows from here to EndFrame stand in the frame.
  FormLayout& BeginFrame(Frame& frame);
  FormLayout& EndFrame();

  // Rows from here to EndChoice are shown one group at a time; Or begins the next group in the same place.
  FormLayout& BeginChoice();
  FormLayout& Or();
  FormLayout& EndChoice();

  // The row of buttons at the lower right; sets the form's size.
  void Buttons(const std::vector<Button*>& buttons);

 private:
  struct OpenFrame {
    Frame* frame;
    double top;
  };
  struct OpenChoice {
    double top, lowest;
  };

  double Left() const;
  double Width() const;
  void Put(Control& control, double left, double top, double width, double height);

  Form& form_;
  double labelWidth_, boxWidth_;
  double top_;
  std::vector<OpenFrame> frames_;
  std::vector<OpenChoice> choices_;
};

}  // namespace vardo
