#pragma once

#include <dirent.h>
#include <sys/types.h>

#include <cstdio>
#include <ctime>

namespace emulated {

// The system's own calls, beneath those that this library puts before them.
struct RealCalls {
  int (*open)(const char*, int, ...);
  int (*openat)(int, const char*, int, ...);
  FILE* (*fopen)(const char*, const char*);
  DIR* (*opendir)(const char*);
  int (*close)(int);
  int (*ioctl)(int, unsigned long, ...);
  int (*access)(const char*, int);
  ssize_t (*read)(int, void*, std::size_t);
  ssize_t (*pread)(int, void*, std::size_t, off_t);
  off_t (*lseek)(int, off_t, int);
  int (*umount2)(const char*, int);
  int (*nanosleep)(const timespec*, timespec*);
};
const RealCalls& real();

// Looks a call up behind this library.
void* realSymbol(const char* name);
template <typename Function>
Function realCall(const char* name) {
  return reinterpret_cast<Function>(realSymbol(name));
}

// Closes what it was given, past the replaced close.
class OwnDescriptor {
 public:
  explicit OwnDescriptor(int descriptor) : descriptor_(descriptor) {}
  OwnDescriptor(const OwnDescriptor&) = delete;
  OwnDescriptor& operator=(const OwnDescriptor&) = delete;
  ~OwnDescriptor() {
    if (isOpen()) real().close(descriptor_);
  }
  bool isOpen() const { return descriptor_ >= 0; }
  int get() const { return descriptor_; }
  int take() {
    const int taken = descriptor_;
    descriptor_ = -1;
    return taken;
  }

 private:
  int descriptor_;
};

}  // namespace emulated
