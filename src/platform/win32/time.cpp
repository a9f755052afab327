// Time and waiting.
#include <unistd.h>

#include <cerrno>
#include <ctime>

#include "file_status.h"
#include "platform/win32/system.h"
#include "substitutes.h"

using namespace quillon::platform;

void WINAPI Sleep(DWORD milliseconds) {
  if (substitutes().sleeper) {
    substitutes().sleeper(milliseconds);
    return;
  }
  timespec left{};
  left.tv_sec = milliseconds / 1000;
  left.tv_nsec = static_cast<long>(milliseconds % 1000) * 1'000'000;
  while (::nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

void WINAPI GetLocalTime(LPSYSTEMTIME time) {
  if (substitutes().clock) {
    *time = substitutes().clock();
    return;
  }
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  std::tm local{};
  ::localtime_r(&now.tv_sec, &local);
  *time = {static_cast<WORD>(local.tm_year + 1900), static_cast<WORD>(local.tm_mon + 1),
           static_cast<WORD>(local.tm_wday),        static_cast<WORD>(local.tm_mday),
           static_cast<WORD>(local.tm_hour),        static_cast<WORD>(local.tm_min),
           static_cast<WORD>(local.tm_sec),         static_cast<WORD>(now.tv_nsec / 1'000'000)};
}
