#include "support/sleep_record.h"

#ifdef _WIN32

namespace {

quillon::test::SleepRecord* current = nullptr;

void WINAPI recordOrSleep(DWORD milliseconds) {
  if (current == nullptr) {
    SleepEx(milliseconds, FALSE);
  } else {
    current->waitsMs.push_back(milliseconds);
  }
}

}  // namespace

// What a call of Sleep goes through. The linker finds it here before it asks the import library, so
// that every call of this program, but none of Windows' own, comes to the function above.
extern "C" decltype(&recordOrSleep) importedSleep asm("__imp__Sleep@4");
decltype(&recordOrSleep) importedSleep = &recordOrSleep;

namespace quillon::test {

SleepRecord::SleepRecord() { current = this; }
SleepRecord::~SleepRecord() { current = nullptr; }

}  // namespace quillon::test

#else

#include "platform/testing.h"

namespace quillon::test {

SleepRecord::SleepRecord() {
  platform::testing::SubstituteSleeper([this](DWORD ms) { waitsMs.push_back(ms); });
}
SleepRecord::~SleepRecord() { platform::testing::Restore(); }

}  // namespace quillon::test

#endif
