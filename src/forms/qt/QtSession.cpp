#include "forms/qt/QtSession.h"

namespace vardo {
namespace {

int& WithPlatform(int& argc) {
  const bool display = qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
  if (!display && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  return argc;
}

}  // namespace

QtSession::QtSession(int argc, char** argv) : argc_(argc), application_(WithPlatform(argc_), argv) {
  QApplication::setQuitOnLastWindowClosed(false);
}

}  // namespace vardo
