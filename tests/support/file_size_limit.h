// A disk that is full, as far as this process can tell.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace quillon::test {

// While it lives, no file of this process can grow beyond some bytes; renaming is no writing.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    signal_ = std::signal(SIGXFSZ, SIG_IGN);  // SIG_ERR is given back as well
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, signal_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*signal_)(int) = SIG_DFL;
};

}  // namespace quillon::test
