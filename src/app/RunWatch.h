// A run on a terminal: how far it is, and Ctrl-C, which ends it early.
#pragma once

#include "simulate/Runner.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace vardo {

// While it is there, Ctrl-C stops the run; pressed again it ends the program. When standard error is a terminal, a line there
// tells how far the run is; it is gone with the watch.
class RunWatch {
 public:
  // replications: how many there will be; 0 when nobody knows.
  RunWatch(Progress& progress, std::uint64_t replications);
  ~RunWatch();
  RunWatch(const RunWatch&) = delete;
  RunWatch& operator=(const RunWatch&) = delete;

 private:
  void Show();

  Progress& progress_;
  std::uint64_t replications_;
  void (*handlerBefore_)(int);
  std::mutex mutex_;
  std::condition_variable over_;
  bool isOver_ = false;
  std::thread shower_;
};

}  // namespace vardo
