// The writes and erases that are under way in this process, so that all of them can be ended.
#pragma once

#include <string>
#include <string_view>

#include "recording/disc_result.h"

namespace quillon::platform {

// Whether the process is about to end: no operation goes on, and none begins.
bool areOperationsStopped();

// One of them, while it exists.
class DiscOperation {
 public:
  DiscOperation();
  ~DiscOperation();
  DiscOperation(const DiscOperation&) = delete;
  DiscOperation& operator=(const DiscOperation&) = delete;

  // What the stop has made of its disc: a sentence for the user.
  void tell(std::string_view sentence);
};

// For lastDiscWork: how a write or another operation ended, and where an image was left.
void noteWrite(const DiscResult& result);
void noteWork(const DiscResult& result);
void noteEjected(const std::string& imageLeftAt);

}  // namespace quillon::platform
