// GoogleTest's place for what a system brings along itself; found before GoogleTest's own, empty
// one. Its Notification is made of a std::mutex and a std::condition_variable, which the Windows
// build's standard library has not; this one is an event of Windows.
#ifndef QUILLON_TESTS_SUPPORT_WINDOWS_GTEST_PORT_H
#define QUILLON_TESTS_SUPPORT_WINDOWS_GTEST_PORT_H

#define GTEST_HAS_NOTIFICATION_ 1

namespace testing::internal {

class Notification {
 public:
  Notification();
  ~Notification();
  Notification(const Notification&) = delete;
  Notification& operator=(const Notification&) = delete;

  void Notify();
  void WaitForNotification();

 private:
  void* event_;
};

}  // namespace testing::internal

#endif
