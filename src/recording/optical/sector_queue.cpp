#include "sector_queue.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "libburn.h"

namespace quillon::platform {

burn_source* SectorQueue::makeSource() {
  // libburn frees it with free().
  auto* source = static_cast<burn_source*>(std::calloc(1, sizeof(burn_source)));
  if (source == nullptr) return nullptr;
  source->refcount = 1;
  source->read = &SectorQueue::readSource;
  source->get_size = &SectorQueue::sizeOfSource;
  source->set_size = [](burn_source*, off_t) { return 1; };  // the size is known and stays
  source->free_data = [](burn_source*) {};
  source->data = this;
  return source;
}

bool SectorQueue::hasRoom() {
  const std::lock_guard lock(mutex_);
  return queued_ < kMostBytes;
}

void SectorQueue::put(std::vector<char> block) {
  const std::lock_guard lock(mutex_);
  queued_ += block.size();
  blocks_.push_back(std::move(block));
  changed_.notify_all();
}

void SectorQueue::fail() {
  const std::lock_guard lock(mutex_);
  isFailed_ = true;
  changed_.notify_all();
}

bool SectorQueue::waitForReader() {
  {
    const std::lock_guard lock(mutex_);
    if (!isRead_) return false;
  }
  readerEnd_.get_future().wait();
  return true;
}

int SectorQueue::take(unsigned char* buffer, int size) {
  std::unique_lock lock(mutex_);
  if (!isRead_) readerEnd_.set_value_at_thread_exit();
  isRead_ = true;
  const auto wanted = static_cast<std::size_t>(
      std::min<std::uint64_t>(static_cast<std::uint64_t>(size), totalBytes_ - taken_));
  std::size_t done = 0;
  while (done < wanted) {
    changed_.wait(lock, [this] { return isFailed_ || !blocks_.empty(); });
    if (isFailed_) return -1;
    const std::vector<char>& first = blocks_.front();
    const std::size_t piece = std::min(wanted - done, first.size() - firstUsed_);
    std::memcpy(buffer + done, first.data() + firstUsed_, piece);
    done += piece;
    firstUsed_ += piece;
    if (firstUsed_ < first.size()) continue;
    queued_ -= first.size();
    blocks_.pop_front();
    firstUsed_ = 0;
  }
  taken_ += done;
  return static_cast<int>(done);
}

int SectorQueue::readSource(burn_source* source, unsigned char* buffer, int size) {
  return static_cast<SectorQueue*>(source->data)->take(buffer, size);
}

off_t SectorQueue::sizeOfSource(burn_source* source) {
  return static_cast<off_t>(static_cast<SectorQueue*>(source->data)->totalBytes());
}

}  // namespace quillon::platform
