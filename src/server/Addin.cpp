#include "server/Addin.h"

#include "platform/win32/Win32Platform.h"

namespace vardo {
namespace {

struct Addin {
  Addin() { SetPlatform(&platform); }

  Win32Platform platform;
  Application commands;
};

}  // namespace

// Never destroyed: the host may call until its process ends.
Application& TheAddin() {
  static Addin& addin = *new Addin;
  return addin.commands;
}

}  // namespace vardo
