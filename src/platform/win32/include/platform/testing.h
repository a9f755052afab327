// Linux only, for tests: puts the test's own clock, sleeper and version in the place of the
// system's, and breaks listings and reads off. What stands here is process-wide; Restore gives all
// but the code page back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "platform/win32/system.h"

namespace quillon::platform::testing {

// Answers the local time, for GetLocalTime and the dates that default to today.
void SubstituteClock(std::function<SYSTEMTIME()> clock);
// Called by Sleep with the milliseconds instead of waiting.
void SubstituteSleeper(std::function<void(DWORD)> sleeper);
// What VerifyVersionInfoW compares with, for example 5, 1 for Windows XP.
void SubstituteVersion(DWORD major, DWORD minor, DWORD build, WORD servicePackMajor);

// Makes every enumeration that goes on behind its first entries fail there with the code.
void BreakListings(std::size_t afterEntries, DWORD code);

// Makes the n-th ReadFile (from 1) of the files whose native names end so fail with the code, after
// it has put some bytes into the buffer: it answers 0 of them, and the file stands where it stood.
void BreakRead(const std::string& nameEnd, int nth, DWORD afterBytes, DWORD code);

// Called by FlushFileSystem instead of flushing; it fails with the code that is answered.
void SubstituteFileSystemFlush(std::function<DWORD()> flush);

// Makes CP_ACP what the registry now says; otherwise it is read once in a process.
void RereadCodePage();

void Restore();

// Restores at the end of a test.
struct Scope {
  Scope() = default;
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;
  ~Scope() { Restore(); }
};

}  // namespace quillon::platform::testing
