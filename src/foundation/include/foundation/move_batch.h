// Files that were moved to another file system by copying and whose sources are still there.
#pragma once

#include <vector>

#include "foundation/file_system_flush.h"
#include "foundation/file_util.h"

namespace quillon {

class MoveBatch {
 public:
  struct Source {
    Text path;
    FileStamp stamp;  // of what was copied
  };

  // Of moves to the file system that the directory lies on.
  explicit MoveBatch(TextView directory) : flush_(directory) {}

  [[nodiscard]] FileSystemFlush& Flush() { return flush_; }
  // Whether so much has gathered that its sources should go: a failure leaves no more than that in
  // two places, and the room that their copies take twice is bounded.
  [[nodiscard]] bool IsFull() const {
    return sources_.size() >= kMostFiles || sizeBytes_ >= kMostBytes;
  }
  void Add(Source source) {
    sizeBytes_ += source.stamp.sizeBytes;
    sources_.push_back(std::move(source));
  }
  // Empties the batch.
  [[nodiscard]] std::vector<Source> Take() {
    sizeBytes_ = 0;
    return std::exchange(sources_, {});
  }

 private:
  static constexpr std::size_t kMostFiles = 1000;
  static constexpr std::uint64_t kMostBytes = std::uint64_t{256} << 20;

  FileSystemFlush flush_;
  std::vector<Source> sources_;
  std::uint64_t sizeBytes_ = 0;
};

}  // namespace quillon
