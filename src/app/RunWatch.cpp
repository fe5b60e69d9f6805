#include "app/RunWatch.h"

#include "report/ProgressText.h"

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <string>

namespace vardo {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kBeforeFirst{500}, kBetween{200};

// What Ctrl-C stops. A handler may do no more than set it.
std::atomic<std::atomic<bool>*> stopOfRun{nullptr};
static_assert(std::atomic<std::atomic<bool>*>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

void Interrupt(int signal) {
  if (std::atomic<bool>* stop = stopOfRun) *stop = true;
  std::signal(signal, SIG_DFL);
}

}  // namespace

RunWatch::RunWatch(Progress& progress, std::uint64_t replications) : progress_(progress), replications_(replications) {
  stopOfRun = &progress.stop;
  handlerBefore_ = std::signal(SIGINT, Interrupt);
  if (isatty(STDERR_FILENO)) shower_ = std::thread([this] { Show(); });
}

RunWatch::~RunWatch() {
  {
    const std::lock_guard lock(mutex_);
    isOver_ = true;
  }
  over_.notify_one();
  if (shower_.joinable()) shower_.join();
  std::signal(SIGINT, handlerBefore_);
  stopOfRun = nullptr;
}

void RunWatch::Show() {
  constexpr const char* kClear = "\r\x1b[K";
  const Clock::time_point start = Clock::now();
  std::unique_lock lock(mutex_);
  bool isShown = false;
  for (auto wait = kBeforeFirst; !over_.wait_for(lock, wait, [this] { return isOver_; }); wait = kBetween) {
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    const ProgressSeen seen{progress_.replicationsDone, replications_, progress_.work, progress_.events, seconds};
    std::fprintf(stderr, "%s%s", kClear, ProgressText(seen).c_str());
    std::fflush(stderr);
    isShown = true;
  }
  if (isShown) std::fputs(kClear, stderr);
}

}  // namespace vardo
