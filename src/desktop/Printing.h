// The drawing on paper: a page each, as large as it is unless it is larger than the paper.
#pragma once

#include "desktop/DrawingSession.h"

#include <QWidget>

class QPrinter;

namespace vardo {

class Printing {
 public:
  Printing(DrawingSession& session, QWidget& window) : session_(session), window_(window) {}

  void Print();
  void Preview();

 private:
  void PrintOn(QPrinter& printer);

  DrawingSession& session_;
  QWidget& window_;
};

}  // namespace vardo
