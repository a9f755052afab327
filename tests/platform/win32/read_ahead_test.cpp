#include "platform/read_ahead.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace quillon {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t kFiles = 1000;
// What may be read before its turn, and how long a file takes that has to be waited for.
constexpr std::size_t kMostAhead = 64;
constexpr auto kSlow = 5ms;

struct Asked {
  std::atomic<std::size_t> count = 0;
  std::atomic<std::size_t> last = 0;

  ReadAhead::PathOf pathOf() {
    return [this](std::size_t index) {
      std::size_t known = last;
      while (known < index && !last.compare_exchange_weak(known, index)) {
      }
      ++count;
      return std::u16string(u"/nowhere/at all");
    };
  }
  void waitFor(std::size_t wanted) const {
    while (count < wanted) std::this_thread::yield();
  }
};

TEST(ReadAhead, LeavesFilesAloneThatAreNotWaitedFor) {
  Asked asked;
  {
    ReadAhead ahead(kFiles, asked.pathOf());
    for (std::size_t i = 0; i < kFiles; ++i) ahead.noteRead(i, 50us);
  }
  EXPECT_EQ(asked.count, 0U);
}

TEST(ReadAhead, StaysAFewFilesAheadOfTheReader) {
  Asked asked;
  {
    ReadAhead ahead(kFiles, asked.pathOf());
    ahead.noteRead(0, kSlow);
    asked.waitFor(kMostAhead);
    EXPECT_EQ(asked.last, kMostAhead);
    for (std::size_t i = 1; i < kFiles; ++i) {
      ahead.noteRead(i, kSlow);
      ASSERT_LE(asked.last, i + kMostAhead);
    }
  }
  // The reader was never behind, so that some were its own to read.
  EXPECT_LE(asked.count, kFiles);
}

TEST(ReadAhead, EndsInTheMiddle) {
  Asked asked;
  {
    ReadAhead ahead(kFiles, asked.pathOf());
    ahead.noteRead(0, kSlow);
    asked.waitFor(1);
  }
  const std::size_t atTheEnd = asked.count;
  EXPECT_LE(atTheEnd, kMostAhead);
}

}  // namespace
}  // namespace quillon
