// The progress of a disc on the progress bar.
#pragma once

#include <optional>

#include "platform/disc_progress.h"
#include "progress_bar.h"

namespace quillon::cli {

// Shows how far the disc is for as long as it lives.
class DiscProgressScope {
 public:
  explicit DiscProgressScope(ProgressBar& bar);
  ~DiscProgressScope();
  DiscProgressScope(const DiscProgressScope&) = delete;
  DiscProgressScope& operator=(const DiscProgressScope&) = delete;

 private:
  void show(const platform::DiscProgress& progress);

  ProgressBar& bar_;
  std::optional<platform::DiscStage> stage_;
};

}  // namespace quillon::cli
