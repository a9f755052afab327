// What was written, read back and compared with the file set, byte by byte.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "outcome.h"

namespace quillon {
class MediumSource;
}

namespace quillon::cli {

class ReadBack {
 public:
  using Progress = std::function<void(std::uint64_t doneBytes, std::uint64_t totalBytes)>;

  // root: of the file set that was written. what: the medium as a sentence calls it, "The copy in
  // /media/stick".
  ReadBack(std::string root, std::string what, Progress progress);

  // Each file of the set must be there with the same bytes; what else the medium holds is not
  // looked at. Its DICOMDIR must be as sound as the set's. Fails with the number of files that are
  // not the same; remarks name them.
  Outcome check(MediumSource& medium, std::vector<std::string>& remarks);
  // The same of the medium at a path: a directory, an image or a ZIP file, with its password. The
  // system reads it from the device, not from memory, where it can be told to.
  Outcome check(const std::string& path, const std::string& password,
                std::vector<std::string>& remarks);

  [[nodiscard]] std::size_t files() const { return files_; }

 private:
  Outcome compare(MediumSource& medium, std::vector<std::string>& remarks);
  Outcome checkDirectory(MediumSource& medium, std::vector<std::string>& remarks) const;

  std::string root_;
  std::string what_;
  Progress progress_;
  std::size_t files_ = 0;
};

}  // namespace quillon::cli
