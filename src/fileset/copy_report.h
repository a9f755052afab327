// Tells a host how many bytes of a longer copy are done.
#pragma once

#include <cstdint>
#include <functional>

#include "foundation/file_util.h"

namespace quillon {

class CopyReport {
 public:
  using Callback = std::function<void(std::uint64_t doneBytes, std::uint64_t totalBytes)>;

  // Hears what the file utility copies for as long as it lives. An empty callback hears nothing.
  CopyReport(CFileUtil& files, const Callback& callback, std::uint64_t totalBytes)
      : files_(files), callback_(callback), totalBytes_(totalBytes) {
    if (!callback_) return;
    files_.SetCopyProgress([this](std::uint64_t bytes) { Report(doneBytes_ + bytes); });
    Report(0);
  }
  ~CopyReport() { files_.SetCopyProgress({}); }
  CopyReport(const CopyReport&) = delete;
  CopyReport& operator=(const CopyReport&) = delete;

  // So much is done in all, copied or not: a file that was renamed has been read by nobody.
  void SetDone(std::uint64_t doneBytes) {
    if (callback_) Report(doneBytes);
  }

 private:
  void Report(std::uint64_t doneBytes) {
    doneBytes_ = doneBytes;
    callback_(doneBytes_, totalBytes_);
  }

  CFileUtil& files_;
  const Callback& callback_;
  std::uint64_t totalBytes_;
  std::uint64_t doneBytes_ = 0;
};

}  // namespace quillon
