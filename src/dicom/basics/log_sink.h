// Whose the sink of the log lines is.
#pragma once

#include "dicom/log.h"

namespace quillon {

// Only the dictionary, whose life the sink shares, does that.
void dcSetTheLog(DcLog* sink);

// The log sink lives exactly as long as the dictionary. Should a second dictionary exist for a
// while, the first one's sink stays the process's.
class DcLogOwner {
 public:
  DcLogOwner() {
    if (dcTheLog() == nullptr) dcSetTheLog(&sink_);
  }
  ~DcLogOwner() {
    if (dcTheLog() == &sink_) dcSetTheLog(nullptr);
  }
  DcLogOwner(const DcLogOwner&) = delete;
  DcLogOwner& operator=(const DcLogOwner&) = delete;

 private:
  DcLog sink_;
};

}  // namespace quillon
