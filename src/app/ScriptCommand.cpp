#include "app/Commands.h"
#include "forms/headless/HeadlessPresenter.h"
#include "forms/qt/QtPresenter.h"
#include "forms/qt/QtSession.h"
#include "platform/NativePlatform.h"
#include "script/ScriptRunner.h"

#include <condition_variable>
#include <iostream>
#include <memory>
#include <mutex>
#include <queue>
#include <thread>

namespace vardo {
namespace {

std::optional<std::string> ReadLine() {
  std::string line;
  if (!std::getline(std::cin, line)) return std::nullopt;
  return line;
}

// Lines read beside the program, so that windows stay alive while it waits for the next one.
class LineReader {
 public:
  LineReader() : thread_([this] { ReadAll(); }) {}
  ~LineReader() { thread_.join(); }

  std::optional<std::string> Next() {
    for (;;) {
      {
        std::unique_lock lock(mutex_);
        arrived_.wait_for(lock, std::chrono::milliseconds(10), [this] { return !lines_.empty() || ended_; });
        if (!lines_.empty()) {
          std::string line = std::move(lines_.front());
          lines_.pop();
          return line;
        }
        if (ended_) return std::nullopt;
      }
      QtPresenter::ProcessEvents();
    }
  }

 private:
  void ReadAll() {
    while (auto line = ReadLine()) {
      const std::lock_guard lock(mutex_);
      lines_.push(*std::move(line));
      arrived_.notify_one();
    }
    const std::lock_guard lock(mutex_);
    ended_ = true;
    arrived_.notify_one();
  }

  std::mutex mutex_;
  std::condition_variable arrived_;
  std::queue<std::string> lines_;
  bool ended_ = false;
  std::thread thread_;  // last: it uses the others
};

template <class Presenter>
int RunWith(const ScriptOptions& options, ScriptRunner::LineSource lines) {
  const std::unique_ptr<Platform> machine = MakeNativePlatform();
  ScriptRunner runner(!options.withoutAddin, std::move(lines), std::cout, *machine);
  Presenter presenter([&runner](Form& form) { runner.Pump(form); });
  runner.UseForms(presenter, presenter);
  if (!options.file.empty()) runner.Open(options.file);
  return runner.Run();
}

}  // namespace

int RunScript(const ScriptOptions& options, int argc, char** argv) {
  if (options.forms == "headless") return RunWith<HeadlessPresenter>(options, ReadLine);
  QtSession qt(argc, argv);
  LineReader reader;
  return RunWith<QtPresenter>(options, [&reader] { return reader.Next(); });
}

}  // namespace vardo
