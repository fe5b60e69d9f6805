// vardo-script: the script language with the add-in that is registered on this machine, in a drawing host of our own.
#include "automation_script/AutomationAddin.h"
#include "automation_script/WindowDesktop.h"
#include "base/FileError.h"
#include "platform/NativePlatform.h"
#include "platform/win32/OwnModule.h"
#include "platform/win32/WideText.h"
#include "script/InputLines.h"
#include "script/ScriptRunner.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <io.h>
#include <objbase.h>
#include <shellapi.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <memory>

namespace vardo {
namespace {

constexpr int kWrongUsage = 2;

struct Options {
  std::string addin = "automation";
  std::string file;  // empty: none is opened
  bool withoutAddin = false;
  std::vector<std::string> addOns;
};

// The machine, with add-ons that count as installed and that nothing starts.
class MachineOfScript : public ForwardingPlatform {
 public:
  MachineOfScript(Platform& machine, const std::vector<std::string>& addOns) : ForwardingPlatform(machine), addOns_(addOns) {}
  bool RunAddOn(std::string_view name) override {
    return std::find(addOns_.begin(), addOns_.end(), name) != addOns_.end() || ForwardingPlatform::RunAddOn(name);
  }

 private:
  const std::vector<std::string>& addOns_;
};

// A thread as Visio's is.
class HostThread {
 public:
  HostThread() {
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  }
  ~HostThread() { CoUninitialize(); }
  HostThread(const HostThread&) = delete;
  HostThread& operator=(const HostThread&) = delete;
};

// Does its task whenever it has been woken, also while a dialog of the add-in's runs the loop of messages.
class Servant {
 public:
  Servant() {
    WNDCLASSW description = {};
    description.lpfnWndProc = Procedure;
    description.hInstance = OwnModule();
    description.lpszClassName = kClass;
    RegisterClassW(&description);
    window_ = CreateWindowExW(0, kClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, OwnModule(), nullptr);
  }
  ~Servant() { DestroyWindow(window_); }
  Servant(const Servant&) = delete;
  Servant& operator=(const Servant&) = delete;

  void SetTask(std::function<void()> task) {
    task_ = std::move(task);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&task_));
  }
  // From any thread, and also when the servant has gone.
  std::function<void()> Waker() const {
    return [window = window_] { PostMessageW(window, kWake, 0, 0); };
  }

 private:
  static constexpr const wchar_t* kClass = L"VardoScript";
  static constexpr UINT kWake = WM_APP;

  // Nothing may be thrown through the loops of others.
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const auto* task = reinterpret_cast<const std::function<void()>*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message != kWake || !task) return DefWindowProcW(window, message, wParam, lParam);
    (*task)();
    return 0;
  }

  HWND window_;
  std::function<void()> task_;
};

int RunScript(const Options& options) {
  const HostThread thread;
  const std::unique_ptr<Platform> native = MakeNativePlatform();
  MachineOfScript machine(*native, options.addOns);
  SetPlatform(&machine);
  auto addin = std::make_unique<AutomationAddin>();
  const HMODULE library = addin->library();
  AddinSession session(!options.withoutAddin, std::move(addin));
  Servant servant;
  WindowDesktop desktop(library, servant.Waker());
  InputLines lines(servant.Waker());
  ScriptRunner runner(
      session, desktop, [&lines] { return lines.Take(); }, std::cout);
  if (!options.file.empty()) session.Open(std::filesystem::u8path(options.file));
  // Whoever waits for a form cancels it when the program is to quit.
  servant.SetTask([&] {
    runner.Serve();
    if (runner.IsReady() && (lines.AtEnd() || !runner.CanAnswer())) PostQuitMessage(0);
  });
  servant.Waker()();
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  lines.CheckEnd();
  if (!runner.CanAnswer()) throw FileError("The output could not be written.");
  return runner.Status();
}

// Without the program's name, the last first, as the parser wants them.
std::vector<std::string> Arguments() {
  int count = 0;
  const std::unique_ptr<LPWSTR, decltype(&LocalFree)> words(CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
  std::vector<std::string> arguments;
  for (int i = count - 1; i > 0; --i) arguments.push_back(FromWide(words.get()[i]));
  return arguments;
}

int Main() {
  CLI::App app{"Drives a drawing, and the dialogs of the registered add-in, with JSON lines.", "vardo-script"};
  Options options;
  app.set_version_flag("--version", "vardo-script " VARDO_VERSION);
  app.add_option("FILE", options.file, "The drawing to open first");
  app.add_option("--addin", options.addin, "Where the add-in is")->check(CLI::IsMember({"automation"}));
  app.add_flag("--no-addin", options.withoutAddin, "Do not start the add-in when a drawing is opened");
  app.add_option("--addon", options.addOns, "An add-on that counts as installed; choosing it starts nothing")
      ->take_all()
      ->allow_extra_args(false);
  app.footer("Example:\n  vardo-script --addin automation bank.vsdx < story.jsonl\n");
  try {
    app.parse(Arguments());
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kWrongUsage;
  }
  return RunScript(options);
}

int Fail(const std::string& sentence) {
  fmt::print(stderr, "vardo-script: {}\n", sentence);
  return 1;
}

std::string FromAnsi(const char* text) {
  if (!text) return "";
  std::wstring wide(static_cast<size_t>(MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0)), L'\0');
  MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), static_cast<int>(wide.size()));
  wide.pop_back();
  return FromWide(wide);
}

}  // namespace
}  // namespace vardo

// For the help viewer beside the program; the texts are in the ANSI code page. Where the file lies is not told.
extern "C" __declspec(dllexport) void VardoHelpShown(const char* file, const char* topic) {
  const std::string path = vardo::FromAnsi(file);
  vardo::WindowDesktop::HelpShown(path.substr(path.find_last_of('\\') + 1), vardo::FromAnsi(topic));
}

int main() {
  using namespace vardo;
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  try {
    return Main();
  } catch (const FileError& error) {
    return Fail(error.what());
  } catch (const AutomationError& error) {
    return Fail(error.description());
  } catch (const std::bad_alloc&) {
    return Fail("There is not enough memory for this drawing.");
  }
}
