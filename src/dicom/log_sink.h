// What stands behind the log lines: the sink itself and the file that they tell of.
#pragma once

#include "dicom/log.h"

namespace quillon {

// Only the dictionary, whose life the sink shares, does that.
void dcSetTheLog(DcLog* sink);

// While one of these lives, a line that does not name the file itself ends in ", file '<name>'":
// what is wrong with an element helps nobody who reads a hundred files and cannot tell in which.
class DcLogFile {
 public:
  // The name must live as long.
  explicit DcLogFile(const char* fileName);
  ~DcLogFile();
  DcLogFile(const DcLogFile&) = delete;
  DcLogFile& operator=(const DcLogFile&) = delete;

 private:
  const char* outer_;
};

}  // namespace quillon
