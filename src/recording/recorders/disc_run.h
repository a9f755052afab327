// One pass over the contents of a virtual disc, from the first sector on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "fault_plan.h"
#include "recorders/progress.h"
#include "recorders/recorder.h"
#include "win32/whole_file.h"

namespace quillon::platform {

class DiscRun {
 public:
  DiscRun(std::string imagePath, std::optional<SectorFault> fault)
      : path_(std::move(imagePath)), fault_(fault) {}

  DiscResult open();
  // Room on the file system for all that is to come, so that a full one is noticed before the disc
  // is touched. File systems that cannot tell are tried.
  DiscResult reserve(std::uint64_t bytes);
  // Appends to what was put; the planned fault may come in between.
  DiscResult put(std::string_view bytes, ProgressReporter& progress);
  // Reaches the disk, the image being as long as given.
  DiscResult finish(std::uint64_t bytes);

  [[nodiscard]] std::uint64_t bytesPut() const { return put_; }
  [[nodiscard]] std::uint64_t lengthBytes() const;  // of the contents before the run
  [[nodiscard]] bool isPulled() const { return isPulled_; }
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  DiscResult append(std::string_view bytes);
  DiscResult startWriting();

  std::string path_;
  std::optional<SectorFault> fault_;
  Descriptor file_;
  std::uint64_t put_ = 0;
  std::uint64_t started_ = 0;  // writing to the disk has been started up to here
  std::uint64_t arrived_ = 0;  // what lies before is on the disk and no longer in the cache
  bool isPulled_ = false;
};

}  // namespace quillon::platform
