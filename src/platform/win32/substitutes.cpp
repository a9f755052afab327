#include "substitutes.h"

#include <utility>

#include "platform/testing.h"

namespace quillon::platform {

Substitutes& substitutes() {
  static Substitutes current;
  return current;
}

namespace testing {

void SubstituteClock(std::function<SYSTEMTIME()> clock) { substitutes().clock = std::move(clock); }

void SubstituteSleeper(std::function<void(DWORD)> sleeper) {
  substitutes().sleeper = std::move(sleeper);
}

void SubstituteVersion(DWORD major, DWORD minor, DWORD build, WORD servicePackMajor) {
  substitutes().version = {major, minor, build, servicePackMajor};
}

void BreakListings(std::size_t afterEntries, DWORD code) {
  substitutes().listingBreak = {afterEntries, code};
}

void BreakRead(const std::string& nameEnd, int nth, DWORD afterBytes, DWORD code) {
  substitutes().readBreak = {nameEnd, nth, afterBytes, code, 0};
}

void SubstituteFileSystemFlush(std::function<DWORD()> flush) {
  substitutes().fileSystemFlush = std::move(flush);
}

void Restore() { substitutes() = Substitutes{}; }

}  // namespace testing
}  // namespace quillon::platform
