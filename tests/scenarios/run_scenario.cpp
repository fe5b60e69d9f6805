// run_scenario DATA-FOLDER FILE...: runs scenarios against the script runner in this process, and says what came otherwise than
// expected. Exit status 0 when nothing did. Built once for every forms toolkit.
#include "Play.h"
#include "platform/NativePlatform.h"
#include "script/ModelDesktop.h"
#include "script/ScriptRunner.h"

#include <algorithm>
#include <iostream>
#include <optional>
#include <stdexcept>

#ifdef VARDO_SCENARIO_QT
#include "forms/qt/QtPresenter.h"
#include "forms/qt/QtSession.h"
#elif defined VARDO_SCENARIO_WIN32
#include "forms/win32/Win32Driver.h"

#include <objbase.h>
#else
#include "forms/headless/HeadlessPresenter.h"
#endif

namespace vardo {
namespace {

#ifdef VARDO_SCENARIO_QT
using Presenter = QtPresenter;
using Session = QtSession;
#elif defined VARDO_SCENARIO_WIN32
struct Presenter : Win32Driver {
  explicit Presenter(std::function<void(Form&)> pump) : Win32Driver(GetActiveWindow, std::move(pump)) {}
};
// As the thread of a drawing program is.
struct Session {
  Session(int, char**) {
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  }
  ~Session() { CoUninitialize(); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
};
#else
using Presenter = HeadlessPresenter;
struct Session {
  Session(int, char**) {}
};
#endif

// The machine with the registry and the add-ons that the scenario says. It starts none of them.
class ScenarioMachine : public ForwardingPlatform {
 public:
  ScenarioMachine(Platform& machine, const Scenario& scenario) : ForwardingPlatform(machine), scenario_(scenario) {}
  std::string ReadRegistryString(std::string_view key, std::string_view valueName) override {
    const auto found = scenario_.registry.find({std::string(key), std::string(valueName)});
    return found == scenario_.registry.end() ? "" : found->second;
  }
  bool RunAddOn(std::string_view name) override {
    return std::find(scenario_.addOns.begin(), scenario_.addOns.end(), name) != scenario_.addOns.end();
  }

 private:
  const Scenario& scenario_;
};

bool Succeeds(const Scenario& scenario) {
  const std::unique_ptr<Platform> native = MakeNativePlatform();
  ScenarioMachine machine(*native, scenario);
  Play play(scenario);
  AddinSession session(scenario.withAddin);
  std::optional<ScriptRunner> runner;
  Presenter presenter([&runner](Form&) { runner->Serve(); });
  ModelDesktop desktop(machine, presenter, presenter);
  runner.emplace(
      session, desktop, [&play] { return play.NextRequest(); }, play.output());
  runner->Serve();
  play.End(runner->Status());
  return !play.Failed();
}

}  // namespace
}  // namespace vardo

int main(int argc, char** argv) try {
  if (argc < 3) throw std::runtime_error("usage: run_scenario DATA-FOLDER FILE...");
  const vardo::Session session(argc, argv);
  return vardo::PlayAll({argv + 2, argv + argc}, argv[1], vardo::Succeeds);
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return 2;
}
