// A file that is there whole or not at all: its bytes go to a hidden file beside it, which takes
// its name when all of them are on the disk. Or standard output, for the name "-".
//
//   .quillon-NAME.part   held by a lock while it is written; one that nobody holds is left over
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "outcome.h"

namespace quillon::cli {

class OutputFile {
 public:
  // An absolute path, or "-". With isReplacing a file of that name is replaced.
  OutputFile(std::string path, bool isReplacing);
  // Takes away what was not finished.
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // From now on what the process prints goes to standard error, and standard output belongs to the
  // file of the name "-". To be called before anything is printed.
  static Outcome reserveStandardOutput();
  // Whether somebody would see the bytes on a terminal.
  static bool isStandardOutputTerminal();

  [[nodiscard]] bool isStandardOutput() const { return path_ == "-"; }
  [[nodiscard]] const std::string& path() const { return path_; }

  Outcome begin();
  // False when it cannot be written; failure() says why.
  [[nodiscard]] bool write(const void* bytes, std::size_t count);
  [[nodiscard]] const Outcome& failure() const { return failure_; }
  // Looks at what was written, at this path, when it is on the disk.
  using Check = std::function<Outcome(const std::string& path)>;
  // Until then there is no file of that name, or the old one: also when the check fails, which may
  // be empty and is not made of standard output.
  Outcome finish(const Check& check = {});

  // For a thread beside the one that writes: nothing stays of a file that is not finished. Whether
  // it is.
  bool abandon();

 private:
  Outcome makeTemporary();
  Outcome clearLeftOver();
  [[nodiscard]] bool isStillOurs() const;
  [[nodiscard]] Outcome fails(int error) const;
  Outcome takeName();
  Outcome flushDirectory() const;

  std::string path_;
  std::string directory_;
  std::string temporary_;
  bool isReplacing_;
  int descriptor_ = -1;
  std::uint64_t unsentBytes_ = 0;
  Outcome failure_;
  std::atomic<bool> isAbandoned_ = false;
  std::atomic<bool> isFinished_ = false;
};

}  // namespace quillon::cli
