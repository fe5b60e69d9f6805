#include "app/Commands.h"
#include "forms/headless/HeadlessPresenter.h"
#include "forms/qt/QtPresenter.h"
#include "forms/qt/QtSession.h"
#include "platform/NativePlatform.h"
#include "script/InputLines.h"
#include "script/ModelDesktop.h"
#include "script/ScriptRunner.h"

#include <chrono>
#include <memory>
#include <optional>

namespace vardo {
namespace {

// The toolkit's windows live on while the next line is awaited.
std::optional<std::string> NextLine(InputLines& lines) {
  constexpr auto kWindowsTurn = std::chrono::milliseconds(10);
  while (!lines.Await(kWindowsTurn)) QtPresenter::ProcessEvents();
  return lines.Take();
}

template <class Presenter>
Outcome RunWith(const ScriptOptions& options, std::ostream& output, ScriptRunner::LineSource lines) {
  const std::unique_ptr<Platform> machine = MakeNativePlatform();
  AddinSession session(!options.withoutAddin);
  std::optional<ScriptRunner> runner;
  Presenter presenter([&runner](Form&) { runner->Serve(); });
  ModelDesktop desktop(*machine, presenter, presenter);
  runner.emplace(session, desktop, std::move(lines), output);
  if (!options.file.empty()) session.Open(options.file);
  runner->Serve();
  return {runner->Status(), {}};
}

}  // namespace

Outcome RunScript(const ScriptOptions& options, std::ostream& output, int argc, char** argv) {
  if (options.forms == "headless") return RunWith<HeadlessPresenter>(options, output, ReadInputLine);
  QtSession qt(argc, argv);
  InputLines lines;
  const Outcome outcome = RunWith<QtPresenter>(options, output, [&lines] { return NextLine(lines); });
  lines.CheckEnd();
  return outcome;
}

}  // namespace vardo
