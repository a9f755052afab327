// A progress bar on standard error. Appears when the job has taken longer than a second, and only
// on a terminal.
#pragma once

#include <chrono>
#include <cstddef>
#include <string_view>

namespace quillon::cli {

class ProgressBar {
 public:
  explicit ProgressBar(bool isWanted);
  ~ProgressBar() { clear(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  // `activity` must outlive the bar. A total of 0 shows the activity alone.
  void begin(std::string_view activity, std::size_t total);
  void advance(std::size_t done);
  // Takes the bar off the screen, so that something else can be written.
  void clear();

 private:
  using Clock = std::chrono::steady_clock;
  void draw();

  bool isWanted_;
  bool isShown_ = false;
  Clock::time_point startedAt_ = Clock::now();
  Clock::time_point drawnAt_{};
  std::string_view activity_;
  std::size_t total_ = 0;
  std::size_t done_ = 0;
};

}  // namespace quillon::cli
