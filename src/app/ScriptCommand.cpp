#include "app/Commands.h"
#include "forms/headless/HeadlessPresenter.h"
#include "forms/qt/QtPresenter.h"
#include "forms/qt/QtSession.h"
#include "platform/NativePlatform.h"
#include "script/InputLines.h"
#include "script/ModelDesktop.h"
#include "script/ScriptRunner.h"

#include <chrono>
#include <iostream>
#include <memory>
#include <optional>

namespace vardo {
namespace {

std::optional<std::string> ReadLine() {
  std::string line;
  if (!std::getline(std::cin, line)) return std::nullopt;
  return line;
}

// The toolkit's windows live on while the next line is awaited.
std::optional<std::string> NextLine(InputLines& lines) {
  constexpr auto kWindowsTurn = std::chrono::milliseconds(10);
  while (!lines.Await(kWindowsTurn)) QtPresenter::ProcessEvents();
  return lines.Take();
}

template <class Presenter>
int RunWith(const ScriptOptions& options, ScriptRunner::LineSource lines) {
  const std::unique_ptr<Platform> machine = MakeNativePlatform();
  AddinSession session(!options.withoutAddin);
  std::optional<ScriptRunner> runner;
  Presenter presenter([&runner](Form&) { runner->Serve(); });
  ModelDesktop desktop(*machine, presenter, presenter);
  runner.emplace(session, desktop, std::move(lines), std::cout);
  if (!options.file.empty()) session.Open(options.file);
  runner->Serve();
  return runner->Status();
}

}  // namespace

int RunScript(const ScriptOptions& options, int argc, char** argv) {
  if (options.forms == "headless") return RunWith<HeadlessPresenter>(options, ReadLine);
  QtSession qt(argc, argv);
  InputLines lines;
  return RunWith<QtPresenter>(options, [&lines] { return NextLine(lines); });
}

}  // namespace vardo
