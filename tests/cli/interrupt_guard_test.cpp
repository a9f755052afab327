#include "interrupt_guard.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <mutex>

namespace quillon::cli {
namespace {

// Blocks the job's own thread: the signal is the guard's.
[[noreturn]] void waitForTheEnd() {
  for (;;) pause();
}

void endIn(int signal) {
  const InterruptGuard guard([] { std::fputs("cleaned", stderr); });
  kill(getpid(), signal);
  waitForTheEnd();
}

void endWhileTheLockIsHeld(std::chrono::seconds patience) {
  std::mutex mutex;
  const std::lock_guard lock(mutex);
  const InterruptGuard guard([&mutex] { const std::lock_guard never(mutex); }, patience);
  for (;;) kill(getpid(), SIGTERM);  // an impatient user
}

void endTwoGuardsAndThen(int signal) {
  for (int i = 0; i < 2; ++i) const InterruptGuard guard([] { std::fputs("cleaned", stderr); });
  std::fputs("over", stderr);
  kill(getpid(), signal);
  waitForTheEnd();
}

// A program that ends by the signal is what shells and batch systems look for.
TEST(InterruptGuardDeathTest, ASignalCleansUpAndEndsTheProgram) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    EXPECT_EXIT(endIn(signal), ::testing::KilledBySignal(signal), "^cleaned$");
    EXPECT_EXIT(endTwoGuardsAndThen(signal), ::testing::KilledBySignal(signal), "^over$");
  }
}

TEST(InterruptGuardDeathTest, ACleanUpThatWaitsForTheJobKeepsNobody) {
  const char* told = "^quillon: The job ended before everything was cleaned up.\n$";
  for (const std::chrono::seconds patience :
       {std::chrono::seconds(0), std::chrono::seconds(3600)}) {
    EXPECT_EXIT(endWhileTheLockIsHeld(patience), ::testing::KilledBySignal(SIGTERM), told);
  }
}

}  // namespace
}  // namespace quillon::cli
