// The lock by which clients of a recorder exclude each other: a file that holds the name of the
// client that has it.
#pragma once

#include <string>
#include <string_view>

#include "recording/disc_result.h"
#include "win32/whole_file.h"

namespace quillon::platform {

class RecorderLock {
 public:
  explicit RecorderLock(std::string path) : path_(std::move(path)) {}

  // For one client alone, until release. E_IMAPI_RECORDER_LOCKED while others have it, but for
  // questions that take no longer than a moment. An empty name is that of a question that takes
  // longer.
  DiscResult acquire(std::u16string_view clientName);
  // Of the client that has it.
  DiscResult rename(std::u16string_view clientName);
  void release();
  // For a question, for as long as the descriptor is open; others may ask at the same time.
  DiscResult share(Descriptor& shared) const;
  // The name of the client that has the lock, in whatever process; empty for none.
  [[nodiscard]] std::u16string owner() const;

 private:
  std::string path_;
  Descriptor file_;
};

}  // namespace quillon::platform
