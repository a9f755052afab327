// A progress bar on standard error. Appears when the job has taken longer than a second, and only
// on a terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace quillon::cli {

enum class ProgressUnit { Files, Bytes };

struct ProgressState {
  std::string_view activity;
  std::uint64_t done = 0;
  std::uint64_t total = 0;  // 0: not known, the activity stands alone
  ProgressUnit unit = ProgressUnit::Files;
  double seconds = 0;  // since the activity began
};

// "Writing the disc [####    ] 312 of 812 MB, 4.1 MB/s, 2:05 left": bytes in megabytes of
// 1,048,576, speed and time once there is a second to tell them from. Of at most so many columns:
// the bar gives way first.
std::string progressLine(const ProgressState& state, std::size_t columns);

class ProgressBar {
 public:
  explicit ProgressBar(bool isWanted);
  ~ProgressBar() { clear(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  // `activity` must outlive the bar. A total of 0 shows the activity alone.
  void begin(std::string_view activity, std::uint64_t total, ProgressUnit unit);
  // To be called often: nothing else draws it.
  void advance(std::uint64_t done);
  // Takes the bar off the screen, so that something else can be written.
  void clear();

 private:
  using Clock = std::chrono::steady_clock;
  void draw(Clock::time_point now);

  bool isWanted_;
  bool isShown_ = false;
  Clock::time_point startedAt_ = Clock::now();
  Clock::time_point begunAt_ = startedAt_;
  Clock::time_point drawnAt_{};
  ProgressState state_;
};

}  // namespace quillon::cli
