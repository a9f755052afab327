// Blocks of an image on their way from the thread that reads it to the one in which libburn writes:
// the image's stream belongs to the caller's thread, and a drive must not wait for it.
#pragma once

#include <sys/types.h>

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <future>
#include <mutex>
#include <vector>

namespace burn {
struct burn_source;
}  // namespace burn

namespace quillon::platform {

using burn::burn_source;

class SectorQueue {
 public:
  explicit SectorQueue(std::uint64_t totalBytes) : totalBytes_(totalBytes) {}

  // A source that libburn reads from and frees; the queue must outlive it. Null without memory.
  burn_source* makeSource();

  [[nodiscard]] bool hasRoom();
  void put(std::vector<char> block);
  // No block will come any more: the reader gets a failure.
  void fail();
  // Waits for the end of the thread in which libburn has read; false when it has not read at all.
  [[nodiscard]] bool waitForReader();
  [[nodiscard]] std::uint64_t totalBytes() const { return totalBytes_; }

 private:
  static constexpr std::size_t kMostBytes = std::size_t{8} << 20;

  // Waits for as many bytes; answers fewer at the end and -1 after fail.
  int take(unsigned char* buffer, int size);
  static int readSource(burn_source* source, unsigned char* buffer, int size);
  static off_t sizeOfSource(burn_source* source);

  const std::uint64_t totalBytes_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::vector<char>> blocks_;
  std::size_t firstUsed_ = 0;  // bytes of the first block that were taken
  std::size_t queued_ = 0;
  std::uint64_t taken_ = 0;
  bool isFailed_ = false;
  bool isRead_ = false;
  std::promise<void> readerEnd_;
};

}  // namespace quillon::platform
