// What a delivery reads of a file set, in one order for every kind of medium.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "outcome.h"

namespace quillon::cli {

struct SetFile {
  std::string name;  // below the root, with slashes
  bool isDirectory = false;
  std::uint64_t sizeBytes = 0;
  timespec modified{};
};

// The files, and the directories that are empty: the DICOMDIR first, then in ascending order, a
// directory's files before its directories. Links are followed. Fails for what cannot be read and
// for what is neither a file nor a directory.
Outcome listSetFiles(const std::string& root, std::vector<SetFile>& files);

// An open file; a pipe in its place does not hold the program up.
class SourceDescriptor {
 public:
  explicit SourceDescriptor(const std::string& path);
  ~SourceDescriptor();
  SourceDescriptor(const SourceDescriptor&) = delete;
  SourceDescriptor& operator=(const SourceDescriptor&) = delete;
  [[nodiscard]] int number() const { return number_; }  // negative when there is none

 private:
  int number_;
};

// Whether the open file has the size and time that were listed. What somebody writes to while it is
// read may be half old, half new.
bool isAsListed(int descriptor, const SetFile& file);

// That it cannot be read, for that errno.
Outcome unreadable(const std::string& path, int error);

}  // namespace quillon::cli
