// One flush for the many files that are written to a file system while this lives.
#pragma once

#include <cstdint>

#include "foundation/file_handle.h"
#include "foundation/text.h"

namespace quillon {

class FileSystemFlush {
 public:
  // Of the file system that the directory lies on.
  explicit FileSystemFlush(TextView directory);

  [[nodiscard]] const Text& Directory() const { return directory_; }
  // False where the platform has no such flush, and for a directory that cannot be read: each file
  // is to be flushed then.
  [[nodiscard]] bool IsPossible() const { return handle_.IsOpen(); }
  // Whether an open file lies on the file system.
  [[nodiscard]] bool Covers(HANDLE file) const;
  // False, with the platform's last error, when not all that was written is on the disk.
  [[nodiscard]] bool Flush();

 private:
  Text directory_;
  FileHandle handle_;
  std::uint32_t volume_ = 0;
};

}  // namespace quillon
