#include "forms/qt/QtSession.h"

#include <utility>

namespace vardo {
namespace {

int& WithPlatform(int& argc) {
  if (!HasDisplay()) qputenv("QT_QPA_PLATFORM", "offscreen");
  return argc;
}

QtMessageHandler shownByQt = nullptr;

// The off-screen platform says at every open list what windows it cannot raise or grab keys for.
void LeaveOutTheObvious(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (!message.startsWith("This plugin does not support")) shownByQt(type, context, message);
}

}  // namespace

bool HasDisplay() {
  return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
         qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

QtSession::QtSession(int argc, char** argv) : argc_(argc), application_(WithPlatform(argc_), argv) {
  if (QGuiApplication::platformName() == "offscreen") shownByQt = qInstallMessageHandler(LeaveOutTheObvious);
  QApplication::setQuitOnLastWindowClosed(false);
}

QtSession::~QtSession() {
  if (shownByQt) qInstallMessageHandler(std::exchange(shownByQt, nullptr));
}

}  // namespace vardo
