#include "progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace quillon::cli {

namespace {

constexpr std::chrono::milliseconds kQuietFor{1000};
constexpr std::chrono::milliseconds kRedrawEvery{100};
constexpr std::size_t kBarCells = 30;

}  // namespace

ProgressBar::ProgressBar(bool isWanted) : isWanted_(isWanted && isatty(STDERR_FILENO) == 1) {}

void ProgressBar::begin(std::string_view activity, std::size_t total) {
  activity_ = activity;
  total_ = total;
  done_ = 0;
  drawnAt_ = {};
  advance(0);
}

void ProgressBar::advance(std::size_t done) {
  done_ = done;
  if (!isWanted_) return;
  const Clock::time_point now = Clock::now();
  if (now - startedAt_ < kQuietFor || now - drawnAt_ < kRedrawEvery) return;
  drawnAt_ = now;
  draw();
}

void ProgressBar::draw() {
  std::string line = "\r\x1B[K";
  line += activity_;
  if (total_ > 0) {
    const std::size_t filled = std::min(kBarCells, done_ * kBarCells / total_);
    line += " [" + std::string(filled, '#') + std::string(kBarCells - filled, ' ') + "] " +
            std::to_string(done_) + "/" + std::to_string(total_);
  }
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
