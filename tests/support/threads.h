// Threads for tests that also run as Windows programs, whose standard library has none.
#pragma once

#ifdef _WIN32
#include <windows.h>
#else
#include <thread>
#endif

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <vector>

namespace quillon::test {

#ifdef _WIN32
inline DWORD WINAPI runJob(LPVOID job) {
  (*static_cast<const std::function<void()>*>(job))();
  return 0;
}
#endif

// Runs the job, which lets no exception out, on that many threads at once; returns when all of them
// have ended.
inline void onThreads(std::size_t count, const std::function<void()>& job) {
#ifdef _WIN32
  std::vector<HANDLE> threads;
  for (std::size_t i = 0; i < count; ++i) {
    void* const argument = const_cast<std::function<void()>*>(&job);
    threads.push_back(CreateThread(nullptr, 0, runJob, argument, 0, nullptr));
    if (threads.back() == nullptr) std::abort();  // the job would be missed silently
  }
  for (const HANDLE thread : threads) {
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
  }
#else
  std::vector<std::jthread> threads;
  for (std::size_t i = 0; i < count; ++i) threads.emplace_back(job);
#endif
}

}  // namespace quillon::test
