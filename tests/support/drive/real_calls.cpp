#include "real_calls.h"

#include <dlfcn.h>

namespace emulated {

void* realSymbol(const char* name) { return ::dlsym(RTLD_NEXT, name); }

const RealCalls& real() {
  static const RealCalls calls{
      .open = realCall<decltype(RealCalls::open)>("open64"),
      .openat = realCall<decltype(RealCalls::openat)>("openat64"),
      .fopen = realCall<decltype(RealCalls::fopen)>("fopen64"),
      .opendir = realCall<decltype(RealCalls::opendir)>("opendir"),
      .close = realCall<decltype(RealCalls::close)>("close"),
      .ioctl = realCall<decltype(RealCalls::ioctl)>("ioctl"),
      .access = realCall<decltype(RealCalls::access)>("access"),
      .read = realCall<decltype(RealCalls::read)>("read"),
      .pread = realCall<decltype(RealCalls::pread)>("pread64"),
      .lseek = realCall<decltype(RealCalls::lseek)>("lseek64"),
      .umount2 = realCall<decltype(RealCalls::umount2)>("umount2"),
      .nanosleep = realCall<decltype(RealCalls::nanosleep)>("nanosleep"),
  };
  return calls;
}

}  // namespace emulated
