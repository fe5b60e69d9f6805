// The Qt application object, for as long as windows are wanted.
#pragma once

#include <QApplication>

namespace vardo {

// Whether windows can be shown, be it off screen by the environment's wish.
bool HasDisplay();

class QtSession {
 public:
  // argv must outlive the session. Without a display, windows are drawn off screen, as scripts on servers need it.
  // The session goes on when the last window closes: a form's end must not end the loops of what is below it.
  QtSession(int argc, char** argv);
  ~QtSession();
  QtSession(const QtSession&) = delete;
  QtSession& operator=(const QtSession&) = delete;

  // The program's event loop; returns when QApplication::quit is called.
  int Run() { return QApplication::exec(); }

 private:
  int argc_;  // QApplication keeps a reference
  QApplication application_;
};

}  // namespace vardo
