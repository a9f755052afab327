// Files that are read one after the other, each from its beginning, while they may lie where the
// first byte of each has to be waited for: on a share, or on a disk that has to look for them.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "platform/win32.h"

namespace quillon {

// Once the files turn out to be waited for, the beginnings of the next ones are brought into the
// system's memory, several at a time. Nothing is told of what fails there: whoever reads the file
// meets the same. Windows' own cache is left to itself.
class ReadAhead {
 public:
  using PathOf = std::function<std::basic_string<WCHAR>(std::size_t index)>;

#ifdef _WIN32
  ReadAhead(std::size_t, const PathOf&) {}
  struct Turn {
    Turn(ReadAhead&, std::size_t) {}
  };
#else
  // pathOf is asked from other threads, at the same time too, for as long as this lives.
  ReadAhead(std::size_t count, PathOf pathOf);
  ~ReadAhead();
  ReadAhead(const ReadAhead&) = delete;
  ReadAhead& operator=(const ReadAhead&) = delete;

  // The file at index has been read, all in all in so long.
  void noteRead(std::size_t index, std::chrono::steady_clock::duration took) noexcept;

  // Lives while the file at index is read.
  class Turn {
   public:
    Turn(ReadAhead& ahead, std::size_t index) : ahead_(ahead), index_(index) {}
    ~Turn() { ahead_.noteRead(index_, std::chrono::steady_clock::now() - began_); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

   private:
    ReadAhead& ahead_;
    std::size_t index_;
    std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
  };

 private:
  class Readers;

  std::size_t count_;
  PathOf pathOf_;
  std::chrono::steady_clock::duration recent_{};  // what the last files took, older ones fading
  std::unique_ptr<Readers> readers_;
#endif
};

}  // namespace quillon
