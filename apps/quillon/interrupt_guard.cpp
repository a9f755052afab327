#include "interrupt_guard.h"

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>

namespace quillon::cli {

namespace {

sigset_t endingSignals() {
  sigset_t set;
  sigemptyset(&set);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    // A signal that is ignored (under nohup, say) stays ignored.
    struct sigaction action {};
    if (sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
      sigaddset(&set, number);
    }
  }
  return set;
}

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

InterruptGuard::InterruptGuard(std::function<void()> cleanUp) : cleanUp_(std::move(cleanUp)) {
  const sigset_t set = endingSignals();
  signals_ = signalfd(-1, &set, SFD_CLOEXEC);
  stop_ = eventfd(0, EFD_CLOEXEC);
  if (signals_ < 0 || stop_ < 0) return;
  pthread_sigmask(SIG_BLOCK, &set, nullptr);
  thread_ = std::thread([this] { wait(); });
}

InterruptGuard::~InterruptGuard() {
  if (thread_.joinable()) {
    eventfd_write(stop_, 1);
    thread_.join();
    const sigset_t set = endingSignals();
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
  }
  if (signals_ >= 0) close(signals_);
  if (stop_ >= 0) close(stop_);
}

void InterruptGuard::wait() {
  pollfd waits[] = {{signals_, POLLIN, 0}, {stop_, POLLIN, 0}};
  for (;;) {
    if (poll(waits, 2, -1) < 0) continue;
    if ((waits[0].revents & POLLIN) != 0) {
      signalfd_siginfo info{};
      if (read(signals_, &info, sizeof info) != static_cast<ssize_t>(sizeof info)) continue;
      cleanUp_();
      endBy(static_cast<int>(info.ssi_signo));
    }
    if ((waits[1].revents & POLLIN) != 0) return;
  }
}

}  // namespace quillon::cli
