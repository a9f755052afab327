// Cleans up when the user or the system ends the program in the middle of a job.
#pragma once

#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <thread>

namespace quillon::cli {

// While it exists, SIGINT, SIGTERM and SIGHUP run `cleanUp` in a thread of its own and then end the
// process the way the signal would have. At any moment: the job's own thread goes on meanwhile, in
// the middle of whatever it was doing, with the locks that it holds. So cleanUp takes no lock that
// the job holds while it opens, reads or writes a file. One that waits all the same keeps nobody:
// the process ends when `patience` is over, or at a second signal, and what is left is told.
class InterruptGuard {
 public:
  explicit InterruptGuard(std::function<void()> cleanUp,
                          std::chrono::seconds patience = std::chrono::seconds(30));
  // Signals have their usual effect again; one that came last is not lost.
  ~InterruptGuard();
  InterruptGuard(const InterruptGuard&) = delete;
  InterruptGuard& operator=(const InterruptGuard&) = delete;

 private:
  void wait();
  [[noreturn]] void act(int signal);

  std::function<void()> cleanUp_;
  std::chrono::seconds patience_;
  sigset_t signals_;
  std::atomic<bool> isOver_ = false;
  std::thread thread_;
};

}  // namespace quillon::cli
