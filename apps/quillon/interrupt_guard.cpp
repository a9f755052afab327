#include "interrupt_guard.h"

#include <pthread.h>
#include <unistd.h>

#include <system_error>

#include "terminal_text.h"

namespace quillon::cli {

namespace {

// Blocked in the guard's thread alone, to end it: nothing that could fail is needed for that.
constexpr int kWakeUp = SIGUSR1;

[[noreturn]] void endBy(int number) {
  std::signal(number, SIG_DFL);
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, number);
  pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
  raise(number);
  _exit(128 + number);
}

}  // namespace

InterruptGuard::InterruptGuard(std::function<void()> cleanUp, std::chrono::seconds patience)
    : cleanUp_(std::move(cleanUp)), patience_(patience) {
  bool areAllIgnored = true;
  sigemptyset(&signals_);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    // A signal that is ignored (under nohup, say) stays ignored.
    struct sigaction action {};
    if (sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
      sigaddset(&signals_, number);
      areAllIgnored = false;
    }
  }
  if (areAllIgnored) return;
  sigset_t inThread = signals_;
  sigaddset(&inThread, kWakeUp);
  sigset_t before;
  pthread_sigmask(SIG_BLOCK, &inThread, &before);
  try {
    thread_ = std::thread([this] { wait(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    pthread_sigmask(SIG_BLOCK, &signals_, nullptr);
  } catch (const std::system_error&) {  // signals end the program as ever
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
  }
}

InterruptGuard::~InterruptGuard() {
  if (!thread_.joinable()) return;
  isOver_ = true;
  pthread_kill(thread_.native_handle(), kWakeUp);
  thread_.join();
  pthread_sigmask(SIG_UNBLOCK, &signals_, nullptr);
}

void InterruptGuard::wait() {
  sigset_t awaited = signals_;
  sigaddset(&awaited, kWakeUp);
  for (;;) {
    const int number = sigwaitinfo(&awaited, nullptr);
    if (number > 0 && number != kWakeUp) act(number);
    if (isOver_) return;
  }
}

void InterruptGuard::act(int signal) {
  using Clock = std::chrono::steady_clock;
  // Some senders send to the process and then to its group: that is still the first signal.
  constexpr auto kOneSignal = std::chrono::seconds(1);
  const Clock::time_point start = Clock::now();
  std::atomic<bool> isClean = false;
  try {
    std::thread([this, &isClean, signal] {
      cleanUp_();
      isClean = true;
      endBy(signal);
    }).detach();
  } catch (const std::system_error&) {  // no thread: then without a limit
    cleanUp_();
    endBy(signal);
  }
  for (bool isOneSignal = true; isOneSignal && Clock::now() < start + patience_;) {
    const auto left =
        std::chrono::duration_cast<std::chrono::nanoseconds>(start + patience_ - Clock::now());
    const timespec rest{left.count() / 1'000'000'000, left.count() % 1'000'000'000};
    isOneSignal = sigtimedwait(&signals_, nullptr, &rest) < 0 || Clock::now() < start + kOneSignal;
  }
  if (!isClean) say("The job ended before everything was cleaned up.");
  endBy(signal);
}

}  // namespace quillon::cli
