#include "progress_bar.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "disc_kinds.h"

namespace quillon::cli {

namespace {

constexpr std::chrono::milliseconds kQuietFor{1000};
constexpr std::chrono::milliseconds kRedrawEvery{100};
constexpr std::size_t kMostCells = 30;
constexpr std::size_t kLeastCells = 8;
constexpr std::size_t kUsualColumns = 80;

std::string speedText(double bytesPerSecond) {
  char text[32];
  const double megabytes = bytesPerSecond / static_cast<double>(kMegabyte);
  std::snprintf(text, sizeof text, megabytes < 99.95 ? "%.1f MB/s" : "%.0f MB/s", megabytes);
  return text;
}

std::string durationText(double seconds) {
  const auto whole = static_cast<std::uint64_t>(std::llround(seconds));
  char text[40];
  if (whole >= 3600) {
    std::snprintf(text, sizeof text, "%llu:%02u:%02u",
                  static_cast<unsigned long long>(whole / 3600),
                  static_cast<unsigned>(whole / 60 % 60), static_cast<unsigned>(whole % 60));
  } else {
    std::snprintf(text, sizeof text, "%u:%02u", static_cast<unsigned>(whole / 60),
                  static_cast<unsigned>(whole % 60));
  }
  return text;
}

std::string countsText(const ProgressState& state) {
  const bool isBytes = state.unit == ProgressUnit::Bytes;
  const auto number = [&](std::uint64_t value) {
    return std::to_string(isBytes ? value / kMegabyte : value);
  };
  std::string text =
      number(state.done) + " of " + number(state.total) + (isBytes ? " MB" : " files");
  if (!isBytes || state.seconds < 1 || state.done == 0 || state.done > state.total) return text;
  const double speed = static_cast<double>(state.done) / state.seconds;
  text += ", " + speedText(speed);
  return text + ", " + durationText(static_cast<double>(state.total - state.done) / speed) +
         " left";
}

std::size_t terminalColumns() {
  winsize size{};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col
                                                                         : kUsualColumns;
}

}  // namespace

std::string progressLine(const ProgressState& state, std::size_t columns) {
  std::string line(state.activity);
  if (state.total > 0) {
    const std::string counts = countsText(state);
    const std::size_t others = line.size() + counts.size() + 4;  // " [" and "] "
    const std::size_t cells = columns > others ? std::min(kMostCells, columns - others) : 0;
    if (cells >= kLeastCells) {
      const auto filled =
          static_cast<std::size_t>(static_cast<double>(std::min(state.done, state.total)) /
                                   static_cast<double>(state.total) * static_cast<double>(cells));
      line += " [" + std::string(filled, '#') + std::string(cells - filled, ' ') + "]";
    }
    line += " " + counts;
  }
  if (line.size() > columns) line.resize(columns);
  return line;
}

ProgressBar::ProgressBar(bool isWanted) : isWanted_(isWanted && isatty(STDERR_FILENO) == 1) {}

void ProgressBar::begin(std::string_view activity, std::uint64_t total, ProgressUnit unit) {
  state_ = {activity, 0, total, unit, 0};
  begunAt_ = Clock::now();
  drawnAt_ = {};
  advance(0);
}

void ProgressBar::advance(std::uint64_t done) {
  if (!isWanted_) return;
  state_.done = done;
  const Clock::time_point now = Clock::now();
  if (now - startedAt_ < kQuietFor || now - drawnAt_ < kRedrawEvery) return;
  draw(now);
}

void ProgressBar::draw(Clock::time_point now) {
  drawnAt_ = now;
  state_.seconds = std::chrono::duration<double>(now - begunAt_).count();
  // A line that reaches the last column may go on in the next one.
  const std::string line = "\r\x1B[K" + progressLine(state_, terminalColumns() - 1);
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
  isShown_ = true;
}

void ProgressBar::clear() {
  if (!isShown_) return;
  std::fputs("\r\x1B[K", stderr);
  std::fflush(stderr);
  isShown_ = false;
}

}  // namespace quillon::cli
