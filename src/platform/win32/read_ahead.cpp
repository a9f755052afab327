#include "platform/read_ahead.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <new>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "win32/path_translation.h"

namespace quillon {
namespace {

using namespace std::chrono_literals;

// Nearly every header fits into it.
constexpr std::size_t kHeadBytes = 16'384;
constexpr std::size_t kThreads = 8;
// So many files are read before their turn at the most.
constexpr std::size_t kFilesAhead = 64;
// The threads rest until so many of them are used up.
constexpr std::size_t kFilesRefilled = kFilesAhead / 2;
// A file in memory is read and looked at in less.
constexpr std::chrono::steady_clock::duration kUsual = 400us;
constexpr int kFading = 8;

void readHead(const std::basic_string<WCHAR>& path) {
  const platform::NativePath native = platform::translatePath(path.c_str());
  // Without waiting: a named pipe has no writer that would let the call return.
  const int file = ::open(native.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (file < 0) return;
  // The pixel data behind the head is nobody's business here.
  ::posix_fadvise(file, 0, 0, POSIX_FADV_RANDOM);
  std::array<char, kHeadBytes> head;
  std::ignore = ::pread(file, head.data(), head.size(), 0);
  ::close(file);
}

}  // namespace

class ReadAhead::Readers {
 public:
  Readers(std::size_t first, std::size_t count, const PathOf& pathOf)
      : count_(count), pathOf_(pathOf), next_(first), used_(first) {
    try {
      threads_.reserve(kThreads);
      while (threads_.size() < kThreads) threads_.emplace_back([this] { run(); });
    } catch (const std::exception&) {
      // With those that there are; without any, as if there were nothing to wait for.
    }
  }
  ~Readers() {
    {
      const std::lock_guard lock(mutex_);
      isEnding_ = true;
    }
    wake_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }
  Readers(const Readers&) = delete;
  Readers& operator=(const Readers&) = delete;

  // Everything before the index has been read by whom it is for.
  void use(std::size_t index) {
    const std::lock_guard lock(mutex_);
    used_ = index;
    next_ = std::max(next_, index);
    if (next_ - used_ <= kFilesAhead - kFilesRefilled) wake_.notify_all();
  }

 private:
  void run() try {
    for (;;) {
      std::size_t index = 0;
      {
        std::unique_lock lock(mutex_);
        wake_.wait(lock,
                   [this] { return isEnding_ || next_ >= count_ || next_ < used_ + kFilesAhead; });
        if (isEnding_ || next_ >= count_) return;
        index = next_++;
      }
      readHead(pathOf_(index));
    }
  } catch (const std::bad_alloc&) {
    // One reader fewer.
  }

  std::size_t count_;
  const PathOf& pathOf_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::size_t next_;
  std::size_t used_;
  bool isEnding_ = false;
  std::vector<std::thread> threads_;
};

ReadAhead::ReadAhead(std::size_t count, PathOf pathOf)
    : count_(count), pathOf_(std::move(pathOf)) {}

ReadAhead::~ReadAhead() = default;

void ReadAhead::noteRead(std::size_t index, std::chrono::steady_clock::duration took) noexcept {
  if (readers_ != nullptr) return readers_->use(index + 1);
  recent_ += (took - recent_) / kFading;
  if (recent_ <= kUsual || count_ - index <= kThreads) return;
  readers_.reset(new (std::nothrow) Readers(index + 1, count_, pathOf_));
}

}  // namespace quillon
