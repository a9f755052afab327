// Cleans up when the user or the system ends the program in the middle of a job.
#pragma once

#include <functional>
#include <thread>

namespace quillon::cli {

// While it exists, SIGINT, SIGTERM and SIGHUP run `cleanUp` in a thread of their own and then end
// the process the way the signal would have.
class InterruptGuard {
 public:
  explicit InterruptGuard(std::function<void()> cleanUp);
  ~InterruptGuard();
  InterruptGuard(const InterruptGuard&) = delete;
  InterruptGuard& operator=(const InterruptGuard&) = delete;

 private:
  void wait();

  std::function<void()> cleanUp_;
  int signals_ = -1;
  int stop_ = -1;
  std::thread thread_;
};

}  // namespace quillon::cli
