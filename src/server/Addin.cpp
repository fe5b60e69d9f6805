#include "server/Addin.h"

#include "addin/Global_Variables.h"
#include "forms/Forms.h"
#include "forms/win32/Win32Presenter.h"
#include "platform/win32/Win32Platform.h"
#include "server/Module.h"
#include "visio/Visio.h"

namespace vardo {
namespace {

// What the first dialog or message stands over: the host's window, or where the host names none, the one the person works in.
HWND HostWindow() {
  const HWND window = MainWindow(visApp);
  return IsWindow(window) ? window : GetActiveWindow();
}

struct Addin {
  Addin() {
    SetPlatform(&platform);
    SetFormPresenter(&presenter);
  }

  ModuleLock loaded;
  const DWORD thread = GetCurrentThreadId();
  Win32Presenter presenter{HostWindow};
  Win32Platform platform{[this] { return presenter.TopWindow(); }};
  Application commands;
};

}  // namespace

// Never destroyed: what the commands have begun to listen to and to keep goes on until the process ends.
Application& TheAddin() {
  static Addin& addin = *new Addin;
  if (GetCurrentThreadId() != addin.thread)
    throw AutomationError(RPC_E_WRONG_THREAD,
                          "The add-in works on the one thread that first called it, which is the drawing host's.");
  return addin.commands;
}

}  // namespace vardo
