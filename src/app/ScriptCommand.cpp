#include "app/Commands.h"
#include "forms/headless/HeadlessPresenter.h"
#include "forms/qt/QtPresenter.h"
#include "forms/qt/QtSession.h"
#include "platform/NativePlatform.h"
#include "script/ModelDesktop.h"
#include "script/ScriptRunner.h"

#include <chrono>
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

// Lines read beside the program, so that windows stay alive while it waits for the next one. The reading thread may outlive the
// reader: it cannot be called back from a pipe that stays open.
class LineReader {
 public:
  LineReader() : queue_(std::make_shared<Queue>()) {
    std::thread([queue = queue_] { queue->ReadAll(); }).detach();
  }

  std::optional<std::string> Next() {
    constexpr auto kWindowsTurn = std::chrono::milliseconds(10);
    while (queue_->IsWaiting(kWindowsTurn)) QtPresenter::ProcessEvents();
    return queue_->Take();
  }

 private:
  class Queue {
   public:
    void ReadAll() {
      while (auto line = ReadLine()) Put(std::move(line));
      Put(std::nullopt);
    }
    bool IsWaiting(std::chrono::milliseconds patience) {
      std::unique_lock lock(mutex_);
      return !arrived_.wait_for(lock, patience, [this] { return !lines_.empty(); });
    }
    // The end of input stays at the front.
    std::optional<std::string> Take() {
      const std::lock_guard lock(mutex_);
      std::optional<std::string> line = lines_.front();
      if (line) lines_.pop();
      return line;
    }

   private:
    void Put(std::optional<std::string> line) {
      const std::lock_guard lock(mutex_);
      lines_.push(std::move(line));
      arrived_.notify_one();
    }
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::queue<std::optional<std::string>> lines_;
  };

  std::shared_ptr<Queue> queue_;
};

template <class Presenter>
int RunWith(const ScriptOptions& options, ScriptRunner::LineSource lines) {
  const std::unique_ptr<Platform> machine = MakeNativePlatform();
  AddinSession session(!options.withoutAddin);
  ModelDesktop desktop(*machine);
  ScriptRunner runner(session, desktop, std::move(lines), std::cout);
  Presenter presenter([&runner](Form&) { runner.Serve(); });
  desktop.UseForms(presenter, presenter);
  if (!options.file.empty()) session.Open(options.file);
  runner.Serve();
  return runner.Status();
}

}  // namespace

int RunScript(const ScriptOptions& options, int argc, char** argv) {
  if (options.forms == "headless") return RunWith<HeadlessPresenter>(options, ReadLine);
  QtSession qt(argc, argv);
  LineReader reader;
  return RunWith<QtPresenter>(options, [&reader] { return reader.Next(); });
}

}  // namespace vardo
