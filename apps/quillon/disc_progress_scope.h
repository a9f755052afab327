// The progress of a disc on the progress bar.
#pragma once

#include <atomic>
#include <chrono>
#include <optional>
#include <string>

#include "progress_bar.h"
#include "recording/disc_progress.h"

namespace quillon::cli {

// How long is waited for a drive when the user or the system ends the program: it ends what it has
// begun, and a disc is closed where that saves it.
inline constexpr std::chrono::minutes kPatienceWithDrive{30};

// Shows how far the disc is for as long as it lives.
class DiscProgressScope {
 public:
  explicit DiscProgressScope(ProgressBar& bar);
  ~DiscProgressScope();
  // Whether the disc was touched, on whatever thread this is asked.
  [[nodiscard]] bool hasBegun() const { return hasBegun_; }
  DiscProgressScope(const DiscProgressScope&) = delete;
  DiscProgressScope& operator=(const DiscProgressScope&) = delete;

 private:
  void show(const platform::DiscProgress& progress);

  ProgressBar& bar_;
  std::optional<platform::DiscStage> stage_;
  std::atomic<bool> hasBegun_ = false;
};

// For an InterruptGuard: ends the work of all drives and answers what became of the discs, as a
// sentence.
std::string endDiscWork(const DiscProgressScope& progress);

}  // namespace quillon::cli
