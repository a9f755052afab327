// A thread that has initialised COM as a host does.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "platform/com.h"

namespace quillon::test {

// Runs the job on such a thread; what the job initialises there it must give back.
inline void onHostThread(const std::function<void()>& job) {
  std::thread([&] {
    ASSERT_EQ(CoInitialize(nullptr), S_OK);
    job();
    CoUninitialize();
    EXPECT_EQ(CoInitialize(nullptr), S_OK) << "COM is still initialised on the thread";
    CoUninitialize();
  }).join();
}

}  // namespace quillon::test
